#include "mxf/essence/MxfSingleStreamParser.h"

#include "mxf/Limits.h"
#include "mxf/Status.h"
#include "mxf/model/Timing.h"

#include <algorithm>
#include <utility>

namespace TamrelMxf {

CMxfSingleStreamParser::CMxfSingleStreamParser(const SEssenceContext& context, std::vector<SEssenceTrack> tracks)
    : CEssenceParser{context, tracks, false}, walker_{context, BodySid()}, match_{tracks}
{
    rows_.reserve(tracks.size());
    for (std::size_t i = 0; i < tracks.size(); ++i)
        rows_.emplace_back(context);
}

/// The rate at which the streams are delivered side by side.
const SRational& CMxfSingleStreamParser::StepRate()
{
    constexpr SRational kBlocks{25, 1};
    constexpr double kFastest = 240; // edit units above that are samples
    if (stepRate_.IsPositive()) return stepRate_;
    for (const SLane& lane : Lanes()) {
        const SRational& own = lane.track.format.editRate;
        if (!own.IsPositive()) continue;
        const bool isPicture = lane.track.format.type == EStreamType::picture;
        if (isPicture || !stepRate_.IsPositive() || own.ToDouble() < stepRate_.ToDouble()) stepRate_ = own;
        if (isPicture) break;
    }
    if (!stepRate_.IsPositive() || stepRate_.ToDouble() > kFastest) stepRate_ = kBlocks;
    return stepRate_;
}

std::int64_t CMxfSingleStreamParser::FromStep(const SLane& lane, std::int64_t step)
{
    const SRational& own = lane.track.format.editRate;
    return own.IsPositive() ? Rescale(step, StepRate(), own).value_or(step) : step;
}

std::int64_t CMxfSingleStreamParser::ToStep(const SLane& lane, std::int64_t editUnit)
{
    const SRational& own = lane.track.format.editRate;
    std::int64_t step = own.IsPositive() ? Rescale(editUnit, own, StepRate()).value_or(editUnit) : editUnit;
    if (FromStep(lane, step) > editUnit) --step;
    return step;
}

/// The row whose last element goes on for as long as the essence does; null when there is none.
CMxfSingleStreamParser::SRow* CMxfSingleStreamParser::OpenRow()
{
    for (SRow& row : rows_) {
        if (row.bytes.Parts().empty() || row.bytes.Parts().back().key != walker_.Klv().position) continue;
        row.bytes.Refresh();
        if (row.bytes.IsOpen()) return &row;
    }
    return nullptr;
}

/// Waits until there is more of the open element at the end of a row. \return false when nothing came
bool CMxfSingleStreamParser::WaitForMore(CElementBytes& bytes, std::int64_t count)
{
    const CElementBytes::SPart& last = bytes.Parts().back();
    const std::int64_t before = bytes.Size();
    const std::int64_t most = std::clamp<std::int64_t>(count, 1, kReadStepBytes);
    // With the last byte that is there, as a file is asked whether it is complete only where some bytes are.
    const std::int64_t held = last.length > 0 ? 1 : 0;
    (void)Context().input.View(last.value + last.length - held, static_cast<std::size_t>(most + held));
    bytes.Refresh();
    return bytes.Size() > before;
}

/// Looks for elements until the row is longer than `size`.
/// \param isWaiting  false leaves what is still to be written of an open element for later
/// \return found when it is; end when there are no more; needsData or failed
CEssenceWalker::EStep CMxfSingleStreamParser::Extend(SRow& row, std::int64_t size, bool isWaiting)
{
    while (row.bytes.Size() <= size) {
        if (isWalked_) return EStep::end;
        if (SRow* const open = OpenRow()) { // it holds all there is; whatever it lacks is still to come
            if (row.bytes.Size() > size) break;
            if (Context().input.IsComplete() || open->bytes.IsEnded()) return EStep::end;
            const bool hasCome = isWaiting && WaitForMore(open->bytes, size - row.bytes.Size() + 1);
            if (!hasCome && !Context().input.IsComplete()) return EStep::needsData;
            continue;
        }
        const EStep step = walker_.Next();
        if (step == EStep::end) isWalked_ = true;
        if (step != EStep::found) return step;
        const auto lane = walker_.Klv().isSystem ? std::nullopt : match_.Find(walker_.Klv().key);
        if (lane && !rows_[*lane].bytes.Append(walker_.Klv())) isWalked_ = true;
        walker_.Skip();
    }
    return EStep::found;
}

CEssenceWalker::EStep CMxfSingleStreamParser::BeginOf(SLane& lane, std::int64_t unit, std::int64_t& begin)
{
    SRow& row = RowOf(lane);
    if (!row.cutter) {
        const EStep step = Extend(row, 0);
        if (row.bytes.Parts().empty()) return step == EStep::found ? EStep::end : step;
        // One element, or the first of several: a look behind it tells, where there is something by now.
        const CElementBytes::SPart& first = row.bytes.Parts().front();
        const auto behind = Context().input.Peek(first.value + first.length, SKlvHeader::kProbeSize);
        if (!row.bytes.IsOpen() && behind.size() == SKlvHeader::kProbeSize) (void)Extend(row, row.bytes.Size());
        row.cutter = MakeUnitCutter(lane.track.format, Context().index, row.bytes);
        while (!row.cutter && row.bytes.IsOpen() && !Context().input.IsComplete() && !row.bytes.IsEnded()) {
            // What comes may tell, or an index table at the end of the file.
            if (!WaitForMore(row.bytes, kReadStepBytes) && !Context().input.IsComplete()) return EStep::needsData;
            row.cutter = MakeUnitCutter(lane.track.format, Context().index, row.bytes);
        }
        if (!row.cutter) row.cutter = MakeElementCutter(lane.track.format);
    }
    for (;;) {
        if (const auto known = row.cutter->Begin(row.bytes, unit)) {
            begin = *known;
            return EStep::found;
        }
        if (!row.cutter->NeedsRow()) return EStep::end;
        const EStep step = Extend(row, row.bytes.Size());
        if (step == EStep::end && row.cutter->Finish()) continue;
        if (step != EStep::found) return step;
    }
}

/// True when the last edit unit that begins in the row ends with it, whatever is still to come.
bool CMxfSingleStreamParser::EndsWithUnit(const SLane& lane)
{
    const SRow& row = RowOf(lane);
    return lane.track.format.wrapping != EWrapping::custom && row.bytes.IsClosed() && row.cutter->FindsAll();
}

/// Where edit units lie. The last ones may be fewer than asked for.
CEssenceWalker::EStep CMxfSingleStreamParser::Locate(SLane& lane, std::int64_t from, std::int64_t to, SSpan& span)
{
    SRow& row = RowOf(lane);
    span = {.from = from, .to = to};
    EStep step = BeginOf(lane, from, span.begin);
    if (step != EStep::found) return step;
    if (span.begin < 0) return EStep::end;
    step = Extend(row, span.begin);
    if (step != EStep::found) return step;

    EStep next = BeginOf(lane, to, span.end);
    if (next == EStep::needsData && to == from + 1 && EndsWithUnit(lane)) {
        span.end = row.bytes.Size();
        next = EStep::found;
    }
    if (next == EStep::needsData || next == EStep::failed) return next;
    if (next == EStep::found && span.end <= span.begin) return EStep::end; // an index that goes back
    // One byte more shows whether anything follows; the sample does not wait for that.
    EStep more = Extend(row, next == EStep::found ? span.end - 1 : std::int64_t{1} << 62);
    if (more == EStep::found) more = Extend(row, span.end, false);
    const std::int64_t size = row.bytes.Size();
    if (next == EStep::found && span.end <= size) {
        span.isLast = more == EStep::end && span.end == size;
        return EStep::found;
    }
    if (more != EStep::end) return more;
    span.end = size;
    span.to = std::min(to, from + row.cutter->UnitsIn(size - span.begin));
    span.isLast = true;
    return span.end > span.begin ? EStep::found : EStep::end;
}

/// Hands the streams' part of the step at hand to its receiver.
CEssenceWalker::EStep CMxfSingleStreamParser::Offer(SLane& lane, bool& isTaken)
{
    SRow& row = RowOf(lane);
    SSpan span;
    const auto locate = [&] { return Locate(lane, FromStep(lane, step_), FromStep(lane, step_ + 1), span); };
    EStep step = locate();
    if (step != EStep::found) return step;
    const bool isOver = row.bytes.IsEnded();
    (void)row.bytes.View(span.begin,
                         static_cast<std::size_t>(std::min<std::int64_t>(span.end - span.begin, kMaxSampleBytes)));
    if (row.bytes.IsEnded() != isOver && (step = locate()) != EStep::found) return step; // it ends inside
    const auto count = static_cast<std::size_t>(std::min<std::int64_t>(span.end - span.begin, kMaxSampleBytes));
    SPiece piece{.unit = span.from, .editUnit = span.from, .duration = span.to - span.from};
    piece.bytes = row.bytes.View(span.begin, count);
    const CElementBytes::SPart* const part = row.bytes.PartAt(span.begin);
    if (part == nullptr || piece.bytes.size() < count) {
        const bool isShort = Context().input.IsComplete() && part != nullptr && span.end <= row.bytes.Size();
        return isShort ? EStep::failed : Context().input.IsComplete() ? EStep::end : EStep::needsData;
    }
    piece.position = part->value + span.begin - part->begin;
    piece.isLast = span.isLast;
    isTaken = Deliver(lane, piece);
    return EStep::found;
}

int CMxfSingleStreamParser::Push()
{
    bool delivered = false;
    bool isHeard = false;
    EStep worst = EStep::end;
    LearnOrder(step_);
    for (; nextLane_ < Lanes().size(); ++nextLane_) {
        SLane& lane = Lanes()[nextLane_];
        if (lane.receiver == nullptr) continue;
        isHeard = true;
        bool isTaken = false;
        const EStep step = Offer(lane, isTaken);
        if (step == EStep::found && !isTaken) return kRefused;
        if (step == EStep::needsData || step == EStep::failed) {
            worst = step;
            if (step == EStep::needsData) return delivered ? kDelivered : kNeedsData; // goes on with this stream
        }
        delivered = delivered || step == EStep::found;
    }
    nextLane_ = 0;
    if (!isHeard) { // passed over, as far as there is something
        SSpan span;
        worst = Locate(Lanes().front(), FromStep(Lanes().front(), step_), FromStep(Lanes().front(), step_ + 1), span);
        delivered = worst == EStep::found;
    }
    if (!delivered) return ToResult(worst);
    ++step_;
    return kDelivered;
}

const SWalkedUnit* CMxfSingleStreamParser::Walk(SLane& lane, std::int64_t unit)
{
    constexpr std::size_t kHead = std::size_t{64} << 10;
    SRow& row = RowOf(lane);
    if (!row.order) row.order = MakePictureOrder(lane.track.format);
    for (std::int64_t next = WalkedOf(lane).Count(); next <= unit; ++next) {
        SSpan span;
        if (Locate(lane, next, next + 1, span) != EStep::found) break;
        SWalkedUnit met{.unit = next, .position = -1, .streamOffset = span.begin};
        const auto bytes = row.bytes.View(span.begin, std::min(kHead, static_cast<std::size_t>(span.end - span.begin)));
        std::optional<SPicturePlace> place;
        if (row.order) place = row.order->Describe(bytes, next).value_or(kUnreadable);
        if (lane.isReordered) Note(met, next, place);
        if (!WalkedOf(lane).Add(met)) break;
    }
    return WalkedOf(lane).Find(unit);
}

int CMxfSingleStreamParser::Seek(mxf_dmuxer_seek& seek)
{
    SLane* const lane = FindLane(seek.stream);
    if (lane == nullptr) return kOutOfRange;
    const std::int64_t unit = TargetOf(*lane, seek);
    if (unit < 0) return kOutOfRange;
    const std::int64_t step = ToStep(*lane, unit);
    SSpan span;
    const EStep found = Locate(*lane, FromStep(*lane, step), FromStep(*lane, step + 1), span);
    if (found != EStep::found) return found == EStep::failed ? kFailed : kOutOfRange;
    if (unit >= span.to) return kOutOfRange;

    step_ = step;
    nextLane_ = 0;
    Interrupt();
    LearnOrder(unit);
    if (lane->order != nullptr && !FindOrdered(*lane, unit) && Walk(*lane, unit) != nullptr) {
        // What the pictures in front say is needed for those behind.
        const SWalkedUnit key = *WalkedOf(*lane).Find(WalkedOf(*lane).KeyFrameOf(unit));
        lane->order->Restart(key.unit + key.shift);
        for (std::int64_t before = key.unit; before < unit; ++before) {
            SSpan head;
            if (Locate(*lane, before, before + 1, head) != EStep::found) break;
            const auto count = static_cast<std::size_t>(std::min<std::int64_t>(head.end - head.begin, 64 << 10));
            (void)TimesOf(*lane, before, RowOf(*lane).bytes.View(head.begin, count));
        }
    }
    const CElementBytes::SPart* const part = RowOf(*lane).bytes.PartAt(span.begin);
    seek.edit_unit = span.from;
    seek.file_position = part == nullptr ? -1 : part->value + span.begin - part->begin;
    return kSuccess;
}

int CMxfSingleStreamParser::GetSampleInfo(std::int64_t editUnit, mxf_sample_info& info)
{
    SLane* const lane = FindLane(info.stream);
    if (lane == nullptr) return kOutOfRange;
    SSpan span;
    if (editUnit < 0 || Locate(*lane, editUnit, editUnit + 1, span) != EStep::found) return kNoSuchItem;
    LearnOrder(editUnit);
    STimes times = TimesOf(*lane, editUnit, {});
    const auto indexed = FindIndexed(editUnit);
    const bool isKnown = !lane->isReordered || FindOrdered(*lane, editUnit);
    const SWalkedUnit* const walked = isKnown ? nullptr : Walk(*lane, editUnit);
    if (walked != nullptr)
        times = {.displayed = editUnit + walked->shift, .delay = times.delay, .isKey = walked->isKey};
    FillSampleInfo(info, *lane, {.unit = editUnit, .editUnit = editUnit}, times);
    if (indexed && lane->track.format.type == EStreamType::picture) FillIndexed(info, *indexed);
    info.stream_offset = span.begin;
    info.size = span.end - span.begin;
    return kSuccess;
}

int CMxfSingleStreamParser::FillSampleOffset(mxf_sample_info& info)
{
    SLane* const lane = FindLane(info.stream);
    if (lane == nullptr) return kOutOfRange;
    if (info.stream_offset < 0 || Extend(RowOf(*lane), info.stream_offset) != EStep::found) return kNoSuchItem;
    const CElementBytes::SPart* const part = RowOf(*lane).bytes.PartAt(info.stream_offset);
    if (part == nullptr) return kNoSuchItem;
    info.position = part->value + info.stream_offset - part->begin;
    return kSuccess;
}

} // namespace TamrelMxf
