#include "mxf/index/MxfIndexSegment.h"

#include "mxf/Status.h"
#include "platform/ByteReader.h"

#include <algorithm>

namespace TamrelMxf {
namespace {

constexpr std::size_t kArrayHeader = 8; // item count and item size
constexpr std::size_t kDeltaSize = 6;
constexpr std::size_t kFixedEntrySize = 11;

zanfcp::ByteReader ReaderOf(std::span<const std::uint8_t> bytes)
{
    return zanfcp::ByteReader{std::as_bytes(bytes)};
}

template <class T> void Assign(T& field, std::span<const std::uint8_t> value)
{
    if (const auto number = Values::Number<T>(value)) field = *number;
}

/// An array of an item as it is stored.
struct SArray {
    bool isCut = false; ///< it states more items than there are bytes for
    std::size_t count = 0;
    std::size_t itemSize = 0;
    std::span<const std::uint8_t> items = {};
};

SArray ReadArray(std::span<const std::uint8_t> value)
{
    if (value.size() < kArrayHeader) return {.isCut = !value.empty()};
    zanfcp::ByteReader in = ReaderOf(value);
    const auto count = in.read<std::uint32_t>();
    const auto size = in.read<std::uint32_t>();
    const std::span<const std::uint8_t> items = value.subspan(kArrayHeader);
    if (count == 0) return {};
    if (size == 0) return {.count = count};
    const std::size_t whole = std::min<std::size_t>(count, items.size() / size);
    return {.isCut = whole < count, .count = whole, .itemSize = size, .items = items.first(whole * size)};
}

/// The bytes of an entry array. A 2-byte length cannot describe a long one: writers then let it overflow, and count and
/// size at the start of the array tell how far it really reaches.
std::size_t EntryArrayLength(std::span<const std::uint8_t> rest, std::size_t stated)
{
    if (rest.size() < kArrayHeader) return stated;
    zanfcp::ByteReader in = ReaderOf(rest);
    const std::uint64_t count = in.read<std::uint32_t>();
    const std::uint64_t real = count * in.read<std::uint32_t>() + kArrayHeader; // below 2^64
    return real > stated && real <= rest.size() ? static_cast<std::size_t>(real) : stated;
}

} // namespace

int CMxfIndexSegment::Import(std::span<const std::uint8_t> value)
{
    *this = {};
    int status = kSuccess;
    SArray entryArray;
    SArray deltaArray;
    constexpr std::size_t kItemHeader = 4; // tag and length
    while (value.size() >= kItemHeader) {
        zanfcp::ByteReader in = ReaderOf(value);
        const auto tag = in.read<std::uint16_t>();
        std::size_t length = in.read<std::uint16_t>();
        value = value.subspan(kItemHeader);
        if (tag == 0x3F0A) length = EntryArrayLength(value, length);
        if (length > value.size()) {
            status = kCutShort;
            if (tag != 0x3F0A && tag != 0x3F09) break;
            length = value.size(); // the entries in front of the cut are good
        }
        const auto item = value.first(length);
        value = value.subspan(length);
        switch (tag) {
        case 0x3F05: Assign(editUnitByteCount, item); break;
        case 0x3F06: Assign(indexSid, item); break;
        case 0x3F07: Assign(bodySid, item); break;
        case 0x3F08: Assign(sliceCount, item); break;
        case 0x3F09: deltaArray = ReadArray(item); break;
        case 0x3F0A: entryArray = ReadArray(item); break;
        case 0x3F0B: editRate = Values::Rational(item).value_or(editRate); break;
        case 0x3F0C: Assign(startPosition, item); break;
        case 0x3F0D: Assign(duration, item); break;
        case 0x3F0E: Assign(posTableCount, item); break;
        default: break;
        }
    }
    if (deltaArray.count > 0 && deltaArray.itemSize < kDeltaSize) return kFailed;
    deltas.reserve(deltaArray.count);
    for (std::size_t i = 0; i < deltaArray.count; ++i) {
        zanfcp::ByteReader in = ReaderOf(deltaArray.items.subspan(i * deltaArray.itemSize, kDeltaSize));
        SDeltaEntry& delta = deltas.emplace_back();
        delta.posTableIndex = in.read<std::int8_t>();
        delta.slice = in.read<std::uint8_t>();
        delta.elementDelta = in.read<std::uint32_t>();
    }
    if (HasConstantSize()) return deltaArray.isCut ? kCutShort : status;

    const std::size_t least = kFixedEntrySize + std::size_t{4} * sliceCount + std::size_t{8} * posTableCount;
    if (entryArray.count > 0 && entryArray.itemSize < least) return kFailed;
    entries_.assign(entryArray.items.begin(), entryArray.items.end());
    entrySize_ = entryArray.itemSize;
    entryCount_ = entryArray.count;
    // Not in the standard: some writers enter both fields of every frame, and then one mark of the end.
    if (duration > 1 && entryCount_ % 2 == 1 && std::cmp_equal(entryCount_ / 2, duration)) {
        entryStep_ = 2;
        entryCount_ = entryCount_ / 2 + 1;
    }
    return deltaArray.isCut || entryArray.isCut ? kCutShort : status;
}

std::int64_t CMxfIndexSegment::UnitCount() const
{
    if (HasConstantSize()) return duration > 0 ? duration : kUnbounded;
    const auto there = static_cast<std::int64_t>(entryCount_);
    return duration > 0 ? std::min(duration, there) : there;
}

SIndexEntry CMxfIndexSegment::Entry(std::size_t i) const
{
    zanfcp::ByteReader in = ReaderOf(std::span{entries_}.subspan(i * entryStep_ * entrySize_, kFixedEntrySize));
    const auto step = static_cast<int>(entryStep_);
    SIndexEntry entry;
    in.skip(1);
    entry.temporalOffset = TemporalOffset(i);
    entry.keyFrameOffset = static_cast<std::int8_t>(in.read<std::int8_t>() / step);
    entry.flags = in.read<std::uint8_t>();
    entry.streamOffset = in.read<std::uint64_t>();
    return entry;
}

std::int8_t CMxfIndexSegment::TemporalOffset(std::size_t i) const
{
    const auto stored = static_cast<std::int8_t>(entries_[i * entryStep_ * entrySize_]);
    return static_cast<std::int8_t>(stored / static_cast<int>(entryStep_));
}

std::uint32_t CMxfIndexSegment::SliceOffset(std::size_t entry, std::uint8_t slice) const
{
    if (slice == 0 || slice > sliceCount || entry >= entryCount_) return 0;
    const std::size_t at = entry * entryStep_ * entrySize_ + kFixedEntrySize + std::size_t{4} * (slice - 1U);
    return ReaderOf(std::span{entries_}.subspan(at, 4)).read<std::uint32_t>();
}

SRational CMxfIndexSegment::PosTable(std::size_t entry, std::uint8_t number) const
{
    if (number == 0 || number > posTableCount || entry >= entryCount_) return {};
    const std::size_t at = entry * entryStep_ * entrySize_ + kFixedEntrySize + std::size_t{4} * sliceCount +
                           std::size_t{8} * (number - 1U);
    zanfcp::ByteReader in = ReaderOf(std::span{entries_}.subspan(at, 8));
    const auto num = in.read<std::int32_t>();
    return {num, in.read<std::int32_t>()};
}

} // namespace TamrelMxf
