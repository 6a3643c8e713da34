#include "mxf/essence/AvcPictureOrder.h"

#include <algorithm>
#include <utility>

namespace TamrelMxf {

CAvcPictureOrder::CAvcPictureOrder(std::span<const std::uint8_t> extraData)
{
    if (!extraData.empty()) (void)analyser_.SetExtraData(extraData); // the stream may have its own as well
}

/// The frame of a count: of two fields that are counted one by one, both are in the same.
std::int64_t CAvcPictureOrder::FromAnchor(std::int32_t count) const
{
    const std::int64_t distance = std::int64_t{count} - anchor_->count;
    const bool isHalf = distance < 0 && distance % step_ != 0;
    return anchor_->displayed + distance / step_ - (isHalf ? 1 : 0);
}

std::optional<SPicturePlace> CAvcPictureOrder::Describe(std::span<const std::uint8_t> picture, std::int64_t stored)
{
    SAvcPicture found;
    const auto known = std::exchange(known_, std::nullopt);
    const std::int64_t lost = CountLost(stored);
    (void)analyser_.Analyse(picture, found);
    if (found.isDamaged) return std::nullopt;
    delay_ = std::max<std::int64_t>(delay_, found.reorderFrames);
    if (found.order.Count() % 2 != 0 && found.coding != EAvcCoding::bottomField) step_ = 1;
    if (lost != 0 && anchor_ && !IsPlausible(FromAnchor(found.order.Count()), stored, anchor_->slack)) anchor_.reset();
    if (lost == 1 && !anchor_ && !found.isKeyFrame) { // the only picture that is lost may have begun the count
        analyser_.Restart(0);
        (void)analyser_.Analyse(picture, found);
        anchor_ = {.displayed = stored - 1, .count = 0};
        if (!IsPlausible(FromAnchor(found.order.Count()), stored)) anchor_.reset();
    }
    const std::int32_t count = found.order.Count();
    // A picture that decoding can start from also begins the counting where nothing in front of it is known.
    if (!anchor_ && IsFirst() && !found.isKeyFrame && !found.startsSequence)
        anchor_ = {
            .displayed = FirstInGroup(stored, found.type == EAvcPictureType::b), .count = count, .slack = kMostLeading};
    else if (found.startsSequence || (!anchor_ && (known || found.isKeyFrame)))
        anchor_ = {.displayed = found.startsSequence ? stored : known.value_or(stored),
                   .count = count,
                   .slack = found.startsSequence ? 0 : kMostLeading};
    Count(stored);
    SPicturePlace place{.displayed = std::nullopt, .isKey = found.isKeyFrame};
    if (found.reorderFrames == 0)
        place.displayed = stored;
    else if (anchor_)
        place.displayed = FromAnchor(count);
    return place;
}

void CAvcPictureOrder::Restart(std::optional<std::int64_t> displayed)
{
    analyser_.Restart(0);
    anchor_.reset();
    known_ = displayed;
    Forget();
}

} // namespace TamrelMxf
