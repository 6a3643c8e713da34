#include "mxf/model/Timing.h"

#include "mxf/Limits.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace TamrelMxf {
namespace {

struct SExtent {
    std::int64_t editUnits = 0;
    std::optional<SRational> editRate;
};

/// The duration of the first track of a kind that states one above 0; else 0 when one states that.
std::optional<SExtent> TrackExtent(const CMxfPackage* package, EDataKind kind)
{
    std::optional<SExtent> extent;
    if (package == nullptr) return extent;
    for (const CMxfTrack& track : package->tracks) {
        if (track.DataKind() != kind) continue;
        const auto duration = track.sequence.TotalDuration();
        if (!duration || (extent && *duration == 0)) continue;
        extent = SExtent{*duration, track.editRate};
        if (*duration > 0) break;
    }
    return extent;
}

std::optional<SExtent> DescriptorExtent(const CMxfPackage* package, EDataKind kind)
{
    if (package == nullptr || !package->descriptor) return std::nullopt;
    const auto ask = [&](const SDescriptor& descriptor) -> std::optional<SExtent> {
        const bool fits = kind == EDataKind::picture ? descriptor.picture.has_value() : descriptor.sound.has_value();
        if (!fits || !descriptor.containerDuration || !descriptor.sampleRate) return std::nullopt;
        return SExtent{*descriptor.containerDuration, descriptor.sampleRate};
    };
    if (const auto extent = ask(*package->descriptor)) return extent;
    for (const SDescriptor& part : package->descriptor->parts)
        if (const auto extent = ask(part)) return extent;
    return std::nullopt;
}

std::optional<SRational> TrackRate(const CMxfPackage* package, EDataKind kind)
{
    if (package == nullptr) return std::nullopt;
    for (const CMxfTrack& track : package->tracks)
        if (track.editRate && track.DataKind() == kind) return track.editRate;
    return std::nullopt;
}

/// The rate that the duration of a file counts in.
std::optional<SRational> ClipRate(const SHeaderModel& model)
{
    for (const EDataKind kind : {EDataKind::picture, EDataKind::sound})
        for (const CMxfPackage* package : {model.MaterialPackage(), model.PrimaryFilePackage()})
            if (const auto rate = TrackRate(package, kind)) return rate;
    return std::nullopt;
}

SDuration FromTracks(const SHeaderModel& model, EDataKind kind, std::optional<SRational> rate)
{
    using ESource = SDuration::ESource;
    const CMxfPackage* file = model.PrimaryFilePackage();
    SDuration duration;
    for (const auto& extent :
         {TrackExtent(model.MaterialPackage(), kind), TrackExtent(file, kind), DescriptorExtent(file, kind)}) {
        if (!extent || (duration.source != ESource::none && extent->editUnits == 0)) continue;
        const SRational own = extent->editRate.value_or(rate.value_or(SRational{}));
        const SRational wanted = rate.value_or(own);
        const auto scaled = own == wanted ? std::optional{extent->editUnits} : Rescale(extent->editUnits, own, wanted);
        if (!scaled) continue;
        duration = {.editUnits = *scaled,
                    .editRate = wanted,
                    .source = kind == EDataKind::picture ? ESource::picture : ESource::sound};
        if (*scaled > 0) break;
    }
    return duration;
}

const CMxfClip* FirstSourceClip(const CMxfPackage& package, std::optional<EDataKind> kind, const CMxfTrack*& track)
{
    for (const CMxfTrack& candidate : package.tracks) {
        if (kind && candidate.DataKind() != *kind) continue;
        const CMxfClip* clip = candidate.FirstClip(CMxfClip::EKind::sourceClip);
        if (clip == nullptr || !clip->sourcePackage || clip->sourcePackage->IsZero()) continue;
        track = &candidate;
        return clip;
    }
    return nullptr;
}

/// The first clip of the package that names another one, of its picture before its sound, and the track it stands on.
const CMxfClip* FirstSourceClip(const CMxfPackage& package, const CMxfTrack*& track)
{
    for (const auto kind : {std::optional{EDataKind::picture}, std::optional{EDataKind::sound}, {}})
        if (const CMxfClip* clip = FirstSourceClip(package, kind, track)) return clip;
    return nullptr;
}

/// Edit units as frames of a timecode: edit units of the track that holds it, times the frames in each, normally one.
std::optional<std::int64_t> ToFrames(std::int64_t position, const SRational& from, const CMxfTrack& track,
                                     std::uint16_t base)
{
    const SRational rate = track.editRate.value_or(from);
    const auto scaled = Rescale(position, from, rate);
    const std::int64_t rounded = (static_cast<std::int64_t>(rate.num) + rate.den / 2) / std::max(rate.den, 1);
    if (!scaled || base == 0 || rounded == 0 || rounded == base) return scaled;
    return Rescale(*scaled, {static_cast<std::int32_t>(rounded), 1}, {base, 1});
}

STimecode ToTimecode(const CMxfPackage& package, const CMxfTrack& track, const CMxfClip& clip)
{
    return {.start = clip.startTimecode.value_or(0),
            .base = clip.timecodeBase.value_or(0),
            .dropFrame = clip.dropFrame.value_or(false),
            .trackNumber = track.number.value_or(0),
            .editRate = track.editRate.value_or(SRational{}),
            .package = &package};
}

const CMxfTrack* TimecodeTrack(const CMxfPackage& package)
{
    const auto found = std::ranges::find_if(
        package.tracks, [](const CMxfTrack& track) { return track.FirstClip(CMxfClip::EKind::timecode) != nullptr; });
    return found == package.tracks.end() ? nullptr : &*found;
}

/// The clip of another package that plays at a position of a track, and the position inside it; else the first one.
struct SPlace {
    const CMxfClip* clip = nullptr;
    std::int64_t within = 0;
};
SPlace SourceClipAt(const CMxfTrack& track, std::int64_t position)
{
    SPlace place;
    std::int64_t start = 0; // of the clip at hand
    for (const CMxfClip& clip : track.sequence.clips) {
        const bool isReached = start <= position;
        if (place.clip != nullptr && !isReached) break;
        if (clip.kind == CMxfClip::EKind::sourceClip && clip.sourcePackage && !clip.sourcePackage->IsZero())
            place = {&clip, isReached ? position - start : 0};
        if (!clip.duration || __builtin_add_overflow(start, *clip.duration, &start)) break;
    }
    return place;
}

/// Follows the clips from `package` down, adding up where they start, to the first package that has a timecode.
std::optional<STimecode> TimecodeDownTheChain(const SHeaderModel& model, const CMxfPackage& package)
{
    const CMxfTrack* track = nullptr;
    SPlace place{FirstSourceClip(package, track)};
    for (int hop = 0; place.clip != nullptr && hop < kMaxPackageChain; ++hop) {
        const SRational rate = track->editRate.value_or(SRational{});
        std::int64_t position = 0;
        if (__builtin_add_overflow(place.within, place.clip->startPosition.value_or(0), &position)) break;
        const CMxfPackage* source = model.FindPackage(*place.clip->sourcePackage);
        if (source == nullptr) break;
        if (const auto timecode = TimecodeAt(*source, position, rate)) return timecode;

        track = place.clip->sourceTrackId ? source->FindTrack(*place.clip->sourceTrackId) : nullptr;
        if (track == nullptr && FirstSourceClip(*source, track) == nullptr) break;
        place = SourceClipAt(*track, Rescale(position, rate, track->editRate.value_or(rate)).value_or(position));
    }
    return std::nullopt;
}

SMarks MarksOf(const CMxfPackage& package)
{
    SMarks marks{.markIn = package.markIn, .markOut = package.markOut};
    // A second property, "Timebase Track Id", is spoken of as a stand-in; no register at hand has a label for it, so it
    // cannot be found in a file.
    marks.timebaseTrackId = package.timebaseReferenceTrackId.value_or(0);
    const auto fill = [&](const std::optional<std::int64_t>& in, const std::optional<std::int64_t>& out,
                          const std::optional<std::uint32_t>& trackId) {
        if (!in && !out) return;
        if (!marks.markIn) marks.markIn = in;
        if (!marks.markOut) marks.markOut = out;
        if (marks.timebaseTrackId == 0) marks.timebaseTrackId = trackId.value_or(0);
    };
    if (package.marker) fill(package.marker->markIn, package.marker->markOut, package.marker->timebaseTrackId);
    for (const CMxfTrack& track : package.tracks) {
        if (marks.markIn || marks.markOut) break;
        fill(track.packageMarkIn, track.packageMarkOut, track.id);
    }
    if (!marks.markIn) marks.markIn = package.materialEndRelativeTime;
    return marks;
}

} // namespace

