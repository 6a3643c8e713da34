#pragma once

#include "HeaderModel.h"

#include <cstdint>
#include <optional>

namespace TamrelMxf {

enum class ERounding : std::uint8_t { nearest, up };

/// A position or duration in other edit units, rounded to the nearest or up; nothing when a rate is not positive or the
/// result does not fit.
std::optional<std::int64_t> Rescale(std::int64_t value, const SRational& from, const SRational& to,
                                    ERounding rounding = ERounding::nearest);

/// What the index tables of a stream say together.
struct SIndexExtent {
    std::int64_t editUnits = 0;
    SRational editRate;
};
/// What the essence of a stream says by its size: whole edit units that are there.
struct SEssenceExtent {
    std::int64_t editUnits = 0;
    SRational editRate;
};

/// Where a duration may come from besides the header metadata at hand.
struct SDurationSources {
    const SHeaderModel* footer = nullptr; ///< header metadata of the footer partition, when it is another copy
    std::optional<SIndexExtent> index = {};
    std::optional<SEssenceExtent> essence = {};
};

struct SDuration {
    enum class ESource : std::uint8_t { none, picture, sound, footer, index, essence };

    std::int64_t editUnits = -1; ///< -1: not known yet
    SRational editRate;          ///< of the edit units; 0/0 when no track says it
    ESource source = ESource::none;
};

/// The duration of the clip, from the first source that knows it: the picture tracks, the sound tracks, the same of the
/// footer, the index tables, the size of the essence. For each kind of track the material package is asked first, then
/// the file package, then the descriptor. A duration of 0 is only believed when nobody says more.
/// It counts edit units of the picture track or, without picture, of the sound track, whatever it comes from.
SDuration CalculateDuration(const SHeaderModel& model, const SDurationSources& sources = {});

/// A timecode and where it came from.
struct STimecode {
    std::int64_t start = 0; ///< frames since 00:00:00:00
    std::uint16_t base = 0; ///< rounded frames a second, 0 when not stated
    bool dropFrame = false;
    std::uint32_t trackNumber = 0;
    SRational editRate; ///< of the track: frames a second, exactly; 0/0 when not stated
    const CMxfPackage* package = nullptr;
};

/// The timecode component that stands first on a track of the package; nothing when there is none.
std::optional<STimecode> FirstTimecode(const CMxfPackage& package);
/// The timecode of the package at a position on one of its tracks.
/// \param position  in edit units of `rate`, the edit rate of the track that holds the position
std::optional<STimecode> TimecodeAt(const CMxfPackage& package, std::int64_t position, const SRational& rate);

/// All that is said about the start of the clip.
struct SStartTimecode {
    STimecode start;              ///< of the clip
    std::int64_t sourceStart = 0; ///< of the file package's timecode track, 0 without one
    enum class ESource : std::uint8_t { none, material, file, physical } source = ESource::none;
};

/// The start timecode of the clip: that of the material package or, when it is 0 or absent, that of the file package
/// less the start position of the first clip of the material package, unless that is larger. Where neither of them
/// carries a timecode: that of the tape or other package further down the chain, at the position that the clips on the
/// way there name.
SStartTimecode FindStartTimecode(const SHeaderModel& model);

/// The marks of the clip.
struct SMarks {
    std::optional<std::int64_t> markIn, markOut;
    std::uint32_t timebaseTrackId = 0; ///< the track whose edit units they count, 0 when not stated
};
/// The marks of the material package, else of the first package that has some: those of the package set itself, else of
/// its marker, else of the first track that has some. The Material End Relative Times value stands in for a missing
/// mark-in.
SMarks FindMarks(const SHeaderModel& model);

} // namespace TamrelMxf
