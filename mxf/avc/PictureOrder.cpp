#include "mxf/avc/PictureOrder.h"

namespace TamrelMxf {
namespace {

std::int32_t Wrapped(std::int64_t value)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

SPictureOrderCount Counts(const SAvcSliceHeader& slice, std::int64_t top, std::int64_t bottom)
{
    const bool hasTop = !slice.isField || !slice.isBottomField;
    const bool hasBottom = !slice.isField || slice.isBottomField;
    return {hasTop ? Wrapped(top) : 0, hasBottom ? Wrapped(bottom) : 0, hasTop, hasBottom};
}

} // namespace

SPictureOrderCount CPictureOrderCounter::Next(const SAvcSliceHeader& slice, const SAvcSps& sps)
{
    SPictureOrderCount order = sps.pictureOrderType == 0   ? CountByLsb(slice, sps)
                               : sps.pictureOrderType == 1 ? CountByCycle(slice, sps)
                                                           : CountByFrameNum(slice, sps);
    previousFrameNum_ = slice.frameNum;
    if (!slice.clearsReferences) return order;

    const std::int32_t first = order.Count();
    if (order.hasTop) order.top = Wrapped(std::int64_t{order.top} - first);
    if (order.hasBottom) order.bottom = Wrapped(std::int64_t{order.bottom} - first);
    previousMsb_ = 0;
    previousLsb_ = order.hasTop ? order.top : 0; // 0 behind a bottom field
    previousFrameNum_ = 0;
    previousOffset_ = 0;
    return order;
}

/// 8.2.1.1, type 0.
SPictureOrderCount CPictureOrderCounter::CountByLsb(const SAvcSliceHeader& slice, const SAvcSps& sps)
{
    if (slice.IsIdr()) previousMsb_ = previousLsb_ = 0;
    const std::int64_t turn = std::int64_t{1} << sps.pictureOrderLsbBits;
    const std::int64_t lsb = slice.orderLsb;
    std::int64_t msb = previousMsb_;
    if (lsb < previousLsb_ && previousLsb_ - lsb >= turn / 2)
        msb += turn;
    else if (lsb > previousLsb_ && lsb - previousLsb_ > turn / 2)
        msb -= turn;
    if (slice.refIdc != 0) {
        previousMsb_ = msb;
        previousLsb_ = lsb;
    }
    return Counts(slice, msb + lsb, msb + lsb + (slice.isField ? 0 : slice.orderDeltaBottom));
}

std::uint64_t CPictureOrderCounter::FrameNumOffset(const SAvcSliceHeader& slice, const SAvcSps& sps)
{
    if (slice.IsIdr())
        previousOffset_ = 0;
    else if (previousFrameNum_ > slice.frameNum)
        previousOffset_ += std::uint64_t{1} << sps.frameNumBits;
    return previousOffset_;
}

/// 8.2.1.2, type 1.
SPictureOrderCount CPictureOrderCounter::CountByCycle(const SAvcSliceHeader& slice, const SAvcSps& sps)
{
    const std::uint64_t offset = FrameNumOffset(slice, sps);
    const std::uint64_t cycleLength = sps.offsetsForReferences.size();
    std::uint64_t frame = cycleLength != 0 ? offset + slice.frameNum : 0;
    if (slice.refIdc == 0 && frame > 0) --frame;
    std::uint64_t expected = 0; // unsigned, so that senseless offsets wrap
    if (frame > 0) {
        const std::uint64_t cycles = (frame - 1) / cycleLength;
        const std::uint64_t lastInCycle = (frame - 1) % cycleLength;
        for (std::uint64_t i = 0; i < cycleLength; ++i)
            expected += static_cast<std::uint64_t>(std::int64_t{sps.offsetsForReferences[i]}) *
                        (cycles + (i <= lastInCycle ? 1 : 0));
    }
    if (slice.refIdc == 0) expected += static_cast<std::uint64_t>(std::int64_t{sps.offsetForNonReference});
    const std::int64_t first = std::int64_t{Wrapped(static_cast<std::int64_t>(expected))} + slice.orderDelta[0];
    return Counts(slice, first, first + sps.offsetForTopToBottom + (slice.isField ? 0 : slice.orderDelta[1]));
}

/// 8.2.1.3, type 2: output order is decoding order.
SPictureOrderCount CPictureOrderCounter::CountByFrameNum(const SAvcSliceHeader& slice, const SAvcSps& sps)
{
    const std::uint64_t frame = FrameNumOffset(slice, sps) + slice.frameNum;
    const std::int64_t count = slice.IsIdr() ? 0 : static_cast<std::int64_t>(2 * frame) - (slice.refIdc == 0 ? 1 : 0);
    return Counts(slice, count, count);
}

} // namespace TamrelMxf