std::optional<std::int64_t> Rescale(std::int64_t value, const SRational& from, const SRational& to, ERounding rounding)
{
    if (!from.IsPositive() || !to.IsPositive()) return std::nullopt;
    // value * to / from, as value * a / b with a and b below 2^62.
    std::int64_t a = static_cast<std::int64_t>(to.num) * from.den;
    std::int64_t b = static_cast<std::int64_t>(to.den) * from.num;
    const std::int64_t common = std::gcd(a, b);
    a /= common;
    b /= common;
    std::int64_t whole = 0;
    std::int64_t part = 0;
    if (__builtin_mul_overflow(value / b, a, &whole) || __builtin_mul_overflow(value % b, a, &part))
        return std::nullopt;
    // |part / b| < a; round the rest half away from zero.
    std::int64_t rounded = part / b;
    const std::int64_t rest = part % b;
    const bool isNearest = rounding == ERounding::nearest;
    if (rest > 0 && (!isNearest || rest >= b - rest)) ++rounded;
    if (rest < 0 && isNearest && -rest >= b + rest) --rounded;
    if (__builtin_add_overflow(whole, rounded, &whole)) return std::nullopt;
    return whole;
}

SDuration CalculateDuration(const SHeaderModel& model, const SDurationSources& sources)
{
    using ESource = SDuration::ESource;
    std::optional<SRational> rate = ClipRate(model);
    if (!rate && sources.footer != nullptr) rate = ClipRate(*sources.footer);
    std::optional<SDuration> zero; // said, but not believed while others are left to ask
    const auto believe = [&](const SDuration& duration) {
        if (duration.source == ESource::none) return false;
        if (duration.editUnits > 0) return true;
        if (!zero) zero = duration;
        return false;
    };
    for (const EDataKind kind : {EDataKind::picture, EDataKind::sound})
        if (const SDuration duration = FromTracks(model, kind, rate); believe(duration)) return duration;
    if (sources.footer != nullptr) {
        for (const EDataKind kind : {EDataKind::picture, EDataKind::sound}) {
            SDuration duration = FromTracks(*sources.footer, kind, rate);
            if (duration.source != ESource::none) duration.source = ESource::footer;
            if (believe(duration)) return duration;
        }
    }
    const auto scaled = [&](std::int64_t units, const SRational& own, ESource source) {
        SDuration duration{.editUnits = units, .editRate = own, .source = source};
        if (!rate || own == *rate) return duration;
        const auto converted = Rescale(units, own, *rate);
        return converted ? SDuration{.editUnits = *converted, .editRate = *rate, .source = source} : SDuration{};
    };
    if (sources.index && sources.index->editUnits >= 0) {
        const SDuration duration = scaled(sources.index->editUnits, sources.index->editRate, ESource::index);
        if (believe(duration)) return duration;
    }
    if (sources.essence && sources.essence->editUnits >= 0) {
        const SDuration duration = scaled(sources.essence->editUnits, sources.essence->editRate, ESource::essence);
        if (believe(duration)) return duration;
    }
    return zero.value_or(SDuration{.editRate = rate.value_or(SRational{})});
}

