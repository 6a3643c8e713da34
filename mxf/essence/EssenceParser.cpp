#include "mxf/essence/EssenceParser.h"

#include "mxf/model/Timing.h"

#include <algorithm>
#include <limits>
#include <utility>

SMediaStream::~SMediaStream() = default;

namespace TamrelMxf {
namespace {

std::int64_t Minus(std::int64_t a, std::int64_t b)
{
    std::int64_t result = 0;
    return __builtin_sub_overflow(a, b, &result) ? std::numeric_limits<std::int64_t>::min() : result;
}

} // namespace

CEssenceParser::CEssenceParser(const SEssenceContext& context, std::vector<SEssenceTrack> tracks, bool countsPackages)
    : context_{context}, countsPackages_{countsPackages}
{
    lanes_.reserve(tracks.size());
    for (SEssenceTrack& track : tracks) {
        SLane& lane = lanes_.emplace_back();
        lane.isReordered = IsReordered(track.format);
        lane.hasOwnFrames = HasOwnFrames(track.format);
        lane.order = MakePictureOrder(track.format);
        lane.track = std::move(track);
    }
}

CEssenceParser::~CEssenceParser() = default;

CEssenceParser::SLane* CEssenceParser::FindLane(std::uint32_t stream)
{
    const auto found = std::ranges::find(lanes_, stream, [](const SLane& lane) { return lane.track.stream; });
    return found == lanes_.end() ? nullptr : &*found;
}

CEssenceParser::SLane& CEssenceParser::LeadingLane()
{
    const auto found = std::ranges::find(lanes_, true, &SLane::isReordered);
    return found == lanes_.end() ? lanes_.front() : *found;
}

int CEssenceParser::AddStream(std::uint32_t stream, SMediaStream* receiver)
{
    if (receiver == nullptr) return kNullArgument;
    SLane* const lane = FindLane(stream);
    if (lane == nullptr || lane->receiver != nullptr) return kOutOfRange;
    lane->receiver = receiver;
    return kSuccess;
}

int CEssenceParser::RemoveStream(std::uint32_t stream)
{
    SLane* const lane = FindLane(stream);
    if (lane == nullptr || lane->receiver == nullptr) return kOutOfRange;
    lane->receiver = nullptr;
    return kSuccess;
}

const SRational& CEssenceParser::Rate()
{
    if (rate_.IsPositive()) return rate_;
    if (context_.index != nullptr) rate_ = context_.index->EditRate(IndexSid());
    if (rate_.IsPositive()) return rate_;
    for (const SLane& lane : lanes_) {
        const SRational& own = lane.track.format.editRate;
        if (!own.IsPositive()) continue;
        if (lane.track.format.type == EStreamType::picture) return rate_ = own;
        if (!rate_.IsPositive() || own.ToDouble() < rate_.ToDouble()) rate_ = own;
    }
    return rate_;
}

std::int64_t CEssenceParser::ToLane(const SLane& lane, std::int64_t unit)
{
    const SRational& rate = Rate();
    const SRational& own = lane.track.format.editRate;
    if (rate == own || !countsPackages_) return unit;
    // A package has the frames of sound that begin in its time.
    return Rescale(unit, rate, own, lane.hasOwnFrames ? ERounding::up : ERounding::nearest).value_or(unit);
}

std::int64_t CEssenceParser::ToContainer(const SLane& lane, std::int64_t editUnit)
{
    const SRational& rate = Rate();
    const SRational& own = lane.track.format.editRate;
    if (rate == own || !countsPackages_) return editUnit;
    std::int64_t unit = Rescale(editUnit, own, rate).value_or(editUnit);
    if (ToLane(lane, unit) > editUnit) --unit; // rounded up: the unit before holds it
    return unit;
}

std::optional<SIndexedUnit> CEssenceParser::FindIndexed(std::int64_t unit) const
{
    if (context_.index == nullptr || IndexSid() == 0) return std::nullopt;
    return context_.index->Find(IndexSid(), unit);
}

std::optional<SIndexedUnit> CEssenceParser::FindOrdered(const SLane& lane, std::int64_t unit)
{
    auto indexed = FindIndexed(unit);
    if (!indexed || lane.order == nullptr) return indexed;
    const SStreamFormat& format = lane.track.format;
    if (format.essenceKind == EEssenceKind::avc) {
        if (format.reorderDepth == 0) return indexed;
        if (!isOrderIndexed_) isOrderIndexed_ = context_.index->ReorderDelay(IndexSid()) > 0;
    }
    return isOrderIndexed_.value_or(true) ? indexed : std::nullopt;
}

/// Nothing in a stream of MPEG promises that pictures are moved: where the table moves none, although some depend on
/// others, the first ones are looked at.
void CEssenceParser::LearnOrder(std::int64_t unit)
{
    constexpr std::int64_t kReach = 16, kFirst = 16; // pictures, about a group
    const auto isMpeg = [](const SLane& lane) { return lane.track.format.essenceKind == EEssenceKind::mpegPicture; };
    const auto lane = std::ranges::find_if(lanes_, isMpeg);
    if (isOrderIndexed_ || lane == lanes_.end() || lane->order == nullptr) return;
    if (learntAt_ && unit >= *learntAt_ - kReach && unit <= *learntAt_ + kReach) return;
    learntAt_ = unit;
    bool isEachKey = true;
    for (std::int64_t near = std::max<std::int64_t>(unit - kReach, 0); near < unit + 2 * kReach; ++near) {
        const auto indexed = FindIndexed(near);
        if (!indexed) continue;
        isEachKey = isEachKey && indexed->isKey;
        if (indexed->entry.temporalOffset == 0) continue;
        isOrderIndexed_ = true;
        return;
    }
    if (isEachKey || !context_.input.IsComplete()) return;
    isOrderIndexed_ = true;
    if (context_.index->ReorderDelay(IndexSid()) > 0) return;
    (void)Walk(*lane, kFirst - 1);
    for (std::int64_t first = 0; first < std::min(kFirst, WalkedOf(*lane).Count()); ++first)
        if (WalkedOf(*lane).Find(first)->shift != 0) isOrderIndexed_ = false;
}

CEssenceParser::STimes CEssenceParser::TimesOf(SLane& lane, std::int64_t unit, std::span<const std::uint8_t> bytes)
{
    STimes times{.displayed = unit};
    if (!lane.isReordered) return times; // sound, data, and pictures that stand alone
    const auto ordered = FindOrdered(lane, unit);
    const auto indexed = ordered ? ordered : FindIndexed(unit);
    times.isKey = indexed ? indexed->isKey : unit == 0; // where nothing tells of the others
    if (ordered) {
        times.displayed = ordered->displayed;
        if (!lane.delay && (lane.order == nullptr || !bytes.empty())) {
            // As much as the stream allows: so a stream that is pushed, without its tables, has the same times.
            if (lane.order != nullptr) (void)lane.order->Describe(bytes, unit);
            const std::int64_t allowed = lane.order != nullptr ? lane.order->Delay() : 0;
            lane.delay = std::max(context_.index->ReorderDelay(IndexSid()), allowed);
        }
    } else if (lane.order != nullptr && !bytes.empty()) {
        if (lane.ordered != unit) {
            lane.described = lane.order->Describe(bytes, unit).value_or(kUnreadable);
            lane.ordered = unit;
        }
        times.displayed = lane.described.displayed.value_or(unit);
        if (!indexed) times.isKey = lane.described.isKey;
        if (!lane.delay) lane.delay = lane.order->Delay();
    }
    times.delay = lane.delay ? *lane.delay : ordered ? context_.index->ReorderDelay(IndexSid()) : 0;
    return times;
}

void CEssenceParser::Note(SWalkedUnit& met, std::int64_t unit, const std::optional<SPicturePlace>& order)
{
    met.isKey = order ? order->isKey : unit == 0; // where nothing reads the order
    if (order && order->displayed) met.shift = static_cast<std::int32_t>(*order->displayed - unit);
}

std::int64_t CEssenceParser::StoredAt(SLane& lane, std::int64_t displayed)
{
    if (!lane.isReordered || displayed < 0) return displayed;
    LearnOrder(displayed);
    if (FindOrdered(lane, displayed)) {
        const auto stored = context_.index->StoredAt(IndexSid(), displayed);
        if (stored) return *stored;
    }
    constexpr std::int64_t kLookAhead = 64; // a picture is stored soon after its turn, if not before
    (void)Walk(lane, displayed + kLookAhead);
    return WalkedOf(lane).StoredAt(displayed);
}

std::int64_t CEssenceParser::KeyFrameOf(SLane& lane, std::int64_t unit)
{
    if (!lane.isReordered) return unit;
    // A table without the order does not know of pictures that are shown before the key frame in front of them.
    if (const auto ordered = FindOrdered(lane, unit)) return ordered->keyFrame;
    return Walk(lane, unit) == nullptr ? unit : WalkedOf(lane).KeyFrameOf(unit);
}

std::int64_t CEssenceParser::TargetOf(SLane& lane, const mxf_dmuxer_seek& seek)
{
    constexpr std::int64_t kMost = std::int64_t{1} << 61; // far beyond every clip, and safe to count on from
    const bool isStored = (seek.flags & mxf_seek_stored) != 0;
    std::int64_t editUnit = seek.position;
    if (!isStored && __builtin_add_overflow(editUnit, lane.track.offset, &editUnit)) return -1;
    if (editUnit < 0 || editUnit > kMost) return -1;
    std::int64_t unit = ToContainer(lane, editUnit);
    if (!isStored) unit = StoredAt(lane, unit);
    if (unit < 0 || (seek.flags & mxf_seek_key_frame) == 0) return unit;
    LearnOrder(unit);
    return KeyFrameOf(lane, unit);
}

CEssenceParser::SPlayed CEssenceParser::PlayedAt(const SLane& lane, const SPiece& piece, const STimes& times)
{
    const std::int64_t offset = lane.track.offset;
    if (!lane.isReordered) return {Minus(piece.editUnit, offset), Minus(piece.editUnit, offset)};
    const std::int64_t pts = Minus(ToLane(lane, times.displayed), offset);
    return {pts, std::min(pts, Minus(ToLane(lane, Minus(piece.unit, times.delay)), offset))};
}

bool CEssenceParser::Deliver(SLane& lane, const SPiece& piece)
{
    const STimes times = TimesOf(lane, piece.unit, piece.bytes);
    const SPlayed played = PlayedAt(lane, piece, times);
    mxf_sample sample{};
    sample.stream = lane.track.stream;
    sample.edit_unit = piece.editUnit;
    sample.pts = played.pts;
    sample.dts = played.dts;
    sample.duration = piece.duration;
    sample.rate_num = lane.track.format.editRate.num;
    sample.rate_den = lane.track.format.editRate.den;
    sample.position = piece.position;
    sample.size = static_cast<std::uint32_t>(piece.bytes.size());
    sample.data = piece.bytes.data();
    if (times.isKey) sample.flags |= mxf_sample_key;
    if (lane.expected != piece.editUnit) sample.flags |= mxf_sample_discontinuity;
    if (piece.isLast) sample.flags |= mxf_sample_last;
    if (piece.isDamaged) sample.flags |= mxf_sample_damaged;
    if (lane.receiver->TakeSample(sample) != 0) return false;
    lane.expected = piece.editUnit + piece.duration;
    return true;
}

void CEssenceParser::FillSampleInfo(mxf_sample_info& info, const SLane& lane, const SPiece& piece, const STimes& times)
{
    const SPlayed played = PlayedAt(lane, piece, times);
    info = {.stream = info.stream,
            .flags = times.isKey ? std::uint32_t{mxf_sample_key} : 0U,
            .edit_unit = piece.editUnit,
            .pts = played.pts,
            .dts = played.dts,
            .body_sid = BodySid(),
            .stream_offset = -1,
            .position = -1,
            .size = -1,
            .index_flags = 0,
            .temporal_offset = 0,
            .key_frame_offset = 0};
}

void CEssenceParser::FillIndexed(mxf_sample_info& info, const SIndexedUnit& indexed)
{
    info.stream_offset = indexed.streamOffset;
    info.size = indexed.size;
    info.index_flags = indexed.entry.flags;
    info.temporal_offset = indexed.entry.temporalOffset;
    info.key_frame_offset = indexed.entry.keyFrameOffset;
}

void CEssenceParser::Interrupt()
{
    for (SLane& lane : lanes_) {
        lane.expected = -1;
        lane.ordered = -1;
        if (lane.order) lane.order->Restart(std::nullopt);
    }
}

int CEssenceParser::FillSampleOffset(mxf_sample_info& info)
{
    info.position = context_.partitions.TranslateOffset(info.stream_offset, BodySid());
    return info.position < 0 ? kNoSuchItem : kSuccess;
}

} // namespace TamrelMxf
