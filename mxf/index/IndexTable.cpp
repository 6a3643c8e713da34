#include "mxf/index/IndexTable.h"

#include "mxf/Limits.h"

#include <algorithm>
#include <array>
#include <utility>

namespace TamrelMxf {
namespace {

constexpr std::int64_t kMaxStart = std::int64_t{1} << 61; // leaves room for entry counts and offsets
constexpr std::int64_t kMost = CMxfIndexSegment::kUnbounded;

std::int64_t EndOf(const CMxfIndexSegment& segment)
{
    const std::int64_t count = segment.UnitCount();
    return count > kMost - segment.startPosition ? kMost : segment.startPosition + count;
}

/// from + count * size, nothing beyond 63 bits.
std::optional<std::int64_t> Advance(std::int64_t from, std::int64_t count, std::uint32_t size)
{
    std::int64_t bytes = 0;
    if (__builtin_mul_overflow(count, std::int64_t{size}, &bytes) || __builtin_add_overflow(from, bytes, &bytes))
        return std::nullopt;
    return bytes;
}

std::optional<std::int64_t> ToOffset(std::uint64_t stored)
{
    if (!std::in_range<std::int64_t>(stored)) return std::nullopt;
    return static_cast<std::int64_t>(stored);
}

std::size_t EntryIndex(const CMxfIndexSegment& segment, std::int64_t editUnit)
{
    return static_cast<std::size_t>(editUnit - segment.startPosition);
}

} // namespace

bool CIndexTable::Accepts(const CMxfIndexSegment& segment)
{
    return segment.startPosition >= 0 && segment.startPosition <= kMaxStart && segment.UnitCount() > 0;
}

void CIndexTable::Add(std::unique_ptr<CMxfIndexSegment> segment, std::int64_t rank)
{
    Measure(*segment);
    isListed_ = false;
    const bool isOnTop = held_.empty() || rank > held_.rbegin()->first;
    SHeld& held = held_[rank];
    coveredTo_.reset();
    if (held.segment) pieces_.clear(); // they may point at what is replaced
    held = {.segment = std::move(segment), .rank = rank};
    if (isOnTop && isSettled_)
        PutOnTop(held);
    else
        isSettled_ = false;
}

void CIndexTable::DropBefore(std::int64_t editUnit)
{
    if (constantSize_ || !isSettled_) return;
    while (!pieces_.empty() && pieces_.begin()->second.end <= editUnit) {
        SHeld& held = *pieces_.begin()->second.held;
        pieces_.erase(pieces_.begin());
        Release(held);
        isListed_ = false;
        coveredTo_.reset();
    }
}

/// Takes from the segment what is known of the table as a whole.
void CIndexTable::Measure(const CMxfIndexSegment& segment)
{
    if (segment.HasConstantSize()) {
        isMixed_ = isMixed_ || constantSize_.value_or(segment.editUnitByteCount) != segment.editUnitByteCount ||
                   (!constantSize_ && !held_.empty());
        constantSize_ = segment.editUnitByteCount;
        return;
    }
    isMixed_ = isMixed_ || constantSize_.has_value();
    const auto count = static_cast<std::size_t>(segment.UnitCount());
    for (std::size_t i = 0; i < count; ++i) {
        const std::int64_t offset = segment.TemporalOffset(i);
        mostAhead_ = std::max(mostAhead_, offset);
        mostBehind_ = std::min(mostBehind_, offset);
    }
}

/// Gives `held` all its edit units, whoever had them.
void CIndexTable::PutOnTop(SHeld& held)
{
    const std::int64_t start = held.segment->startPosition;
    const std::int64_t end = EndOf(*held.segment);
    auto piece = pieces_.lower_bound(start);
    if (piece != pieces_.begin() && std::prev(piece)->second.end > start) --piece;
    while (piece != pieces_.end() && piece->first < end) {
        const std::int64_t from = piece->first;
        const SPiece old = piece->second;
        // A segment without a stated duration speaks only until one says more of the same.
        const bool isGuess = EndOf(*old.held->segment) == kMost && start <= old.held->segment->startPosition;
        piece = pieces_.erase(piece);
        if (from < start) {
            pieces_.emplace(from, SPiece{.end = start, .held = old.held});
            ++old.held->pieces;
        }
        if (old.end > end && !isGuess) {
            pieces_.emplace(end, SPiece{.end = old.end, .held = old.held});
            ++old.held->pieces;
        }
        Release(*old.held);
    }
    pieces_.emplace(start, SPiece{.end = end, .held = &held});
    ++held.pieces;
}

void CIndexTable::Release(SHeld& held)
{
    if (--held.pieces == 0) held_.erase(held.rank);
}

const CIndexTable::Pieces& CIndexTable::Settled()
{
    if (!std::exchange(isSettled_, true)) {
        pieces_.clear();
        for (auto& [rank, held] : held_)
            held.pieces = 0;
        for (auto next = held_.begin(); next != held_.end();) {
            SHeld& held = next->second;
            ++next; // the segments that are dropped lie below
            PutOnTop(held);
        }
    }
    return pieces_;
}

const std::vector<const CMxfIndexSegment*>& CIndexTable::Segments()
{
    (void)Settled();
    if (!std::exchange(isListed_, true)) {
        byStart_.clear();
        for (const auto& [rank, held] : held_)
            byStart_.push_back(held.segment.get());
        std::ranges::stable_sort(byStart_, {}, &CMxfIndexSegment::startPosition);
    }
    return byStart_;
}

std::optional<std::int64_t> CIndexTable::CoveredUnits()
{
    if (!coveredTo_) {
        coveredTo_ = 0;
        for (const auto& [start, piece] : Settled()) {
            if (start != *coveredTo_) break;
            coveredTo_ = piece.end;
        }
    }
    if (*coveredTo_ == kMost) return std::nullopt;
    return *coveredTo_;
}

std::optional<std::uint32_t> CIndexTable::ConstantSize()
{
    const Pieces& pieces = Settled();
    if (!isMixed_) return constantSize_;
    std::optional<std::uint32_t> size;
    for (const auto& [start, piece] : pieces) {
        const std::uint32_t own = piece.held->segment->editUnitByteCount;
        if (own == 0 || size.value_or(own) != own) return std::nullopt;
        size = own;
    }
    return size;
}

bool CIndexTable::Covers(std::int64_t first, std::int64_t last)
{
    std::int64_t missing = std::max<std::int64_t>(first, 0);
    for (auto piece = PieceOf(missing); piece != pieces_.end() && piece->first <= missing; ++piece) {
        missing = piece->second.end;
        if (missing > last) return true;
    }
    return missing > last;
}

CIndexTable::Pieces::const_iterator CIndexTable::PieceOf(std::int64_t editUnit)
{
    const Pieces& pieces = Settled();
    auto piece = pieces.upper_bound(editUnit);
    if (piece == pieces.begin()) return pieces.end();
    --piece;
    return editUnit < piece->second.end ? piece : pieces.end();
}

/// Where the first edit unit of a segment of constant size lies. Such offsets are counted from the start of the
/// container, so those of segments behind one with another size follow from all that lies in front of them.
std::optional<std::int64_t> CIndexTable::StartOfConstant(Pieces::const_iterator piece) const
{
    auto from = piece;
    std::int64_t offset = 0;
    bool isKnown = false;
    for (int back = 0; isMixed_ && !isKnown && back < kMaxSizeChanges && from != pieces_.begin(); ++back) {
        const auto before = std::prev(from);
        const CMxfIndexSegment& segment = *before->second.held->segment;
        if (before->second.end != from->first) break;
        if (segment.HasConstantSize()) {
            from = before;
            continue;
        }
        const std::size_t mark = EntryIndex(segment, before->second.end);
        if (mark >= segment.EntryCount()) break;
        const auto end = ToOffset(segment.Entry(mark).streamOffset);
        if (!end) break;
        offset = *end;
        isKnown = true;
    }
    if (!isKnown) {
        const auto first = Advance(0, from->first, from->second.held->segment->editUnitByteCount);
        if (!first) return std::nullopt;
        offset = *first;
    }
    for (; from != piece; ++from) {
        const auto next =
            Advance(offset, from->second.end - from->first, from->second.held->segment->editUnitByteCount);
        if (!next) return std::nullopt;
        offset = *next;
    }
    return offset;
}

/// \pre `piece` holds `editUnit`
std::optional<std::int64_t> CIndexTable::OffsetOf(Pieces::const_iterator piece, std::int64_t editUnit) const
{
    const CMxfIndexSegment& segment = *piece->second.held->segment;
    if (!segment.HasConstantSize()) return ToOffset(segment.Entry(EntryIndex(segment, editUnit)).streamOffset);
    const auto start = StartOfConstant(piece);
    if (!start) return std::nullopt;
    return Advance(*start, editUnit - piece->first, segment.editUnitByteCount);
}

std::int64_t CIndexTable::SizeOf(Pieces::const_iterator piece, std::int64_t editUnit, std::int64_t offset) const
{
    const CMxfIndexSegment& segment = *piece->second.held->segment;
    if (segment.HasConstantSize()) return segment.editUnitByteCount;
    const auto next = std::next(piece);
    const std::size_t mark = EntryIndex(segment, editUnit) + 1; // of the entry behind, perhaps a surplus one
    std::optional<std::int64_t> end;
    if (editUnit + 1 == piece->second.end && next != pieces_.end() && next->first == editUnit + 1)
        end = OffsetOf(next, next->first);
    else if (mark < segment.EntryCount())
        end = ToOffset(segment.Entry(mark).streamOffset);
    return end && *end > offset ? *end - offset : -1;
}

/// \param near  a piece that is tried first, and is set to the one found
std::optional<SIndexEntry> CIndexTable::EntryOf(std::int64_t editUnit, Pieces::const_iterator& near)
{
    if (near == pieces_.end() || editUnit < near->first || editUnit >= near->second.end) near = PieceOf(editUnit);
    if (near == pieces_.end()) return std::nullopt;
    const CMxfIndexSegment& segment = *near->second.held->segment;
    if (segment.HasConstantSize()) return SIndexEntry{};
    return segment.Entry(EntryIndex(segment, editUnit));
}

/// The d with d + TemporalOffset[d] == editUnit. The nearest one is found first; without any, nothing is reordered.
std::int64_t CIndexTable::DisplayedAt(std::int64_t editUnit, Pieces::const_iterator near)
{
    const std::int64_t farthest = std::max(mostAhead_, -mostBehind_);
    for (std::int64_t distance = 0; distance <= farthest; ++distance) {
        for (const std::int64_t offset : std::array{distance, -distance}) {
            if (offset > mostAhead_ || offset < mostBehind_ || offset > editUnit) continue;
            const auto entry = EntryOf(editUnit - offset, near);
            if (entry && entry->temporalOffset == offset) return editUnit - offset;
        }
    }
    return editUnit;
}

std::int64_t CIndexTable::KeyFrameOf(std::int64_t editUnit, const SIndexEntry& entry, Pieces::const_iterator near)
{
    if (entry.IsKey()) return editUnit;
    if (entry.keyFrameOffset < 0 && (entry.flags & SIndexEntry::kOutOfRange) == 0) {
        const std::int64_t stated = std::max<std::int64_t>(editUnit + entry.keyFrameOffset, 0);
        const auto target = EntryOf(stated, near);
        if (!target || target->IsKey()) return stated;
    }
    // Not in the standard: some writers count the distance upwards, which behind 127 edit units looks like a negative
    // one that leads elsewhere; others leave it at 0.
    for (std::int64_t at = editUnit - 1; at >= 0 && editUnit - at <= kMaxKeyFrameDistance; --at) {
        const auto before = EntryOf(at, near);
        if (!before) break;
        if (before->IsKey()) return at;
    }
    return editUnit;
}

std::optional<SIndexedUnit> CIndexTable::Find(std::int64_t editUnit)
{
    const auto piece = PieceOf(editUnit);
    if (piece == pieces_.end()) return std::nullopt;
    const auto offset = OffsetOf(piece, editUnit);
    if (!offset) return std::nullopt;
    const CMxfIndexSegment& segment = *piece->second.held->segment;
    const bool isConstant = segment.HasConstantSize();
    const SIndexEntry entry = isConstant ? SIndexEntry{} : segment.Entry(EntryIndex(segment, editUnit));
    return SIndexedUnit{.editUnit = editUnit,
                        .streamOffset = *offset,
                        .size = SizeOf(piece, editUnit, *offset),
                        .displayed = isConstant ? editUnit : DisplayedAt(editUnit, piece),
                        .keyFrame = KeyFrameOf(editUnit, entry, piece),
                        .isKey = entry.IsKey(),
                        .entry = entry};
}

std::optional<std::int64_t> CIndexTable::StoredAt(std::int64_t position)
{
    auto piece = PieceOf(position);
    const auto entry = EntryOf(position, piece);
    if (!entry) return std::nullopt;
    const std::int64_t stored = position + entry->temporalOffset;
    return stored < 0 ? position : stored;
}

/// Bisects the edit units. Of a table whose offsets do not rise, one that does not begin behind is found, not always
/// the last one.
std::optional<std::int64_t> CIndexTable::UnitAtOffset(std::int64_t streamOffset)
{
    const Pieces& pieces = Settled();
    if (pieces.empty()) return std::nullopt;
    const auto isBehind = [&](Pieces::const_iterator piece, std::int64_t editUnit) {
        const auto offset = OffsetOf(piece, editUnit);
        return !offset || *offset > streamOffset;
    };
    std::int64_t low = pieces.begin()->first;
    std::int64_t high = std::prev(pieces.end())->second.end;
    if (isBehind(pieces.begin(), low)) return std::nullopt;
    while (high - low > 1) {
        const std::int64_t middle = low + (high - low) / 2;
        auto piece = std::prev(pieces.upper_bound(middle));
        std::int64_t probe = middle; // or the first one behind the gap that it lies in
        if (middle >= piece->second.end) probe = (++piece)->first;
        if (probe >= high || isBehind(piece, probe))
            high = middle;
        else
            low = probe;
    }
    return low;
}

std::optional<std::int64_t> CIndexTable::ElementOffset(std::int64_t editUnit, std::size_t element)
{
    const auto piece = PieceOf(editUnit);
    if (piece == pieces_.end()) return std::nullopt;
    const auto offset = OffsetOf(piece, editUnit);
    const CMxfIndexSegment& segment = *piece->second.held->segment;
    if (!offset || element >= std::max<std::size_t>(segment.deltas.size(), 1)) return std::nullopt;
    if (segment.deltas.empty()) return offset;
    const SDeltaEntry& delta = segment.deltas[element];
    if (delta.slice > 0 && (segment.HasConstantSize() || delta.slice > segment.sliceCount)) return std::nullopt;
    std::int64_t bytes = delta.elementDelta;
    if (delta.slice > 0) bytes += segment.SliceOffset(EntryIndex(segment, editUnit), delta.slice);
    return Advance(*offset, bytes, 1);
}

} // namespace TamrelMxf