std::optional<STimecode> FirstTimecode(const CMxfPackage& package)
{
    const CMxfTrack* track = TimecodeTrack(package);
    if (track == nullptr) return std::nullopt;
    return ToTimecode(package, *track, *track->FirstClip(CMxfClip::EKind::timecode));
}

std::optional<STimecode> TimecodeAt(const CMxfPackage& package, std::int64_t position, const SRational& rate)
{
    const CMxfTrack* track = TimecodeTrack(package);
    if (track == nullptr) return std::nullopt;
    const SRational own = track->editRate.value_or(rate);
    position = Rescale(position, rate, own).value_or(position);

    // The last component that has begun, or the first one.
    const CMxfClip* component = track->FirstClip(CMxfClip::EKind::timecode);
    std::int64_t within = position;
    std::int64_t start = 0; // of the clip at hand
    for (const CMxfClip& clip : track->sequence.clips) {
        if (start > position) break;
        if (clip.kind == CMxfClip::EKind::timecode) {
            component = &clip;
            within = position - start;
        }
        if (!clip.duration || __builtin_add_overflow(start, *clip.duration, &start)) break;
    }
    STimecode timecode = ToTimecode(package, *track, *component);
    const auto frames = ToFrames(within, own, *track, timecode.base);
    if (frames && __builtin_add_overflow(timecode.start, *frames, &timecode.start)) return std::nullopt;
    return timecode;
}

