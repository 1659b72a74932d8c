#pragma once

// The queue file: its name (placed in the application data folder) and the count of its items.
namespace zelto::queuefile {

inline constexpr char kFileName[] = "zeltoQue.ini";
inline constexpr char kCountSection[] = "QUEUE";
inline constexpr char kCountKey[] = "NumQueues";

} // namespace zelto::queuefile
