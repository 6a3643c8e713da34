#include "mxf/essence/AvcPictureOrder.h"

#include <algorithm>

namespace TamrelMxf {

CAvcPictureOrder::CAvcPictureOrder(std::span<const std::uint8_t> extraData)
{
    if (!extraData.empty()) (void)analyser_.SetExtraData(extraData); // the stream may have its own as well
}

std::optional<SPicturePlace> CAvcPictureOrder::Describe(std::span<const std::uint8_t> picture, std::int64_t stored)
{
    SAvcPicture found;
    (void)analyser_.Analyse(picture, found);
    if (found.isDamaged) return std::nullopt;
    delay_ = std::max<std::int64_t>(delay_, found.reorderFrames);
    if (found.startsSequence) sequenceStart_ = stored;
    SPicturePlace place{.displayed = sequenceStart_, .isKey = found.isKeyFrame};
    if (found.reorderFrames == 0) {
        place.displayed = stored;
    } else if (place.displayed) {
        const std::int32_t count = found.order.Count();
        if (count % 2 != 0 && found.coding != EAvcCoding::bottomField) step_ = 1;
        *place.displayed += count / step_;
    }
    return place;
}

void CAvcPictureOrder::Restart()
{
    analyser_.Restart(0);
    sequenceStart_.reset();
}

} // namespace TamrelMxf
