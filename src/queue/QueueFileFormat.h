#pragma once

// The queue file: its name (placed in the application data folder), the count of its items, and
// the sections "QUEUE1" to "QUEUE<count>", one per item, numbered without gaps.
namespace zelto::queuefile {

inline constexpr char kFileName[] = "zeltoQue.ini";
inline constexpr char kCountSection[] = "QUEUE";
inline constexpr char kCountKey[] = "NumQueues";
inline constexpr char kItemSectionPrefix[] = "QUEUE";

// The keys of an item section.
namespace key {
inline constexpr char kLocalName[] = "LocalName";
inline constexpr char kRemoteName[] = "RemoteName";
inline constexpr char kSource[] = "Source";
inline constexpr char kDestination[] = "Destination";
inline constexpr char kReason[] = "Reason";
inline constexpr char kNumTimes[] = "NumTimes";
inline constexpr char kStatus[] = "Status";
inline constexpr char kRemDirFile[] = "RemDirFile";
inline constexpr char kLocDirFile[] = "LocDirFile";
inline constexpr char kPassword[] = "Password";
inline constexpr char kLogin[] = "Login";
inline constexpr char kRemDir[] = "RemDir";
inline constexpr char kFtpMethod[] = "FtpMethod";
inline constexpr char kFileSize[] = "FileSize";
inline constexpr char kPort[] = "Port";
// The second (destination) site of a site-to-site item; meaningless for the others.
inline constexpr char kRemPassword[] = "RemPassword";
inline constexpr char kRemLogin[] = "RemLogin";
inline constexpr char kRemRemDir[] = "RemRemDir";
inline constexpr char kRemotePort[] = "RemotePort";
// The process that marked the item as being sent (ProcessMark), so that an item left by a run
// that died can be sent again. A key of its own, which readers that do not know it pass over.
inline constexpr char kSendingBy[] = "SendingBy";
} // namespace key

// "FtpMethod": upload, download; any other word is a site-to-site transfer.
inline constexpr char kMethodPut[] = "ZELTO_PUT";
inline constexpr char kMethodGet[] = "ZELTO_GET";
inline constexpr char kMethodCopy[] = "ZELTO_XFER";
// The side of a transfer that is this machine, in "Source" or "Destination".
inline constexpr char kLocal[] = "Local";

// The sender reads passwords and user names, and the method word, into smaller buffers than the
// other texts (PrivateProfile::kValueBuffer); a longer value comes back one character short of
// the buffer. A section moves through PrivateProfile::kSectionBuffer.
inline constexpr int kCredentialBuffer = 50;
inline constexpr int kMethodBuffer = 20;

inline constexpr int kDefaultPort = 21;

} // namespace zelto::queuefile
