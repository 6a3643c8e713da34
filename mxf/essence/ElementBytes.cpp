#include "mxf/essence/ElementBytes.h"

#include "mxf/Limits.h"
#include "mxf/klv/Keys.h"
#include "mxf/klv/KlvSearch.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace TamrelMxf {

/// Where an element ends at the latest: at the next partition that is known, else where the file does by now.
std::int64_t CElementBytes::Limit(const SPart& part) const
{
    const std::int64_t size = std::max(context_->input.Size(), part.value);
    const auto& offsets = context_->partitions.Offsets();
    const auto next = offsets.upper_bound(static_cast<std::uint64_t>(part.key));
    return next == offsets.end() ? size : std::clamp(static_cast<std::int64_t>(*next), part.value, size);
}

bool CElementBytes::IsKeyAt(std::int64_t position) const
{
    SKlvHeader header;
    return header.Parse(context_->input.Peek(position, SKlvHeader::kProbeSize)) == kSuccess;
}

bool CElementBytes::Append(const SEssenceKlv& klv)
{
    if (parts_.size() >= kMaxWalkedUnits) return false;
    parts_.push_back({.begin = Size(),
                      .length = std::max<std::int64_t>(klv.length, 0),
                      .value = klv.value,
                      .key = klv.position,
                      .streamOffset = klv.streamOffset});
    stated_ = parts_.back().length;
    isOpen_ = isUnsure_ = isEnded_ = false;
    Refresh();
    return true;
}

void CElementBytes::Refresh()
{
    if (parts_.empty() || isEnded_) return;
    SPart& part = parts_.back();
    const std::int64_t limit = Limit(part);
    const bool hasEnd = stated_ <= limit - part.value;
    const std::int64_t end = hasEnd ? part.value + stated_ : limit;
    if (!isOpen_ || isUnsure_) {
        const bool isBare = std::cmp_less(limit - end, SKlvHeader::kProbeSize); // nothing that could be told from a key
        isUnsure_ = !hasEnd || (stated_ == 0 && isBare && !context_->input.IsComplete());
        isFollowed_ = !isBare && IsKeyAt(end);
        isOpen_ = isUnsure_ || (!isBare && !isFollowed_);
    }
    part.length = isOpen_ ? limit - part.value : stated_;
}

/// The size of bytes without the fill item at their end.
std::int64_t CElementBytes::WithoutFill(std::span<const std::uint8_t> bytes)
{
    constexpr std::string_view kKeyStart{"\x06\x0E\x2B\x34", 4};
    const std::string_view text{reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    const auto size = static_cast<std::int64_t>(bytes.size());
    for (std::size_t at = 0; (at = text.find(kKeyStart, at)) != std::string_view::npos; ++at) {
        SKlvHeader header;
        const bool isFill = header.Parse(bytes.subspan(at)) == kSuccess && Keys::IsFill(header.key);
        const auto begin = static_cast<std::int64_t>(at);
        if (isFill && header.TotalSize() == size - begin) return begin;
    }
    return size;
}

/// Where the partitions of a file that grows are not listed yet, only the pack itself tells that the essence has ended.
void CElementBytes::EndAtPartition(std::int64_t offset, std::size_t count)
{
    SPart& part = parts_.back();
    const std::int64_t place = part.value + std::max<std::int64_t>(offset - part.begin, 0);
    const auto view = context_->input.Peek(place, count + SUl::kSize);
    const auto found = SearchPartitionPack(view);
    if (!found) return;
    part.length = place + WithoutFill(view.first(static_cast<std::size_t>(*found))) - part.value;
    isEnded_ = true;
}

const CElementBytes::SPart* CElementBytes::PartAt(std::int64_t offset) const
{
    if (offset < 0 || offset >= Size()) return nullptr;
    const auto behind = std::ranges::upper_bound(parts_, offset, {}, &SPart::begin);
    return &*std::prev(behind);
}

std::int64_t CElementBytes::FromContainer(std::int64_t streamOffset) const
{
    const auto behind = std::ranges::upper_bound(parts_, streamOffset, {}, &SPart::streamOffset);
    if (behind == parts_.begin()) return 0;
    const SPart& part = *std::prev(behind);
    const std::int64_t header = part.value - part.key;
    return part.begin + std::clamp<std::int64_t>(streamOffset - part.streamOffset - header, 0, part.length);
}

std::span<const std::uint8_t> CElementBytes::View(std::int64_t offset, std::size_t count)
{
    const SPart* part = PartAt(offset);
    if (part == nullptr) return {};
    const auto& offsets = context_->partitions.Offsets();
    const bool isListed = offsets.upper_bound(static_cast<std::uint64_t>(part->key)) != offsets.end();
    if (isOpen_ && !isEnded_ && part == &parts_.back() && !isListed) {
        EndAtPartition(offset, std::min(count, kMaxSampleBytes));
        part = PartAt(offset);
        if (part == nullptr) return {};
    }
    count = static_cast<std::size_t>(std::min<std::int64_t>(Size() - offset, static_cast<std::int64_t>(count)));
    count = std::min(count, kMaxSampleBytes);
    const std::int64_t inside = part->begin + part->length - offset;
    if (std::cmp_less_equal(count, inside)) return context_->input.View(part->value + offset - part->begin, count);

    joined_.clear();
    while (joined_.size() < count) {
        const std::int64_t at = offset + static_cast<std::int64_t>(joined_.size());
        part = PartAt(at);
        if (part == nullptr) break;
        const std::int64_t left = part->begin + part->length - at;
        const auto wanted = std::min(count - joined_.size(), static_cast<std::size_t>(left));
        const auto view = context_->input.View(part->value + at - part->begin, wanted);
        joined_.insert(joined_.end(), view.begin(), view.end());
        if (view.size() < wanted) break;
    }
    return joined_;
}

} // namespace TamrelMxf
