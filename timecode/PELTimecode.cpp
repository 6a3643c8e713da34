#include "timecode/PELTimecode.h"

#include "platform/Format.h"
#include "timecode/PELTimecodeObject.h"

#include <algorithm>

namespace zanfcp {
namespace {

constexpr std::size_t kLabelLength = 11; // HH:MM:SS:FF

/// The record's text up to its NUL, or all of it where a caller left none.
std::string_view textOf(const PELTimecode& timecode)
{
    const std::string_view whole{timecode.string.data(), timecode.string.size()};
    return whole.substr(0, whole.find('\0'));
}

/// At most `limit` bytes of a UTF-8 text, without cutting a character in two.
std::string_view cutAt(std::string_view text, std::size_t limit)
{
    if (text.size() <= limit) return text;
    const auto continues = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U; };
    std::size_t end = limit;
    while (end > 0 && continues(end))
        --end;
    return text.substr(0, end == 0 ? limit : end); // nothing but continuation bytes: no UTF-8, cut anywhere
}

void setText(PELTimecode& timecode, std::string_view text)
{
    timecode.string.fill('\0');
    std::ranges::copy(text, timecode.string.begin());
}

PELTimecode filled(PELTimecode timecode, PELRate rate)
{
    timecode.kind = 1;
    timecode.rate = rate;
    timecode.hasDropframe = rate.isNTSC;
    timecode.frames = PELTimecodeConvertStringToFrames(timecode);
    return timecode;
}

} // namespace

PELTimecode PELTimecodeMakeWithString(std::string_view string, PELRate rate)
{
    PELTimecode timecode;
    setText(timecode, cutAt(string, kLabelLength));
    return filled(timecode, rate);
}

PELTimecode PELTimecodeMakeWithCString(std::optional<std::string_view> cstring, PELRate rate, PELTimecode into)
{
    if (cstring) cstring = cstring->substr(0, cstring->find('\0'));
    if (cstring && cstring->size() == kLabelLength) setText(into, *cstring);
    return filled(into, rate);
}

std::uint32_t PELTimecodeConvertStringToFrames(const PELTimecode& timecode)
{
    PELSetFPSForRate(timecode.rate);
    return PELTimecodeObject::framesFromCString(textOf(timecode));
}

std::string NSStringFromPELTimecode(const PELTimecode& timecode)
{
    const std::string rate = NSStringFromPELRate(timecode.rate);
    if (timecode.kind == 1)
        return format("rate: {%s}, string: %s", rate.c_str(), std::string(textOf(timecode)).c_str());
    return format("rate: {%s}, frames: %i, hasDropframe: %i", rate.c_str(), static_cast<int>(timecode.frames),
                  timecode.hasDropframe ? 1 : 0);
}

} // namespace zanfcp
