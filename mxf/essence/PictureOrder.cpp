#include "mxf/essence/PictureOrder.h"

#include "mxf/avc/NalUnit.h"
#include "mxf/essence/AvcPictureOrder.h"
#include "mxf/essence/MpegPictureOrder.h"

#include <utility>

namespace TamrelMxf {

CPictureOrder::~CPictureOrder() = default;

bool CPictureOrder::IsPlausible(std::int64_t displayed, std::int64_t stored, std::int64_t slack) const
{
    constexpr std::int64_t kMostAhead = 16; // pictures that a decoder holds at most
    return displayed >= stored - Delay() - slack && displayed <= stored + kMostAhead;
}

std::optional<SPicturePlace> CMpegPictureOrder::Describe(std::span<const std::uint8_t> picture, std::int64_t stored)
{
    constexpr std::uint8_t kPicture = 0x00, kExtension = 0xB5, kGroup = 0xB8;
    constexpr std::uint8_t kSequenceExtension = 1;
    constexpr unsigned kIntra = 1, kBidirectional = 3;
    constexpr std::size_t kNeeded = 3 + 7; // a start code and what is looked at behind it
    const std::int64_t lost = CountLost(stored);
    const auto known = std::exchange(known_, std::nullopt);
    for (std::size_t at = FindStartCode(picture, 0); at + kNeeded <= picture.size();
         at = FindStartCode(picture, at + 3)) {
        const std::uint8_t* const code = picture.data() + at + 3;
        if (*code == kExtension && code[1] >> 4 == kSequenceExtension) isLowDelay_ = (code[6] & 0x80) != 0;
        if (*code == kGroup) groupStart_ = stored;
        if (*code != kPicture) continue;
        const int reference = code[1] << 2 | code[2] >> 6;
        const unsigned type = (code[2] >> 3) & 7U;
        const bool isKey = type == kIntra;
        SPicturePlace order{.displayed = std::nullopt, .isKey = isKey};
        if (lost != 0 && groupStart_ && !IsPlausible(*groupStart_ + reference, stored)) groupStart_.reset();
        // The only picture that is lost has begun the group.
        if (lost == 1 && !groupStart_ && IsPlausible(stored - 1 + reference, stored)) groupStart_ = stored - 1;
        if (known && !groupStart_) groupStart_ = *known - reference;
        if (IsFirst() && !groupStart_) groupStart_ = FirstInGroup(stored, type == kBidirectional) - reference;
        Count(stored);
        if (groupStart_) order.displayed = *groupStart_ + reference;
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
    if (!IsReordered(format)) return nullptr;
    if (format.essenceKind == EEssenceKind::mpegPicture) return std::make_unique<CMpegPictureOrder>();
    if (format.essenceKind == EEssenceKind::avc) return std::make_unique<CAvcPictureOrder>(format.extraData);
    return nullptr;
}

} // namespace TamrelMxf
