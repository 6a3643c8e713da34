#pragma once

#include <cstdint>
#include <optional>

namespace zanfcp {

/// The place of a frame within its hour, as a timecode label writes it.
struct FrameLabel {
    std::uint32_t minute = 0;
    std::uint32_t second = 0;
    std::uint32_t frame = 0;

    friend constexpr bool operator==(const FrameLabel&, const FrameLabel&) = default;
};

/// How timecode is counted at one frame rate: one of eight, or none.
/// Drop-frame numbering skips the first labels of every minute except minutes 0, 10, 20, 30, 40 and 50. Labels are
/// computed, not looked up, so that selecting a rate costs nothing. Source: SMPTE ST 12-1, drop-frame compensated mode.
struct TimecodeRate {
    static constexpr std::uint32_t kNone = 8; ///< the index of "no rate selected"

    std::uint32_t index = kNone;        ///< 0 to 7 in the order 23.98, 24, 25, 29.97, 30, 50, 59.94, 60
    std::uint32_t framesPerSecond = 0;  ///< whole frames counted in one label second
    std::uint32_t droppedPerMinute = 0; ///< labels skipped at the start of nine minutes in ten; 0 without drop-frame
    double realFramesPerSecond = 0.0;   ///< rounded to two places, as it is used in all conversions to seconds

    constexpr bool isDropFrame() const { return droppedPerMinute != 0; }
    constexpr std::uint32_t framesPerTenMinutes() const { return framesPerSecond * 600 - droppedPerMinute * 9; }
    constexpr std::uint32_t framesPerHour() const { return framesPerTenMinutes() * 6; }
    constexpr std::uint32_t framesPerDay() const { return framesPerHour() * 24; }

    /// The label of a frame of the hour, counted from 0.
    /// \pre frameOfHour < framesPerHour()
    constexpr FrameLabel labelAt(std::uint32_t frameOfHour) const
    {
        const std::uint32_t ten = frameOfHour / framesPerTenMinutes();
        std::uint32_t rest = frameOfHour % framesPerTenMinutes(); // then: place among all labels of its minute
        std::uint32_t minute = ten * 10;
        if (const std::uint32_t full = framesPerSecond * 60; rest >= full) {
            const std::uint32_t shortened = full - droppedPerMinute;
            minute += 1 + (rest - full) / shortened;
            rest = (rest - full) % shortened + droppedPerMinute;
        }
        return {.minute = minute, .second = rest / framesPerSecond, .frame = rest % framesPerSecond};
    }

    /// The frame of the hour with this label; nothing for a label that is skipped or out of range.
    constexpr std::optional<std::uint32_t> frameAt(FrameLabel label) const
    {
        if (label.minute >= 60 || label.second >= 60 || label.frame >= framesPerSecond) return std::nullopt;
        const bool skips = label.minute % 10 != 0;
        if (skips && label.second == 0 && label.frame < droppedPerMinute) return std::nullopt;
        const std::uint32_t skipped = droppedPerMinute * (label.minute - label.minute / 10);
        return (label.minute * 60 + label.second) * framesPerSecond + label.frame - skipped;
    }

    /// The first label of a second that exists: frame 0, or the first one that is not skipped.
    constexpr FrameLabel firstLabelOf(std::uint32_t minute, std::uint32_t second) const
    {
        return {.minute = minute, .second = second, .frame = minute % 10 != 0 && second == 0 ? droppedPerMinute : 0};
    }

    /// The process-wide rate; kNone with all values 0 until one is selected.
    static const TimecodeRate& current();
    /// Selects a rate process-wide.
    /// \param index  0 to 7
    static void select(std::uint32_t index);
};

} // namespace zanfcp
