#include "mxf/essence/EssenceWalker.h"

#include "mxf/Limits.h"
#include "mxf/essence/EssenceKeys.h"
#include "mxf/klv/Keys.h"
#include "mxf/klv/PartitionPack.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace TamrelMxf {
namespace {

constexpr std::int64_t kMostPosition = std::numeric_limits<std::int64_t>::max();
constexpr std::string_view kKeyStart{"\x06\x0E\x2B\x34", 4};

std::int64_t Behind(std::int64_t position, std::int64_t count)
{
    return count > kMostPosition - position ? kMostPosition : position + count;
}

std::string_view AsText(std::span<const std::uint8_t> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Keys that stand between the KLVs of essence or are some.
bool IsExpected(const SUl& key)
{
    return EssenceKeys::IsElement(key) || EssenceKeys::IsSystem(key) || Keys::IsFill(key) || Keys::HasPackPrefix(key) ||
           key.MatchesAnyVersion(Keys::kIndexTableSegment);
}

/// How much of a key is that of an element: one that was may be damaged.
int Resemblance(const SUl& key)
{
    constexpr auto kElement =
        std::to_array<std::uint8_t>({0x06, 0x0E, 0x2B, 0x34, 0x01, 0x02, 0x01, 0, 0x0D, 0x01, 0x03, 0x01});
    int same = 0;
    for (std::size_t i = 0; i < kElement.size(); ++i)
        same += i != 7 && key.bytes[i] == kElement[i] ? 1 : 0; // byte 8 is a version
    return same;
}

} // namespace

std::int64_t SEssenceKlv::End() const
{
    return Behind(value, std::max<std::int64_t>(length, 0));
}

int ToResult(CEssenceWalker::EStep step)
{
    switch (step) {
    case CEssenceWalker::EStep::end: return kEnded;
    case CEssenceWalker::EStep::needsData: return kNeedsData;
    case CEssenceWalker::EStep::failed: return kFailed;
    case CEssenceWalker::EStep::found: break;
    }
    return kDelivered;
}

CEssenceWalker::CEssenceWalker(const SEssenceContext& context, std::uint32_t bodySid)
    : context_{&context}, bodySid_{bodySid}
{
    GoToStart();
}

void CEssenceWalker::GoToStart()
{
    const SEssenceStart& start = context_->start;
    position_ = searchFrom_ = start.position;
    partitionSid_ = start.bodySid;
    bodyOffset_ = static_cast<std::int64_t>(std::min<std::uint64_t>(start.bodyOffset, kMostPosition));
    base_ = -1;
    essenceFrom_ = kMostPosition; // until a pack tells
    isEnd_ = false;
    isBehindDamage_ = false;
}

void CEssenceWalker::GoTo(std::int64_t position, std::int64_t streamOffset)
{
    position_ = searchFrom_ = position;
    partitionSid_ = bodySid_;
    bodyOffset_ = 0;
    base_ = position - streamOffset;
    isEnd_ = false;
    isBehindDamage_ = false;
}

CEssenceWalker::EStep CEssenceWalker::Next()
{
    while (!isEnd_) {
        const auto view = context_->input.View(position_, SKlvHeader::kProbeSize);
        SKlvHeader header;
        const int status = header.Parse(view);
        if (status == kCutShort && view.size() < SKlvHeader::kProbeSize) return Short(view.size());
        EStep step = EStep::found;
        if (status != kSuccess) {
            step = Resync();
        } else if (Keys::IsPartitionPack(header.key)) {
            step = EnterPartition(header);
        } else if (header.key.MatchesAnyVersion(Keys::kRandomIndexPack)) {
            step = EStep::end;
        } else if (IsInContainer() && (EssenceKeys::IsElement(header.key) || EssenceKeys::IsSystem(header.key))) {
            if (base_ < 0) base_ = position_ - bodyOffset_;
            searchFrom_ = position_ + 1;
            klv_ = {.key = header.key,
                    .isSystem = EssenceKeys::IsSystem(header.key),
                    .position = position_,
                    .value = Behind(position_, header.HeaderSize()),
                    .length = header.length,
                    .streamOffset = position_ - base_};
            return EStep::found;
        } else if (header.key.MatchesAnyVersion(Keys::kIndexTableSegment)) {
            step = TakeIndex(header);
        } else {
            constexpr int kSome = 7, kMost = 9; // of 11; metadata sets have up to 8
            const int resemblance = Keys::IsFill(header.key) ? 0 : Resemblance(header.key);
            if (resemblance >= kMost) BeginEssence();
            if (resemblance >= kSome && IsInContainer() && base_ >= 0) isBehindDamage_ = true;
            StepOver(header);
        }
        if (step == EStep::end) isEnd_ = true;
        if (step != EStep::found) return step;
    }
    return EStep::end;
}

/// What is damaged behind the metadata of a partition has its place in the container as well.
void CEssenceWalker::BeginEssence()
{
    if (IsInContainer() && base_ < 0 && position_ >= essenceFrom_) base_ = position_ - bodyOffset_;
}

/// Goes behind a KLV whose value does not matter. When no key follows there, the search begins inside of it.
void CEssenceWalker::StepOver(const SKlvHeader& header)
{
    const std::int64_t value = Behind(position_, header.HeaderSize());
    searchFrom_ = value;
    const std::int64_t end = Behind(value, std::max<std::int64_t>(header.length, 0));
    position_ = header.IsIndefinite() || IsBeyondEnd(end) ? value : end;
}

/// What it means that no more than `viewed` bytes can be seen from the place at hand on.
CEssenceWalker::EStep CEssenceWalker::Short(std::size_t viewed)
{
    CEssenceInput& input = context_->input;
    if (!input.IsComplete()) return EStep::needsData;
    const std::int64_t seen = Behind(position_, static_cast<std::int64_t>(viewed));
    return seen < input.Size() && viewed < SKlvHeader::kProbeSize ? EStep::failed : EStep::end;
}

bool CEssenceWalker::IsBeyondEnd(std::int64_t end) const
{
    const std::int64_t size = context_->input.IsComplete() ? context_->input.Size() : -1;
    return end == kMostPosition || (size >= 0 && end > size);
}

bool CEssenceWalker::IsPlausible(std::span<const std::uint8_t> bytes, std::int64_t position) const
{
    SKlvHeader header;
    if (header.Parse(bytes) != kSuccess || header.IsIndefinite() || !IsExpected(header.key)) return false;
    return !IsBeyondEnd(Behind(position, header.TotalSize()));
}

/// Moves `from` to the next key in front of `limit`, or to where the search has to go on when there is more.
CEssenceWalker::EStep CEssenceWalker::FindKey(std::int64_t& from, std::int64_t limit)
{
    constexpr std::size_t kStep = std::size_t{64} << 10;
    while (from < limit) {
        const auto view = context_->input.View(from, kStep);
        const bool isLast = view.size() < kStep;
        if (isLast && view.size() < SKlvHeader::kProbeSize) return Short(view.size());
        std::size_t at = 0;
        for (;; ++at) {
            at = std::min(AsText(view).find(kKeyStart, at), view.size() - kKeyStart.size() + 1);
            const std::size_t left = view.size() - at;
            if (left < SKlvHeader::kProbeSize && !isLast) break; // to be seen again with what follows
            if (left < kKeyStart.size()) break;
            const std::int64_t place = from + static_cast<std::int64_t>(at);
            if (!IsPlausible(view.subspan(at), place)) continue;
            from = place;
            return from < limit ? EStep::found : EStep::end;
        }
        from += static_cast<std::int64_t>(std::max<std::size_t>(at, 1));
        if (isLast) {
            const EStep step = context_->input.IsComplete() ? EStep::end : EStep::needsData;
            return step;
        }
    }
    return EStep::end;
}

void CEssenceWalker::Report(std::int64_t position)
{
    isBehindDamage_ = true;
    if (damages_++ == 0)
        context_->logger.LogWarning("Damaged essence at %lld, going on at the next key",
                                    static_cast<long long>(position));
    if (damages_ != kMaxDamages) return;
    context_->logger.LogError("Too much damage, giving up at %lld", static_cast<long long>(position));
    isEnd_ = true;
}

CEssenceWalker::EStep CEssenceWalker::Resync()
{
    const EStep step = FindKey(searchFrom_, kMostPosition);
    if (step != EStep::found) return step;
    BeginEssence();
    Report(position_);
    position_ = searchFrom_++;
    return EStep::found;
}

CEssenceWalker::EStep CEssenceWalker::EnterPartition(const SKlvHeader& header)
{
    searchFrom_ = position_ + 1;
    if (header.IsIndefinite() || header.length > kMaxPartitionPackBytes) return Resync();
    const auto size = static_cast<std::size_t>(header.TotalSize());
    const auto view = context_->input.View(position_, size);
    if (view.size() < size && !context_->input.IsComplete()) return EStep::needsData;
    CKlv klv;
    CPartitionPack pack;
    if (klv.View(view) != kSuccess || pack.ImportFrom(&klv, context_->dict, position_) != kSuccess) return Resync();
    if (pack.kind == EPartitionKind::footer) return EStep::end;

    partitionSid_ = pack.bodySID;
    bodyOffset_ = static_cast<std::int64_t>(std::min<std::uint64_t>(pack.bodyOffset, kMostPosition));
    base_ = -1;
    const auto count = [](std::uint64_t bytes) {
        return static_cast<std::int64_t>(std::min<std::uint64_t>(bytes, kMostPosition));
    };
    essenceFrom_ = Behind(Behind(position_ + header.TotalSize(), count(pack.extent.headerByteCount)),
                          count(pack.extent.indexByteCount));
    CRandomIndexPack& partitions = context_->partitions;
    if (partitions.Offsets().size() < kMaxPartitions) (void)partitions.ImportPartition(&pack, position_);
    const auto listed = static_cast<std::uint64_t>(position_);
    StepOver(header);
    searchFrom_ = position_;
    if (IsInContainer() || partitions.EntryCount() == 0) return EStep::found;
    // Nothing of ours before the next partition of the list.
    const auto next = partitions.Offsets().upper_bound(listed);
    if (next != partitions.Offsets().end() && !IsBeyondEnd(static_cast<std::int64_t>(*next)))
        position_ = std::max(position_, static_cast<std::int64_t>(*next));
    return EStep::found;
}

/// Hands an index table segment on, unless the random index pack leads to it.
CEssenceWalker::EStep CEssenceWalker::TakeIndex(const SKlvHeader& header)
{
    const bool isWanted = context_->index != nullptr && context_->partitions.EntryCount() == 0;
    if (isWanted && !header.IsIndefinite() && header.length <= kMaxKlvValueBytes) {
        const auto size = static_cast<std::size_t>(header.TotalSize());
        const auto view = context_->input.View(position_, size);
        if (view.size() < size && !context_->input.IsComplete()) return EStep::needsData;
        CKlv klv;
        if (view.size() == size && klv.View(view) == kSuccess) (void)context_->index->ImportSegment(klv);
    }
    StepOver(header);
    return EStep::found;
}

CEssenceWalker::EStep CEssenceWalker::Load(std::span<const std::uint8_t>& value, bool& isDamaged)
{
    CEssenceInput& input = context_->input;
    const std::int64_t end = klv_.End();
    const bool fits = klv_.length >= 0 && std::cmp_less_equal(klv_.length, kMaxSampleBytes) && !IsBeyondEnd(end);
    std::int64_t limit = kMostPosition; // of the search for a key that cuts the value off
    isDamaged = false;
    if (fits) {
        const auto length = static_cast<std::size_t>(klv_.length);
        auto view = input.Peek(klv_.value, length + kKeyStart.size());
        if (view.size() < length) view = input.View(klv_.value, length);
        if (view.size() < length) return input.IsComplete() ? EStep::failed : EStep::needsData;
        value = view.first(length);
        searchFrom_ = end;
        const std::string_view next = AsText(view.subspan(length));
        if (kKeyStart.starts_with(next.substr(0, kKeyStart.size()))) return EStep::found;
        limit = end; // either the length is wrong or what follows is damaged
    }
    std::int64_t cut = klv_.value;
    const EStep step = FindKey(cut, limit);
    if (step == EStep::end && fits) { // no key inside: the value is as it says
        const auto view = input.View(klv_.value, static_cast<std::size_t>(klv_.length));
        value = view;
        return EStep::found;
    }
    if (step == EStep::needsData || step == EStep::failed) return step;
    if (step == EStep::end) cut = std::max(klv_.value, input.Size());
    Report(klv_.position);
    isDamaged = true;
    klv_.length = cut - klv_.value;
    searchFrom_ = cut;
    value = {};
    if (std::cmp_less_equal(klv_.length, kMaxSampleBytes))
        value = input.View(klv_.value, static_cast<std::size_t>(klv_.length));
    return EStep::found;
}

void CEssenceWalker::Skip()
{
    if (klv_.length >= 0 && !IsBeyondEnd(klv_.End())) {
        searchFrom_ = std::max(searchFrom_, klv_.value);
        position_ = klv_.End();
    } else {
        searchFrom_ = position_ = klv_.value;
    }
}

} // namespace TamrelMxf
