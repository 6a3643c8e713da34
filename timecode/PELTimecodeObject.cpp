#include "timecode/PELTimecodeObject.h"

#include <algorithm>

namespace zanfcp {

PELTimecodeObject PELTimecodeObject::calendarDate()
{
    return PELTimecodeObject{ZANFCPTimecode::calendarDate()};
}

PELTimecodeObject PELTimecodeObject::now()
{
    return PELTimecodeObject{ZANFCPTimecode::now()};
}

PELTimecodeObject PELTimecodeObject::timecodeWithHours(std::uint32_t hours)
{
    return PELTimecodeObject{ZANFCPTimecode::timecodeWithHours(hours)};
}

PELTimecodeObject PELTimecodeObject::timecodeWithHours(std::uint8_t hours, std::uint8_t minutes, std::uint8_t seconds,
                                                       std::uint8_t frames)
{
    return PELTimecodeObject{ZANFCPTimecode::timecodeWithHours(hours, minutes, seconds, frames)};
}

PELTimecodeObject PELTimecodeObject::timecodeWithString(std::string_view string)
{
    return PELTimecodeObject{ZANFCPTimecode::timecodeWithString(string)};
}

PELTimecodeObject PELTimecodeObject::timecodeWithTime(std::int64_t time, std::int64_t scale)
{
    return PELTimecodeObject{ZANFCPTimecode::timecodeWithTime(time, scale)};
}

PELTimecodeObject PELTimecodeObject::timecodeWithSeconds(double seconds)
{
    return PELTimecodeObject{ZANFCPTimecode::timecodeWithSeconds(seconds)};
}

PELTimecodeObject PELTimecodeObject::timecodeWithFrames(std::uint64_t frames)
{
    return PELTimecodeObject{ZANFCPTimecode::timecodeWithFrames(frames)};
}

PELTimecodeObject PELTimecodeObject::timecodeWithDate(Date date)
{
    return PELTimecodeObject{ZANFCPTimecode::timecodeWithDate(date)};
}

PELTimecodeObject PELTimecodeObject::timecodeWithCFDate(Date date)
{
    return PELTimecodeObject{ZANFCPTimecode::timecodeWithCFDate(date)};
}

PELTimecodeObject PELTimecodeObject::timecodeCombiningDate(ZANFCPTimecode date, ZANFCPTimecode timecode)
{
    return PELTimecodeObject{ZANFCPTimecode::timecodeCombiningDate(date, timecode)};
}

PELTimecodeObject PELTimecodeObject::timecodeAdding(ZANFCPTimecode timecode, ZANFCPTimecode to)
{
    return PELTimecodeObject{ZANFCPTimecode::timecodeAdding(timecode, to)};
}

PELTimecodeObject PELTimecodeObject::timecodeSubtracting(ZANFCPTimecode timecode, ZANFCPTimecode from,
                                                         bool timecodeOnly, bool framesOnly)
{
    return PELTimecodeObject{ZANFCPTimecode::timecodeSubtracting(timecode, from, timecodeOnly, framesOnly)};
}

PELTimecodeObject PELTimecodeObject::timecodeMultiplying(ZANFCPTimecode timecode, std::uint32_t factor)
{
    return PELTimecodeObject{ZANFCPTimecode::timecodeMultiplying(timecode, factor)};
}

std::uint32_t PELTimecodeObject::framesFromString(std::string_view string)
{
    return timecodeWithString(string).framesSinceMidnight();
}

std::uint32_t PELTimecodeObject::framesFromCString(std::string_view string)
{
    const bool isASCII = std::ranges::all_of(string, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    return isASCII ? framesFromString(string) : 0;
}

NSInteger PELTimecodeObject::compareToTimecode(ZANFCPTimecode other) const
{
    return static_cast<NSInteger>(other.ticks() - ticks());
}

} // namespace zanfcp
