#include "tests/support/LogCapture.h"
#include "tests/timecode/Rates.h"
#include "timecode/PELTimecodeObject.h"

#include <gmock/gmock.h>
#include <limits>
#include <type_traits>

namespace zanfcp {
namespace {

using test::timecodeOf;
using testing::IsEmpty;
using testing::SizeIs;

TEST(TimecodeText, Parses)
{
    struct Case {
        const char* text;
        std::uint64_t ticks; ///< year, month, day and frames from the highest bits
        std::size_t errors = 0;
    };
    constexpr auto ticks = [](std::uint64_t year, std::uint64_t month, std::uint64_t day, std::uint64_t frames) {
        return year << 48U | month << 40U | day << 32U | frames;
    };
    const Case cases[] = {
        {"01:00:00:00", 90000},
        {"00:00:01;12", 37},
        {"1:2:3:4", 93079},
        {"12.3.2015 10:00:00:00", ticks(2015, 2, 11, 900000)},
        {"12.3.2015 900000", ticks(2015, 2, 11, 900000)},
        {"1234", 1234},
        {"1234 ", 0}, // a blank makes two parts
        {"", 0},
        {"abc", 0},
        {"12abc", 12},
        {"-5", 0}, // digits only
        {"99999999999999999999999", 0xFFFFFFFF},
        {"10:31", 946500},        // neither three nor four parts: no seconds
        {"00:01:02", 1500},       // three parts without ";"
        {"00:01:02;03;04", 1500}, // and with two of them
        {"00:01:02:03:04", 1500}, // five parts
        {"00:00:10x:05x", 255},   // leading digits
        {":::", 0},
        {"::;7", 7},
        {"1.1.2015 01:00:00:00 x", 1}, // three parts: the first is read, which is no label
        {"1.2 01:00:00:00", 90000},    // no date
        {"0.0.2015 7", ticks(2015, 255, 255, 7)},
        {"1.1.70000 7", ticks(4464, 0, 0, 7)},
        {"00:00:00:99", 0, 1},
    };
    ZANFCPTimecode::fps25();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        test::LogCapture log;
        EXPECT_EQ(ZANFCPTimecode::timecodeWithString(c.text).ticks(), c.ticks);
        EXPECT_THAT(log.errors(), SizeIs(c.errors));
    }
}

TEST(TimecodeText, ParsingForgetsWhatWasThere)
{
    ZANFCPTimecode::fps25();
    ZANFCPTimecode timecode = timecodeOf(2015, 2, 3, 4);
    timecode.initWithString("00:00:01:00");
    EXPECT_EQ(timecode.ticks(), 25U);
}

TEST(TimecodeText, PrintsWithTheSeparatorOfItsKind)
{
    ZANFCPTimecode::fps2997();
    const ZANFCPTimecode dated = timecodeOf(2015, 2, 11, 1800);
    EXPECT_EQ(dated.description(), "00:01:00;02");
    EXPECT_EQ(dated.descriptionWithPrefix("at "), "at 00:01:00;02");
    EXPECT_EQ(dated.debugDescription(), "12.3.2015 00:01:00;02");
    EXPECT_EQ(dated.XMLRepresentation(), "12.3.2015 1800");

    const auto duration = ZANFCPTimecode::timecodeWithFrames(1800);
    EXPECT_EQ(duration.description(), "00:01:00:02");
    EXPECT_EQ(duration.debugDescription(), "1.1.0 00:01:00:02");
    EXPECT_EQ(duration.XMLRepresentation(), "1800");

    ZANFCPTimecode::fps25();
    EXPECT_EQ(dated.description(), "00:01:12:00");
    ZANFCPTimecode longest;
    longest.setFramesSinceMidnight(std::numeric_limits<std::uint32_t>::max());
    EXPECT_EQ(longest.description(), "47721:51:31:20");
}

TEST(Timecode, FactoriesFillTheirFields)
{
    ZANFCPTimecode::fps25();
    struct Case {
        const char* name;
        ZANFCPTimecode made, expected;
    };
    const Case cases[] = {
        {"zero", ZANFCPTimecode::zeroTime(), {}},
        {"hours", ZANFCPTimecode::timecodeWithHours(2), timecodeOf(0, 0, 0, 180000)},
        {"hours past 32 bits", ZANFCPTimecode::timecodeWithHours(47722), timecodeOf(0, 0, 0, 12704)},
        {"frames", ZANFCPTimecode::timecodeWithFrames(2160000U * 40 + 7), timecodeOf(0, 0, 40, 7)},
        {"more days than fit", ZANFCPTimecode::timecodeWithFrames(2160000U * 257ULL + 7), timecodeOf(0, 0, 1, 7)},
        {"label", ZANFCPTimecode::timecodeWithHours(1, 2, 3, 4), timecodeOf(0, 0, 0, 93079)},
        {"seconds", ZANFCPTimecode::timecodeWithSeconds(1.999), timecodeOf(0, 0, 0, 49)},
        {"seconds past a day", ZANFCPTimecode::timecodeWithSeconds(90000), timecodeOf(0, 0, 0, 2250000)},
        {"negative seconds", ZANFCPTimecode::timecodeWithSeconds(-3), {}},
        {"no seconds", ZANFCPTimecode::timecodeWithSeconds(std::numeric_limits<double>::quiet_NaN()), {}},
        {"endless seconds", ZANFCPTimecode::timecodeWithSeconds(std::numeric_limits<double>::infinity()),
         timecodeOf(0, 0, 0, 0xFFFFFFFF)},
        {"time", ZANFCPTimecode::timecodeWithTime(3003, 1001), timecodeOf(0, 0, 0, 75)},
        {"time in single precision", ZANFCPTimecode::timecodeWithTime(16777217, 1), timecodeOf(0, 0, 0, 419430400)},
        {"scale 0", ZANFCPTimecode::timecodeWithTime(3003, 0), {}},
        {"combined", ZANFCPTimecode::timecodeCombiningDate(timecodeOf(2015, 2, 3, 4), timecodeOf(1, 1, 1, 9)),
         timecodeOf(2015, 2, 3, 9)},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.made, c.expected) << c.name << ": " << c.made.debugDescription();
}

TEST(Timecode, SettersChangeOnlyTheirPart)
{
    ZANFCPTimecode::fps25();
    const ZANFCPTimecode start = timecodeOf(2015, 2, 3, 4);
    const ZANFCPTimecode other = timecodeOf(2020, 11, 30, 99);
    struct Case {
        const char* name;
        void (*change)(ZANFCPTimecode&, ZANFCPTimecode);
        ZANFCPTimecode expected;
    };
    using T = ZANFCPTimecode;
    const Case cases[] = {
        {"takeValues", [](T& t, T o) { t.takeValues(o); }, other},
        {"takeTimecodeValues", [](T& t, T o) { t.takeTimecodeValues(o); }, timecodeOf(2015, 2, 3, 99)},
        {"takeDateValues", [](T& t, T o) { t.takeDateValues(o); }, timecodeOf(2020, 11, 30, 4)},
        {"setZeroTime", [](T& t, T) { t.setZeroTime(); }, timecodeOf(2015, 2, 3, 0)},
        {"zeroDate", [](T& t, T) { t.zeroDate(); }, timecodeOf(0, 0, 0, 4)},
        {"setHours", [](T& t, T) { t.setHours(0, 0, 1, 0); }, timecodeOf(2015, 2, 3, 25)},
        {"setSecondsSinceMidnight", [](T& t, T) { t.setSecondsSinceMidnight(2); }, timecodeOf(2015, 2, 3, 50)},
        {"ensureLegalDuration", [](T& t, T) { t.ensureLegalDuration(); }, start},
        {"takeCalendarDataValues",
         [](T& t, T) { t.takeCalendarDataValues({.year = 2016, .month = 2, .day = 29, .hour = 5}); },
         timecodeOf(2016, 1, 28, 4)},
        {"takeCalendarDataValues before the common era",
         [](T& t, T) { t.takeCalendarDataValues({.year = -43, .month = 3, .day = 15}); }, timecodeOf(44, 2, 14, 4)},
        {"init", [](T& t, T) { t.init(); }, {}},
    };
    for (const Case& c : cases) {
        ZANFCPTimecode timecode = start;
        c.change(timecode, other);
        EXPECT_EQ(timecode, c.expected) << c.name << ": " << timecode.debugDescription();
    }
}

TEST(Timecode, SecondsUseTheRealRate)
{
    ZANFCPTimecode::fps2997();
    const auto hour = ZANFCPTimecode::timecodeWithHours(1);
    EXPECT_DOUBLE_EQ(hour.secondsSinceMidnight(), 107892 / 29.97);
    EXPECT_EQ(ZANFCPTimecode::timecodeWithSeconds(3600).framesSinceMidnight(), 107892U);
    ZANFCPTimecode::fps2398();
    EXPECT_EQ(ZANFCPTimecode::timecodeWithSeconds(3600).framesSinceMidnight(), 86328U);
}

TEST(Timecode, OrdersByDateBeforeTime)
{
    const ZANFCPTimecode ordered[] = {timecodeOf(0, 0, 0, 0),    timecodeOf(0, 0, 0, 0xFFFFFFFF),
                                      timecodeOf(0, 0, 1, 0),    timecodeOf(0, 1, 0, 0),
                                      timecodeOf(1, 0, 0, 0),    timecodeOf(2015, 1, 30, 5),
                                      timecodeOf(2015, 2, 0, 0), timecodeOf(65535, 255, 255, 0xFFFFFFFF)};
    for (const ZANFCPTimecode& a : ordered)
        for (const ZANFCPTimecode& b : ordered) {
            SCOPED_TRACE(a.debugDescription() + " and " + b.debugDescription());
            const int expected = &a < &b ? -1 : &a > &b ? 1 : 0;
            EXPECT_EQ(a.compareTo(b), expected);
            EXPECT_EQ(a.compareToTimecode(b), -expected);
            EXPECT_EQ(a.isSameTimecode(b), expected == 0);
            const auto distance = static_cast<std::int64_t>(b.ticks() - a.ticks());
            EXPECT_EQ(PELTimecodeObject{a}.compareToTimecode(b), distance);
            EXPECT_EQ(b.framesSinceTimecode(a), distance);
        }
}

TEST(Timecode, KnowsDurationsAndSameDays)
{
    EXPECT_TRUE(timecodeOf(0, 0, 0, 5).isDuration());
    for (const ZANFCPTimecode& dated : {timecodeOf(0, 0, 1), timecodeOf(0, 1, 0), timecodeOf(1, 0, 0)})
        EXPECT_FALSE(dated.isDuration()) << dated.debugDescription();
    EXPECT_TRUE(timecodeOf(5, 5, 5, 0).isZeroTime());
    EXPECT_FALSE(timecodeOf(0, 0, 0, 5).isZeroTime());

    const ZANFCPTimecode day = timecodeOf(2015, 2, 11, 1);
    EXPECT_TRUE(day.isSameDay(timecodeOf(2015, 2, 11, 2)));
    EXPECT_TRUE(day.isSameCalendarDate({.year = 2015, .month = 3, .day = 12, .hour = 9}));
    for (const ZANFCPTimecode& other : {timecodeOf(2016, 2, 11), timecodeOf(2015, 3, 11), timecodeOf(2015, 2, 12)}) {
        EXPECT_FALSE(day.isSameDay(other)) << other.debugDescription();
        EXPECT_FALSE(day.isSameCalendarDate(other.toCalendarDate())) << other.debugDescription();
    }
}

TEST(TimecodeObject, FactoriesMakeItsOwnClass)
{
    using T = PELTimecodeObject;
    ZANFCPTimecode::fps25();
    static_assert(std::is_same_v<decltype(T::zeroTime()), T> && std::is_same_v<decltype(T::now()), T> &&
                  std::is_same_v<decltype(T::timecodeWithString("")), T>);
    EXPECT_EQ(T::timecodeWithFrames(2160001), T{timecodeOf(0, 0, 1, 1)});
    EXPECT_EQ(T::timecodeAdding(T::timecodeWithHours(23), T::timecodeWithHours(2)), T{timecodeOf(0, 0, 1, 90000)});
    EXPECT_EQ(T::timecodeSubtracting(T::timecodeWithHours(1), T::timecodeWithHours(2), true), T::timecodeWithHours(1));
    EXPECT_EQ(T::timecodeMultiplying(T::timecodeWithSeconds(1), 3), T::timecodeWithHours(0, 0, 3, 0));
    EXPECT_EQ(T::timecodeCombiningDate(timecodeOf(2015, 0, 0, 1), timecodeOf(0, 0, 0, 2)),
              T{timecodeOf(2015, 0, 0, 2)});
    EXPECT_EQ(T::timecodeWithTime(2, 4), T::timecodeWithFrames(12));
    EXPECT_TRUE(T::calendarDate().isToday());
}

TEST(TimecodeObject, ReadsFramesFromTexts)
{
    test::LogCapture log;
    ZANFCPTimecode::fps2997();
    EXPECT_EQ(PELTimecodeObject::framesFromString("12.3.2015 00:01:00;02"), 1800U);
    EXPECT_EQ(PELTimecodeObject::framesFromCString("00:01:00;02"), 1800U);
    EXPECT_EQ(PELTimecodeObject::framesFromString("1\xC3\xA4"), 1U);
    EXPECT_EQ(PELTimecodeObject::framesFromCString("1\xC3\xA4"), 0U) << "no ASCII";
    EXPECT_THAT(log.lines(), IsEmpty());
    PELTimecodeObject timecode{timecodeOf(2015, 0, 0, 1)};
    timecode.subtractDate(timecode);
    EXPECT_EQ(timecode.dayIntervalSinceProjectDate(ZANFCPTimecode{}), 0);
    EXPECT_EQ(timecode, PELTimecodeObject{timecodeOf(2015, 0, 0, 1)});
}

} // namespace
} // namespace zanfcp
