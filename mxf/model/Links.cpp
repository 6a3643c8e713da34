#include "mxf/model/Links.h"

#include <algorithm>
#include <array>
#include <compare>
#include <map>
#include <optional>
#include <span>

namespace TamrelMxf {
namespace {

constexpr std::size_t kDataKinds = 8;
static_assert(static_cast<std::size_t>(EDataKind::parsedText) == kDataKinds - 1);

EDataKind KindOf(const SDescriptor& descriptor)
{
    if (descriptor.picture) return EDataKind::picture;
    if (descriptor.sound) return EDataKind::sound;
    if (descriptor.data) return EDataKind::data;
    return EDataKind::unknown;
}

bool IsEssence(EDataKind kind)
{
    return kind != EDataKind::timecode && kind != EDataKind::descriptive;
}

/// The descriptors of the package's tracks: the parts of a multiple descriptor, else the one that there is.
std::vector<const SDescriptor*> PartsOf(const CMxfPackage& package)
{
    std::vector<const SDescriptor*> parts;
    if (!package.descriptor) return parts;
    if (!package.descriptor->isMultiple) parts.push_back(&*package.descriptor);
    for (const SDescriptor& part : package.descriptor->parts)
        parts.push_back(&part);
    return parts;
}

/// Descriptors to the links of one package. Each step is linear in the tracks and parts, whatever the file says.
void LinkDescriptors(const CMxfPackage& package, std::span<SStreamLink> links)
{
    std::map<std::uint32_t, SStreamLink*> byId;
    for (SStreamLink& link : links)
        if (link.track->id) byId.try_emplace(*link.track->id, &link);

    std::vector<const SDescriptor*> unlinked;
    for (const SDescriptor* part : PartsOf(package)) {
        const auto found = part->linkedTrackId ? byId.find(*part->linkedTrackId) : byId.end();
        if (found == byId.end()) {
            unlinked.push_back(part);
        } else if (found->second->descriptor == nullptr) {
            found->second->descriptor = part;
        }
    }
    // A kind that nobody knows takes what is left of the others.
    for (const bool sameKind : {true, false}) {
        std::array<std::size_t, kDataKinds> next{}; // by kind: where the search for a free track goes on
        for (const SDescriptor*& part : unlinked) {
            if (part == nullptr) continue;
            const EDataKind kind = KindOf(*part);
            std::size_t& at = next[static_cast<std::size_t>(kind)];
            const auto fits = [&](const SStreamLink& link) {
                if (link.descriptor != nullptr) return false;
                return sameKind ? link.kind == kind : link.kind == EDataKind::unknown || kind == EDataKind::unknown;
            };
            while (at < links.size() && !fits(links[at]))
                ++at;
            if (at == links.size()) continue;
            links[at].descriptor = part;
            part = nullptr;
        }
    }
    for (SStreamLink& link : links)
        if (link.kind == EDataKind::unknown && link.descriptor != nullptr) link.kind = KindOf(*link.descriptor);
}

struct STrackName {
    SUmid package;
    std::uint32_t id = 0;

