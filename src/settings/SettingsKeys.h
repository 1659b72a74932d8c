#pragma once

// Every key of the settings store, with its section and the default its reader gives. Where two
// readers of one key give different defaults, both constants exist, named for their reader: the
// difference decides what happens before the user first saves a page, so it is kept on purpose.

namespace zelto::settings {

struct TextKey {
    const char* section;
    const char* name;
    const char* fallback;
};

struct IntKey {
    const char* section;
    const char* name;
    int fallback;
};

inline constexpr char kYes[] = "YES";
inline constexpr char kNo[] = "NO";

namespace section {
inline constexpr char kConfig[] = "CONFIG";
inline constexpr char kFtp[] = "FTP";
inline constexpr char kLog[] = "LOG";
inline constexpr char kSchedule[] = "SCHEDULE";
inline constexpr char kSounds[] = "SOUNDS";
inline constexpr char kExt[] = "EXT";
} // namespace section

// General, views and paths.
namespace config {
using namespace section;
inline constexpr TextKey kDataDir { kConfig, "DataDir", "" };
inline constexpr TextKey kDataDirForScripts { kConfig, "DataDir", "." };
inline constexpr TextKey kDefaultDir { kConfig, "DefaultDir", "" };
inline constexpr TextKey kProfilePath { kConfig, "ProfilePath", "" };
// Readers that give the sub-folder itself as default and then append a sub-folder to it.
inline constexpr TextKey kProfilePathForFiles { kConfig, "ProfilePath", "\\Files" };
inline constexpr TextKey kProfilePathForProfiles { kConfig, "ProfilePath", "\\Profiles" };
inline constexpr TextKey kProfilePathForLinks { kConfig, "ProfilePath", "\\Links" };
inline constexpr TextKey kProfilePathForProfilesHere { kConfig, "ProfilePath", ".\\Profiles" };
inline constexpr TextKey kProfilePathForFilesHere { kConfig, "ProfilePath", ".\\Files" };
inline constexpr TextKey kConnectNet { kConfig, "ConnectNet", kNo };
inline constexpr TextKey kOverwrite { kConfig, "Overwrite", kNo };
inline constexpr TextKey kDragDropSubDirs { kConfig, "DragDropSubDirs", kNo };
inline constexpr TextKey kFileCasingPut { kConfig, "FileCasingPut", "PRESERVE" };
inline constexpr TextKey kFileCasingGet { kConfig, "FileCasingGet", "PRESERVE" };
// The other two values of FileCasingPut and FileCasingGet; any other value preserves the case.
inline constexpr char kCasingUpper[] = "UPPER_CASE";
inline constexpr char kCasingLower[] = "LOWER_CASE";
inline constexpr TextKey kTimeType { kConfig, "TimeType", "MM/DD" }; // System page, date formatting
inline constexpr TextKey kTimeTypeAtFrameStart { kConfig, "TimeType", "DD/MM" };
inline constexpr TextKey kTimeTypeForFrameHandler { kConfig, "TimeType", "" };
// The two work panes of a screen lie side by side unless the value is kSplitVertical.
inline constexpr char kSplitHorizontal[] = "HORIZ";
inline constexpr char kSplitVertical[] = "VERT";
inline constexpr TextKey kScreenSplit { kConfig, "ScreenSplit", kSplitHorizontal };
inline constexpr TextKey kDragDrop { kConfig, "DragDrop", "MOVE" };
inline constexpr TextKey kDragDropDirsMiscPage { kConfig, "DragDropDirs", kYes };
inline constexpr TextKey kDragDropDirsRemoteBrowser { kConfig, "DragDropDirs", kNo };
inline constexpr TextKey kLocalDblClick { kConfig, "LocalDblClick", "NO_ACTION" };
inline constexpr TextKey kRemoteDblClick { kConfig, "RemoteDblClick", "NO_ACTION" };
// The values of FTPDirTree; any other value places files as kDirTreeNoPath does.
inline constexpr char kDirTreeNoPath[] = "NO_PATH";
inline constexpr char kDirTreeLastDir[] = "LAST_DIR";
inline constexpr char kDirTreeFullPath[] = "FULL_PATH";
inline constexpr TextKey kFtpDirTree { kConfig, "FTPDirTree",
    kDirTreeNoPath }; // engines, remote browser
inline constexpr TextKey kFtpDirTreeMiscPage { kConfig, "FTPDirTree", "NO_ACTION" };
inline constexpr TextKey kDeletePut { kConfig, "DeletePut", kNo };
inline constexpr TextKey kDeleteGet { kConfig, "DeleteGet", kNo };
inline constexpr TextKey kRenameLongFileNames { kConfig, "RenameLongFileNames", kNo };
// "NotFound" means no text extensions at all.
inline constexpr TextKey kTextExtensions { kConfig, "TextExtensions", "NotFound" };
inline constexpr TextKey kTextExtensionsPage { kConfig, "TextExtensions", "" };
inline constexpr TextKey kEmail { kConfig, "Email", "" };
// Only one connect dialog reads this port; every other reader uses ftp::kPort.
inline constexpr IntKey kConnectDialogPort { kConfig, "Port", 21 };
inline constexpr char kWinStateIconic[] = "ICONIC";
inline constexpr char kWinStateRestored[] = "RESTORED";
inline constexpr TextKey kWinState { kConfig, "WinState", kWinStateRestored };
// The screens' words; an empty or unknown value shows the default screen.
inline constexpr char kScreenRemoteLocal[] = "REMOTE_LOCAL";
inline constexpr char kScreenRemoteRemote[] = "REMOTE_REMOTE";
inline constexpr char kScreenMultiplePut[] = "MULTIPLE_PUT";
inline constexpr TextKey kStartScreen { kConfig, "StartScreen", "" };
inline constexpr TextKey kScheduler { kConfig, "Scheduler", kNo };
inline constexpr IntKey kToolBar { kConfig, "ToolBar", 0 };
inline constexpr IntKey kStatusBar { kConfig, "StatusBar", 0 };
inline constexpr IntKey kProfileBar { kConfig, "ProfileBar", 0 };
// The Transfers dock: shown at the last close of the main window.
inline constexpr IntKey kTransfersDock { kConfig, "TransfersDock", 0 };
inline constexpr IntKey kSysInfoX { kConfig, "SysInfo_X", 0 };
inline constexpr IntKey kSysInfoY { kConfig, "SysInfo_Y", 0 };
// The log writer reads its file name here; the Log page writes log::kFileName.
inline constexpr TextKey kLogFileNameForWriter { kConfig, "FileName", "log1.log" };
} // namespace config

// Connection parameters.
namespace ftp {
using namespace section;
inline constexpr IntKey kConnectTo { kFtp, "ConnectTo", 20 };
inline constexpr IntKey kRecTo { kFtp, "RecTo", 20 };
inline constexpr IntKey kSendTo { kFtp, "SendTo", 20 };
inline constexpr IntKey kRecToCtrl { kFtp, "RecToCtrl", 20 };
inline constexpr IntKey kSendToCtrl { kFtp, "SendToCtrl", 20 };
inline constexpr IntKey kRetry { kFtp, "Retry", 2 };
inline constexpr TextKey kCachePage { kFtp, "Cache", kYes };
inline constexpr TextKey kReload { kFtp, "Reload", kYes };
// Connecting code: empty or unknown means the system's preconfigured access.
inline constexpr TextKey kAccessType { kFtp, "AccessType", "" };
inline constexpr TextKey kAccessTypePage { kFtp, "AccessType", "DirectAccess" };
inline constexpr TextKey kProxyName { kFtp, "ProxyName", "" };
inline constexpr IntKey kProxyPort { kFtp, "ProxyPort", 2021 };
inline constexpr IntKey kPort { kFtp, "Port", 21 };
inline constexpr IntKey kReadBuffer { kFtp, "ReadBuffer", 4096 };
inline constexpr IntKey kWriteBuffer { kFtp, "WriteBuffer", 4096 };
inline constexpr TextKey kPassive { kFtp, "Passive", kNo };
// The transfer type choice reads "NotFound"; the frame reads it empty when it is created.
inline constexpr TextKey kTransferType { kFtp, "TransferType", "NotFound" };
inline constexpr TextKey kTransferTypeAtFrameStart { kFtp, "TransferType", "" };
// The Transfer Mode menu's words; the transfer type choice honours the first two.
inline constexpr char kTransferBinary[] = "BINARY";
inline constexpr char kTransferText[] = "TEXT";
inline constexpr char kTransferAutomatic[] = "AUTOMATIC";
inline constexpr TextKey kQuickServer { kFtp, "QuickServer", "" };
inline constexpr TextKey kQuickLogin { kFtp, "QuickLogin", "" };
inline constexpr TextKey kQuickPasswd { kFtp, "QuickPasswd", "" };
inline constexpr TextKey kQuickDirec { kFtp, "QuickDirec", "" };
inline constexpr TextKey kQuickPort { kFtp, "QuickPort", "21" };
} // namespace ftp

// The log writer and the Log page.
namespace log {
using namespace section;
inline constexpr TextKey kToScreen { kLog, "ToScreen", kYes }; // log writer
inline constexpr TextKey kToScreenPage { kLog, "ToScreen", kNo };
inline constexpr TextKey kToFile { kLog, "ToFile", kYes }; // log writer
inline constexpr TextKey kToFilePage { kLog, "ToFile", kNo };
inline constexpr TextKey kAppendLog { kLog, "AppendLog", kNo };
inline constexpr TextKey kFileName { kLog, "FileName", "" };
// The Log page tests for the key's presence with this sentinel.
inline constexpr TextKey kFileNamePageProbe { kLog, "FileName", "notFnd" };
inline constexpr IntKey kTimeFormat { kLog, "TimeFormat", 0 };
inline constexpr IntKey kDateFormat { kLog, "DateFormat", 0 };
inline constexpr char kViewAll[] = "ALL";
inline constexpr char kViewSuccess[] = "SUCCESS";
inline constexpr char kViewUnsuccess[] = "UNSUCCESS"; // any value but the two above reads so
inline constexpr TextKey kView { kLog, "View", kViewAll };
// The log writer reads its folder here; the System page writes config::kDefaultDir.
inline constexpr TextKey kDefaultDir { kLog, "DefaultDir", "" };
} // namespace log

// Queue resend settings and the timer list.
namespace schedule {
using namespace section;
inline constexpr IntKey kResendFail { kSchedule, "ResendFail", 0 };
inline constexpr TextKey kResendFreq { kSchedule, "ResendFreq", "" };
// The ResendFreq that drops an item once it has failed more than ResendFreqNum times.
inline constexpr char kResendFreqByAttempts[] = "FREQ_NUM";
inline constexpr IntKey kResendFreqNum { kSchedule, "ResendFreqNum", 0 };
inline constexpr TextKey kResendTime { kSchedule, "ResendTime", "10" }; // scheduler's timer
inline constexpr TextKey kResendTimePage { kSchedule, "ResendTime", "0" };
inline constexpr IntKey kStartQueueProg { kSchedule, "StartQueueProg", 0 };
inline constexpr IntKey kNumTimers { kSchedule, "NumTimers", 0 };
// One schedule entry per value, numbered from 0; read with its own name as the default, which
// means that the value is absent.
inline constexpr char kTimerPattern[] = "Timer%1";
} // namespace schedule

// Sound events: a wave file per event, and whether transfer sounds play per file or per batch.
namespace sounds {
using namespace section;
inline constexpr char kPlayerSentinel[] = "NotFound";
inline constexpr char kPageSentinel[] = "NOT_FOUND";
inline constexpr TextKey kConnectOk { kSounds, "ConnectOk", kPlayerSentinel };
inline constexpr TextKey kTransferOk { kSounds, "TransferOk", kPlayerSentinel };
inline constexpr TextKey kConnectFail { kSounds, "ConnectFail", kPlayerSentinel };
inline constexpr TextKey kTransferFail { kSounds, "TransferFail", kPlayerSentinel };
inline constexpr TextKey kConnectOkPage { kSounds, "ConnectOk", kPageSentinel };
inline constexpr TextKey kTransferOkPage { kSounds, "TransferOk", kPageSentinel };
inline constexpr TextKey kConnectFailPage { kSounds, "ConnectFail", kPageSentinel };
inline constexpr TextKey kTransferFailPage { kSounds, "TransferFail", kPageSentinel };
inline constexpr char kBatch[] = "BATCH";
inline constexpr TextKey kTransferType { kSounds, "TransferType", kBatch };
} // namespace sounds

// Execute command of the file list views: "Ext%d" keys, probed with a sentinel.
namespace ext {
inline constexpr char kKeyPattern[] = "Ext%1";
inline constexpr char kSentinel[] = "notFnd";
} // namespace ext

// Window geometry: "Dimensions\\Main\\Mainframe" and friends, and one section per named splitter.
namespace geometry {
inline constexpr char kMainFrame[] = "Dimensions\\Main\\Mainframe";
inline constexpr char kProfileFrame[] = "Dimensions\\Profile\\Mainframe";
inline constexpr char kFilesFrame[] = "Dimensions\\Files\\Mainframe";
inline constexpr char kLinkDialog[] = "Dimensions\\Links\\Dialog";
// The options sheet's place and size, kept once the user has closed it.
inline constexpr char kOptionsSheet[] = "Dimensions\\Options\\Sheet";
// The report at the end of a run to several sites, kept once the user has closed one.
inline constexpr char kRunSummary[] = "Dimensions\\RunSummary\\Window";
inline constexpr char kWidth[] = "Width";
inline constexpr char kHeight[] = "Height";
inline constexpr char kX[] = "x";
inline constexpr char kY[] = "y";
inline constexpr int kSizeFallback = 400;
inline constexpr int kPlaceFallback = 20;

inline constexpr char kSplitterSectionPattern[] = "Dimensions\\%1";
inline constexpr char kRowPattern[] = "Row%1";
inline constexpr char kColPattern[] = "Col%1";
inline constexpr char kNumRows[] = "NumRows";
inline constexpr char kNumCols[] = "NumCols";
inline constexpr int kPaneFallback = 50;
inline constexpr int kPaneMinimum = 10;
inline constexpr char kMainSplitterPattern[] = "Main\\split%1"; // split1 .. split4
// The file-list screen: its two halves side by side, then each half's tree over its list.
inline constexpr char kFilesSplitter[] = "Files\\split1";
inline constexpr char kFilesLocalSplitter[] = "Files\\split2";
inline constexpr char kFilesListSplitter[] = "Files\\split3";
} // namespace geometry

} // namespace zelto::settings
