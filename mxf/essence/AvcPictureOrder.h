#pragma once

#include "../avc/AvcAnalyser.h"
#include "PictureOrder.h"

namespace TamrelMxf {

/// AVC pictures (ITU-T H.264, 8.2.1). Order counts are taken to go up by two a frame, one for each field, until an odd
/// one of a whole frame shows that they go up by one.
class CAvcPictureOrder final : public CPictureOrder {
public:
    /// \param extraData  parameter sets that the header metadata carries, if any
    explicit CAvcPictureOrder(std::span<const std::uint8_t> extraData);

    std::optional<SPicturePlace> Describe(std::span<const std::uint8_t> picture, std::int64_t stored) override;
    std::int64_t Delay() const override { return delay_; }
    void Restart(std::optional<std::int64_t> displayed) override;

private:
    /// A picture that the others are counted from.
    struct SAnchor {
        std::int64_t displayed = 0;
        std::int32_t count = 0;
        std::int64_t slack = 0; // pictures that may be shown in front of it, and are not counted in `displayed`
    };
    static constexpr std::int64_t kMostLeading = 16;
    std::int64_t FromAnchor(std::int32_t count) const;

    CAvcAnalyser analyser_;
    std::optional<SAnchor> anchor_;
    std::optional<std::int64_t> known_; // where the next picture is shown
    std::int64_t delay_ = 0;
    std::int32_t step_ = 2; // of the counts, a frame
};

} // namespace TamrelMxf
