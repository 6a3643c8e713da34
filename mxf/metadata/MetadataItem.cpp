#include "mxf/metadata/MetadataItem.h"

#include "mxf/Status.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace TamrelMxf {
namespace {

constexpr std::size_t kBatchHeader = 8; // entry count and entry size

std::uint64_t BigEndian(std::span<const std::uint8_t> bytes)
{
    std::uint64_t value = 0;
    for (const std::uint8_t byte : bytes) {
        if (value >> 56 != 0) return std::numeric_limits<std::uint64_t>::max(); // longer than any file
        value = (value << 8) | byte;
    }
    return value;
}

struct SLength {
    int result = kSuccess;
    std::uint64_t length = 0; ///< stated
    std::size_t size = 0;     ///< of tag and length field
};

SLength ReadLength(std::span<const std::uint8_t> data, std::uint8_t coding)
{
    switch (static_cast<ESetCoding>(coding)) {
    case ESetCoding::tag2LengthBer: {
        if (data.size() < 3) return {.result = kCutShort};
        const std::uint8_t first = data[2];
        if (first < 0x80) return {.length = first, .size = 3};
        if (first == 0x80) return {.result = kNoSuchItem};
        // The low four bits count the bytes of the number, the low seven those that the field occupies.
        const std::size_t digits = first & 0x0F;
        const std::size_t size = 3 + (first & std::size_t{0x7F});
        if (data.size() < size) return {.result = kCutShort};
        return {.length = BigEndian(data.subspan(3, digits)), .size = size};
    }
    case ESetCoding::tag2Length4:
        if (data.size() < 6) return {.result = kCutShort};
        return {.length = BigEndian(data.subspan(2, 4)), .size = 6};
    case ESetCoding::tag2Length2: break;
    }
    if (data.size() < 4) return {.result = kCutShort};
    return {.length = static_cast<std::uint64_t>(data[2] << 8 | data[3]), .size = 4};
}

} // namespace

CMetadataItem::~CMetadataItem() = default;

CMetadataItem::CMetadataItem(CMetadataItem&& other) noexcept
{
    Take(other);
}

CMetadataItem& CMetadataItem::operator=(CMetadataItem&& other) noexcept
{
    if (this != &other) Take(other);
    return *this;
}

void CMetadataItem::Take(CMetadataItem& other) noexcept
{
    tag_ = std::exchange(other.tag_, std::uint16_t{0});
    length_ = std::exchange(other.length_, 0U);
    totalSize_ = std::exchange(other.totalSize_, 0U);
    exceedsStated_ = std::exchange(other.exceedsStated_, false);
    short_ = other.short_;
    long_ = std::move(other.long_);
}

void CMetadataItem::Assign(std::span<const std::uint8_t> value)
{
    long_.reset();
    if (value.size() > kShortest) long_ = std::make_unique_for_overwrite<std::uint8_t[]>(value.size());
    std::copy(value.begin(), value.end(), long_ ? long_.get() : short_.data());
    length_ = static_cast<std::uint32_t>(value.size());
}

void CMetadataItem::Clear()
{
    tag_ = 0;
    length_ = totalSize_ = 0;
    exceedsStated_ = false;
    long_.reset();
}

int CMetadataItem::ReadHeader(std::span<const std::uint8_t> data, std::uint8_t coding, SHeader& header)
{
    header = {};
    if (data.data() == nullptr) return kNullArgument;
    const SLength stated = ReadLength(data, coding);
    if (stated.result != kSuccess) return stated.result;
    const std::span<const std::uint8_t> rest = data.subspan(stated.size);
    if (stated.length > rest.size() || stated.length > std::numeric_limits<std::uint32_t>::max() - stated.size)
        return kCutShort;

    const auto tag = static_cast<std::uint16_t>(data[0] << 8 | data[1]);
    std::uint64_t length = stated.length;
    if (tag == kIndexEntryArray && rest.size() >= kBatchHeader) {
        // At most (2^32 - 1)^2 + 8: no overflow.
        const std::uint64_t array = BigEndian(rest.first(4)) * BigEndian(rest.subspan(4, 4)) + kBatchHeader;
        if (array > length && array <= std::min<std::uint64_t>(rest.size(), std::numeric_limits<std::uint32_t>::max()))
            length = array;
    }
    header.tag = tag;
    header.totalSize = static_cast<std::uint32_t>(stated.size + stated.length);
    header.valueStart = static_cast<std::uint32_t>(stated.size);
    header.length = static_cast<std::uint32_t>(length);
    header.exceedsStated = length > stated.length;
    return kSuccess;
}

int CMetadataItem::ImportFrom(std::span<const std::uint8_t> data, std::uint8_t coding)
{
    Clear();
    SHeader header;
    const int result = ReadHeader(data, coding, header);
    if (result == kSuccess) ImportFrom(data, header);
    return result;
}

void CMetadataItem::ImportFrom(std::span<const std::uint8_t> data, const SHeader& header)
{
    tag_ = header.tag;
    totalSize_ = header.totalSize;
    exceedsStated_ = header.exceedsStated;
    Assign(data.subspan(header.valueStart, header.length));
}

} // namespace TamrelMxf