SStartTimecode FindStartTimecode(const SHeaderModel& model)
{
    using ESource = SStartTimecode::ESource;
    const CMxfPackage* material = model.MaterialPackage();
    const CMxfPackage* file = model.PrimaryFilePackage();
    const auto ofMaterial = material == nullptr ? std::nullopt : FirstTimecode(*material);
    const auto ofFile = file == nullptr ? std::nullopt : FirstTimecode(*file);

    SStartTimecode found;
    if (ofFile) found.sourceStart = ofFile->start;
    if (ofMaterial && ofMaterial->start != 0) {
        found.start = *ofMaterial;
        found.source = ESource::material;
        return found;
    }
    if (ofFile) {
        found.start = *ofFile;
        if (found.start.base == 0 && ofMaterial) found.start.base = ofMaterial->base;
        found.source = ESource::file;
        const CMxfTrack* track = nullptr;
        const CMxfClip* clip = material == nullptr ? nullptr : FirstSourceClip(*material, track);
        if (clip != nullptr && clip->startPosition.value_or(0) > 0) {
            const CMxfTrack& timecodeTrack = *TimecodeTrack(*file);
            const SRational rate = track->editRate.value_or(timecodeTrack.editRate.value_or(SRational{}));
            const auto frames = ToFrames(*clip->startPosition, rate, timecodeTrack, ofFile->base);
            if (frames && *frames <= found.start.start) found.start.start -= *frames;
        }
        return found;
    }
    if (ofMaterial) {
        found.start = *ofMaterial;
        found.source = ESource::material;
        return found;
    }
    for (const CMxfPackage* top : {material, file}) {
        const auto timecode = top == nullptr ? std::nullopt : TimecodeDownTheChain(model, *top);
        if (!timecode) continue;
        found.start = *timecode;
        found.source = ESource::physical;
        break;
    }
    return found;
}

SMarks FindMarks(const SHeaderModel& model)
{
    const CMxfPackage* material = model.MaterialPackage();
    const SMarks own = material == nullptr ? SMarks{} : MarksOf(*material);
    if (own.markIn || own.markOut) return own;
    for (const CMxfPackage& package : model.packages)
        if (const SMarks marks = MarksOf(package); marks.markIn || marks.markOut) return marks;
    return own;
}

} // namespace TamrelMxf
