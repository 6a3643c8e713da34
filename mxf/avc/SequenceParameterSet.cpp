#include "mxf/avc/SequenceParameterSet.h"

#include "mxf/Limits.h"
#include "mxf/Status.h"
#include "mxf/avc/NalUnit.h"

#include <algorithm>
#include <utility>

namespace TamrelMxf {
namespace {

/// The profiles whose sets tell chroma format and depth (7.3.2.1.1). Those above 244 of multi-view and scalable
/// coding are here because their base view may use such a set.
bool HasHighProfileFields(std::uint8_t profile)
{
    constexpr std::uint8_t kProfiles[] = {100, 110, 122, 244, 44, 83, 86, 118, 128, 138, 139, 134, 135};
    return std::find(std::begin(kProfiles), std::end(kProfiles), profile) != std::end(kProfiles);
}

struct SLevelLimit {
    std::uint8_t level;
    std::uint32_t maxDpbMacroblocks;
};
/// MaxDpbMbs of table A-1. Level 1b, coded 9 or 11, has the figure of level 1.
constexpr SLevelLimit kLevelLimits[] = {{9, 396},     {10, 396},    {11, 900},    {12, 2376},   {13, 2376},
                                        {20, 2376},   {21, 4752},   {22, 8100},   {30, 8100},   {31, 18000},
                                        {32, 20480},  {40, 32768},  {41, 32768},  {42, 34816},  {50, 110400},
                                        {51, 184320}, {52, 184320}, {60, 696320}, {61, 696320}, {62, 696320}};
constexpr std::uint32_t kMaxDpbFrames = 16;

} // namespace

int SAvcSps::Parse(std::span<const std::uint8_t> nal)
{
    if (nal.size() < 4) return kCutShort;
    if (static_cast<ENalType>(nal[0] & 0x1F) != ENalType::sequenceParameterSet) return kFailed;
    CBitsReader bits{nal.subspan(1)};
    SAvcSps read;
    const int status = read.Read(bits);
    if (status == kSuccess) *this = std::move(read);
    return status;
}

int SAvcSps::Read(CBitsReader& bits)
{
    profileIdc = static_cast<std::uint8_t>(bits.Bits(8));
    constraintFlags = static_cast<std::uint8_t>(bits.Bits(8));
    levelIdc = static_cast<std::uint8_t>(bits.Bits(8));
    const std::uint32_t setId = bits.Ue();
    if (setId > 31) return kFailed;
    id = static_cast<std::uint8_t>(setId);

    if (HasHighProfileFields(profileIdc))
        if (const int status = ReadHighProfile(bits); status != kSuccess) return status;
    if (const int status = ReadPictureOrder(bits); status != kSuccess) return status;

    const std::uint32_t references = bits.Ue();
    if (references > kMaxDpbFrames) return kFailed;
    maxReferenceFrames = static_cast<std::uint8_t>(references);
    allowsFrameNumGaps = bits.Flag();
    const std::uint32_t width = bits.Ue();
    const std::uint32_t height = bits.Ue();
    if (width >= kMaxAvcMacroblocksAcross || height >= kMaxAvcMacroblocksAcross / 2) return kFailed;
    widthInMacroblocks = width + 1;
    heightInMapUnits = height + 1;
    isFrameOnly = bits.Flag();
    if (!isFrameOnly) hasMbaff = bits.Flag();
    hasDirect8x8 = bits.Flag();
    if (bits.Flag()) ReadCropping(bits);
    const bool hasVui = bits.Flag();
    if (!bits.IsOk()) return kCutShort;

    if (hasVui) {
        SAvcVui read;
        if (read.Read(bits)) vui = read;
    }
    return kSuccess;
}

int SAvcSps::ReadHighProfile(CBitsReader& bits)
{
    const std::uint32_t format = bits.Ue();
    if (format > 3) return kFailed;
    chroma = static_cast<EAvcChroma>(format);
    if (chroma == EAvcChroma::yuv444) hasSeparatePlanes = bits.Flag();
    const std::uint32_t lumaAbove8 = bits.Ue();
    const std::uint32_t chromaAbove8 = bits.Ue();
    if (lumaAbove8 > 6 || chromaAbove8 > 6) return kFailed;
    lumaDepth = static_cast<std::uint8_t>(8 + lumaAbove8);
    chromaDepth = static_cast<std::uint8_t>(8 + chromaAbove8);
    hasLosslessBypass = bits.Flag();
    hasScalingMatrix = bits.Flag();
    if (hasScalingMatrix && !scaling.Read(bits, chroma == EAvcChroma::yuv444 ? 12 : 8, SScalingLists::Default()))
        return bits.IsOk() ? kFailed : kCutShort;
    return kSuccess;
}

int SAvcSps::ReadPictureOrder(CBitsReader& bits)
{
    const std::uint32_t frameNumAbove4 = bits.Ue();
    const std::uint32_t type = bits.Ue();
    if (frameNumAbove4 > 12 || type > 2) return kFailed;
    frameNumBits = static_cast<std::uint8_t>(4 + frameNumAbove4);
    pictureOrderType = static_cast<std::uint8_t>(type);
    if (type == 0) {
        const std::uint32_t lsbAbove4 = bits.Ue();
        if (lsbAbove4 > 12) return kFailed;
        pictureOrderLsbBits = static_cast<std::uint8_t>(4 + lsbAbove4);
    } else if (type == 1) {
        isDeltaAlwaysZero = bits.Flag();
        offsetForNonReference = bits.Se();
        offsetForTopToBottom = bits.Se();
        const std::uint32_t count = bits.Ue();
        if (count > 255) return kFailed;
        offsetsForReferences.resize(count);
        for (std::int32_t& offset : offsetsForReferences)
            offset = bits.Se();
    }
    return bits.IsOk() ? kSuccess : kCutShort;
}

void SAvcSps::ReadCropping(CBitsReader& bits)
{
    const EAvcChroma array = ChromaArrayType();
    const std::uint64_t unitX = array == EAvcChroma::yuv420 || array == EAvcChroma::yuv422 ? 2 : 1;
    const std::uint64_t unitY = (array == EAvcChroma::yuv420 ? 2U : 1U) * (isFrameOnly ? 1U : 2U);
    const std::uint64_t left = bits.Ue() * unitX;
    const std::uint64_t right = bits.Ue() * unitX;
    const std::uint64_t top = bits.Ue() * unitY;
    const std::uint64_t bottom = bits.Ue() * unitY;
    if (left + right >= CodedWidth() || top + bottom >= CodedHeight()) return;
    cropLeft = static_cast<std::uint32_t>(left);
    cropRight = static_cast<std::uint32_t>(right);
    cropTop = static_cast<std::uint32_t>(top);
    cropBottom = static_cast<std::uint32_t>(bottom);
}

bool SAvcSps::IsIntraProfile() const
{
    switch (profileIdc) {
    case kAvcProfileCavlc444Intra: return true;
    case kAvcProfileHigh:
    case kAvcProfileHigh10:
    case kAvcProfileHigh422:
    case kAvcProfileHigh444: return HasConstraint(3);
    default: return false;
    }
}

bool SAvcSps::IsIntraOnly() const
{
    return IsIntraProfile() || maxReferenceFrames == 0;
}

std::optional<SAvcRatio> SAvcSps::FrameRate() const
{
    if (!vui || !vui->fieldRate) return std::nullopt;
    const SAvcRatio fields = *vui->fieldRate;
    return fields.num % 2 == 0 ? SAvcRatio{fields.num / 2, fields.den}
                               : SAvcRatio::Reduced(fields.num, std::uint64_t{fields.den} * 2);
}

std::uint32_t SAvcSps::MaxDpbFrames() const
{
    const bool isLevel1b =
        levelIdc == 11 && HasConstraint(3) &&
        (profileIdc == kAvcProfileBaseline || profileIdc == kAvcProfileMain || profileIdc == kAvcProfileExtended);
    std::uint32_t macroblocks = std::rbegin(kLevelLimits)->maxDpbMacroblocks;
    for (const SLevelLimit& limit : kLevelLimits)
        if (limit.level == (isLevel1b ? 9 : levelIdc)) macroblocks = limit.maxDpbMacroblocks;
    const std::uint32_t frames = macroblocks / (widthInMacroblocks * HeightInMacroblocks());
    return std::clamp<std::uint32_t>(frames, 1, kMaxDpbFrames);
}

std::uint32_t SAvcSps::DecFrameBuffering() const
{
    if (vui && vui->maxDecFrameBuffering) return std::min(*vui->maxDecFrameBuffering, kMaxDpbFrames);
    return IsIntraProfile() ? 0 : std::max<std::uint32_t>(MaxDpbFrames(), maxReferenceFrames);
}

std::uint32_t SAvcSps::ReorderFrames() const
{
    if (pictureOrderType == 2) return 0;
    if (vui && vui->maxReorderFrames) return std::min(*vui->maxReorderFrames, kMaxDpbFrames);
    return DecFrameBuffering();
}

std::string_view SAvcSps::ProfileName() const
{
    const bool isIntra = HasConstraint(3);
    switch (profileIdc) {
    case kAvcProfileCavlc444Intra: return "CAVLC 4:4:4 Intra";
    case kAvcProfileBaseline: return HasConstraint(1) ? "Constrained Baseline" : "Baseline";
    case kAvcProfileMain: return "Main";
    case kAvcProfileExtended: return "Extended";
    case kAvcProfileHigh: return "High";
    case kAvcProfileHigh10: return isIntra ? "High 10 Intra" : "High 10";
    case kAvcProfileHigh422: return isIntra ? "High 4:2:2 Intra" : "High 4:2:2";
    case kAvcProfileHigh444: return isIntra ? "High 4:4:4 Intra" : "High 4:4:4 Predictive";
    default: return {};
    }
}

} // namespace TamrelMxf
