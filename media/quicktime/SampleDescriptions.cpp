#include "media/quicktime/SampleDescriptions.h"

namespace zanfcp::quicktime {
namespace {

Status parseFirst(Window& window, const Box& entry, FourCC mediaType, std::uint8_t version, SampleDescriptions& table)
{
    const auto keep = [](auto parsed, auto& place) -> Status {
        if (!parsed) return std::move(parsed).error();
        place = *std::move(parsed);
        return {};
    };
    if (mediaType == kVideoMedia) return keep(parseVideoDescription(window, entry), table.video);
    if (mediaType == kSoundMedia) return keep(parseSoundDescription(window, entry, version), table.sound);
    if (mediaType == kTimecodeMedia) return keep(parseTimecodeDescription(window, entry), table.timecode);
    return {};
}

std::uint16_t readDataReference(Window& window, const Box& entry)
{
    Result<ByteReader> bytes = window.read(entry.body.first(8));
    if (!bytes) return 0;
    bytes->skip(6);
    return bytes->read<std::uint16_t>();
}

} // namespace

Result<SampleDescriptions> parseSampleDescriptions(Window& window, Extent body, FourCC mediaType)
{
    Result<ByteReader> head = window.read(body.first(8));
    if (!head) return Error{head.error()};
    const auto version = head->read<std::uint8_t>();
    head->skip(3);
    const auto count = head->read<std::uint32_t>();
    if (!head->ok()) return Error{Fault::truncated, "sample description table is cut short", body.offset};

    SampleDescriptions table;
    Extent rest = body.after(8);
    while (table.entries.size() < std::min<std::size_t>(count, kMaxSampleDescriptions)) {
        Result<std::optional<Box>> read = readBox(window, rest);
        if (!read) return Error{read.error()};
        const bool isFirst = table.entries.empty();
        if (!*read || !(*read)->fits) {
            if (!isFirst) break;
            return Error{Fault::malformed, "sample description does not fit its table", rest.offset};
        }
        const Box& entry = **read;
        if (isFirst)
            if (Status s = parseFirst(window, entry, mediaType, version, table); !s)
                return Error{s.error()}.under(entry.type.text());
        table.entries.push_back({entry.type, readDataReference(window, entry)});
        rest = rest.after(entry.end() - rest.offset);
    }
    return table;
}

} // namespace zanfcp::quicktime
