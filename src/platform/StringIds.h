#pragma once

// Names for the ids of the string table, so that code asks StringTable::text(ids::kConnecting)
// instead of repeating a text or a bare number. Library error messages have no names here: they are
// reached through StringTable::errorMessage(code).

namespace zelto::ids {

// Start-up
inline constexpr int kOleInitFailed = 100;
inline constexpr int kDocumentStrings = 128;

// List column headers
inline constexpr int kColumnFile = 129;
inline constexpr int kColumnSize = 131;
inline constexpr int kColumnDestination = 133;
inline constexpr int kColumnSource = 135;
inline constexpr int kColumnReason = 136;
inline constexpr int kColumnName = 143;
inline constexpr int kColumnFileType = 234;
inline constexpr int kColumnRetries = 283;
inline constexpr int kColumnRemoteFileName = 284;
inline constexpr int kColumnStatus = 289;
inline constexpr int kColumnModified = 355;
inline constexpr int kColumnId = 1212;

// File lists, log files and file operations
inline constexpr int kNotAnFtpServerFile = 146;
inline constexpr int kFileExistsOverwrite = 147;
inline constexpr int kFilterCaption = 164;
inline constexpr int kFilterMaskLabel = 165;
inline constexpr int kOnlyOneFileAtATime = 170;
inline constexpr int kSelectFileToRename = 171;
inline constexpr int kRenameTargetExists = 174;
inline constexpr int kEnterNewFileName = 175;
inline constexpr int kConfirmRename = 177; // %s old name, %s new name
inline constexpr int kSelectFile = 179;
inline constexpr int kNoSuchFile = 180;
inline constexpr int kConfirmRemoveFile = 183; // %s file name
inline constexpr int kDeleteListQuestion = 282;
inline constexpr int kEnterFileListName = 310;

// Question boxes: buttons and captions
inline constexpr int kButtonOk = 185;
inline constexpr int kButtonYes = 187;
inline constexpr int kButtonCancel = 188;
inline constexpr int kButtonYesToAll = 190;
inline constexpr int kButtonAppend = 192;
inline constexpr int kButtonReplace = 194;
inline constexpr int kAppendOrReplaceCaption = 196;
inline constexpr int kDeleteCaption = 197;
inline constexpr int kAppendOrReplaceQuestion = 199;
inline constexpr int kButtonAll = 307;
inline constexpr int kButtonOnlyThisOne = 308;

// Distribution, connection and the transfer window
inline constexpr int kNoFilesToSend = 203;
inline constexpr int kNoTargetSites = 204;
inline constexpr int kTitlePutTo = 205; // followed by the server
inline constexpr int kConfirmCancelSending = 207;
inline constexpr int kConnecting = 209;
inline constexpr int kConnected = 211;
inline constexpr int kSortingFiles = 233;
inline constexpr int kPutCanceled = 237; // also a transfer result code
inline constexpr int kCannotOverwrite = 239; // also a transfer result code
inline constexpr int kCannotCreateFolder = 240; // also a transfer result code
inline constexpr int kConnectedTo = 242; // %s server
inline constexpr int kTitleGetFrom = 250; // followed by the server
inline constexpr int kTitleTransferFrom
    = 251; // followed by the server, " to " and the second server
inline constexpr int kLocalMachine = 252;
inline constexpr int kGetCanceled = 285;
inline constexpr int kSerialCancelChoice = 305;
inline constexpr int kRetrievingRemoteFiles = 351;

// Transfer progress
inline constexpr int kBytesProgress = 229; // %ld done, %ld total, %.2f percent
inline constexpr int kTimeLeftHours = 230; // %.2d hours, %.2d minutes, %.2d seconds
inline constexpr int kTimeLeftMinutes = 231; // %.2d minutes, %.2d seconds
inline constexpr int kTimeLeftSeconds = 232; // %.2f seconds

// Site profiles
inline constexpr int kDeleteProfileCaption = 213;
inline constexpr int kDeleteProfileAndSubProfiles = 215;
inline constexpr int kButtonProfileOnly = 217;
inline constexpr int kNewProfileLabel = 219;
inline constexpr int kNewFolderLabel = 221;
inline constexpr int kFillAllFields = 226;
inline constexpr int kProfileExists = 227;
inline constexpr int kProfileMissing = 228;

// Options
inline constexpr int kOptionsCaption = 236;
inline constexpr int kResendCountMissing = 241;
inline constexpr int kEmailRequired = 352;
inline constexpr int kLogFileNameMissing = 33042;
inline constexpr int kCernProxyIncomplete = 33049;

// Remote browser
inline constexpr int kFileToDeleteNotFound = 248;
inline constexpr int kFileNotDeleted = 249;

// Scheduler: month names, consecutive from January
inline constexpr int kMonthJanuary = 254;
inline constexpr int kMonthFebruary = 255;
inline constexpr int kMonthMarch = 256;
inline constexpr int kMonthApril = 257;
inline constexpr int kMonthMay = 258;
inline constexpr int kMonthJune = 259;
inline constexpr int kMonthJuly = 260;
inline constexpr int kMonthAugust = 261;
inline constexpr int kMonthSeptember = 262;
inline constexpr int kMonthOctober = 263;
inline constexpr int kMonthNovember = 264;
inline constexpr int kMonthDecember = 265;

// Scheduler: frequency words
inline constexpr int kFrequencyOnce = 266;
inline constexpr int kFrequencyToday = 267;
inline constexpr int kFrequencyHourly = 268;
inline constexpr int kFrequencyDaily = 269;
inline constexpr int kFrequencyWeekly = 270;
inline constexpr int kFrequencyMonthly = 271;
inline constexpr int kFrequencyYearly = 272;

// Scheduler: weekday names, consecutive from Sunday (weekday 0)
inline constexpr int kWeekdaySunday = 273;
inline constexpr int kWeekdayMonday = 274;
inline constexpr int kWeekdayTuesday = 275;
inline constexpr int kWeekdayWednesday = 276;
inline constexpr int kWeekdayThursday = 277;
inline constexpr int kWeekdayFriday = 278;
inline constexpr int kWeekdaySaturday = 279;

// Scheduler: entry states, configurator and switch
inline constexpr int kStateOn = 291;
inline constexpr int kStateOff = 293;
inline constexpr int kScheduleInPast = 295;
inline constexpr int kSchedulesChangedSave = 296;
inline constexpr int kSelectScheduleEntry = 297;
inline constexpr int kConfirmDeleteScheduleEntry = 298;
inline constexpr int kStartScheduler = 302;
inline constexpr int kStopScheduler = 303;
inline constexpr int kSelectProfile = 33046;

// Log file
inline constexpr int kBadLogFileFormat = 280;

// Links
inline constexpr int kEnterLinkName = 311;
inline constexpr int kNoSitesInLink = 312;
inline constexpr int kNoFilesInLink = 313;
inline constexpr int kLinkNamesIdentical = 314;
inline constexpr int kNoLinkSelected = 315;

// Menu prompts
inline constexpr int kPromptExecute = 1125;
inline constexpr int kPromptScheduler = 1200;
inline constexpr int kPromptTrayScheduler = 1265;
inline constexpr int kPromptClose = 1267;

// Log events: success and failure in pairs, (id - kLogFtpConnectionOk) even for success
inline constexpr int kLogFtpConnectionOk = 32861;
inline constexpr int kLogFtpConnectionFailed = 32862;
inline constexpr int kLogFtpTransferComplete = 32863;
inline constexpr int kLogFtpTransferFailed = 32864;
inline constexpr int kLogInternetConnectionOk = 32865;
inline constexpr int kLogInternetConnectionFailed = 32866;
inline constexpr int kLogChangeDirectoryOk = 32867;
inline constexpr int kLogChangeDirectoryFailed = 32868;
inline constexpr int kLogDeletionOk = 32869;
inline constexpr int kLogDeletionFailed = 32870;
inline constexpr int kLogRenamingOk = 32871;
inline constexpr int kLogRenamingFailed = 32872;
inline constexpr int kLogMakeDirectoryOk = 32873;
inline constexpr int kLogMakeDirectoryFailed = 32874;
inline constexpr int kLogFtpConnectionClosed = 32875;
inline constexpr int kLogInternetConnectionClosed = 32876;
// The event code written when a session ends. Its own text is a library error message; the log
// shows it with kLogInternetConnectionClosed's text but counts it as outcome 16.
inline constexpr int kLogSessionEnded = 32877;

// Command scripts and remote folders
inline constexpr int kCannotParseLine = 33027;
inline constexpr int kScriptError = 33028;
inline constexpr int kRenameSourceMissing = 33033;
inline constexpr int kButtonStop = 33034;
inline constexpr int kButtonResume = 33035;
inline constexpr int kNoPathToCreateDirectory = 33036;
inline constexpr int kDirectoryExists = 33037;
inline constexpr int kNoPathToRemoveDirectory = 33038;
inline constexpr int kAsciiMode = 33039;
inline constexpr int kBinaryMode = 33040;
inline constexpr int kBadParameterCount = 33052; // followed by a blank and the line
inline constexpr int kScriptOpenFailed = 33050;

// Profile trees, file lists, queue and main frame
inline constexpr int kConfirmClearQueue = 33044;
inline constexpr int kMainScreenRefusesData = 33045;
inline constexpr int kCannotRemoveFolder = 33047;
inline constexpr int kFolderNotRenamed = 33048;
inline constexpr int kLinkNotFound = 33051;
inline constexpr int kListChangedSave = 33053;
inline constexpr int kQueueEmptyOrSending = 33054;
inline constexpr int kAppTitle = 33055;
inline constexpr int kStopWorkAndQuit = 33056;

} // namespace zelto::ids
