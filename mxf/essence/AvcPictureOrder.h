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
    void Restart() override;

private:
    CAvcAnalyser analyser_;
    std::optional<std::int64_t> sequenceStart_; // the stored unit at which counting began
    std::int64_t delay_ = 0;
    std::int32_t step_ = 2; // of the counts, a frame
};

} // namespace TamrelMxf
