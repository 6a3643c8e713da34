#include "mxf/avc/SliceHeader.h"

#include "mxf/Status.h"
#include "mxf/avc/NalUnit.h"

namespace TamrelMxf {
namespace {

/// Most entries of a reference list, those of fields; most commands of one slice: each names one of them, or one of
/// few other things.
constexpr std::uint32_t kMaxReferences = 32;
constexpr int kMaxCommands = 2 * static_cast<int>(kMaxReferences) + 2;

/// ref_pic_list_modification() for one list. \return false when it does not end
bool SkipListModification(CBitsReader& bits)
{
    if (!bits.Flag()) return true;
    for (int i = 0; i < kMaxCommands && bits.IsOk(); ++i) {
        const std::uint32_t command = bits.Ue();
        if (command == 3) return true;
        if (command > 3) return false; // 4 and 5 are of multi-view slices, which have another NAL type
        bits.Ue();
    }
    return false;
}

/// pred_weight_table() for one list.
void SkipWeights(CBitsReader& bits, std::uint32_t count, bool hasChroma)
{
    for (std::uint32_t i = 0; i < count && bits.IsOk(); ++i) {
        if (bits.Flag()) {
            bits.Se();
            bits.Se();
        }
        if (hasChroma && bits.Flag())
            for (int j = 0; j < 4; ++j)
                bits.Se();
    }
}

} // namespace

int SAvcSliceHeader::Parse(std::span<const std::uint8_t> nal, CAvcParameterSets& sets)
{
    if (nal.size() < 2) return kCutShort;
    const auto unitType = static_cast<ENalType>(nal[0] & 0x1F);
    if (!HasSliceHeader(unitType)) return kFailed;
    CBitsReader bits{nal.subspan(1)};
    SAvcSliceHeader read;
    read.nalType = static_cast<std::uint8_t>(unitType);
    read.refIdc = static_cast<std::uint8_t>((nal[0] >> 5) & 3);
    int status = read.Read(bits, sets);
    if (status == kSuccess && !bits.IsOk()) status = kCutShort;
    if (status == kSuccess) *this = read;
    return status;
}

int SAvcSliceHeader::Read(CBitsReader& bits, CAvcParameterSets& sets)
{
    firstMacroblock = bits.Ue();
    const std::uint32_t sliceType = bits.Ue();
    const std::uint32_t setId = bits.Ue();
    if (!bits.IsOk()) return kCutShort;
    if (sliceType > 9 || setId > 255) return kFailed;
    type = static_cast<EAvcSliceType>(sliceType % 5);
    isTypeOfAllSlices = sliceType >= 5;
    pictureSetId = static_cast<std::uint8_t>(setId);

    const SAvcPps* pps = sets.Pps(setId);
    const SAvcSps* sps = pps == nullptr ? nullptr : sets.Sps(pps->sequenceId);
    if (sps == nullptr) return kNotOpen;
    sequenceSetId = sps->id;
    if (IsIdr() && (refIdc == 0 || !IsIntra())) return kFailed;

    if (sps->hasSeparatePlanes) colourPlane = static_cast<std::uint8_t>(bits.Bits(2));
    frameNum = bits.Bits(sps->frameNumBits);
    if (!sps->isFrameOnly) {
        isField = bits.Flag();
        if (isField) isBottomField = bits.Flag();
    }
    if (IsIdr()) idrPictureId = bits.Ue();
    ReadPictureOrder(bits, *sps, *pps);
    if (pps->allowsRedundantPictures) redundantCount = bits.Ue();
    if (const int status = ReadReferences(bits, *sps, *pps); status != kSuccess) return status;
    return refIdc != 0 ? ReadMarking(bits) : kSuccess;
}

void SAvcSliceHeader::ReadPictureOrder(CBitsReader& bits, const SAvcSps& sps, const SAvcPps& pps)
{
    const bool hasBottom = pps.hasFieldOrderInFrames && !isField;
    if (sps.pictureOrderType == 0) {
        orderLsb = bits.Bits(sps.pictureOrderLsbBits);
        if (hasBottom) orderDeltaBottom = bits.Se();
    } else if (sps.pictureOrderType == 1 && !sps.isDeltaAlwaysZero) {
        orderDelta[0] = bits.Se();
        if (hasBottom) orderDelta[1] = bits.Se();
    }
}

int SAvcSliceHeader::ReadReferences(CBitsReader& bits, const SAvcSps& sps, const SAvcPps& pps)
{
    const bool isB = type == EAvcSliceType::b;
    if (isB) bits.Flag(); // direct_spatial_mv_pred_flag
    if (IsIntra()) return kSuccess;

    std::uint32_t count0 = pps.referencesList0;
    std::uint32_t count1 = pps.referencesList1;
    if (bits.Flag()) {
        const std::uint32_t above1InList0 = bits.Ue();
        const std::uint32_t above1InList1 = isB ? bits.Ue() : 0;
        if (above1InList0 >= kMaxReferences || above1InList1 >= kMaxReferences) return kFailed;
        count0 = above1InList0 + 1;
        count1 = above1InList1 + 1;
    }
    if (!SkipListModification(bits) || (isB && !SkipListModification(bits))) return bits.IsOk() ? kFailed : kCutShort;
    if (isB ? pps.weightedBipred != 1 : !pps.hasWeightedPrediction) return kSuccess;

    const bool hasChroma = sps.ChromaArrayType() != EAvcChroma::monochrome;
    bits.Ue(); // luma_log2_weight_denom
    if (hasChroma) bits.Ue();
    SkipWeights(bits, count0, hasChroma);
    if (isB) SkipWeights(bits, count1, hasChroma);
    return kSuccess;
}

int SAvcSliceHeader::ReadMarking(CBitsReader& bits)
{
    if (IsIdr()) {
        bits.Flag(); // no_output_of_prior_pics_flag
        isLongTermReference = bits.Flag();
        return kSuccess;
    }
    isMarkingAdaptive = bits.Flag();
    if (!isMarkingAdaptive) return kSuccess;
    for (int i = 0; i < kMaxCommands && bits.IsOk(); ++i) {
        switch (bits.Ue()) {
        case 0: return kSuccess;
        case 1:
        case 2:
        case 4:
        case 6: bits.Ue(); break;
        case 3:
            bits.Ue();
            bits.Ue();
            break;
        case 5: clearsReferences = true; break;
        default: return kFailed;
        }
    }
    return bits.IsOk() ? kFailed : kCutShort;
}

bool SAvcSliceHeader::StartsPicture(const SAvcSliceHeader& previous, const SAvcSps& sps) const
{
    if (frameNum != previous.frameNum || pictureSetId != previous.pictureSetId ||
        sequenceSetId != previous.sequenceSetId || isField != previous.isField ||
        isBottomField != previous.isBottomField)
        return true;
    if (refIdc != previous.refIdc && (refIdc == 0 || previous.refIdc == 0)) return true;
    if (IsIdr() != previous.IsIdr() || (IsIdr() && idrPictureId != previous.idrPictureId)) return true;
    if (sps.pictureOrderType == 0)
        return orderLsb != previous.orderLsb || orderDeltaBottom != previous.orderDeltaBottom;
    return sps.pictureOrderType == 1 && orderDelta != previous.orderDelta;
}

bool SAvcSliceHeader::CompletesFrame(const SAvcSliceHeader& first) const
{
    if (!isField || !first.isField || isBottomField == first.isBottomField || clearsReferences) return false;
    if (IsIdr() && !(first.IsIdr() && idrPictureId == first.idrPictureId)) return false;
    return frameNum == (first.clearsReferences ? 0 : first.frameNum);
}

} // namespace TamrelMxf
