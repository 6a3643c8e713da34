#include "cli/MxfFacts.h"
#include "cli/MxfWords.h"
#include "cli/Timecodes.h"
#include "platform/Format.h"

namespace zanfcp::cli {
namespace {

using namespace TamrelMxf;

Json valueFacts(const std::vector<STaggedValue>& values)
{
    Json list = Json::array();
    for (const STaggedValue& value : values)
        list.push_back({{"name", value.name}, {"value", value.value}});
    return list;
}

std::string_view className(const SSetDef* definition)
{
    return definition == nullptr ? std::string_view{"unknown"} : definition->name;
}

std::string_view physicalWord(SPhysicalDescriptor::EKind kind)
{
    switch (kind) {
    case SPhysicalDescriptor::EKind::other: return "other";
    case SPhysicalDescriptor::EKind::tape: return "tape";
    case SPhysicalDescriptor::EKind::film: return "film";
    case SPhysicalDescriptor::EKind::imported: return "imported file";
    case SPhysicalDescriptor::EKind::recording: return "recording";
    case SPhysicalDescriptor::EKind::auxiliary: return "auxiliary";
    }
    return {};
}

Json physicalFacts(const std::optional<SPhysicalDescriptor>& physical)
{
    if (!physical) return nullptr;
    return {{"kind", physicalWord(physical->kind)},
            {"manufacturer", maybe(physical->manufacturer)},
            {"stock", maybe(physical->stock)},
            {"batchNumber", maybe(physical->batchNumber)},
            {"minutes", maybe(physical->minutes)},
            {"frameRate", maybe(physical->frameRate)},
            {"aspectRatio", physical->aspectRatio ? rateFacts(*physical->aspectRatio) : Json(nullptr)},
            {"mimeType", maybe(physical->mimeType)}};
}

Json descriptorFacts(const std::optional<SDescriptor>& descriptor)
{
    if (!descriptor) return nullptr;
    return {{"class", className(descriptor->definition)},
            {"parts", descriptor->parts.size()},
            {"physical", physicalFacts(descriptor->physical)},
            {"locators", locatorFacts(*descriptor)}};
}

Json componentFacts(const SHeaderModel& model, const CMxfClip& clip)
{
    Json json;
    json["kind"] = word(clip.kind);
    json["class"] = className(clip.definition);
    json["duration"] = maybe(clip.duration);
    switch (clip.kind) {
    case CMxfClip::EKind::sourceClip: {
        const bool isEnd = !clip.sourcePackage || clip.sourcePackage->IsZero();
        json["sourcePackage"] = isEnd ? Json(nullptr) : packageIndex(model, model.FindPackage(*clip.sourcePackage));
        json["sourceUmid"] = isEnd ? Json(nullptr) : Json(ToText(*clip.sourcePackage));
        json["sourceTrackId"] = maybe(clip.sourceTrackId);
        json["startPosition"] = maybe(clip.startPosition);
        break;
    }
    case CMxfClip::EKind::timecode: {
        const std::uint16_t base = clip.timecodeBase.value_or(0);
        json["label"] = maybe(labelAtBase(clip.startTimecode.value_or(0), base, clip.dropFrame.value_or(false)));
        json["start"] = maybe(clip.startTimecode);
        json["base"] = maybe(clip.timecodeBase);
        json["dropFrame"] = maybe(clip.dropFrame);
        break;
    }
    case CMxfClip::EKind::descriptive:
        json["framework"] = clip.framework ? Json(className(clip.framework->definition)) : Json(nullptr);
        [[fallthrough]];
    case CMxfClip::EKind::event:
        json["position"] = maybe(clip.eventStart);
        json["comment"] = maybe(clip.comment);
        json["trackIds"] = clip.trackIds;
        break;
    default: json["alternatives"] = clip.alternatives.size(); break;
    }
    json["comments"] = valueFacts(clip.comments);
    return json;
}

Json trackFacts(const SHeaderModel& model, const CMxfTrack& track)
{
    Json components = Json::array();
    for (const CMxfClip& clip : track.sequence.clips)
        components.push_back(componentFacts(model, clip));
    Json json;
    json["id"] = maybe(track.id);
    json["number"] = track.number ? Json(format("%08X", *track.number)) : Json(nullptr);
    json["name"] = maybe(track.name);
    json["kind"] = word(track.kind);
    json["holds"] = word(track.DataKind());
    json["editRate"] = track.editRate ? rateFacts(*track.editRate) : Json(nullptr);
    json["origin"] = maybe(track.origin);
    json["duration"] = maybe(track.sequence.TotalDuration());
    json["markIn"] = maybe(track.markIn);
    json["markOut"] = maybe(track.markOut);
    json["packageMarkIn"] = maybe(track.packageMarkIn);
    json["packageMarkOut"] = maybe(track.packageMarkOut);
    json["components"] = std::move(components);
    return json;
}

} // namespace

Json packageFacts(const MxfFile& file)
{
    const SHeaderModel& model = file.demuxer->Model();
    Json list = Json::array();
    for (const CMxfPackage& package : model.packages) {
        Json tracks = Json::array();
        for (const CMxfTrack& track : package.tracks)
            tracks.push_back(trackFacts(model, track));
        Json json;
        json["index"] = list.size();
        json["kind"] = word(package.kind);
        json["class"] = className(package.definition);
        json["umid"] = ToText(package.uid);
        json["name"] = maybe(package.name);
        json["created"] = dateFacts(package.created);
        json["modified"] = dateFacts(package.modified);
        json["usage"] = labelFacts(package.usage);
        json["markIn"] = maybe(package.markIn);
        json["markOut"] = maybe(package.markOut);
        json["comments"] = valueFacts(package.comments);
        json["attributes"] = valueFacts(package.attributes);
        json["descriptor"] = descriptorFacts(package.descriptor);
        json["tracks"] = std::move(tracks);
        list.push_back(std::move(json));
    }
    return list;
}

} // namespace zanfcp::cli
