#pragma once

#include <cstddef>
#include <cstdint>

namespace zanfcp::quicktime {

/// Bytes fetched at once when a header is needed that is not at hand. Small, because most headers lie far apart,
/// with tables of many megabytes between them.
inline constexpr std::size_t kReadAheadBytes = 1024;
/// The longest piece that is looked at in one go.
inline constexpr std::size_t kMaxPieceBytes = 4096;

/// Boxes on the top level of a file: a day of fragments of 0.1 s is 1.7 million.
inline constexpr std::uint64_t kMaxTopLevelBoxes = 1U << 21;
/// Boxes inside one box.
inline constexpr std::uint64_t kMaxBoxesPerContainer = 1U << 16;
inline constexpr std::size_t kMaxTracks = 1024;
/// Sample descriptions whose format is kept; a timecode track has one, rarely two.
inline constexpr std::size_t kMaxSampleDescriptions = 64;

/// Entries of a time-to-sample table that are always added up. A longer table belongs to a movie of varying rate, of
/// which the media header tells the average.
inline constexpr std::uint32_t kMaxTimeToSampleEntries = 512;
/// Entries that are added up where the media header tells nothing: 19 hours of 60 samples a second, all of another
/// length than the one before.
inline constexpr std::uint32_t kMaxTimeToSampleEntriesWithoutDuration = 1U << 22;
/// Entries of one table that are walked to find the first timecode sample.
inline constexpr std::uint32_t kMaxEntriesToFirstSample = 4096;

/// Samples of fragments whose durations are read one by one, over the whole file: nine tracks of a day at 60 frames a
/// second are 47 million.
inline constexpr std::uint64_t kMaxRunEntries = 1U << 26;

/// Longest text taken from a file, such as a reel name.
inline constexpr std::size_t kMaxTextBytes = 1024;

} // namespace zanfcp::quicktime
