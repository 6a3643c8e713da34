#include "platform/Dates.h"

#include "tests/support/TimeZone.h"

#include <gtest/gtest.h>
#include <limits>

namespace zanfcp {
namespace {

using test::TimeZone;

TEST(Dates, SplitInLocalTime)
{
    struct Case {
        const char* zone;
        double since1970;
        CalendarDate expected;
        int offset;
    };
    const Case cases[] = {
        {"UTC", 0, {.year = 1970}, 0},
        {"UTC", -0.25, {1969, 12, 31, 23, 59, 59, 750}, 0},
        {"UTC", 1e9 + 0.04, {2001, 9, 9, 1, 46, 40, 40}, 0}, // 0.04 is below 40 ms as a double
        {"UTC", 1e9 + 0.0399, {2001, 9, 9, 1, 46, 40, 39}, 0},
        {"UTC", 4102444800, {.year = 2100}, 0},  // past 2038
        {"UTC", -2208988800, {.year = 1900}, 0}, // before 1970
        {"UTC", -62135596801, {0, 12, 31, 23, 59, 59}, 0},
        {"Europe/Berlin", 1427590799, {2015, 3, 29, 1, 59, 59}, 3600},
        {"Europe/Berlin", 1427590800, {2015, 3, 29, 3, 0, 0}, 7200},
        {"Europe/Berlin", 1445734799, {2015, 10, 25, 2, 59, 59}, 7200},
        {"Europe/Berlin", 1445734800, {2015, 10, 25, 2, 0, 0}, 3600},
        {"America/St_Johns", 1421015400, {2015, 1, 11, 19, 0, 0}, -12600},
        {"Pacific/Kiritimati", 1420063200, {2015, 1, 1, 12, 0, 0}, 50400},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.zone) + " " + std::to_string(c.since1970));
        const TimeZone zone{c.zone};
        const Date date = Date::dateWithTimeIntervalSince1970(c.since1970);
        EXPECT_EQ(localCalendarDate(date), c.expected) << DateFormats::full.stringFromDate(date);
        EXPECT_EQ(secondsFromGMT(date), c.offset);
    }
}

TEST(Dates, UnusableNumbersStayWithinTheCalendar)
{
    const TimeZone zone{"UTC"};
    EXPECT_EQ(localCalendarDate({std::numeric_limits<double>::quiet_NaN()}), (CalendarDate{.year = 2001}));
    EXPECT_EQ(localCalendarDate({1e300}).year, 103404);
    EXPECT_EQ(localCalendarDate({-std::numeric_limits<double>::infinity()}), localCalendarDate({-1e300}));
    EXPECT_EQ(localCalendarDate({-1e300}).yearOfEra(), 1 - localCalendarDate({-1e300}).year);
}

TEST(Dates, OffsetsAtLocalTimes)
{
    const TimeZone zone{"Europe/Berlin"};
    struct Case {
        CalendarDate local;
        int offset;
    };
    const Case cases[] = {
        {{2015, 3, 29, 1, 59, 59}, 3600}, {{2015, 3, 29, 2, 30, 0}, 3600}, // left out
        {{2015, 3, 29, 3, 0, 0}, 7200},   {{2015, 10, 25, 1, 59, 59}, 7200},
        {{2015, 10, 25, 2, 30, 0}, 7200},                                 // comes twice
        {{2015, 10, 25, 3, 0, 0}, 3600},  {{2014, 19, 1, 0, 0, 0}, 7200}, // July of the next year
        {{1850, 1, 1, 0, 0, 0}, 3208},
    };
    for (const Case& c : cases)
        EXPECT_EQ(secondsFromGMTAtLocalTime(c.local), c.offset)
            << c.local.year << "-" << c.local.month << "-" << c.local.day << " " << c.local.hour;
}

TEST(DateFormatter, WritesFieldsAtTheirWidth)
{
    const TimeZone zone{"America/St_Johns"};
    const Date date = Date::dateWithTimeIntervalSince1970(1420115406.007); // 1 January 2015, 09:00:06 there
    const std::pair<const char*, const char*> cases[] = {
        {"yyyy-MM-dd HH:mm:ss ZZZ", "2015-01-01 09:00:06 -0330"},
        {"y M d H m s SSS", "2015 1 1 9 0 6 007"},
        {"S SS SSSS", "0 00 0070"},
        {"yyyyyy", "002015"},
        {"d.M.y", "1.1.2015"},
        {"", ""},
    };
    for (const auto& [pattern, text] : cases)
        EXPECT_EQ(DateFormatter{pattern}.stringFromDate(date), text) << pattern;
}

TEST(DateFormatter, ReadsWhatItWrites)
{
    for (const char* name : {"UTC", "Europe/Berlin", "America/St_Johns", "Asia/Kathmandu"}) {
        const TimeZone zone{name};
        for (const double seconds : {-1e10, -1.0, 0.0, 1e9, 1427590800.0, 1445734800.0, 1e11}) {
            const Date date = Date::dateWithTimeIntervalSince1970(seconds);
            const std::string text = DateFormats::full.stringFromDate(date);
            if (secondsFromGMT(date) % 60 != 0) continue; // not in the text
            EXPECT_EQ(DateFormats::full.dateFromString(text), date) << text;
        }
    }
}

TEST(DateFormatter, ReadsLenientlyInNumbersAndStrictlyInForm)
{
    const TimeZone zone{"Europe/Berlin"};
    constexpr double kNoon = 1426154400; // 12 March 2015, 10:00:00 GMT
    struct Case {
        const char* pattern;
        const char* text;
        std::optional<double> since1970;
    };
    constexpr const char* kFull = "yyyy-MM-dd HH:mm:ss ZZZ";
    const Case cases[] = {
        {kFull, "2015-03-12 10:00:00 +0000", kNoon},
        {kFull, "2015-3-12 11:00:00 +0100", kNoon},
        {kFull, "2015-3-12 04:30:00 -05:30", kNoon},
        {kFull, "2015-03-12 10:00:00 Z", kNoon},
        {kFull, "2014-15-12 10:00:00 +0000", kNoon}, // month 15 is next March
        {kFull, "2015-03-12 10:00:00", std::nullopt},
        {kFull, "2015-03-12 10:00:00 +0000 ", std::nullopt},
        {kFull, "2015-03-12 10:00:00 +00", std::nullopt},
        {kFull, "2015-03-12 10:00:00 0000", std::nullopt},
        {kFull, "2015/03/12 10:00:00 +0000", std::nullopt},
        {kFull, "-2015-03-12 10:00:00 +0000", std::nullopt},
        {kFull, "9999999999-03-12 10:00:00 +0000", std::nullopt},
        {kFull, "", std::nullopt},
        {"yyyyMMddHHmmss", "20150312110000", kNoon}, // fields that touch, in local time
        {"yyyy-MM-dd HH:mm:ss.SSS", "2015-03-12 11:00:00.250", kNoon + 0.25},
        {"d.M.yyyy", "1.1.2001", 978303600.0},
        {"y", "2001", 978303600.0},
    };
    for (const Case& c : cases) {
        const auto date = DateFormatter{c.pattern}.dateFromString(c.text);
        ASSERT_EQ(date.has_value(), c.since1970.has_value()) << c.text;
        if (!date) continue;
        EXPECT_EQ(date->timeIntervalSince1970(), *c.since1970) << c.text;
    }
}

} // namespace
} // namespace zanfcp
