#include "mxf/avc/AvcAnalyser.h"

#include "mxf/Status.h"
#include "mxf/avc/AvcConfiguration.h"
#include "mxf/avc/NalUnit.h"

namespace TamrelMxf {
namespace {

EAvcPictureType PictureType(const SAvcSliceHeader& slice)
{
    if (slice.IsIntra()) return EAvcPictureType::i;
    return slice.type == EAvcSliceType::b ? EAvcPictureType::b : EAvcPictureType::p;
}

} // namespace

/// The state of one unit's walk.
struct CAvcAnalyser::SFound {
    SAvcPicture picture;
    SAvcSei sei;
    std::optional<SAvcSliceHeader> first;  ///< first slice of the frame or first field
    std::optional<SAvcSliceHeader> second; ///< first slice of the second field
};

int CAvcAnalyser::SetExtraData(std::span<const std::uint8_t> bytes)
{
    return ReadAvcExtraData(bytes, sets_, lengthSize_);
}

void CAvcAnalyser::Restart(std::int64_t decodeIndex)
{
    counter_.Reset();
    nextIndex_ = decodeIndex;
    ++sequence_;
    isFirstInSequence_ = true;
    lastOrder_ = {};
    lastReferenceFrameNum_ = 0;
}

std::optional<SAvcFormat> CAvcAnalyser::Format() const
{
    const SAvcSps* sps = activeSps_ ? sets_.Sps(*activeSps_) : nullptr;
    if (sps == nullptr) sps = sets_.FirstSps();
    if (sps == nullptr) return std::nullopt;
    return ToAvcFormat(*sps, sets_);
}

int CAvcAnalyser::Analyse(std::span<const std::uint8_t> unit, SAvcPicture& picture)
{
    SFound found;
    const int status = Look(unit, found);
    picture = found.picture;
    picture.decodeIndex = nextIndex_++;
    if (!found.first) {
        picture.isDamaged = true;
        picture.order = lastOrder_;
        picture.sequence = sequence_;
        picture.reorderFrames = lastReorderFrames_;
        return status;
    }
    lastOrder_ = picture.order;
    lastReorderFrames_ = picture.reorderFrames;

    const SAvcSps* sps = sets_.Sps(picture.spsId);
    picture.recoveryPoint = found.sei.recoveryPoint;
    const bool isRightAtOnce = picture.recoveryPoint && picture.recoveryPoint->frameCount == 0;
    picture.isKeyFrame =
        picture.isIdr || (picture.isIntra && (isRightAtOnce || (sps != nullptr && sps->IsIntraOnly())));
    if (sps != nullptr && sps->vui) picture.pictureStructure = found.sei.PictureStructure(*sps->vui);
    return kSuccess;
}

int CAvcAnalyser::Look(std::span<const std::uint8_t> unit, SFound& found)
{
    int status = kNoSuchItem;
    CNalReader units = lengthSize_ == 0 ? CNalReader::AnnexB(unit) : CNalReader::LengthPrefixed(unit, lengthSize_);
    while (units.Next()) {
        const ENalType type = units.Type();
        if (type == ENalType::sequenceParameterSet || type == ENalType::pictureParameterSet) {
            (void)sets_.Add(units.Whole()); // a broken set shows where a slice asks for it
        } else if (type == ENalType::sei && !found.first) {
            found.sei.Read(units.Whole());
        } else if (HasSliceHeader(type)) {
            SAvcSliceHeader slice;
            const int sliceStatus = slice.Parse(units.Head(), sets_);
            if (sliceStatus != kSuccess)
                status = sliceStatus;
            else if (slice.redundantCount == 0 && TakeSlice(slice, found))
                break;
        }
    }
    return found.first ? kSuccess : status;
}

bool CAvcAnalyser::TakeSlice(const SAvcSliceHeader& slice, SFound& found)
{
    if (!found.first) {
        BeginPicture(slice, found);
        return scan_ == EScan::firstSlices && !slice.isField;
    }
    const SAvcSps* sps = sets_.Sps(slice.sequenceSetId);
    if (sps == nullptr) return false;
    const SAvcSliceHeader& current = found.second ? *found.second : *found.first;
    if (slice.StartsPicture(current, *sps)) {
        const bool isSecondField =
            !found.second && slice.isField && found.first->isField && slice.isBottomField != found.first->isBottomField;
        if (!isSecondField) return true;
        AddField(slice, found);
        return scan_ == EScan::firstSlices;
    }
    if (scan_ == EScan::firstSlices) return false;
    found.picture.isIntra = found.picture.isIntra && slice.IsIntra();
    if (!found.second && PictureType(slice) > found.picture.type) found.picture.type = PictureType(slice);
    return false;
}

void CAvcAnalyser::BeginPicture(const SAvcSliceHeader& slice, SFound& found)
{
    const SAvcSps& sps = *sets_.Sps(slice.sequenceSetId); // the slice was read with it
    SAvcPicture& picture = found.picture;
    found.first = slice;
    activeSps_ = sps.id;
    picture.spsId = sps.id;
    picture.ppsId = slice.pictureSetId;
    picture.type = PictureType(slice);
    picture.isTypeOfAllSlices = slice.isTypeOfAllSlices || scan_ == EScan::allSlices;
    picture.isIntra = slice.IsIntra();
    picture.isIdr = slice.IsIdr();
    picture.isReference = slice.refIdc != 0;
    picture.frameNum = slice.frameNum;
    picture.reorderFrames = static_cast<std::uint8_t>(sps.ReorderFrames());
    if (slice.isField)
        picture.coding = slice.isBottomField ? EAvcCoding::bottomField : EAvcCoding::topField;
    else
        picture.coding = sps.hasMbaff ? EAvcCoding::mbaffFrame : EAvcCoding::frame;

    picture.startsSequence = slice.IsIdr() || slice.clearsReferences;
    if (picture.startsSequence && !isFirstInSequence_) ++sequence_;
    picture.sequence = sequence_;
    CountFrameNum(slice, sps, picture);
    picture.order = counter_.Next(slice, sps);
    picture.isTopFirst = slice.isField ? !slice.isBottomField : picture.order.top <= picture.order.bottom;
    isFirstInSequence_ = false;
}

void CAvcAnalyser::AddField(const SAvcSliceHeader& slice, SFound& found)
{
    const SAvcSps& sps = *sets_.Sps(slice.sequenceSetId);
    SAvcPicture& picture = found.picture;
    found.second = slice;
    picture.coding = EAvcCoding::fieldPair;
    picture.isIntra = picture.isIntra && slice.IsIntra();
    picture.isReference = picture.isReference || slice.refIdc != 0;
    const SPictureOrderCount order = counter_.Next(slice, sps);
    if (slice.refIdc != 0) lastReferenceFrameNum_ = slice.clearsReferences ? 0 : slice.frameNum;
    if (slice.clearsReferences) {
        // Such a field is no partner of the one before, but the unit has one place: that of the later one.
        picture.startsSequence = true;
        picture.sequence = ++sequence_;
        picture.order = order;
        return;
    }
    (slice.isBottomField ? picture.order.bottom : picture.order.top) = slice.isBottomField ? order.bottom : order.top;
    picture.order.hasTop = picture.order.hasBottom = true;
    picture.isTopFirst = picture.order.top <= picture.order.bottom;
}

/// 7.4.3, frame_num. Frames that are inferred for a gap are references, up to the one in front of this picture.
void CAvcAnalyser::CountFrameNum(const SAvcSliceHeader& slice, const SAvcSps& sps, SAvcPicture& picture)
{
    const std::uint32_t mask = (1U << sps.frameNumBits) - 1;
    picture.hasFrameNumGap = !slice.IsIdr() && !isFirstInSequence_ && slice.frameNum != lastReferenceFrameNum_ &&
                             slice.frameNum != ((lastReferenceFrameNum_ + 1) & mask);
    if (picture.hasFrameNumGap) lastReferenceFrameNum_ = (slice.frameNum - 1) & mask;
    if (slice.refIdc != 0) lastReferenceFrameNum_ = slice.clearsReferences ? 0 : slice.frameNum;
}

} // namespace TamrelMxf
