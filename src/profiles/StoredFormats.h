#pragma once

// The stored formats of site profiles, file lists and links: section and key names, and the
// buffer sizes their readers give (a value comes back cut to the buffer size less one).

namespace zelto::profilefile {

inline constexpr char kSection[] = "Settings";
inline constexpr char kHost[] = "Host";
inline constexpr char kUser[] = "User";
inline constexpr char kPassword[] = "Password";
inline constexpr char kRemotePath[] = "Remote Path";
inline constexpr char kDescription[] = "Description";
inline constexpr char kPort[] = "Port";
inline constexpr char kExtension[] = ".ini";
inline constexpr int kPortFallback = 21;
// Imported profiles always get the standard port.
inline constexpr char kImportedPort[] = "21";
inline constexpr char kAnonymousUser[] = "anonymous";
// The edit form reads values of up to 255 characters.
inline constexpr int kFieldBuffer = 256;
// The readers that build target lists for sending cut values at 99 characters.
inline constexpr int kTargetListBuffer = 100;

} // namespace zelto::profilefile

namespace zelto::listfile {

inline constexpr char kFileName[] = "flist.ini";
inline constexpr char kListSection[] = "LIST";
inline constexpr char kNumItems[] = "NumItems";
inline constexpr char kEntrySectionPrefix[] = "FILE"; // FILE1 .. FILEn
inline constexpr char kLocalName[] = "LocalName";
inline constexpr char kFolder[] = "Folder";
inline constexpr char kRemoteName[] = "RemoteName";
inline constexpr char kSize[] = "Size";
inline constexpr char kSizeFallback[] = "0";
inline constexpr int kValueBuffer = 255;

} // namespace zelto::listfile

namespace zelto::linkfile {

inline constexpr char kItemsSection[] = "LinkItems";
inline constexpr char kSites[] = "Sites";
inline constexpr char kFiles[] = "Files";
inline constexpr char kSiteSectionPrefix[] = "SITE"; // SITE1 .. SITEn
inline constexpr char kSite[] = "SITE";
// Link values, and the profiles a link run reads, are cut at 126 characters.
inline constexpr int kValueBuffer = 127;

} // namespace zelto::linkfile

namespace zelto::serverfile {

// A word of an .sts line that stands for an empty value.
inline constexpr char kNoValue[] = "NONE";

} // namespace zelto::serverfile
