// Conversions between timecodes and dates, all in local time.

#include "timecode/ZANFCPTimecode.h"

#include "platform/Format.h"
#include "timecode/TimecodeRate.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>

namespace zanfcp {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::uint16_t kFirstListedYear = 2001;

/// Seconds from the reference date to the start of each year from 2001 to 2020.
constexpr auto kYearStarts = std::to_array<std::int64_t>(
    {0,         31536000,  63072000,  94608000,  126230400, 157766400, 189302400, 220838400, 252460800, 283996800,
     315532800, 347068800, 378691200, 410227200, 441763200, 473299200, 504921600, 536457600, 567993600, 599529600});
static_assert(kYearStarts.size() == 20);

/// The frame of the day at a time of day: the first frame of its label second, then as many further frames as the
/// milliseconds make, but never past the end of that second, which is shorter where labels are skipped.
std::uint32_t frameAtTime(const TimecodeRate& rate, const CalendarDate& local)
{
    const FrameLabel first =
        rate.firstLabelOf(static_cast<std::uint32_t>(local.minute), static_cast<std::uint32_t>(local.second));
    const std::uint32_t longest = rate.framesPerSecond - 1 - first.frame;
    const std::uint32_t within = static_cast<std::uint32_t>(local.millisecond) * rate.framesPerSecond / 1000;
    return static_cast<std::uint32_t>(local.hour) * rate.framesPerHour() + rate.frameAt(first).value_or(0) +
           std::min(within, longest);
}

} // namespace

void ZANFCPTimecode::fromDate(Date date, bool includeTime)
{
    const CalendarDate local = localCalendarDate(date);
    takeCalendarDataValues(local);
    if (!includeTime) return;
    frames_ = hasValidFrameRate() ? frameAtTime(TimecodeRate::current(), local) : 0;
}

void ZANFCPTimecode::fromCFDate(Date date, bool includeTime)
{
    fromDate(date, includeTime);
}

void ZANFCPTimecode::takeCalendarDataValues(const CalendarDate& date)
{
    day_ = static_cast<std::uint8_t>(date.day - 1);
    month_ = static_cast<std::uint8_t>(date.month - 1);
    year_ = static_cast<std::uint16_t>(date.yearOfEra());
}

bool ZANFCPTimecode::isSameCalendarDate(const CalendarDate& date) const
{
    return day_ == date.day - 1 && month_ == date.month - 1 && year_ == date.yearOfEra();
}

bool ZANFCPTimecode::isToday() const
{
    return isSameDay(calendarDate());
}

CalendarDate ZANFCPTimecode::toCalendarDate() const
{
    return {.year = year_,
            .month = month_ + 1,
            .day = day_ + 1,
            .hour = static_cast<int>(hours()),
            .minute = static_cast<int>(minutes()),
            .second = static_cast<int>(seconds())};
}

Date ZANFCPTimecode::toDate() const
{
    const std::size_t listed = static_cast<std::size_t>(year_) - kFirstListedYear; // wraps for earlier years
    if (listed >= kYearStarts.size()) return dateFromText();
    std::int64_t days = day_;
    for (ZANFCPTimecode at = *this; at.month_ > 0; days += at.daysInMonth())
        --at.month_;
    const double local = static_cast<double>(kYearStarts[listed] + days * kSecondsPerDay) + secondsSinceMidnight();
    return {local - secondsFromGMTAtLocalTime(toCalendarDate())};
}

Date ZANFCPTimecode::toCFDate() const
{
    return dateFromText();
}

Date ZANFCPTimecode::dateFromText() const
{
    const CalendarDate local = toCalendarDate();
    const int offset = secondsFromGMTAtLocalTime(local);
    const int offsetMinutes = std::abs(offset) / 60;
    const std::string text =
        format("%d-%d-%d %02d:%02d:%02d %s%02d%02d", year_, local.month, local.day, local.hour, local.minute,
               local.second, offset < -59 ? "-" : "+", offsetMinutes / 60, offsetMinutes % 60);
    Date date = DateFormats::full.dateFromString(text).value_or(Date{});
    if (hasValidFrameRate()) date.timeIntervalSinceReferenceDate += frames() / realFramesPerSecond();
    return date;
}

NSInteger ZANFCPTimecode::valueFromDate(Date date, const DateFormatter& format)
{
    const std::string text = format.stringFromDate(date);
    NSInteger value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

} // namespace zanfcp
