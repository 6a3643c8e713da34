#include "mxf/avc/PresentationOrder.h"

#include "mxf/Limits.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <tuple>

namespace TamrelMxf {
namespace {

constexpr std::int64_t kNotPlaced = std::numeric_limits<std::int64_t>::min();
constexpr std::size_t kMostHeldBack = 2 * 16 + 1; ///< two fields of each frame that a decoder can hold

/// Units that are held back: frames, or two fields of each and one that waits for its partner.
std::size_t HeldBack(const SAvcPicture& picture)
{
    return picture.IsSingleField() ? 2 * std::size_t{picture.reorderFrames} + 1 : picture.reorderFrames;
}

} // namespace

void CPresentationOrder::Push(const SAvcPicture& picture)
{
    if (picture.sequence != sequence_) Flush();
    sequence_ = picture.sequence;
    if (!delay_ && !picture.isDamaged) delay_ = static_cast<std::int64_t>(HeldBack(picture));
    const std::int32_t count = picture.order.Count();
    if (lastCount_ && count < *lastCount_ && !picture.isDamaged) {
        ++lateUnits_;
        ++moreHeldBack_;
    }
    waiting_.emplace(count, delivered_ + units_.size());
    units_.push_back({picture.decodeIndex, 0, kNotPlaced});
    while (delay_ && waiting_.size() > std::min(HeldBack(picture) + moreHeldBack_, kMostHeldBack))
        PlaceFirst();
    while (units_.size() > kMaxAvcPicturesWaiting && units_.front().pts == kNotPlaced)
        PlaceFirst();
}

void CPresentationOrder::Flush()
{
    while (!waiting_.empty())
        PlaceFirst();
    lastCount_.reset();
}

std::optional<SAvcTimes> CPresentationOrder::Pop()
{
    if (units_.empty() || units_.front().pts == kNotPlaced) return std::nullopt;
    SAvcTimes times = units_.front();
    times.dts = times.decodeIndex - Delay();
    units_.pop_front();
    ++delivered_;
    return times;
}

void CPresentationOrder::PlaceFirst()
{
    const auto [count, place] = *waiting_.begin();
    waiting_.erase(waiting_.begin());
    lastCount_ = count;
    units_[static_cast<std::size_t>(place - delivered_)].pts = next_++;
}

std::vector<std::int64_t> PresentationIndexes(std::span<const SAvcPicture> pictures)
{
    std::vector<std::size_t> ranked(pictures.size());
    std::iota(ranked.begin(), ranked.end(), std::size_t{0});
    std::ranges::stable_sort(ranked, {}, [&](std::size_t i) {
        return std::tuple{pictures[i].sequence, pictures[i].order.Count()};
    });
    std::vector<std::int64_t> indexes(pictures.size());
    for (std::size_t place = 0; place < ranked.size(); ++place)
        indexes[ranked[place]] = static_cast<std::int64_t>(place);
    return indexes;
}

std::int64_t ReorderDelay(std::span<const std::int64_t> presentationIndexes)
{
    std::int64_t delay = 0;
    for (std::size_t i = 0; i < presentationIndexes.size(); ++i)
        delay = std::max(delay, static_cast<std::int64_t>(i) - presentationIndexes[i]);
    return delay;
}

} // namespace TamrelMxf
