#pragma once

#include <cstddef>
#include <cstdint>

/// What a hostile or broken file may cost at most. Every loop, recursion and allocation that a file
/// controls is held against one of these figures or against the bytes that are really there.
namespace TamrelMxf {

/// The value of one KLV that is loaded into memory. Essence is never loaded this way; the largest
/// values in practice are index tables, 27 bytes an edit unit: five million of them still fit.
inline constexpr std::int64_t kMaxKlvValueBytes = std::int64_t{256} << 20;

/// The value of a partition pack: 80 bytes and 16 for each essence container.
inline constexpr std::int64_t kMaxPartitionPackBytes = std::int64_t{64} << 10;

/// What may stand before the header partition (SMPTE ST 377-1, 6.5).
inline constexpr std::size_t kMaxRunInBytes = 65'535;

/// The header metadata of one partition. Real ones hold some kilobytes, a few megabytes with descriptive
/// metadata.
inline constexpr std::size_t kMaxHeaderMetadataBytes = std::size_t{64} << 20;

/// Entries of a random index pack. A partition a second for a whole day makes 86,400.
inline constexpr std::size_t kMaxPartitions = 100'000;

/// KLVs looked at, one after the other, in search of a partition in a file that does not list them.
inline constexpr int kMaxKlvsWalked = 4096;

/// KLVs of essence stepped over at one look at a file that does not say how long it is: some hundred hours of frames.
/// The next look goes on from there.
inline constexpr int kMaxEssenceKlvsALook = 10'000'000;

/// Fill items, and index table segments that the pack does not count, stepped over at one place.
inline constexpr int kMaxFillsInARow = 16;
inline constexpr int kMaxIndexSegmentsInARow = 4096;

/// Index table segments of a whole file: two a second for eighteen hours.
inline constexpr std::size_t kMaxIndexSegments = 131'072;

/// How far back a key frame is looked for when an index entry does not say where it is, in edit units.
inline constexpr int kMaxKeyFrameDistance = 1024;

/// How often the size of edit units may change inside a table of constant sizes for their places to be added up.
inline constexpr int kMaxSizeChanges = 1024;

/// One step of an allocation for data whose real size is not known.
inline constexpr std::size_t kReadStepBytes = std::size_t{1} << 20;

/// Items of one set: no set has more tags.
inline constexpr std::size_t kMaxItemsOfASet = 65'536;

/// How deep sets may own sets. A preface owns a track's timecode through four others; descriptive
/// frameworks reach seven or eight.
inline constexpr int kMaxReferenceDepth = 32;

/// Macroblocks across and down an AVC picture: 65,536 samples. The highest level allows a quarter of that.
inline constexpr std::uint32_t kMaxAvcMacroblocksAcross = 4096;

/// One AVC parameter set. The largest one with a meaning, a map of slice groups at the highest level, has 52 kB.
inline constexpr std::size_t kMaxAvcParameterSetBytes = 65'535;

/// AVC pictures that wait for their place in presentation order. Encoders put 16 at most between two others.
inline constexpr std::size_t kMaxAvcPicturesWaiting = 128;

/// How many packages a chain from a clip back to its tape may pass.
inline constexpr int kMaxPackageChain = 64;

/// Names and values of descriptive metadata that are put into words, of a whole file.
inline constexpr std::size_t kMaxFrameworkTexts = 65'536;

/// Broken references that are kept for a report; the rest are counted.
inline constexpr std::size_t kMaxModelNotes = 64;

/// One sample. The largest in practice are uncompressed pictures: 8192 x 4320 at 16 bits and four components are 270
/// MiB.
inline constexpr std::size_t kMaxSampleBytes = std::size_t{512} << 20;

/// What is read ahead of the essence at hand.
inline constexpr std::size_t kReadAheadBytes = std::size_t{1} << 20;

/// Places of damage that are stepped over in one walk through a file.
inline constexpr int kMaxDamages = 65'536;

/// Edit units that are remembered from a walk through essence without an index table: more than 100 hours of pictures.
inline constexpr std::size_t kMaxWalkedUnits = 10'000'000;

} // namespace TamrelMxf
