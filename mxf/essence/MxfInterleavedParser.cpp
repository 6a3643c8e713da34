#include "mxf/essence/MxfInterleavedParser.h"

#include "mxf/Limits.h"
#include "mxf/Status.h"
#include "mxf/essence/Aes3Unpacking.h"
#include "mxf/essence/EssenceKeys.h"
#include "mxf/klv/Keys.h"

#include <algorithm>
#include <utility>

namespace TamrelMxf {
namespace {

/// So far back the index table of a picture may be asked for others.
constexpr std::int64_t kUnitsLookedBack = kMaxKeyFrameDistance + 256;

} // namespace

CMxfInterleavedParser::CMxfInterleavedParser(const SEssenceContext& context, std::vector<SEssenceTrack> tracks,
                                             bool canGoBack)
    : CEssenceParser{context, tracks, true}, reader_{context, tracks}, match_{tracks},
      held_(tracks.size()), canGoBack_{canGoBack}, scout_{reader_}, scoutOrders_(tracks.size())
{
    scout_.Silence();
}

CEssenceParser::SLane* CMxfInterleavedParser::LaneOf(const SEssenceKlv& klv)
{
    if (klv.isSystem) return nullptr;
    const auto index = match_.Find(klv.key);
    return index ? &Lanes()[*index] : nullptr;
}

bool CMxfInterleavedParser::IsServed() const
{
    const auto isReceiving = [](const SLane& lane) { return lane.receiver != nullptr; };
    return served_ > 0 && std::cmp_greater_equal(served_, std::ranges::count_if(Lanes(), isReceiving));
}

bool CMxfInterleavedParser::IsLast(const SLane& lane, const SPiece& piece)
{
    const std::int64_t stated = lane.track.duration;
    const std::int64_t next = piece.editUnit + piece.duration;
    if (next < stated || !Context().input.IsComplete()) return false;
    if (!covered_) // asked only now: the answer takes all index tables
        covered_ = Context().index == nullptr ? 0 : Context().index->CoveredUnits(IndexSid()).value_or(0);
    return piece.unit < *covered_ ? piece.unit + 1 == *covered_ : piece.editUnit < stated;
}

CEssenceParser::SPiece CMxfInterleavedParser::PieceOfPackage(const SLane& lane)
{
    SPiece piece{.unit = reader_.Unit(), .editUnit = ToLane(lane, reader_.Unit())};
    piece.duration = std::max<std::int64_t>(ToLane(lane, piece.unit + 1) - piece.editUnit, 1);
    return piece;
}

/// Delivers a sample, behind what is held for it, if anything. \return false when it is refused
bool CMxfInterleavedParser::Hand(SLane& lane, SPiece piece)
{
    SHeld& held = HeldOf(lane);
    if (held.position >= 0) {
        unpacked_ = held.bytes;
        unpacked_.insert(unpacked_.end(), piece.bytes.begin(), piece.bytes.end());
        piece.bytes = unpacked_;
        piece.position = held.position;
        piece.isDamaged = piece.isDamaged || held.isDamaged;
    }
    piece.isLast = IsLast(lane, piece);
    if (!Deliver(lane, piece)) return false;
    held.Drop();
    ++served_;
    return true;
}

/// What is held when a package ends: sound is whole then, and a picture has lost its second field.
bool CMxfInterleavedParser::HandHeld(bool& delivered)
{
    for (SLane& lane : Lanes()) {
        if (HeldOf(lane).position < 0) continue;
        if (lane.receiver == nullptr) {
            HeldOf(lane).Drop();
            continue;
        }
        SPiece piece = PieceOfPackage(lane);
        piece.isDamaged = !lane.hasOwnFrames;
        if (!Hand(lane, piece)) return false;
        delivered = true;
    }
    return true;
}

int CMxfInterleavedParser::Push()
{
    bool delivered = false;
    bool isPassing = false; // something of the package at hand was met
    const bool isHeard = std::ranges::any_of(Lanes(), [](const SLane& lane) { return lane.receiver != nullptr; });
    LearnOrder(std::max<std::int64_t>(reader_.Unit(), 0));
    for (;;) {
        EStep step = reader_.Next();
        const bool isOver = step == EStep::end || (step == EStep::found && reader_.BeginsPackage());
        if (isOver && !HandHeld(delivered)) return kRefused;
        if (step != EStep::found) return delivered ? kDelivered : ToResult(step);
        if (reader_.BeginsPackage()) {
            if (delivered || (isPassing && !isHeard)) return kDelivered;
            reader_.BeginPackage();
            served_ = 0;
        }
        isPassing = true;
        SLane* const lane = LaneOf(reader_.Klv());
        const bool isPair = lane != nullptr && ElementsInEditUnit(lane->track.format) == 2;
        const bool isGathered = lane != nullptr && lane->hasOwnFrames && reader_.HasSoundInParts();
        const bool isFirst = reader_.SeenOfKey() == 0;
        // A receiver that came between two elements begins with the next package.
        const bool isLate = (isPair || isGathered) && !isFirst && HeldOf(*lane).position < 0;
        if (lane == nullptr || lane->receiver == nullptr || isLate) {
            if (lane != nullptr) HeldOf(*lane).Drop();
            reader_.Accept();
            continue;
        }
        SPiece piece = PieceOfPackage(*lane);
        step = reader_.Load(piece.bytes, piece.isDamaged);
        if (step != EStep::found) return delivered ? kDelivered : ToResult(step);
        piece.position = reader_.Klv().value;
        if (isGathered || (isPair && isFirst)) {
            SHeld& held = HeldOf(*lane);
            if (isFirst) {
                held.Drop();
                held.position = piece.position;
            }
            held.isDamaged = held.isDamaged || piece.isDamaged;
            held.bytes.insert(held.bytes.end(), piece.bytes.begin(), piece.bytes.end());
            reader_.Accept();
            continue;
        }
        if (lane->track.format.essenceKind == EEssenceKind::pcm && Aes3::IsEightChannelElement(reader_.Klv().key)) {
            unpacked_.clear();
            Aes3::Unpack(piece.bytes, lane->track.format, unpacked_);
            piece.bytes = unpacked_;
        }
        if (!Hand(*lane, piece)) return kRefused;
        reader_.Accept();
        delivered = true;
        if (IsServed()) return kDelivered; // what follows may take its time to come
    }
}

const SWalkedUnit* CMxfInterleavedParser::Walk(SLane& lane, std::int64_t unit)
{
    if (!canGoBack_) return nullptr;
    while (scout_.Unit() <= unit && scout_.Next() == EStep::found) {
        if (scout_.BeginsPackage()) {
            scout_.BeginPackage();
            const SWalkedUnit met{
                .unit = scout_.Unit(), .position = scout_.Klv().position, .streamOffset = scout_.Klv().streamOffset};
            for (SLane& any : Lanes()) {
                if (!any.isReordered && &any != &LeadingLane()) continue;
                if (any.walked.Count() <= met.unit && !any.walked.Add(met)) return nullptr;
            }
        }
        SLane* const found = LaneOf(scout_.Klv());
        if (found != nullptr && found->isReordered && scout_.SeenOfKey() == 0) {
            auto& order = scoutOrders_[IndexOf(*found)];
            if (!order) order = MakePictureOrder(found->track.format);
            std::optional<SPicturePlace> place;
            if (order) place = order->Describe(Head(scout_.Klv()), scout_.Unit()).value_or(kUnreadable);
            Note(found->walked.Last(), scout_.Unit(), place);
        }
        scout_.Accept();
    }
    return WalkedOf(lane).Find(unit);
}

/// As many of the first bytes of a value as the headers of a picture take.
std::span<const std::uint8_t> CMxfInterleavedParser::Head(const SEssenceKlv& klv) const
{
    constexpr std::int64_t kHead = 64 << 10;
    return Context().input.Peek(klv.value, static_cast<std::size_t>(std::clamp<std::int64_t>(klv.length, 0, kHead)));
}

std::optional<SUnitPlace> CMxfInterleavedParser::LocateByIndex(std::int64_t unit) const
{
    const auto indexed = FindIndexed(unit);
    if (!indexed) return std::nullopt;
    const std::int64_t position = Context().partitions.TranslateOffset(indexed->streamOffset, BodySid());
    SKlvHeader header;
    if (position < 0 || header.Parse(Context().input.Peek(position, SKlvHeader::kProbeSize)) != kSuccess)
        return std::nullopt;
    const bool isHere = EssenceKeys::IsElement(header.key) || EssenceKeys::IsSystem(header.key);
    if (!isHere && !Keys::IsFill(header.key)) return std::nullopt;
    return SUnitPlace{.unit = unit, .position = position, .streamOffset = indexed->streamOffset};
}

/// Where a unit begins: the index tables lead there, or a walk where they are missing or lead astray.
std::optional<SUnitPlace> CMxfInterleavedParser::Locate(std::int64_t unit)
{
    if (const auto place = LocateByIndex(unit)) return place;
    const SWalkedUnit* const walked = Walk(Lanes().front(), unit);
    if (walked == nullptr) return std::nullopt;
    return SUnitPlace{.unit = unit, .position = walked->position, .streamOffset = walked->streamOffset};
}

/// Lets the pictures in front of `unit` be looked at, so that the order of those behind it is known.
void CMxfInterleavedParser::Prime(std::int64_t unit)
{
    std::vector<std::int64_t> from(Lanes().size(), unit); // the key frame of each stream
    std::optional<SWalkedUnit> first;
    for (SLane& lane : Lanes()) {
        if (lane.order == nullptr || FindOrdered(lane, unit) || Walk(lane, unit) == nullptr) continue;
        const SWalkedUnit key = *lane.walked.Find(lane.walked.KeyFrameOf(unit));
        lane.order->Restart(key.unit + key.shift);
        from[IndexOf(lane)] = key.unit;
        if (!first || key.unit < first->unit) first = key;
    }
    if (!first) return;
    CPackageReader reader = reader_;
    reader.Silence();
    reader.GoTo({.unit = first->unit, .position = first->position, .streamOffset = first->streamOffset});
    while (reader.Next() == EStep::found) {
        if (reader.BeginsPackage()) {
            if (reader.Unit() + 1 >= unit) return;
            reader.BeginPackage();
        }
        SLane* const met = LaneOf(reader.Klv());
        const bool isAsked = met != nullptr && met->order != nullptr && reader.Unit() >= from[IndexOf(*met)];
        if (isAsked && reader.SeenOfKey() == 0) (void)TimesOf(*met, reader.Unit(), Head(reader.Klv()));
        reader.Accept();
    }
}

int CMxfInterleavedParser::Seek(mxf_dmuxer_seek& seek)
{
    SLane* const lane = FindLane(seek.stream);
    if (lane == nullptr) return kOutOfRange;
    const std::int64_t unit = TargetOf(*lane, seek);
    const auto place = unit < 0 ? std::nullopt : Locate(unit);
    if (!place) return kOutOfRange;

    reader_.GoTo(*place);
    for (SHeld& held : held_)
        held.Drop();
    served_ = 0;
    Interrupt();
    LearnOrder(unit);
    Prime(unit);
    seek.edit_unit = ToLane(*lane, unit);
    seek.file_position = place->position;
    return kSuccess;
}

int CMxfInterleavedParser::GetSampleInfo(std::int64_t editUnit, mxf_sample_info& info)
{
    SLane* const lane = FindLane(info.stream);
    if (lane == nullptr) return kOutOfRange;
    const std::int64_t unit = ToContainer(*lane, editUnit);
    const auto indexed = editUnit < 0 ? std::nullopt : FindIndexed(unit);
    const bool isEndless = indexed && !Context().index->CoveredUnits(IndexSid());
    const bool isBeyond = isEndless && Context().partitions.TranslateOffset(indexed->streamOffset, BodySid()) < 0;
    if (editUnit < 0 || isBeyond) return kNoSuchItem;
    LearnOrder(unit);
    const bool isKnown = indexed && (!lane->isReordered || FindOrdered(*lane, unit));
    const SWalkedUnit* const walked = isKnown ? nullptr : Walk(*lane, unit);
    if (!indexed && walked == nullptr) return kNoSuchItem;
    STimes times = TimesOf(*lane, unit, {});
    if (walked != nullptr && lane->isReordered) {
        times.displayed = unit + walked->shift;
        if (!indexed) times.isKey = walked->isKey;
    }
    FillSampleInfo(info, *lane, {.unit = unit, .editUnit = editUnit}, times);
    if (indexed)
        FillIndexed(info, *indexed);
    else
        info.stream_offset = walked->streamOffset;
    return kSuccess;
}

int CMxfInterleavedStreamParser::Push()
{
    int result = kDelivered;
    while (result == kDelivered)
        result = CMxfInterleavedParser::Push();
    Context().input.Release(Place()); // once: what stays in the queue may be moved
    if (Context().index != nullptr) Context().index->DropBefore(IndexSid(), Unit() - kUnitsLookedBack);
    return result;
}

int CMxfInterleavedStreamParser::Seek(mxf_dmuxer_seek& /*seek*/)
{
    return kOutOfRange;
}

} // namespace TamrelMxf
