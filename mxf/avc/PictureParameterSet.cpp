#include "mxf/avc/PictureParameterSet.h"

#include "mxf/Status.h"
#include "mxf/avc/NalUnit.h"

#include <bit>

namespace TamrelMxf {

int SAvcPps::SequenceIdOf(std::span<const std::uint8_t> nal)
{
    if (nal.size() < 2) return kCutShort;
    if (static_cast<ENalType>(nal[0] & 0x1F) != ENalType::pictureParameterSet) return kFailed;
    CBitsReader bits{nal.subspan(1)};
    bits.Ue();
    const std::uint32_t sequence = bits.Ue();
    if (!bits.IsOk()) return kCutShort;
    return sequence > 31 ? kFailed : static_cast<int>(sequence);
}

int SAvcPps::Parse(std::span<const std::uint8_t> nal, const SAvcSps& sps)
{
    if (const int sequence = SequenceIdOf(nal); sequence < 0) return sequence;
    CBitsReader bits{nal.subspan(1)};
    SAvcPps read;
    const int status = read.Read(bits, sps);
    if (status == kSuccess) *this = read;
    return status;
}

int SAvcPps::Read(CBitsReader& bits, const SAvcSps& sps)
{
    const std::uint32_t setId = bits.Ue();
    if (setId > 255) return kFailed;
    id = static_cast<std::uint8_t>(setId);
    sequenceId = static_cast<std::uint8_t>(bits.Ue());
    isCabac = bits.Flag();
    hasFieldOrderInFrames = bits.Flag();
    if (const int status = ReadSliceGroups(bits); status != kSuccess) return status;

    const std::uint32_t references0 = bits.Ue();
    const std::uint32_t references1 = bits.Ue();
    if (references0 > 31 || references1 > 31) return kFailed;
    referencesList0 = static_cast<std::uint8_t>(references0 + 1);
    referencesList1 = static_cast<std::uint8_t>(references1 + 1);
    hasWeightedPrediction = bits.Flag();
    weightedBipred = static_cast<std::uint8_t>(bits.Bits(2));
    if (weightedBipred == 3) return kFailed;
    const std::int32_t qp = bits.Se();
    const std::int32_t qs = bits.Se();
    const std::int32_t cb = bits.Se();
    if (qp < -26 - 6 * (sps.lumaDepth - 8) || qp > 25 || qs < -26 || qs > 25 || cb < -12 || cb > 12) return kFailed;
    initialQp = static_cast<std::int8_t>(26 + qp);
    initialQs = static_cast<std::int8_t>(26 + qs);
    cbQpOffset = crQpOffset = static_cast<std::int8_t>(cb);
    hasDeblockingControl = bits.Flag();
    hasConstrainedIntra = bits.Flag();
    allowsRedundantPictures = bits.Flag();
    scaling = sps.scaling;
    if (!bits.IsOk()) return kCutShort;
    if (!bits.MoreRbspData()) return kSuccess;

    hasTransform8x8 = bits.Flag();
    hasScalingMatrix = bits.Flag();
    if (hasScalingMatrix) {
        const unsigned lists8x8 = !hasTransform8x8 ? 0 : sps.chroma == EAvcChroma::yuv444 ? 6 : 2;
        const SScalingLists fallBack = sps.hasScalingMatrix ? sps.scaling : SScalingLists::Default();
        if (!scaling.Read(bits, 6 + lists8x8, fallBack)) return bits.IsOk() ? kFailed : kCutShort;
    }
    const std::int32_t cr = bits.Se();
    if (cr < -12 || cr > 12) return kFailed;
    crQpOffset = static_cast<std::int8_t>(cr);
    return bits.IsOk() ? kSuccess : kCutShort;
}

int SAvcPps::ReadSliceGroups(CBitsReader& bits)
{
    const std::uint32_t above1 = bits.Ue();
    if (above1 > 7) return kFailed;
    sliceGroups = static_cast<std::uint8_t>(above1 + 1);
    if (above1 == 0) return bits.IsOk() ? kSuccess : kCutShort;

    const std::uint32_t type = bits.Ue();
    if (type > 6) return kFailed;
    sliceGroupMapType = static_cast<std::uint8_t>(type);
    if (type == 0) {
        for (std::uint32_t group = 0; group <= above1; ++group)
            bits.Ue(); // run_length_minus1
    } else if (type == 2) {
        for (std::uint32_t group = 0; group < above1; ++group) {
            bits.Ue(); // top_left
            bits.Ue(); // bottom_right
        }
    } else if (type >= 3 && type <= 5) {
        bits.Flag(); // slice_group_change_direction_flag
        bits.Ue();   // slice_group_change_rate_minus1
    } else if (type == 6) {
        const std::uint64_t units = std::uint64_t{bits.Ue()} + 1;
        bits.Skip(units * static_cast<unsigned>(std::bit_width(above1))); // slice_group_id, Ceil(Log2(groups)) bits
    }
    return bits.IsOk() ? kSuccess : kCutShort;
}

} // namespace TamrelMxf
