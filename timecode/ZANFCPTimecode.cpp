#include "timecode/ZANFCPTimecode.h"

#include "timecode/TimecodeRate.h"

#include <limits>

namespace zanfcp {

// --- The process-wide frame rate ---------------------------------------------------------------------------------

void ZANFCPTimecode::fps2398()
{
    TimecodeRate::select(0);
}

void ZANFCPTimecode::fps24()
{
    TimecodeRate::select(1);
}

void ZANFCPTimecode::fps25()
{
    TimecodeRate::select(2);
}

void ZANFCPTimecode::fps2997()
{
    TimecodeRate::select(3);
}

void ZANFCPTimecode::fps30()
{
    TimecodeRate::select(4);
}

void ZANFCPTimecode::fps50()
{
    TimecodeRate::select(5);
}

void ZANFCPTimecode::fps5994()
{
    TimecodeRate::select(6);
}

void ZANFCPTimecode::fps60()
{
    TimecodeRate::select(7);
}

std::uint32_t ZANFCPTimecode::currentFrameRate()
{
    return TimecodeRate::current().index;
}

bool ZANFCPTimecode::hasValidFrameRate()
{
    return currentFrameRate() != TimecodeRate::kNone;
}

std::uint32_t ZANFCPTimecode::framesPerSecond()
{
    return TimecodeRate::current().framesPerSecond;
}

double ZANFCPTimecode::realFramesPerSecond()
{
    return TimecodeRate::current().realFramesPerSecond;
}

bool ZANFCPTimecode::dropFrameTimecode()
{
    return TimecodeRate::current().isDropFrame();
}

std::uint32_t ZANFCPTimecode::framesPerHour()
{
    return TimecodeRate::current().framesPerHour();
}

std::uint32_t ZANFCPTimecode::framesPerDay()
{
    return TimecodeRate::current().framesPerDay();
}

// --- Making ------------------------------------------------------------------------------------------------------

void ZANFCPTimecode::init()
{
    *this = {};
}

void ZANFCPTimecode::initWithHours(std::uint32_t hours)
{
    init();
    frames_ = hours * framesPerHour();
}

void ZANFCPTimecode::initWithTime(std::int64_t time, std::int64_t scale)
{
    initWithSeconds(scale == 0 ? 0.0 : static_cast<double>(static_cast<float>(time) / static_cast<float>(scale)));
}

void ZANFCPTimecode::initWithSeconds(double seconds)
{
    init();
    setSecondsSinceMidnight(seconds);
}

void ZANFCPTimecode::initWithFrames(std::uint64_t frames)
{
    init();
    const std::uint32_t perDay = framesPerDay();
    frames_ = static_cast<std::uint32_t>(perDay == 0 ? frames : frames % perDay);
    day_ = static_cast<std::uint8_t>(perDay == 0 ? 0 : frames / perDay);
}

void ZANFCPTimecode::initWithHours(std::uint8_t hours, std::uint8_t minutes, std::uint8_t seconds, std::uint8_t frames)
{
    init();
    setHours(hours, minutes, seconds, frames);
}

void ZANFCPTimecode::initWithDate(Date date)
{
    init();
    fromDate(date, true);
}

void ZANFCPTimecode::initWithCFDate(Date date)
{
    init();
    fromCFDate(date, true);
}

void ZANFCPTimecode::initWithDate(ZANFCPTimecode date, ZANFCPTimecode timecode)
{
    takeValues(date);
    takeTimecodeValues(timecode);
}

ZANFCPTimecode ZANFCPTimecode::zeroTime()
{
    return {};
}

ZANFCPTimecode ZANFCPTimecode::timecodeWithHours(std::uint32_t hours)
{
    ZANFCPTimecode made;
    made.initWithHours(hours);
    return made;
}

ZANFCPTimecode ZANFCPTimecode::timecodeWithString(std::string_view string)
{
    ZANFCPTimecode made;
    made.initWithString(string);
    return made;
}

ZANFCPTimecode ZANFCPTimecode::timecodeWithTime(std::int64_t time, std::int64_t scale)
{
    ZANFCPTimecode made;
    made.initWithTime(time, scale);
    return made;
}

ZANFCPTimecode ZANFCPTimecode::timecodeWithSeconds(double seconds)
{
    ZANFCPTimecode made;
    made.initWithSeconds(seconds);
    return made;
}

ZANFCPTimecode ZANFCPTimecode::timecodeWithFrames(std::uint64_t frames)
{
    ZANFCPTimecode made;
    made.initWithFrames(frames);
    return made;
}

ZANFCPTimecode ZANFCPTimecode::timecodeWithHours(std::uint8_t hours, std::uint8_t minutes, std::uint8_t seconds,
                                                 std::uint8_t frames)
{
    ZANFCPTimecode made;
    made.initWithHours(hours, minutes, seconds, frames);
    return made;
}

ZANFCPTimecode ZANFCPTimecode::timecodeWithDate(Date date)
{
    ZANFCPTimecode made;
    made.initWithDate(date);
    return made;
}

ZANFCPTimecode ZANFCPTimecode::timecodeWithCFDate(Date date)
{
    ZANFCPTimecode made;
    made.initWithCFDate(date);
    return made;
}

ZANFCPTimecode ZANFCPTimecode::timecodeCombiningDate(ZANFCPTimecode date, ZANFCPTimecode timecode)
{
    ZANFCPTimecode made;
    made.initWithDate(date, timecode);
    return made;
}

ZANFCPTimecode ZANFCPTimecode::calendarDate()
{
    ZANFCPTimecode made;
    made.fromDate(Date::now(), false);
    return made;
}

ZANFCPTimecode ZANFCPTimecode::now()
{
    return timecodeWithDate(Date::now());
}

// --- Reading and setting -----------------------------------------------------------------------------------------

std::uint64_t ZANFCPTimecode::ticks() const
{
    return std::uint64_t{year_} << 48U | std::uint64_t{month_} << 40U | std::uint64_t{day_} << 32U | frames_;
}

double ZANFCPTimecode::secondsSinceMidnight() const
{
    const double rate = realFramesPerSecond();
    return hasValidFrameRate() ? frames_ / rate : 0.0;
}

void ZANFCPTimecode::setSecondsSinceMidnight(double seconds)
{
    constexpr std::uint32_t kGreatest = std::numeric_limits<std::uint32_t>::max();
    const double frames = seconds * realFramesPerSecond();
    if (!(frames > 0.0)) // NaN too
        frames_ = 0;
    else
        frames_ = frames >= static_cast<double>(kGreatest) ? kGreatest : static_cast<std::uint32_t>(frames);
}

void ZANFCPTimecode::takeDateValues(ZANFCPTimecode other)
{
    day_ = other.day_;
    month_ = other.month_;
    year_ = other.year_;
}

void ZANFCPTimecode::zeroDate()
{
    takeDateValues({});
}

// --- Comparing ---------------------------------------------------------------------------------------------------

int ZANFCPTimecode::compareTo(ZANFCPTimecode other) const
{
    if (ticks() == other.ticks()) return 0;
    return ticks() < other.ticks() ? -1 : 1;
}

bool ZANFCPTimecode::isSameDay(ZANFCPTimecode other) const
{
    return day_ == other.day_ && month_ == other.month_ && year_ == other.year_;
}

std::int64_t ZANFCPTimecode::framesSinceTimecode(ZANFCPTimecode other) const
{
    return static_cast<std::int64_t>(ticks() - other.ticks());
}

double ZANFCPTimecode::differenceInSecondsTo(ZANFCPTimecode other) const
{
    if (isSameDay(other)) return other.secondsSinceMidnight() - secondsSinceMidnight();
    return other.toDate().timeIntervalSinceReferenceDate - toDate().timeIntervalSinceReferenceDate;
}

} // namespace zanfcp
