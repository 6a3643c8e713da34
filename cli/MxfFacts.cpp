#include "cli/MxfFacts.h"

#include "cli/MxfWords.h"
#include "cli/Timecodes.h"
#include "mxf/demuxer/Frameworks.h"
#include "platform/Format.h"

#include <cmath>

namespace zanfcp::cli {
namespace {

using namespace TamrelMxf;

Json patternFacts(const SUl& label)
{
    const SOperationalPattern pattern = ParseOperationalPattern(label);
    Json json;
    json["name"] = OperationalPatternName(label);
    json["label"] = ToText(label);
    const std::string_view name = labelName(label);
    json["description"] = name.empty() ? Json(nullptr) : Json(name);
    const bool isQualified = pattern.IsGeneralized(); // the qualifier bits are defined for these alone
    json["streamable"] = isQualified ? Json(pattern.isStreamable) : Json(nullptr);
    json["externalEssence"] = isQualified ? Json(pattern.hasExternalEssence) : Json(nullptr);
    json["severalTracks"] = isQualified ? Json(pattern.hasSeveralTracks) : Json(nullptr);
    return json;
}

std::string statusText(EPartitionStatus status)
{
    const std::string_view name = word(status);
    return name.empty() ? format("unknown (%02Xh)", static_cast<unsigned>(status)) : std::string(name);
}

Json durationFacts(const SDuration& duration, const STimecode& timecode)
{
    const bool isKnown = duration.editUnits >= 0;
    const bool hasRate = duration.editRate.IsPositive();
    Json json;
    json["editUnits"] = isKnown ? Json(duration.editUnits) : Json(nullptr);
    json["editRate"] = rateFacts(duration.editRate);
    json["seconds"] = nullptr;
    json["label"] = nullptr;
    json["from"] = word(duration.source);
    if (!isKnown || !hasRate) return json;
    json["seconds"] = static_cast<double>(duration.editUnits) * duration.editRate.den / duration.editRate.num;
    const auto frames = Rescale(duration.editUnits, duration.editRate, timecode.editRate);
    if (frames) json["label"] = maybe(labelAtBase(*frames, timecode.base, timecode.dropFrame));
    return json;
}

Json startFacts(const SStartTimecode& start)
{
    if (start.source == SStartTimecode::ESource::none) return nullptr;
    const STimecode& timecode = start.start;
    Json json;
    json["label"] = maybe(labelAtBase(timecode.start, timecode.base, timecode.dropFrame));
    json["frames"] = timecode.start;
    json["base"] = timecode.base;
    json["dropFrame"] = timecode.dropFrame;
    json["editRate"] = rateFacts(timecode.editRate);
    json["from"] = word(start.source);
    return json;
}

Json partitionFacts(const MxfFile& file)
{
    const PartitionList list = listPartitions(file);
    Json entries = Json::array();
    for (const PartitionList::Entry& entry : list.entries) {
        Json json{{"offset", entry.offset}};
        if (entry.pack == nullptr) { // the same keys, so that who reads them needs no second way
            for (const char* key : {"kind", "status", "headerBytes", "indexBytes", "bodySid", "indexSid", "bodyOffset",
                                    "kagSize", "version", "metadata"})
                json[key] = nullptr;
            entries.push_back(std::move(json));
            continue;
        }
        const CPartitionPack& pack = *entry.pack;
        json["kind"] = word(pack.kind);
        json["status"] = statusText(pack.status);
        json["headerBytes"] = pack.extent.headerByteCount;
        json["indexBytes"] = pack.extent.indexByteCount;
        json["bodySid"] = pack.bodySID;
        json["indexSid"] = pack.indexSID;
        json["bodyOffset"] = pack.bodyOffset;
        json["kagSize"] = pack.kagSize;
        json["version"] = std::to_string(pack.majorVersion) + "." + std::to_string(pack.minorVersion);
        json["metadata"] = entry.offset == file.demuxer->Partitions().MetadataPartition()->extent.position;
        entries.push_back(std::move(json));
    }
    Json json;
    json["way"] = list.way == PartitionList::Way::randomIndexPack ? "random index pack"
                  : list.way == PartitionList::Way::links         ? "links from the footer"
                                                                  : "walk from the start";
    json["whole"] = list.isWhole;
    json["entries"] = std::move(entries);
    return json;
}

Json identificationFacts(const SHeaderModel& model)
{
    Json list = Json::array();
    for (const SIdentification& identification : model.identifications) {
        Json json;
        json["company"] = maybe(identification.companyName);
        json["product"] = maybe(identification.productName);
        json["version"] = maybe(identification.versionString);
        const auto version = [](const std::optional<SProductVersion>& stated) {
            return stated ? Json(Values::ToText(*stated)) : Json(nullptr);
        };
        json["productVersion"] = version(identification.productVersion);
        json["toolkitVersion"] = version(identification.toolkitVersion);
        json["platform"] = maybe(identification.platform);
        json["date"] = dateFacts(identification.modificationDate);
        json["productUid"] = identification.productUid ? Json(ToText(*identification.productUid)) : Json(nullptr);
        list.push_back(std::move(json));
    }
    return list;
}

Json markerFacts(const SHeaderModel& model)
{
    Json list = Json::array();
    for (const SPackageMarker& marker : model.markers)
        list.push_back({{"identifier", ToText(marker.identifier)},
                        {"package", marker.package ? Json(ToText(*marker.package)) : Json(nullptr)},
                        {"in", maybe(marker.markIn)},
                        {"out", maybe(marker.markOut)},
                        {"timebaseTrackId", maybe(marker.timebaseTrackId)}});
    return list;
}

Json frameworkFacts(const SHeaderModel& model)
{
    const CFrameworkList frameworks{model};
    Json list = Json::array();
    for (const mxf_dmd_framework& framework : frameworks.Records()) {
        Json properties = Json::array();
        for (std::uint32_t i = 0; i < framework.property_count; ++i)
            properties.push_back({{"name", framework.properties[i].name}, {"value", framework.properties[i].value}});
        list.push_back({{"class", maybe(std::string(framework.class_name))},
                        {"instanceUid", ToText(SUUID::From(framework.instance_uid))},
                        {"trackId", framework.track_id},
                        {"material", framework.material != 0},
                        {"start", framework.event_start < 0 ? Json(nullptr) : Json(framework.event_start)},
                        {"duration", framework.duration < 0 ? Json(nullptr) : Json(framework.duration)},
                        {"comment", maybe(std::string(framework.comment))},
                        {"properties", std::move(properties)}});
    }
    return list;
}

Json containerFacts(const SHeaderModel& model)
{
    Json list = Json::array();
    for (const SEssenceContainerData& container : model.essenceContainers)
        list.push_back({{"package", packageIndex(model, model.FindPackage(container.linkedPackage))},
                        {"bodySid", container.bodySid},
                        {"indexSid", container.indexSid}});
    return list;
}

void addPreface(Json& json, const std::optional<SPreface>& preface)
{
    json["version"] = nullptr;
    if (preface && preface->version)
        json["version"] = std::to_string(*preface->version >> 8) + "." + std::to_string(*preface->version & 0xFF);
    json["lastModified"] = dateFacts(preface ? preface->lastModified : std::nullopt);
    json["instanceUid"] = preface ? Json(ToText(preface->instanceUid)) : Json(nullptr);
    json["descriptiveSchemes"] = Json::array();
    if (!preface) return;
    for (const SUl& scheme : preface->descriptiveSchemes)
        json["descriptiveSchemes"].push_back(labelFacts(scheme));
}

} // namespace

Json labelFacts(const std::optional<SUl>& label)
{
    if (!label || *label == SUl{}) return nullptr;
    const std::string_view name = labelName(*label);
    return {{"label", ToText(*label)}, {"name", name.empty() ? Json(nullptr) : Json(name)}};
}

Json rateFacts(const SRational& rate)
{
    if (!rate.IsPositive()) return nullptr;
    return {{"num", rate.num}, {"den", rate.den}};
}

Json dateFacts(const std::optional<STimestamp>& date)
{
    return date && date->IsKnown() ? Json(Values::ToText(*date)) : Json(nullptr);
}

Json locatorFacts(const SDescriptor& descriptor)
{
    Json list = Json::array();
    for (const SLocator& locator : descriptor.locators)
        list.push_back(
            {{"kind", locator.kind == SLocator::EKind::network ? "network" : "text"}, {"text", locator.text}});
    return list;
}

Json packageIndex(const SHeaderModel& model, const CMxfPackage* package)
{
    if (package == nullptr) return nullptr;
    return package - model.packages.data();
}

Json mxfFacts(const MxfFile& file)
{
    const CMxfDemuxer& demuxer = *file.demuxer;
    const SHeaderModel& model = demuxer.Model();
    const CPartitionScanner& partitions = demuxer.Partitions();
    const CPartitionPack& header = *partitions.HeaderPartition();
    const SMarks marks = FindMarks(model);
    Json json;
    json["schemaVersion"] = kMxfFactsSchema;
    json["path"] = file.path;
    json["size"] = file.info.file_size;
    json["runIn"] = header.extent.position;
    json["operationalPattern"] = patternFacts(header.operationalPattern);
    json["status"] = statusText(header.status);
    json["complete"] = file.info.complete != 0;
    json["footer"] = partitions.FooterPartition() != nullptr;
    json["randomIndexPack"] = partitions.RandomIndexPack() != nullptr;
    addPreface(json, model.preface);
    json["muxing"] = word(demuxer.DetectMuxingMode());
    json["duration"] = durationFacts(demuxer.Duration(), demuxer.StartTimecode().start);
    json["start"] = startFacts(demuxer.StartTimecode());
    json["sourceStart"] = demuxer.StartTimecode().sourceStart;
    json["marks"] = {{"in", maybe(marks.markIn)},
                     {"out", maybe(marks.markOut)},
                     {"timebaseTrackId", marks.timebaseTrackId == 0 ? Json(nullptr) : Json(marks.timebaseTrackId)}};
    json["partitions"] = partitionFacts(file);
    json["identifications"] = identificationFacts(model);
    json["streams"] = streamFacts(file);
    json["packages"] = packageFacts(file);
    json["essenceContainers"] = containerFacts(model);
    json["markers"] = markerFacts(model);
    json["frameworks"] = frameworkFacts(model);
    json["brokenReferences"] = model.noteCount;
    return json;
}

} // namespace zanfcp::cli
