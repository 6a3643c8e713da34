#include "mxf/avc/AccessUnitSplitter.h"

#include "mxf/Limits.h"
#include "mxf/Status.h"

#include <algorithm>
#include <cstring>

namespace TamrelMxf {
namespace {

/// More than the longest slice header: a table of weights for two lists of 32 fields takes 1.6 kB.
constexpr std::size_t kSliceHeadBytes = 2048;

std::size_t BytesNeeded(ENalType type)
{
    if (HasSliceHeader(type)) return kSliceHeadBytes;
    if (type == ENalType::sequenceParameterSet || type == ENalType::pictureParameterSet)
        return kMaxAvcParameterSetBytes + 1;
    return 1;
}

} // namespace

std::span<const std::uint64_t> CAccessUnitSplitter::Push(std::span<const std::uint8_t> bytes)
{
    found_.clear();
    std::size_t from = 0; // of what has not been given to the current NAL unit
    std::size_t at = 0;
    while (at < bytes.size()) {
        const void* one = std::memchr(bytes.data() + at, 1, bytes.size() - at);
        const std::size_t stop = one == nullptr
                                     ? bytes.size()
                                     : static_cast<std::size_t>(static_cast<const std::uint8_t*>(one) - bytes.data());
        unsigned zeros = 0;
        while (zeros < 3 && zeros < stop && bytes[stop - 1 - zeros] == 0)
            ++zeros;
        if (zeros == stop) zeros = std::min(3U, zeros + zeros_);
        if (one == nullptr) {
            zeros_ = zeros;
            break;
        }
        at = stop + 1;
        if (at == bytes.size()) zeros_ = 0;
        if (zeros < 2) continue;
        Collect(bytes.subspan(from, stop - from));
        if (isInNal_) LookAtWhole();
        BeginNal(position_ + stop - zeros);
        from = at;
    }
    Collect(bytes.subspan(from));
    LookAhead();
    position_ += bytes.size();
    return found_;
}

std::span<const std::uint64_t> CAccessUnitSplitter::Finish()
{
    found_.clear();
    if (isInNal_) LookAtWhole();
    isInNal_ = false;
    if (!hasUnit_ && position_ > 0) BeginUnit(0);
    return found_;
}

void CAccessUnitSplitter::Collect(std::span<const std::uint8_t> bytes)
{
    if (!isInNal_ || isLookedAt_ || bytes.empty()) return;
    const auto type = static_cast<ENalType>((nal_.empty() ? bytes[0] : nal_[0]) & 0x1F);
    const std::size_t needed = BytesNeeded(type);
    const std::size_t count = std::min(needed - nal_.size(), bytes.size());
    nal_.insert(nal_.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
    if (nal_.size() == needed) LookAtHead();
}

/// What there is of a slice may be enough: the next bytes may take their time to come, or never do.
void CAccessUnitSplitter::LookAhead()
{
    if (!isInNal_ || isLookedAt_ || nal_.empty() || !HasSliceHeader(static_cast<ENalType>(nal_[0] & 0x1F))) return;
    std::span<const std::uint8_t> head{nal_};
    while (!head.empty() && head.back() == 0) // may belong to the next start code
        head = head.first(head.size() - 1);
    SAvcSliceHeader slice;
    if (slice.Parse(head, sets_) == kSuccess) LookAtHead();
}

void CAccessUnitSplitter::BeginNal(std::uint64_t start)
{
    nal_.clear();
    nalStart_ = start;
    isInNal_ = true;
    isLookedAt_ = false;
}

/// Called once for each unit, as soon as enough of it is there.
void CAccessUnitSplitter::LookAtHead()
{
    isLookedAt_ = true;
    if (nal_.empty()) return;
    const auto type = static_cast<ENalType>(nal_[0] & 0x1F);
    if (HasSliceHeader(type)) {
        LookAtSlice();
        pending_.reset();
        isPendingFirm_ = false;
    } else if (StandsBeforeSlices(type)) {
        if (!pending_) pending_ = nalStart_;
        isPendingFirm_ = isPendingFirm_ || type != ENalType::prefix; // each slice of a base view may have its prefix
    }
}

/// Called when the next start code or the end of the stream is reached.
void CAccessUnitSplitter::LookAtWhole()
{
    if (isLookedAt_) return;
    while (nal_.size() > 1 && nal_.back() == 0) // zeros in front of the next start code
        nal_.pop_back();
    if (!nal_.empty()) (void)sets_.Add(nal_); // refuses all but parameter sets
    LookAtHead();
}

void CAccessUnitSplitter::LookAtSlice()
{
    SAvcSliceHeader slice;
    const int status = slice.Parse(nal_, sets_);
    const SAvcSps* sps = status == kSuccess ? sets_.Sps(slice.sequenceSetId) : nullptr;
    if (sps == nullptr) {
        // Not readable: the first macroblock, in front of everything else, tells more than nothing.
        const bool isFirst = nal_.size() > 1 && (nal_[1] & 0x80) != 0;
        if (!hasUnit_ || isPendingFirm_ || isFirst) BeginUnit(pending_.value_or(nalStart_));
        isPairOpen_ = false;
        return;
    }
    if (slice.redundantCount > 0) return;
    const bool isNew = !last_ || isPendingFirm_ || slice.StartsPicture(*last_, *sps);
    if (isNew) {
        const bool isSecond = unit_ == EUnit::frame && isPairOpen_ && slice.CompletesFrame(*last_);
        if (!isSecond) BeginUnit(pending_.value_or(nalStart_));
        isPairOpen_ = slice.isField && !isSecond;
    }
    last_ = slice;
}

void CAccessUnitSplitter::BeginUnit(std::uint64_t start)
{
    found_.push_back(hasUnit_ ? start : 0); // whatever stands in front of the first unit is part of it
    hasUnit_ = true;
}

} // namespace TamrelMxf
