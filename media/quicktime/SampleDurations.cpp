#include "media/quicktime/SampleDurations.h"

#include <algorithm>
#include <limits>

namespace zanfcp::quicktime {
namespace {

constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();

std::uint64_t saturatingSum(std::uint64_t a, std::uint64_t b)
{
    std::uint64_t sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? kMost : sum;
}

std::uint64_t saturatingProduct(std::uint64_t a, std::uint64_t b)
{
    std::uint64_t product = 0;
    return __builtin_mul_overflow(a, b, &product) ? kMost : product;
}

} // namespace

void SampleDurations::add(std::uint64_t count, std::uint64_t duration)
{
    if (count == 0) return;
    count_ = saturatingSum(count_, count);
    total_ = saturatingSum(total_, saturatingProduct(count, duration));
    for (Length& length : lengths_) {
        if (length.count != 0 && length.duration != duration) continue;
        length = {.duration = duration, .count = saturatingSum(length.count, count)};
        return;
    }
    hasOthers_ = true;
}

void SampleDurations::addTotal(std::uint64_t count, std::uint64_t total)
{
    count_ = saturatingSum(count_, count);
    total_ = saturatingSum(total_, total);
    hasOthers_ = true;
}

void SampleDurations::add(const SampleDurations& later)
{
    const std::uint64_t count = saturatingSum(count_, later.count_);
    const std::uint64_t total = saturatingSum(total_, later.total_);
    for (const Length& length : later.lengths_)
        add(length.count, length.duration);
    count_ = count;
    total_ = total;
    hasOthers_ = hasOthers_ || later.hasOthers_;
}

float SampleDurations::rate(std::uint32_t timescale) const
{
    const auto [rare, common] =
        std::minmax(lengths_[0], lengths_[1], [](const Length& a, const Length& b) { return a.count < b.count; });
    const bool isUniform = !hasOthers_ && common.duration > 0 && rare.count <= 1 && rare.count < common.count;
    if (isUniform) return static_cast<float>(static_cast<double>(timescale) / static_cast<double>(common.duration));
    if (total_ == 0) return 0;
    return static_cast<float>(static_cast<double>(count_) * timescale / static_cast<double>(total_));
}

} // namespace zanfcp::quicktime
