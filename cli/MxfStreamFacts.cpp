#include "cli/MxfFacts.h"
#include "cli/MxfWords.h"
#include "mxf/demuxer/RecordFilling.h"
#include "mxf/demuxer/StreamGroups.h"
#include "mxf/model/StreamFormat.h"
#include "platform/Format.h"

namespace zanfcp::cli {
namespace {

using namespace TamrelMxf;

/// 0 stands for what a file leaves out.
template <typename T> Json known(T value)
{
    return value == T{} ? Json(nullptr) : Json(value);
}

std::string_view typeWord(EStreamType type)
{
    switch (type) {
    case EStreamType::picture: return "picture";
    case EStreamType::sound: return "sound";
    case EStreamType::data: return "data";
    case EStreamType::other: return "other";
    }
    return {};
}

/// "4:2:2" and the like; null for what has no such name.
Json subsamplingFacts(const SStreamFormat& format)
{
    const std::uint32_t across = format.horizontalSubsampling;
    const std::uint32_t down = format.verticalSubsampling;
    if (down == 1 && across == 1) return "4:4:4";
    if (down == 1 && across == 2) return "4:2:2";
    if (down == 1 && across == 4) return "4:1:1";
    if (down == 2 && across == 2) return "4:2:0";
    return nullptr;
}

Json layoutFacts(const SPictureDescriptor* picture)
{
    if (picture == nullptr || !picture->frameLayout) return nullptr;
    switch (*picture->frameLayout) {
    case 0: return "full frame";
    case 1: return "separate fields";
    case 2: return "one field";
    case 3: return "mixed fields";
    case 4: return "segmented frame";
    default: return "unknown";
    }
}

Json pixelLayoutFacts(const SPictureDescriptor* picture)
{
    constexpr std::uint8_t kHalfFloat = 253;
    if (picture == nullptr || picture->pixelLayout.empty()) return nullptr;
    std::string text;
    for (const SPixelComponent& component : picture->pixelLayout) {
        const bool isShown = component.code > 0x20 && component.code < 0x7F;
        text += (text.empty() ? "" : " ") + std::string(1, isShown ? component.code : '?') +
                (component.depth == kHalfFloat ? "half" : std::to_string(component.depth));
    }
    return text;
}

Json pictureFacts(const SStreamFormat& format, const SDescriptor* descriptor)
{
    if (format.type != EStreamType::picture) return nullptr;
    const SPictureDescriptor* picture = descriptor != nullptr && descriptor->picture ? &*descriptor->picture : nullptr;
    const bool storesFields = format.height != 0 && format.frameHeight == 2 * format.height;
    const auto stated = [picture](auto member) {
        return picture == nullptr ? Json(nullptr) : labelFacts(picture->*member);
    };
    Json json;
    json["width"] = known(WidthWithoutPadding(format));
    json["height"] = known(HeightWithoutPadding(format) * (storesFields ? 2 : 1));
    json["stored"] = {{"width", known(format.width)}, {"height", known(format.height)}};
    json["displayed"] = {{"x", format.displayed.x},
                         {"y", format.displayed.y},
                         {"width", known(format.displayed.width)},
                         {"height", known(format.displayed.height)}};
    json["aspectRatio"] = rateFacts(format.aspectRatio);
    json["interlaced"] = format.isInterlaced;
    json["firstField"] = known(format.fieldDominance);
    json["frameLayout"] = layoutFacts(picture);
    json["depth"] = known(format.componentDepth);
    json["subsampling"] = subsamplingFacts(format);
    json["pixelLayout"] = pixelLayoutFacts(picture);
    json["gop"] = {{"most", known(format.maxGop)},
                   {"mostBPictures", known(format.maxBPictureCount)},
                   {"closed", format.isClosedGop},
                   {"identical", format.isIdenticalGop}};
    json["profile"] = known(format.profile);
    json["level"] = known(format.level);
    json["colour"] = {{"transfer", stated(&SPictureDescriptor::transferCharacteristic)},
                      {"primaries", stated(&SPictureDescriptor::colorPrimaries)},
                      {"equations", stated(&SPictureDescriptor::codingEquations)}};
    return json;
}

Json soundFacts(const SStreamFormat& format, const SDescriptor* descriptor)
{
    if (format.type != EStreamType::sound) return nullptr;
    const SSoundDescriptor* sound = descriptor != nullptr && descriptor->sound ? &*descriptor->sound : nullptr;
    Json json;
    json["sampleRate"] = known(format.sampleRate);
    json["bits"] = known(format.bitsPerSample);
    json["channels"] = known(format.channelCount);
    json["blockAlign"] = known(format.blockAlign);
    json["locked"] = sound == nullptr ? Json(nullptr) : maybe(sound->locked);
    json["aes3"] = sound != nullptr && sound->isAes3;
    json["channelAssignment"] = sound == nullptr ? Json(nullptr) : labelFacts(sound->channelAssignment);
    return json;
}

Json dataFacts(const SStreamFormat& format, const SDescriptor* descriptor)
{
    if (format.type != EStreamType::data || descriptor == nullptr || !descriptor->data) return nullptr;
    const SDataDescriptor& data = *descriptor->data;
    const char* kind = data.kind == SDataDescriptor::EKind::ancillary   ? "ancillary packets"
                       : data.kind == SDataDescriptor::EKind::vbi       ? "vertical blanking lines"
                       : data.kind == SDataDescriptor::EKind::timedText ? "timed text"
                                                                        : "other";
    return {{"kind", kind},
            {"encoding", maybe(data.encoding)},
            {"namespace", maybe(data.namespaceUri)},
            {"languages", maybe(data.languageTags)}};
}

Json channelLabels(const SDescriptor* descriptor)
{
    Json list = Json::array();
    if (descriptor == nullptr) return list;
    for (const SSubDescriptor& sub : descriptor->subDescriptors) {
        if (!sub.mca) continue;
        const char* kind = sub.mca->kind == SMcaLabel::EKind::channel                   ? "channel"
                           : sub.mca->kind == SMcaLabel::EKind::soundfieldGroup         ? "soundfield group"
                           : sub.mca->kind == SMcaLabel::EKind::groupOfSoundfieldGroups ? "group of soundfield groups"
                                                                                        : "other";
        list.push_back({{"kind", kind},
                        {"symbol", maybe(sub.mca->tagSymbol)},
                        {"name", maybe(sub.mca->tagName)},
                        {"channel", maybe(sub.mca->channelId)},
                        {"language", maybe(sub.mca->spokenLanguage)},
                        {"title", maybe(sub.mca->title)}});
    }
    return list;
}

} // namespace

Json streamFacts(const MxfFile& file)
{
    CMxfDemuxer& demuxer = *file.demuxer;
    const SHeaderModel& model = demuxer.Model();
    Json list = Json::array();
    for (const std::size_t leader : JoinStreams(demuxer.Streams()).Leaders()) {
        const SStreamLink& link = demuxer.Streams()[leader];
        mxf_stream_format record{}; // what it says beyond: the wrapping that was found, the offset
        if (demuxer.GetStreamFormat(static_cast<int>(list.size()), &record, false, true) != 0) record = {};
        const SStreamFormat& stream = demuxer.Formats()[leader];
        const SDescriptor* descriptor = link.descriptor;
        Json json;
        json["index"] = list.size();
        json["kind"] = typeWord(stream.type);
        json["codec"] = {{"name", maybe(codecName(stream))},
                         {"code", maybe(codeText(stream.codec))},
                         {"coding", labelFacts(stream.coding)},
                         {"container", labelFacts(stream.essenceContainer)}};
        json["wrapping"] = word(static_cast<EWrapping>(record.wrapping));
        json["package"] = packageIndex(model, link.package);
        json["trackId"] = known(stream.trackId);
        json["trackNumber"] = format("%08X", stream.trackNumber);
        json["materialTrackId"] = known(stream.materialTrackId);
        json["bodySid"] = known(stream.bodySid);
        json["indexSid"] = known(stream.indexSid);
        json["editRate"] = rateFacts(stream.editRate);
        json["startOffset"] = record.start_offset;
        json["duration"] = maybe(link.track->sequence.TotalDuration());
        json["bitRate"] = known(stream.bitRate);
        json["extraDataBytes"] = stream.extraData.size();
        json["descriptor"] = descriptor == nullptr || descriptor->definition == nullptr
                                 ? Json(nullptr)
                                 : Json(descriptor->definition->name);
        json["picture"] = pictureFacts(stream, descriptor);
        json["sound"] = soundFacts(stream, descriptor);
        json["data"] = dataFacts(stream, descriptor);
        json["channelLabels"] = channelLabels(descriptor);
        json["locators"] = descriptor == nullptr ? Json::array() : locatorFacts(*descriptor);
        list.push_back(std::move(json));
    }
    return list;
}

} // namespace zanfcp::cli
