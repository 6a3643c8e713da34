#pragma once

#include <array>
#include <cstdint>

namespace zanfcp::quicktime {

/// Adds up the samples of a track and how long each one lasts. Sums stop at the largest number.
class SampleDurations {
public:
    /// The next `count` samples last `duration` units each.
    void add(std::uint64_t count, std::uint64_t duration);
    /// The next `count` samples last `total` units together; how long each of them lasts is not known.
    void addTotal(std::uint64_t count, std::uint64_t total);
    /// The samples of `later` follow.
    void add(const SampleDurations& later);

    std::uint64_t count() const { return count_; }
    /// Units of the media's timescale.
    std::uint64_t total() const { return total_; }
    /// Samples a second as a 32-bit number; 0 when no sample lasts any time.
    /// Where all samples but one are equally long, their length alone counts: many writers stretch the last sample to
    /// the end of the sound, or the first one by the sound's delay, and a movie of 25 frames a second stays one.
    /// Else the average.
    float rate(std::uint32_t timescale) const;

private:
    struct Length {
        std::uint64_t duration = 0;
        std::uint64_t count = 0; ///< samples that last so long
    };

    std::uint64_t count_ = 0;
    std::uint64_t total_ = 0;
    std::array<Length, 2> lengths_; ///< the first two lengths met
    bool hasOthers_ = false;        ///< samples of a third length, or of an unknown one
};

} // namespace zanfcp::quicktime
