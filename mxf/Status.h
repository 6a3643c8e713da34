#pragma once

namespace TamrelMxf {

/// The answers of this library: 0 for success, a negative code otherwise.
inline constexpr int kSuccess = 0;
inline constexpr int kFailed = -1;       ///< an operation failed: read, seek, parse, allocation
inline constexpr int kNullArgument = -2; ///< a required pointer is null; also "not found" from the metadata loaders
inline constexpr int kOutOfRange = -3;   ///< an index is out of range; a pack has the wrong key or no value
inline constexpr int kNotOpen = -4;      ///< no parsed header, or no byte source
inline constexpr int kNotAKey = -6;      ///< the bytes do not begin with the SMPTE prefix 06 0E 2B 34
inline constexpr int kTimedOut = -7;     ///< the file could not be opened in time; also: no essence track to link
inline constexpr int kCutShort = -9;     ///< a KLV could not be read whole
inline constexpr int kNoSuchItem = -11;  ///< no such identification set, package or index entry

} // namespace TamrelMxf
