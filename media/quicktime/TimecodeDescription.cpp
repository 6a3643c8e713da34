#include "media/quicktime/TimecodeDescription.h"

#include "media/quicktime/Box.h"
#include "media/quicktime/InternationalText.h"

namespace zanfcp::quicktime {
namespace {

constexpr std::uint64_t kFixedBytes = 26; ///< after size and format, up to the source reference

/// Text length, language, text. A length that reaches beyond the box is cut to it.
std::optional<std::string> readName(Window& window, Extent body)
{
    Result<ByteReader> bytes = window.read(body.first(4 + kMaxTextBytes));
    if (!bytes) return {};
    const std::size_t length = bytes->read<std::uint16_t>();
    bytes->skip(2); // language
    std::string name = decodeInternationalText(bytes->take(std::min(length, bytes->remaining())));
    return name.empty() ? std::nullopt : std::optional{std::move(name)};
}

/// The first 'name' among `boxes`, or inside a 'udta' among them: the format speaks of a user data atom, writers
/// leave it out.
std::optional<std::string> findName(Window& window, Extent boxes)
{
    std::optional<std::string> name;
    constexpr FourCC kWanted[] = {FourCC{"name"}, FourCC{"udta"}};
    const auto visitName = [&](const Box& box) -> Result<Walk> {
        name = readName(window, box.body);
        return Walk::stop;
    };
    const Status walked = forEachBox(window, boxes, kWanted, [&](const Box& box) -> Result<Walk> {
        if (box.type == FourCC{"name"}) return visitName(box);
        if (Status s = forEachBox(window, box.body, std::span{kWanted}.first(1), visitName); !s) return s.error();
        return name ? Walk::stop : Walk::on;
    });
    (void)walked.has_value(); // a broken source reference counts as none
    return name;
}

} // namespace

Result<TimecodeDescription> parseTimecodeDescription(Window& window, const Box& entry)
{
    Result<ByteReader> bytes = window.read(entry.body.first(kFixedBytes));
    if (!bytes) return Error{bytes.error()};
    TimecodeDescription timecode;
    timecode.format = entry.type;
    bytes->skip(6 + 2 + 4); // reserved, data reference, reserved
    timecode.flags = bytes->read<std::uint32_t>();
    timecode.timescale = bytes->read<std::uint32_t>();
    timecode.frameDuration = bytes->read<std::uint32_t>();
    timecode.frameQuanta = bytes->read<std::uint8_t>(); // a reserved byte follows
    if (!bytes->ok()) return Error{Fault::truncated, "timecode sample description is cut short", entry.offset};
    timecode.sourceReferenceName = findName(window, entry.body.after(kFixedBytes));
    return timecode;
}

} // namespace zanfcp::quicktime
