#pragma once

// The command ids of the main frame's menus, tool bar and tray menu. CMainFrame::command(id) finds
// the action of each.

namespace zelto::cmd {

// File
inline constexpr int kPrintSetup = 57606;
inline constexpr int kPrintLog = 57607;
inline constexpr int kPrintPreview = 57609;
inline constexpr int kExit = 57665;

// FTP: the three screens, and the windows of the profiles, scripts, queue and statistics
inline constexpr int kStandardFtp = 1172;
inline constexpr int kRemoteFtp = 1173;
inline constexpr int kMultiplePut = 1174;
// The Standard FTP screen's transfers, lent by the screen in this order.
inline constexpr int kFtpGet = 1168;
inline constexpr int kFtpGetWildcard = 1169;
inline constexpr int kFtpPut = 1170;
inline constexpr int kFtpPutWildcard = 1171;
inline constexpr int kFtpProfiles = 1141;
inline constexpr int kFileListProfiles = 1159;
inline constexpr int kLinks = 1222;
inline constexpr int kFtpScripts = 1177;
inline constexpr int kFtpQueue = 1187;
inline constexpr int kTransferStatistics = 1239;

// Transfer Mode
inline constexpr int kBinary = 1165;
inline constexpr int kAscii = 1166;
inline constexpr int kAutomatic = 1167;

// Logs
inline constexpr int kViewAll = 1183;
inline constexpr int kViewSuccessful = 1184;
inline constexpr int kViewUnsuccessful = 1185;
inline constexpr int kOpenLog = 1126;
inline constexpr int kSaveLog = 1178;
inline constexpr int kClearLog = 1231;

// View
inline constexpr int kToolBar = 59392;
inline constexpr int kStatusBar = 59393;
inline constexpr int kProfileBar = 1232;

// Options
inline constexpr int kConfiguration = 1158;
inline constexpr int kScheduler = 1200;
inline constexpr int kConfigureScheduler = 1164;

// Help
inline constexpr int kHelpTopics = 1192;
inline constexpr int kAbout = 57664;

// Tray menu
inline constexpr int kToggleWindow = 1264;
inline constexpr int kTrayScheduler = 1265;
inline constexpr int kTrayConfigureScheduler = 1266;
inline constexpr int kCloseZelto = 1267;
inline constexpr int kSystemParameters = 1268;

} // namespace zelto::cmd
