#include "media/quicktime/TrackReading.h"

#include "media/quicktime/EditList.h"
#include "media/quicktime/TimeHeader.h"

namespace zanfcp::quicktime {
namespace {

/// The media type in a handler box ('hdlr'). Source: ISO/IEC 14496-12, 8.4.3.
Result<FourCC> parseHandler(Window& window, Extent body)
{
    Result<ByteReader> bytes = window.read(body.first(12));
    if (!bytes) return Error{bytes.error()};
    bytes->skip(4 + 4); // version and flags, component type
    const FourCC type{bytes->read<std::uint32_t>()};
    if (!bytes->ok()) return Error{Fault::truncated, "handler is cut short", body.offset};
    return type;
}

bool isDescribed(FourCC mediaType)
{
    return mediaType == kVideoMedia || mediaType == kSoundMedia || mediaType == kTimecodeMedia;
}

/// 'minf': the sample tables, and where their data lies.
Status readMediaInformation(Window& window, Extent body, ParsedTrack& parsed)
{
    std::optional<Extent> dataInformation;
    constexpr FourCC kWanted[] = {FourCC{"stbl"}, FourCC{"dinf"}};
    Status walked = forEachBox(window, body, kWanted, [&](const Box& box) -> Result<Walk> {
        if (box.type == FourCC{"dinf"}) {
            dataInformation = box.body;
            return Walk::on;
        }
        Result<SampleTable> samples = parseSampleTable(window, box.body, parsed.track.mediaType);
        if (!samples) return Error{samples.error()};
        parsed.samples = *std::move(samples);
        return Walk::on;
    });
    const auto& entries = parsed.samples.descriptions.entries;
    if (walked && dataInformation && parsed.track.mediaType == kTimecodeMedia && !entries.empty())
        parsed.dataPlace = findDataPlace(window, *dataInformation, entries.front().dataReference);
    return walked;
}

/// 'mdia'
Status readMedia(Window& window, Extent body, ParsedTrack& parsed)
{
    std::optional<TimeHeader> header;
    std::optional<FourCC> mediaType;
    std::optional<Box> information; // read last: what its tables mean depends on the media type
    constexpr FourCC kWanted[] = {FourCC{"mdhd"}, FourCC{"hdlr"}, FourCC{"minf"}};
    Status walked = forEachBox(window, body, kWanted, [&](const Box& box) -> Result<Walk> {
        if (box.type == FourCC{"mdhd"}) {
            const Result<TimeHeader> read = parseTimeHeader(window, box.body);
            if (!read) return Error{read.error()};
            header = *read;
        } else if (box.type == FourCC{"hdlr"}) {
            const Result<FourCC> read = parseHandler(window, box.body);
            if (!read) return Error{read.error()};
            mediaType = *read;
        } else if (!information) {
            information = box;
        }
        return Walk::on;
    });
    if (!walked) return walked;
    if (!header) return Error{Fault::malformed, "media without a header", body.offset};
    if (!mediaType) return Error{Fault::malformed, "media without a handler", body.offset};

    parsed.timescale = header->timescale;
    parsed.mediaDuration = header->duration.value_or(0);
    parsed.track.mediaType = *mediaType;
    if (!information || !isDescribed(*mediaType)) return {};
    return readMediaInformation(window, information->body, parsed).under("minf");
}

Track::FirstSample findFirstSample(Window& window, const ParsedTrack& parsed, std::optional<Extent> editList)
{
    const auto& entries = parsed.samples.descriptions.entries;
    Track::FirstSample first{.format = entries.empty() ? FourCC{} : entries.front().format, .location = {}};
    if (parsed.dataPlace == DataPlace::elsewhere) return first;
    const std::optional<std::uint64_t> start = editList ? findMediaStart(window, *editList) : std::nullopt;
    const Result<SampleLocation> location = locateSample(window, parsed.samples, start.value_or(0));
    if (!location) return first; // told by the absent location
    if (location->description > 0 && location->description <= entries.size())
        first.format = entries[location->description - 1].format;
    first.location = *location;
    return first;
}

} // namespace

Result<ParsedTrack> parseTrack(Window& window, Extent body)
{
    ParsedTrack parsed;
    bool hasMedia = false;
    std::optional<Extent> editList;
    constexpr FourCC kEditList[] = {FourCC{"elst"}};
    constexpr FourCC kWanted[] = {FourCC{"tkhd"}, FourCC{"edts"}, FourCC{"mdia"}};
    Status walked = forEachBox(window, body, kWanted, [&](const Box& box) -> Result<Walk> {
        if (box.type == FourCC{"tkhd"}) {
            const Result<std::uint32_t> identifier = parseTrackIdentifier(window, box.body);
            if (!identifier) return Error{identifier.error()};
            parsed.track.identifier = *identifier;
        } else if (box.type == FourCC{"edts"}) {
            const Status list = forEachBox(window, box.body, kEditList, [&](const Box& found) -> Result<Walk> {
                editList = found.body;
                return Walk::stop;
            });
            (void)list.has_value(); // a broken edit list counts as none
        } else if (!hasMedia) {
            hasMedia = true;
            if (Status media = readMedia(window, box.body, parsed); !media) return media.error();
        }
        return Walk::on;
    });
    if (!walked) return Error{walked.error()};
    if (!hasMedia) return Error{Fault::malformed, "track without media", body.offset};

    Track& track = parsed.track;
    SampleTable& samples = parsed.samples;
    track.video = std::move(samples.descriptions.video);
    track.sound = std::move(samples.descriptions.sound);
    track.timecode = std::move(samples.descriptions.timecode);
    // MP4 files leave the rate at 0 where 16 bits cannot hold it; the media's timescale is the rate then.
    if (track.sound && track.sound->sampleRate == 0) track.sound->sampleRate = parsed.timescale;
    if (!samples.durations && samples.timeToSample && parsed.mediaDuration == 0) {
        if (const Result<SampleDurations> summed = addUpTimes(window, *samples.timeToSample))
            samples.durations = *summed; // else the length stays unknown
    }
    if (samples.durations && samples.durations->total() > 0) parsed.mediaDuration = samples.durations->total();
    if (track.mediaType == kTimecodeMedia && samples.sampleCount > 0)
        track.firstSample = findFirstSample(window, parsed, editList);
    return parsed;
}

} // namespace zanfcp::quicktime
