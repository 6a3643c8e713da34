#include "mxf/essence/PictureOrder.h"

#include "mxf/essence/MpegPictureOrder.h"

#include <cstring>

namespace TamrelMxf {
namespace {

/// The place of the start code prefix 00 00 01 at or behind `from`, with at least `room` bytes behind it; the size of
/// the bytes when there is none.
std::size_t FindStartCode(std::span<const std::uint8_t> bytes, std::size_t from, std::size_t room)
{
    const std::size_t end = bytes.size();
    for (std::size_t at = from + 2; at < end;) {
        const void* one = std::memchr(bytes.data() + at, 1, end - at);
        if (one == nullptr) break;
        at = static_cast<std::size_t>(static_cast<const std::uint8_t*>(one) - bytes.data());
        if (bytes[at - 1] == 0 && bytes[at - 2] == 0) return end - at - 1 >= room ? at - 2 : end;
        ++at;
    }
    return end;
}

} // namespace

CPictureOrder::~CPictureOrder() = default;

std::optional<SPictureOrder> CMpegPictureOrder::Describe(std::span<const std::uint8_t> picture, std::int64_t stored)
{
    constexpr std::uint8_t kPicture = 0x00, kExtension = 0xB5, kGroup = 0xB8;
    constexpr std::uint8_t kSequenceExtension = 1;
    constexpr unsigned kIntra = 1;
    constexpr std::size_t kNeeded = 7; // the start code value and what is looked at behind it
    for (std::size_t at = FindStartCode(picture, 0, kNeeded); at < picture.size();
         at = FindStartCode(picture, at + 3, kNeeded)) {
        const std::uint8_t* const code = picture.data() + at + 3;
        if (*code == kExtension && code[1] >> 4 == kSequenceExtension) isLowDelay_ = (code[6] & 0x80) != 0;
        if (*code == kGroup) groupStart_ = stored;
        if (*code != kPicture) continue;
        const int reference = code[1] << 2 | code[2] >> 6;
        const bool isKey = ((code[2] >> 3) & 7U) == kIntra;
        SPictureOrder order{.displayed = groupStart_, .isKey = isKey};
        if (order.displayed) *order.displayed += reference;
        return order;
    }
    return std::nullopt;
}

bool IsReordered(const SStreamFormat& format)
{
    constexpr std::uint64_t kD10Coding = 0x04010202010201; // bytes 9 to 15: pictures that stand alone
    if (format.type != EStreamType::picture || format.maxGop == 1) return false;
    switch (format.essenceKind) {
    case EEssenceKind::mpegPicture: return format.coding.Item() >> 8 != kD10Coding;
    case EEssenceKind::avc:
    case EEssenceKind::hevc:
    case EEssenceKind::mpeg4Part2:
    case EEssenceKind::vc1: return true;
    default: return false;
    }
}

std::unique_ptr<CPictureOrder> MakePictureOrder(const SStreamFormat& format)
{
    if (IsReordered(format) && format.essenceKind == EEssenceKind::mpegPicture)
        return std::make_unique<CMpegPictureOrder>();
    return nullptr;
}

} // namespace TamrelMxf
