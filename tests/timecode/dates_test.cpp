#include "tests/support/TimeZone.h"
#include "tests/timecode/Rates.h"
#include "timecode/ZANFCPTimecode.h"

#include <cmath>
#include <gtest/gtest.h>

namespace zanfcp {
namespace {

using test::kRateRows;
using test::RateRow;
using test::timecodeOf;
using test::TimeZone;

Date gmt(std::string_view text)
{
    const auto date = DateFormats::full.dateFromString(text);
    EXPECT_TRUE(date) << text;
    return date.value_or(Date{});
}

TEST(TimecodeDates, DateBecomesTheDayInLocalTime)
{
    struct Case {
        const char* zone;
        const char* date;
        const char* expected;
    };
    const Case cases[] = {
        {"UTC", "2015-03-12 10:00:00 +0000", "12.3.2015 10:00:00:00"},
        {"Europe/Berlin", "2015-03-12 23:30:00 +0000", "13.3.2015 00:30:00:00"},
        {"Europe/Berlin", "2015-07-12 23:30:00 +0000", "13.7.2015 01:30:00:00"},
        {"America/New_York", "2016-01-01 04:59:59 +0000", "31.12.2015 23:59:59:00"},
        {"Asia/Kathmandu", "2015-12-31 18:15:00 +0000", "1.1.2016 00:00:00:00"},
        {"UTC", "1969-12-31 23:59:59 +0000", "31.12.1969 23:59:59:00"},
        {"UTC", "2099-06-01 12:00:00 +0000", "1.6.2099 12:00:00:00"},
        {"UTC", "0099-06-01 12:00:00 +0000", "1.6.99 12:00:00:00"},
    };
    ZANFCPTimecode::fps25();
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.zone) + " " + c.date);
        const TimeZone zone{c.zone};
        const Date date = gmt(c.date);
        EXPECT_EQ(ZANFCPTimecode::timecodeWithDate(date).debugDescription(), c.expected);
        EXPECT_EQ(ZANFCPTimecode::timecodeWithCFDate(date), ZANFCPTimecode::timecodeWithDate(date));

        ZANFCPTimecode dayOnly = timecodeOf(1, 1, 1, 77);
        dayOnly.fromDate(date, false);
        EXPECT_EQ(dayOnly.framesSinceMidnight(), 77U);
        EXPECT_TRUE(dayOnly.isSameDay(ZANFCPTimecode::timecodeWithDate(date)));
    }
}

TEST(TimecodeDates, MillisecondsStayWithinTheirLabelSecond)
{
    struct Case {
        void (*select)();
        const char* time;
        double fraction;
        const char* label;
    };
    const Case cases[] = {
        {ZANFCPTimecode::fps25, "00:00:00", 0.039, "00:00:00:00"},
        {ZANFCPTimecode::fps25, "00:00:00", 0.040, "00:00:00:01"}, // not a whole number of doubles
        {ZANFCPTimecode::fps25, "12:34:56", 0.999, "12:34:56:24"},
        {ZANFCPTimecode::fps25, "12:34:56", 0.9999996, "12:34:57:00"}, // a microsecond is the grain
        {ZANFCPTimecode::fps2997, "00:01:00", 0.0, "00:01:00;02"},
        {ZANFCPTimecode::fps2997, "00:01:00", 0.034, "00:01:00;03"},
        {ZANFCPTimecode::fps2997, "00:01:00", 0.9, "00:01:00;29"},
        {ZANFCPTimecode::fps2997, "00:01:00", 0.999, "00:01:00;29"}, // two labels short
        {ZANFCPTimecode::fps2997, "00:01:01", 0.0, "00:01:01;00"},
        {ZANFCPTimecode::fps2997, "00:10:00", 0.0, "00:10:00;00"},
        {ZANFCPTimecode::fps2997, "23:59:59", 0.999, "23:59:59;29"},
        {ZANFCPTimecode::fps5994, "05:59:00", 0.999, "05:59:00;59"},
        {ZANFCPTimecode::fps5994, "05:59:00", 0.5, "05:59:00;34"},
        {ZANFCPTimecode::fps2398, "10:00:00", 0.5, "10:00:00:12"},
    };
    const TimeZone zone{"UTC"};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.time) + " + " + std::to_string(c.fraction));
        c.select();
        Date date = gmt("2015-03-12 " + std::string(c.time) + " +0000");
        date.timeIntervalSinceReferenceDate += c.fraction;
        EXPECT_EQ(ZANFCPTimecode::timecodeWithDate(date).description(), c.label);
    }
}

