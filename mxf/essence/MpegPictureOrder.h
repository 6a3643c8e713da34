#pragma once

#include "PictureOrder.h"

namespace TamrelMxf {

/// MPEG-1 and MPEG-2 pictures (ISO/IEC 13818-2, 6.2): the temporal reference counts from the start of the group.
class CMpegPictureOrder final : public CPictureOrder {
public:
    std::optional<SPicturePlace> Describe(std::span<const std::uint8_t> picture, std::int64_t stored) override;
    /// One: a picture that is used for prediction is shown after the B pictures that follow it. None when the sequence
    /// says that it has no B pictures.
    std::int64_t Delay() const override { return isLowDelay_ ? 0 : 1; }
    void Restart(std::optional<std::int64_t> displayed) override
    {
        groupStart_.reset();
        known_ = displayed;
        Forget();
    }

private:
    std::optional<std::int64_t> groupStart_; // the stored unit that the group began with
    std::optional<std::int64_t> known_;      // where the next picture is shown
    bool isLowDelay_ = false;
};

} // namespace TamrelMxf
