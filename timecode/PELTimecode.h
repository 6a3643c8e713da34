#pragma once

#include "PELRate.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zanfcp {

/// A timecode at a rate, as media files and documents carry it. A plain value.
struct PELTimecode {
    std::uint8_t kind = 0;         ///< 1 when made from a text
    PELRate rate;                  ///< the rate at which `string` is read
    std::uint64_t frames = 0;      ///< frames since midnight that `string` denotes at `rate`
    bool hasDropframe = false;     ///< copied from `rate.isNTSC`
    std::array<char, 12> string{}; ///< HH:MM:SS:FF and a terminating NUL

    friend bool operator==(const PELTimecode&, const PELTimecode&) = default;
};

/// Reads `string` (at most 11 bytes of it) at `rate`. Selects `rate` process-wide.
PELTimecode PELTimecodeMakeWithString(std::string_view string, PELRate rate);

/// As PELTimecodeMakeWithString, but takes a text of exactly 11 characters only. From any other, and from an absent
/// one, the text of `into` stays as it was and `frames` is read from that all the same.
/// \param into  the record that is filled; a new one by default
PELTimecode PELTimecodeMakeWithCString(std::optional<std::string_view> cstring, PELRate rate, PELTimecode into = {});

/// Frames since midnight that the record's text denotes at its rate; the record is not changed.
/// Selects the record's rate process-wide.
std::uint32_t PELTimecodeConvertStringToFrames(const PELTimecode& timecode);

/// "rate: {timebase: 25, isNTSC: 0}, string: 01:00:00:00", or with frames and hasDropframe when `kind` is not 1.
std::string NSStringFromPELTimecode(const PELTimecode& timecode);

} // namespace zanfcp
