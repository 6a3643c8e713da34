// Adding, subtracting, multiplying and rounding, with carry into the date. The carry of days is defined month by month,
// which is what happens to dates that no calendar has; from a possible one, days are counted through.

#include "timecode/ZANFCPTimecode.h"

#include "timecode/TimecodeRate.h"

#include <algorithm>
#include <array>

namespace zanfcp {
namespace {

constexpr std::uint32_t kMonthsPerYear = 12;
constexpr std::uint32_t kYearsOfCycle = 400;   ///< after which the Gregorian calendar repeats
constexpr std::uint64_t kDaysOfCycle = 146097; ///< in so many years
constexpr std::uint64_t kYearCount = 65536;    ///< years that the field can hold
constexpr std::uint32_t kDaysOfYearZero = 366;

constexpr bool isLeapYear(std::uint64_t year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

constexpr std::uint64_t daysBeforeYear(std::uint64_t year)
{
    const std::uint64_t leapYears = year == 0 ? 0 : (year - 1) / 4 - (year - 1) / 100 + (year - 1) / 400 + 1;
    return year * 365 + leapYears;
}
static_assert(daysBeforeYear(1) == kDaysOfYearZero && daysBeforeYear(kYearsOfCycle) == kDaysOfCycle);

/// Adding so many days leads around all years and back to the same day.
constexpr std::uint64_t kDaysOfAllYears = daysBeforeYear(kYearCount);

constexpr std::uint32_t daysOf(std::uint32_t month, std::uint64_t year)
{
    constexpr auto kDays = std::to_array<std::uint32_t>({31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31});
    if (month >= kDays.size()) return 31;
    return kDays[month] + (month == 1 && isLeapYear(year) ? 1 : 0);
}

constexpr bool isPossible(std::uint32_t month, std::uint32_t day, std::uint32_t daysInMonth)
{
    return month < kMonthsPerYear && day < daysInMonth;
}

/// Days since 1 January of year 0. A month or day that does not exist counts on from the last that does.
std::uint64_t dayNumber(ZANFCPTimecode date)
{
    const std::uint64_t year = date.year() + date.month() / kMonthsPerYear;
    std::uint64_t number = daysBeforeYear(year) + date.day();
    for (std::uint32_t month = 0; month < date.month() % kMonthsPerYear; ++month)
        number += daysOf(month, year);
    return number;
}

} // namespace

std::uint32_t ZANFCPTimecode::daysInMonth() const
{
    return daysOf(month_, year_);
}

// --- Adding ------------------------------------------------------------------------------------------------------

void ZANFCPTimecode::addFrames(std::uint32_t count)
{
    frames_ += count;
    if (const std::uint32_t perDay = framesPerDay(); perDay != 0 && frames_ >= perDay) {
        addDays(frames_ / perDay);
        frames_ %= perDay;
    }
}

void ZANFCPTimecode::addSeconds(std::uint32_t count)
{
    addFrames(count * framesPerSecond());
}

void ZANFCPTimecode::addMinutes(std::uint32_t count)
{
    addFrames(count * framesPerSecond() * 60);
}

void ZANFCPTimecode::addHours(std::uint32_t count)
{
    addFrames(count * framesPerHour());
}

void ZANFCPTimecode::addDays(std::uint32_t count)
{
    advanceDays(count);
}

void ZANFCPTimecode::advanceDays(std::uint64_t count)
{
    while (count > 0) {
        const std::uint32_t inMonth = daysInMonth();
        if (day_ + count < inMonth) {
            day_ = static_cast<std::uint8_t>(day_ + count);
            return;
        }
        if (isPossible(month_, day_, inMonth))
            return setDayNumber((dayNumber(*this) + count % kDaysOfAllYears) % kDaysOfAllYears);
        addMonths(1);
        count = count + day_ - inMonth; // a day past the end of its month counts on from that end
        day_ = 0;
    }
}

void ZANFCPTimecode::setDayNumber(std::uint64_t number)
{
    std::uint64_t year = number * kYearsOfCycle / kDaysOfCycle; // right, or one off
    if (daysBeforeYear(year) > number) --year;
    if (daysBeforeYear(year + 1) <= number) ++year;
    number -= daysBeforeYear(year);
    std::uint32_t month = 0;
    for (; number >= daysOf(month, year); ++month)
        number -= daysOf(month, year);
    year_ = static_cast<std::uint16_t>(year);
    month_ = static_cast<std::uint8_t>(month);
    day_ = static_cast<std::uint8_t>(number);
}

void ZANFCPTimecode::addMonths(std::uint32_t count)
{
    if (count >= kMonthsPerYear) addYears(count / kMonthsPerYear);
    std::uint32_t month = month_ + count % kMonthsPerYear;
    if (month >= kMonthsPerYear) {
        addYears(1);
        month -= kMonthsPerYear;
    }
    month_ = static_cast<std::uint8_t>(month);
}

void ZANFCPTimecode::addYears(std::uint32_t count)
{
    year_ = static_cast<std::uint16_t>(year_ + count);
}

void ZANFCPTimecode::addTimecode(ZANFCPTimecode other)
{
    addFrames(other.frames_);
    addDays(other.day_);
}

// --- Subtracting -------------------------------------------------------------------------------------------------

void ZANFCPTimecode::subtractFrames(std::uint32_t count)
{
    if (count > frames_) {
        const std::uint32_t perDay = framesPerDay();
        count -= frames_ + 1;
        frames_ = perDay - 1; // without a rate this wraps, as the whole subtraction then does
        subtractDays(perDay == 0 ? 1 : 1 + count / perDay);
        if (perDay != 0) count %= perDay;
    }
    frames_ -= count;
}

void ZANFCPTimecode::subtractSeconds(std::uint32_t count)
{
    subtractFrames(count * framesPerSecond());
}

void ZANFCPTimecode::subtractMinutes(std::uint32_t count)
{
    subtractFrames(count * framesPerSecond() * 60);
}

void ZANFCPTimecode::subtractHours(std::uint32_t count)
{
    subtractFrames(count * framesPerHour());
}

void ZANFCPTimecode::subtractDays(std::uint32_t count)
{
    while (count > day_) {
        if (isPossible(month_, day_, daysInMonth())) {
            const std::uint64_t number = dayNumber(*this);
            if (count <= number) return setDayNumber(number - count);
            // There is no year before 0: it comes again.
            return setDayNumber((kDaysOfYearZero - (count - number) % kDaysOfYearZero) % kDaysOfYearZero);
        }
        subtractMonths(1);
        count -= day_ + 1U;
        day_ = static_cast<std::uint8_t>(daysInMonth() - 1);
    }
    day_ = static_cast<std::uint8_t>(day_ - count);
}

void ZANFCPTimecode::subtractMonths(std::uint32_t count)
{
    if (count >= kMonthsPerYear) subtractYears(count / kMonthsPerYear);
    count %= kMonthsPerYear;
    std::uint32_t month = month_;
    if (count > month) {
        subtractYears(1);
        month += kMonthsPerYear;
    }
    month_ = static_cast<std::uint8_t>(month - count);
}

void ZANFCPTimecode::subtractYears(std::uint32_t count)
{
    year_ = count > year_ ? std::uint16_t{0} : static_cast<std::uint16_t>(year_ - count);
}

void ZANFCPTimecode::subtractTimecodeIncludingDays(ZANFCPTimecode other)
{
    subtractTimecode(other);
    subtractDays(other.day_);
}

bool ZANFCPTimecode::tickDown()
{
    subtractFrames(1);
    return frames_ != 0;
}

// --- Multiplying and rounding ------------------------------------------------------------------------------------

void ZANFCPTimecode::multiplyBy(std::uint32_t factor)
{
    if (factor < 2) return;
    const std::uint32_t addend = frames_;
    const std::uint32_t perDay = framesPerDay();
    if (perDay == 0) {
        frames_ *= factor;
        return;
    }
    addFrames(addend);
    std::uint32_t left = factor - 2;
    if (std::uint64_t{addend} + perDay <= std::uint64_t{1} << 32U) {
        const std::uint64_t sum = frames_ + std::uint64_t{addend} * left;
        frames_ = static_cast<std::uint32_t>(sum % perDay);
        advanceDays(sum / perDay);
        return;
    }
    // Counts just below 2^32 act like small negative ones: some additions wrap and carry no day. The frames then run
    // through a cycle of at most one day's length. It is found by Brent's method and its repetitions are skipped.
    std::uint64_t days = 0;
    std::uint32_t mark = frames_;
    std::uint32_t sinceMark = 0;
    std::uint32_t markEvery = 1;
    std::uint64_t daysAtMark = 0;
    while (left > 0) {
        frames_ += addend;
        days += frames_ / perDay;
        frames_ %= perDay;
        --left;
        ++sinceMark;
        if (frames_ == mark) {
            days += left / sinceMark * (days - daysAtMark);
            left %= sinceMark;
        }
        if (frames_ == mark || sinceMark == markEvery) {
            mark = frames_;
            daysAtMark = days;
            sinceMark = 0;
            markEvery = std::min(markEvery * 2, 1U << 30U);
        }
    }
    advanceDays(days);
}

bool ZANFCPTimecode::canMultiplyBy(std::uint32_t factor) const
{
    return std::uint64_t{frames_} * factor <= framesPerDay();
}

std::uint32_t ZANFCPTimecode::maximumMultiplePerDay() const
{
    return frames_ == 0 ? 0 : framesPerDay() / frames_;
}

void ZANFCPTimecode::snapToMinute(std::uint32_t minutes)
{
    if (minutes >= 60) return snapToHour(minutes / 60);
    const std::uint32_t step = std::max(minutes, 1U) * framesPerSecond() * 60;
    if (step != 0) frames_ -= frames_ % step;
}

void ZANFCPTimecode::snapToHour(std::uint32_t hours)
{
    const std::uint64_t step = std::uint64_t{hours} * framesPerHour();
    if (step != 0) frames_ = static_cast<std::uint32_t>(frames_ - frames_ % step);
}

// --- Class methods -----------------------------------------------------------------------------------------------

ZANFCPTimecode ZANFCPTimecode::timecodeAdding(ZANFCPTimecode timecode, ZANFCPTimecode to)
{
    to.addTimecode(timecode);
    return to;
}

ZANFCPTimecode ZANFCPTimecode::timecodeSubtracting(ZANFCPTimecode timecode, ZANFCPTimecode from, bool timecodeOnly,
                                                   bool framesOnly)
{
    if (!timecodeOnly || from.isSameDay(timecode)) {
        from.subtractTimecode(timecode);
        if (timecodeOnly) from.zeroDate();
        return from;
    }
    // The days between are counted forward, so that an earlier day is reached around the end of all years.
    const std::uint64_t between = (dayNumber(from) + kDaysOfAllYears * 2 - dayNumber(timecode) - 1) % kDaysOfAllYears;
    const std::uint64_t perDay = framesPerDay();
    const std::uint64_t count = perDay - timecode.frames_ + from.frames_ + between * perDay;
    if (!framesOnly) return timecodeWithFrames(count);
    ZANFCPTimecode whole;
    whole.setFramesSinceMidnight(static_cast<std::uint32_t>(count));
    return whole;
}

ZANFCPTimecode ZANFCPTimecode::timecodeMultiplying(ZANFCPTimecode timecode, std::uint32_t factor)
{
    timecode.multiplyBy(factor);
    return timecode;
}

} // namespace zanfcp