/// The placement as a search through all labels of the hour, from the place that even seconds would have.
std::uint32_t searchedFrame(const RateRow& rate, std::uint32_t minute, std::uint32_t second, std::uint32_t ms)
{
    ZANFCPTimecode at;
    std::uint32_t index = std::min(minute * rate.framesPerSecond * 60, rate.framesPerHour - 1);
    const auto labelled = [&](std::uint32_t frame) {
        at.setFramesSinceMidnight(frame);
        return at.minutes() * 60 + at.seconds();
    };
    while (index > 0 && labelled(index - 1) >= minute * 60)
        --index;
    index = std::min(index + second * rate.framesPerSecond, rate.framesPerHour - 1);
    while (index > 0 && labelled(index - 1) >= minute * 60 + second)
        --index;
    while (labelled(index) < minute * 60 + second)
        ++index;
    index = std::min(index + ms * rate.framesPerSecond / 1000, rate.framesPerHour - 1);
    while (labelled(index) > minute * 60 + second)
        --index;
    return index;
}

TEST(TimecodeDates, EverySecondOfAnHourIsPlacedAsASearchWould)
{
    const TimeZone zone{"UTC"};
    const double start = gmt("2015-03-12 07:00:00 +0000").timeIntervalSinceReferenceDate;
    for (const RateRow& rate : kRateRows) {
        rate.select();
        for (std::uint32_t second = 0; second < 3600; ++second)
            for (const std::uint32_t ms : {0U, 33U, 500U, 967U, 999U}) {
                const auto timecode = ZANFCPTimecode::timecodeWithDate({start + second + ms / 1000.0});
                ASSERT_EQ(timecode.framesSinceMidnight(),
                          7 * rate.framesPerHour + searchedFrame(rate, second / 60, second % 60, ms))
                    << rate.name << ", second " << second << ", " << ms << " ms";
            }
    }
}

TEST(TimecodeDates, GoesOutInLocalTime)
{
    struct Case {
        const char* zone;
        const char* timecode;
        const char* expected;
    };
    const Case cases[] = {
        {"UTC", "12.3.2015 10:00:00:00", "2015-03-12 10:00:00 +0000"},
        {"Europe/Berlin", "12.3.2015 10:00:00:00", "2015-03-12 09:00:00 +0000"},
        {"Europe/Berlin", "12.7.2015 10:00:00:00", "2015-07-12 08:00:00 +0000"},
        {"Europe/Berlin", "29.3.2015 01:59:59:00", "2015-03-29 00:59:59 +0000"},  // the last second of winter
        {"Europe/Berlin", "29.3.2015 03:00:00:00", "2015-03-29 01:00:00 +0000"},  // the first one of summer
        {"Europe/Berlin", "29.3.2015 02:30:00:00", "2015-03-29 01:30:00 +0000"},  // does not exist
        {"Europe/Berlin", "25.10.2015 02:30:00:00", "2015-10-25 00:30:00 +0000"}, // comes twice
        {"America/St_Johns", "12.1.2015 10:00:00:00", "2015-01-12 13:30:00 +0000"},
        {"Asia/Kathmandu", "1.1.2001 00:00:00:00", "2000-12-31 18:15:00 +0000"},
        {"Europe/Berlin", "31.12.2020 23:59:59:00", "2020-12-31 22:59:59 +0000"},
        {"Europe/Berlin", "1.3.2004 00:00:00:00", "2004-02-29 23:00:00 +0000"},
        {"America/St_Johns", "12.1.2025 10:00:00:00", "2025-01-12 13:30:00 +0000"},
        {"Europe/Berlin", "12.7.1999 10:00:00:00", "1999-07-12 08:00:00 +0000"},
        {"Europe/Berlin", "12.1.2100 10:00:00:00", "2100-01-12 09:00:00 +0000"},
        {"Europe/Berlin", "12.7.1950 10:00:00:00", "1950-07-12 09:00:00 +0000"},
        {"UTC", "31.12.65535 23:59:59:00", "65535-12-31 23:59:59 +0000"},
    };
    ZANFCPTimecode::fps25();
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.zone) + " " + c.timecode);
        const TimeZone zone{c.zone};
        const auto timecode = ZANFCPTimecode::timecodeWithString(c.timecode);
        EXPECT_EQ(timecode.toDate(), gmt(c.expected));
        EXPECT_EQ(timecode.toCFDate(), gmt(c.expected));
    }
}

TEST(TimecodeDates, ListedYearsCountRealSecondsAndOthersTheLabel)
{
    const TimeZone zone{"UTC"};
    ZANFCPTimecode::fps2398();
    const auto listed = ZANFCPTimecode::timecodeWithString("12.3.2015 10:00:00:12");
    const double noon = gmt("2015-03-12 00:00:00 +0000").timeIntervalSinceReferenceDate;
    EXPECT_DOUBLE_EQ(listed.toDate().timeIntervalSinceReferenceDate, noon + 864012 / 23.98);
    EXPECT_DOUBLE_EQ(listed.toCFDate().timeIntervalSinceReferenceDate, noon + 36000 + 12 / 23.98);

    const auto other = ZANFCPTimecode::timecodeWithString("12.3.2021 10:00:00:12");
    const double later = gmt("2021-03-12 00:00:00 +0000").timeIntervalSinceReferenceDate;
    EXPECT_DOUBLE_EQ(other.toDate().timeIntervalSinceReferenceDate, later + 36000 + 12 / 23.98);
}