    friend auto operator<=>(const STrackName&, const STrackName&) = default;
};

struct SPlay {
    const CMxfPackage* package = nullptr;
    const CMxfTrack* track = nullptr;
    const CMxfClip* clip = nullptr;
};

/// Which material clip plays a track first; the primary material package goes before the others.
using CPlays = std::map<STrackName, SPlay>;

CPlays CollectPlays(const SHeaderModel& model)
{
    CPlays plays;
    const auto collect = [&](const CMxfPackage& package) {
        for (const CMxfTrack& track : package.tracks) {
            for (const CMxfClip& clip : track.sequence.clips) {
                if (!clip.sourcePackage || clip.sourcePackage->IsZero()) continue;
                plays.try_emplace({*clip.sourcePackage, clip.sourceTrackId.value_or(0)},
                                  SPlay{&package, &track, &clip});
            }
        }
    };
    const CMxfPackage* primary = model.MaterialPackage();
    if (primary != nullptr) collect(*primary);
    for (const CMxfPackage& package : model.packages)
        if (package.kind == CMxfPackage::EKind::material && &package != primary) collect(package);
    return plays;
}

} // namespace

std::vector<SStreamLink> LinkStreams(const SHeaderModel& model)
{
    const CPlays plays = CollectPlays(model);
    std::vector<SStreamLink> streams;
    for (const CMxfPackage& package : model.packages) {
        if (package.kind != CMxfPackage::EKind::source) continue;
        const SEssenceContainerData* container = model.FindContainer(package.uid);
        if (container == nullptr && !package.IsFilePackage()) continue;
        const std::size_t first = streams.size();
        for (const CMxfTrack& track : package.tracks) {
            const EDataKind kind = track.DataKind();
            if (!IsEssence(kind) || track.FirstClip(CMxfClip::EKind::timecode) != nullptr) continue;
            SStreamLink& link = streams.emplace_back();
            link.kind = kind;
            link.package = &package;
            link.track = &track;
            if (container != nullptr) {
                link.bodySid = container->bodySid;
                link.indexSid = container->indexSid;
            }
            const auto play = plays.find({package.uid, track.id.value_or(0)});
            if (play == plays.end()) continue;
            link.materialPackage = play->second.package;
            link.materialTrack = play->second.track;
            link.materialClip = play->second.clip;
        }
        LinkDescriptors(package, std::span(streams).subspan(first));
    }
    // A track without a kind that no descriptor knows either is nothing to play.
    std::erase_if(streams, [](const SStreamLink& link) {
        return link.kind == EDataKind::unknown && link.track->number.value_or(0) == 0;
    });
    return streams;
}

EMuxingMode DetectMuxingMode(const SHeaderModel& model, const SUl& operationalPattern)
{
    if (ParseOperationalPattern(operationalPattern).IsAtom()) return EMuxingMode::singleStream;
    std::vector<std::uint32_t> bodySids;
    for (const SEssenceContainerData& container : model.essenceContainers)
        if (container.bodySid != 0) bodySids.push_back(container.bodySid);
    std::ranges::sort(bodySids);
    bodySids.erase(std::unique(bodySids.begin(), bodySids.end()), bodySids.end());
    if (bodySids.size() > 1) return EMuxingMode::partitioned;
    if (bodySids.size() == 1) return EMuxingMode::interleaved;
    const bool hasFilePackage = std::ranges::any_of(model.packages, &CMxfPackage::IsFilePackage);
    const bool playsOthers = std::ranges::any_of(model.packages, [](const CMxfPackage& package) {
        return package.kind == CMxfPackage::EKind::material &&
               std::ranges::any_of(package.tracks, [](const CMxfTrack& track) {
                   return track.FirstClip(CMxfClip::EKind::sourceClip) != nullptr;
               });
    });
    return hasFilePackage || playsOthers ? EMuxingMode::external : EMuxingMode::unknown;
}

SOperationalPattern ParseOperationalPattern(const SUl& label)
{
    constexpr std::uint64_t kPattern = 0x0D010201;

    SOperationalPattern pattern;
    if (!label.IsSmpte() || label.Item() >> 32 != kPattern) return pattern;
    pattern.itemComplexity = label.bytes[12];
    pattern.packageComplexity = label.bytes[13];
    if (!pattern.IsGeneralized()) return pattern;
    const std::uint8_t qualifier = label.bytes[14];
    pattern.hasExternalEssence = (qualifier & 0x02) != 0;
    pattern.isStreamable = (qualifier & 0x04) == 0;
    pattern.hasSeveralTracks = (qualifier & 0x08) != 0;
    return pattern;
}

std::string OperationalPatternName(const SUl& label)
{
    const SOperationalPattern pattern = ParseOperationalPattern(label);
    if (pattern.IsAtom()) return "OP-Atom";
    if (!pattern.IsGeneralized()) return "unknown";
    return {'O', 'P', static_cast<char>('0' + pattern.itemComplexity),
            static_cast<char>('a' + pattern.packageComplexity - 1)};
}

} // namespace TamrelMxf