TEST(TimecodeDates, EveryListedYearStartsRight)
{
    const TimeZone zone{"UTC"};
    ZANFCPTimecode::fps25();
    for (std::uint32_t year = 1999; year <= 2022; ++year)
        for (const std::uint32_t month : {0U, 1U, 2U, 11U})
            EXPECT_EQ(timecodeOf(year, month, 4).toDate(), timecodeOf(year, month, 4).toCFDate()) << year << month;
}

TEST(TimecodeDates, OffsetsBelowAMinuteAreCutFromTheText)
{
    const TimeZone zone{"Europe/Berlin"}; // 53 minutes and 28 seconds ahead until 1893
    ZANFCPTimecode::fps25();
    EXPECT_EQ(timecodeOf(1850, 0, 0).toDate(), gmt("1849-12-31 23:07:00 +0000"));
    const TimeZone west{"XYZ0:00:45"};
    EXPECT_EQ(timecodeOf(2030, 0, 0).toDate(), gmt("2030-01-01 00:00:00 +0000"));
    EXPECT_EQ(timecodeOf(2015, 0, 0).toDate(), gmt("2015-01-01 00:00:45 +0000"));
}

TEST(TimecodeDates, ImpossibleDatesCountOn)
{
    const TimeZone zone{"UTC"};
    ZANFCPTimecode::fps25();
    EXPECT_EQ(timecodeOf(2015, 1, 30).toDate(), gmt("2015-03-03 00:00:00 +0000"));
    EXPECT_EQ(timecodeOf(2030, 1, 30).toDate(), gmt("2030-03-03 00:00:00 +0000"));
    EXPECT_EQ(timecodeOf(2030, 255, 255, 0xFFFFFFFF).toDate(), timecodeOf(2030, 255, 255, 0xFFFFFFFF).toCFDate());
    EXPECT_TRUE(std::isfinite(timecodeOf(2015, 255, 255, 0xFFFFFFFF).toDate().timeIntervalSinceReferenceDate));
}

TEST(TimecodeDates, DifferencesInSeconds)
{
    const TimeZone zone{"Europe/Berlin"};
    ZANFCPTimecode::fps25();
    const auto a = ZANFCPTimecode::timecodeWithString("28.3.2015 12:00:00:00");
    EXPECT_NEAR(a.differenceInSecondsTo(ZANFCPTimecode::timecodeWithString("28.3.2015 12:00:01:05")), 1.2, 1e-9);
    EXPECT_EQ(a.differenceInSecondsTo(ZANFCPTimecode::timecodeWithString("29.3.2015 12:00:00:00")), 23 * 3600);
    EXPECT_EQ(a.differenceInSecondsTo(ZANFCPTimecode::timecodeWithString("27.3.2015 12:00:00:00")), -86400);
}

TEST(TimecodeDates, CalendarDates)
{
    ZANFCPTimecode::fps2997();
    EXPECT_EQ(ZANFCPTimecode::timecodeWithString("29.2.2016 13:01:00;02").toCalendarDate(),
              (CalendarDate{.year = 2016, .month = 2, .day = 29, .hour = 13, .minute = 1}));
    EXPECT_EQ(timecodeOf(2016, 1, 28).timeIntervalSinceReferenceDate(), 0.0);
}

TEST(TimecodeDates, TodayAndNow)
{
    const TimeZone zone{"Pacific/Kiritimati"};
    ZANFCPTimecode::fps25();
    const Date before = Date::now();
    const auto now = ZANFCPTimecode::now();
    const Date after = Date::now();
    // In years that are not listed, the frame is at most one frame early; today's year is one of them.
    EXPECT_GE(now.toCFDate().timeIntervalSinceReferenceDate, before.timeIntervalSinceReferenceDate - 0.05);
    EXPECT_LE(now.toCFDate(), after);
    auto today = ZANFCPTimecode::calendarDate();
    EXPECT_TRUE(today.isZeroTime());
    EXPECT_TRUE(today.isToday() || now.isToday()); // midnight may pass between two of the calls
    today.addDays(2);
    EXPECT_FALSE(today.isToday());
}

TEST(TimecodeDates, ValuesByFormat)
{
    const TimeZone zone{"Europe/Berlin"};
    const Date date{gmt("2015-03-12 22:05:07 +0000").timeIntervalSinceReferenceDate + 0.042};
    const std::pair<DateFormatter, NSInteger> cases[] = {
        {DateFormats::year, 2015}, {DateFormats::month, 3},  {DateFormats::day, 12},         {DateFormats::hour, 23},
        {DateFormats::minute, 5},  {DateFormats::second, 7}, {DateFormats::millisecond, 42}, {DateFormats::full, 2015}};
    for (const auto& [format, value] : cases)
        EXPECT_EQ(ZANFCPTimecode::valueFromDate(date, format), value) << format.pattern();
}

} // namespace
} // namespace zanfcp
