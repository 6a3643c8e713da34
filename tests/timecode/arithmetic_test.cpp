#include "tests/timecode/Rates.h"
#include "timecode/ZANFCPTimecode.h"

#include <gtest/gtest.h>
#include <random>

namespace zanfcp {
namespace {

using test::kRateRows;
using test::RateRow;
using test::timecodeOf;

/// The same arithmetic carried one day, month and addition at a time. Slow, and plain enough to be checked by eye.
struct StepByStep {
    std::uint32_t frames = 0;
    std::uint32_t day = 0;
    std::uint32_t month = 0;
    std::uint16_t year = 0;
    std::uint32_t framesPerDay = 0;

    std::uint32_t daysInMonth() const
    {
        if (month > 11) return 31;
        if (month == 1) return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0 ? 29 : 28;
        return month == 3 || month == 5 || month == 8 || month == 10 ? 30 : 31;
    }
    void addOneMonth()
    {
        if (++month < 12) return;
        month -= 12;
        ++year;
    }
    void subtractOneMonth()
    {
        if (month-- > 0) return;
        month = 11;
        if (year > 0) --year;
    }
    void addDays(std::uint64_t count)
    {
        while (count > 0) {
            if (day + count < daysInMonth()) {
                day += static_cast<std::uint32_t>(count);
                return;
            }
            const std::uint64_t longest = daysInMonth();
            addOneMonth();
            count = count - longest + day;
            day = 0;
        }
    }
    void subtractDays(std::uint32_t count)
    {
        while (count > day) {
            subtractOneMonth();
            count -= day + 1;
            day = daysInMonth() - 1;
        }
        day -= count;
    }
    void addFrames(std::uint32_t count)
    {
        for (frames += count; frames >= framesPerDay; frames -= framesPerDay)
            addDays(1);
    }
    void subtractFrames(std::uint32_t count)
    {
        while (count > frames) {
            subtractDays(1);
            count -= frames + 1;
            frames = framesPerDay - 1;
        }
        frames -= count;
    }
    void multiplyBy(std::uint32_t factor)
    {
        for (const std::uint32_t addend = frames; factor > 1; --factor)
            addFrames(addend);
    }
    ZANFCPTimecode timecode() const { return timecodeOf(year, month, day, frames); }
};

TEST(TimecodeArithmetic, CarriesLikeSingleSteps)
{
    std::mt19937 random{20010101};
    const auto upTo = [&random](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % (limit + 1ULL)); };
    for (int round = 0; round < 4000; ++round) {
        const RateRow& rate = kRateRows[upTo(7)];
        rate.select();
        const bool impossible = upTo(3) == 0; // fields that no calendar has
        StepByStep start{.day = upTo(impossible ? 255 : 27),
                         .month = upTo(impossible ? 255 : 11),
                         .framesPerDay = rate.framesPerHour * 24};
        const std::uint32_t years[] = {0, 1, 3, 399, 400, 401, 1900, 2015, 2016, 65135, 65136, 65534, 65535};
        start.year = static_cast<std::uint16_t>(years[upTo(12)]);
        start.frames = upTo(5) == 0 ? upTo(0xFFFFFFFF) : upTo(start.framesPerDay - 1);
        const std::uint32_t days = upTo(round % 16 == 0 ? 1000000 : 2000);
        const std::uint32_t frames = upTo(upTo(1) == 0 ? 0xFFFFFFFF : start.framesPerDay);
        SCOPED_TRACE(std::string(rate.name) + ", " + start.timecode().debugDescription() + ", " + std::to_string(days) +
                     " days, " + std::to_string(frames) + " frames");
        const auto expectSame = [&](auto step) {
            StepByStep expected = start;
            step(expected);
            ZANFCPTimecode timecode = start.timecode();
            step(timecode);
            ASSERT_EQ(timecode, expected.timecode())
                << timecode.debugDescription() << " is not " << expected.timecode().debugDescription();
        };
        expectSame([&](auto& t) { t.addDays(days); });
        expectSame([&](auto& t) { t.subtractDays(days); });
        expectSame([&](auto& t) { t.addFrames(frames); });
        expectSame([&](auto& t) { t.subtractFrames(frames); });
        expectSame([&](auto& t) { t.multiplyBy(days % 300); });
    }
}

TEST(TimecodeArithmetic, EveryYearBeginsAfterItsLastDay)
{
    for (std::uint32_t year = 0; year < 65536; ++year) {
        ZANFCPTimecode day = timecodeOf(year, 11, 30);
        day.addDays(1);
        ASSERT_EQ(day, timecodeOf((year + 1) % 65536, 0, 0)) << year;
        day.subtractDays(1);
        ASSERT_EQ(day, timecodeOf(year == 65535 ? 0 : year, 11, 30)) << year;
        const StepByStep february{.month = 1, .year = static_cast<std::uint16_t>(year)};
        day = timecodeOf(year, 2, 0);
        day.subtractDays(1);
        ASSERT_EQ(day, timecodeOf(year, 1, february.daysInMonth() - 1)) << year;
    }
}

TEST(TimecodeArithmetic, GreatestArgumentsEndWithTheSameResult)
{
    ZANFCPTimecode::fps60();
    constexpr std::uint32_t kGreatest = 0xFFFFFFFF;

    ZANFCPTimecode added = timecodeOf(2015, 2, 11);
    added.addDays(kGreatest); // 4294967295 days are 179 times all 65536 years and 10328067 days
    StepByStep expected{.day = 11, .month = 2, .year = 2015};
    expected.addDays(kGreatest % 23936532ULL);
    EXPECT_EQ(added, expected.timecode()) << added.debugDescription();

    ZANFCPTimecode subtracted = timecodeOf(2015, 2, 11);
    subtracted.subtractDays(kGreatest);
    expected = {.day = 11, .month = 2, .year = 2015};
    expected.subtractDays(800000);
    EXPECT_EQ(expected.year, 0);
    expected.subtractDays((kGreatest - 800000) % 366);
    EXPECT_EQ(subtracted, expected.timecode()) << subtracted.debugDescription();

    ZANFCPTimecode month = timecodeOf(2015, 2, 11);
    month.addMonths(kGreatest); // 357913941 years and 3 months
    EXPECT_EQ(month, timecodeOf((2015 + 357913941U) % 65536, 5, 11));
    month = timecodeOf(2015, 2, 11);
    month.subtractMonths(kGreatest);
    EXPECT_EQ(month, timecodeOf(0, 11, 11));
    month.addYears(kGreatest);
    EXPECT_EQ(month, timecodeOf(65535, 11, 11));

    ZANFCPTimecode product = timecodeOf(2015, 2, 11, 5183999);
    product.multiplyBy(kGreatest);
    EXPECT_EQ(product.framesSinceMidnight(), 5183999ULL * kGreatest % 5184000);
}

TEST(TimecodeArithmetic, ProductsOfWrappingCountsEqualRepeatedAddition)
{
    for (const RateRow& rate : kRateRows) {
        rate.select();
        for (const std::uint32_t below : {1U, 2U, 7U, 1000U, 86400U, 1999999U, 2073599U}) {
            StepByStep expected{.frames = 0U - below, .year = 2015, .framesPerDay = rate.framesPerHour * 24};
            ZANFCPTimecode timecode = expected.timecode();
            expected.multiplyBy(100003);
            timecode.multiplyBy(100003);
            EXPECT_EQ(timecode, expected.timecode()) << rate.name << ", 2^32 - " << below;
        }
    }
    ZANFCPTimecode::fps24();
    ZANFCPTimecode longest = timecodeOf(0, 0, 0, 0xFFFFFFFF); // one less each time, and a new start at 0
    longest.multiplyBy(0xFFFFFFFF);
    StepByStep expected{.frames = 0xFFFFFFFF, .framesPerDay = 2073600};
    expected.multiplyBy(2);
    // From here the frames count down to 0, jump to (2^32 - 1) % 2073600 = 541695 and repeat every 541696 additions.
    const std::uint32_t left = 0xFFFFFFFF - 2 - expected.frames - 1;
    EXPECT_EQ(longest.framesSinceMidnight(), 541695 - left % 541696);
}

TEST(TimecodeArithmetic, CrossesMonthsAndYears)
{
    using T = ZANFCPTimecode;
    struct Case {
        const char* name;
        T start;
        void (*change)(T&);
        T expected;
    };
    const Case cases[] = {
        {"31 December + 1 day", timecodeOf(2015, 11, 30), [](T& t) { t.addDays(1); }, timecodeOf(2016, 0, 0)},
        {"28 February + 1 day", timecodeOf(2016, 1, 27), [](T& t) { t.addDays(1); }, timecodeOf(2016, 1, 28)},
        {"28 February 1900 + 1 day", timecodeOf(1900, 1, 27), [](T& t) { t.addDays(1); }, timecodeOf(1900, 2, 0)},
        {"0 days", timecodeOf(2015, 1, 200), [](T& t) { t.addDays(0); }, timecodeOf(2015, 1, 200)},
        {"31 January + 1 month", timecodeOf(2015, 0, 30), [](T& t) { t.addMonths(1); }, timecodeOf(2015, 1, 30)},
        {"November + 25 months", timecodeOf(2015, 10, 0), [](T& t) { t.addMonths(25); }, timecodeOf(2017, 11, 0)},
        {"December + 1 month", timecodeOf(2015, 11, 0), [](T& t) { t.addMonths(1); }, timecodeOf(2016, 0, 0)},
        {"year past 16 bits", timecodeOf(65535, 0, 0), [](T& t) { t.addYears(2); }, timecodeOf(1, 0, 0)},
        {"1 March 2016 - 1 day", timecodeOf(2016, 2, 0), [](T& t) { t.subtractDays(1); }, timecodeOf(2016, 1, 28)},
        {"first frame of the year - 1", timecodeOf(2015, 0, 0), [](T& t) { t.subtractFrames(1); },
         timecodeOf(2014, 11, 30, 2159999)},
        {"January - 1 month", timecodeOf(2015, 0, 5), [](T& t) { t.subtractMonths(1); }, timecodeOf(2014, 11, 5)},
        {"March - 26 months", timecodeOf(2015, 2, 5), [](T& t) { t.subtractMonths(26); }, timecodeOf(2013, 0, 5)},
        {"year 3 - 5 years", timecodeOf(3, 4, 5), [](T& t) { t.subtractYears(5); }, timecodeOf(0, 4, 5)},
        {"year 5 - 5 years", timecodeOf(5, 4, 5), [](T& t) { t.subtractYears(5); }, timecodeOf(0, 4, 5)},
        {"January of year 0 - 1 month", timecodeOf(0, 0, 5), [](T& t) { t.subtractMonths(1); }, timecodeOf(0, 11, 5)},
        {"seconds", timecodeOf(0, 0, 0, 1), [](T& t) { t.addSeconds(2); }, timecodeOf(0, 0, 0, 51)},
        {"minutes", timecodeOf(0, 0, 0, 1), [](T& t) { t.addMinutes(2); }, timecodeOf(0, 0, 0, 3001)},
        {"hours past midnight", timecodeOf(2015, 0, 0, 1), [](T& t) { t.addHours(25); }, timecodeOf(2015, 0, 1, 90001)},
        {"- seconds", timecodeOf(0, 0, 0, 51), [](T& t) { t.subtractSeconds(2); }, timecodeOf(0, 0, 0, 1)},
        {"- minutes", timecodeOf(0, 0, 0, 3001), [](T& t) { t.subtractMinutes(2); }, timecodeOf(0, 0, 0, 1)},
        {"- hours past midnight", timecodeOf(2015, 0, 1, 1), [](T& t) { t.subtractHours(24); },
         timecodeOf(2015, 0, 0, 1)},
        {"timecode with days", timecodeOf(2015, 0, 0, 2159999), [](T& t) { t.addTimecode(timecodeOf(7, 7, 2, 1)); },
         timecodeOf(2015, 0, 3, 0)},
        {"itself", timecodeOf(0, 0, 1, 2000000), [](T& t) { t.addTimecode(t); }, timecodeOf(0, 0, 3, 1840000)},
        {"- timecode", timecodeOf(2015, 0, 5, 10), [](T& t) { t.subtractTimecode(timecodeOf(7, 7, 2, 11)); },
         timecodeOf(2015, 0, 4, 2159999)},
        {"- timecode with days", timecodeOf(2015, 0, 5, 10),
         [](T& t) { t.subtractTimecodeIncludingDays(timecodeOf(7, 7, 2, 11)); }, timecodeOf(2015, 0, 2, 2159999)},
        {"tick at midnight", timecodeOf(2015, 0, 30, 2159999), [](T& t) { t.tick(); }, timecodeOf(2015, 1, 0)},
        {"product", timecodeOf(2015, 0, 0, 1000000), [](T& t) { t.multiplyBy(5); }, timecodeOf(2015, 0, 2, 680000)},
        {"times 0", timecodeOf(2015, 0, 0, 5), [](T& t) { t.multiplyBy(0); }, timecodeOf(2015, 0, 0, 5)},
        {"times 1 past a day", timecodeOf(0, 0, 0, 9000000), [](T& t) { t.multiplyBy(1); },
         timecodeOf(0, 0, 0, 9000000)},
        {"snap to 0 minutes", timecodeOf(1, 0, 0, 4499), [](T& t) { t.snapToMinute(0); }, timecodeOf(1, 0, 0, 3000)},
        {"snap to 5 minutes", timecodeOf(1, 0, 0, 16000), [](T& t) { t.snapToMinute(5); }, timecodeOf(1, 0, 0, 15000)},
        {"snap to 150 minutes", timecodeOf(1, 0, 0, 500000), [](T& t) { t.snapToMinute(150); },
         timecodeOf(1, 0, 0, 360000)},
        {"snap to 0 hours", timecodeOf(1, 0, 0, 4499), [](T& t) { t.snapToHour(0); }, timecodeOf(1, 0, 0, 4499)},
        {"snap to endless hours", timecodeOf(1, 0, 0, 4499), [](T& t) { t.snapToHour(0xFFFFFFFF); },
         timecodeOf(1, 0, 0, 0)},
    };
    ZANFCPTimecode::fps25();
    for (const Case& c : cases) {
        T timecode = c.start;
        c.change(timecode);
        EXPECT_EQ(timecode, c.expected) << c.name << ": " << timecode.debugDescription();
    }
}

TEST(TimecodeArithmetic, DropFrameSecondsAreWholeFrames)
{
    ZANFCPTimecode::fps2997();
    ZANFCPTimecode timecode;
    timecode.addMinutes(10); // 18000 frames, eighteen more than ten minutes of labels
    EXPECT_EQ(timecode.description(), "00:10:00:18");
    timecode.snapToMinute(10);
    EXPECT_EQ(timecode.framesSinceMidnight(), 18000U);
    timecode.subtractSeconds(1);
    EXPECT_EQ(timecode.framesSinceMidnight(), 17970U);
    timecode.addHours(1);
    timecode.snapToHour(1);
    EXPECT_EQ(timecode.description(), "01:00:00:00");
}

TEST(TimecodeArithmetic, TickDownEndsAtZero)
{
    ZANFCPTimecode::fps25();
    auto timecode = ZANFCPTimecode::timecodeWithFrames(2);
    EXPECT_TRUE(timecode.tickDown());
    EXPECT_FALSE(timecode.tickDown());
    EXPECT_TRUE(timecode.tickDown()) << "the last frame of the day before";
    EXPECT_EQ(timecode.framesSinceMidnight(), 2159999U);
}

TEST(TimecodeArithmetic, FactorsWithinADay)
{
    ZANFCPTimecode::fps25();
    const auto half = ZANFCPTimecode::timecodeWithHours(12);
    EXPECT_TRUE(half.canMultiplyBy(2));
    EXPECT_FALSE(half.canMultiplyBy(3));
    EXPECT_FALSE(half.canMultiplyBy(0xFFFFFFFF)) << "past 32 bits";
    EXPECT_EQ(half.maximumMultiplePerDay(), 2U);
    EXPECT_EQ(ZANFCPTimecode::zeroTime().maximumMultiplePerDay(), 0U);
    EXPECT_TRUE(ZANFCPTimecode::zeroTime().canMultiplyBy(0xFFFFFFFF));
}

TEST(TimecodeArithmetic, DifferencesCountFramesAcrossDays)
{
    ZANFCPTimecode::fps25();
    constexpr std::uint32_t kDay = 2160000;
    struct Case {
        const char* name;
        ZANFCPTimecode earlier, later;
        bool timecodeOnly, framesOnly;
        ZANFCPTimecode expected;
    };
    const Case cases[] = {
        {"same day", timecodeOf(2015, 0, 0, 10), timecodeOf(2015, 0, 0, 30), true, false, timecodeOf(0, 0, 0, 20)},
        {"same day, date kept", timecodeOf(2015, 0, 0, 10), timecodeOf(2015, 0, 0, 30), false, false,
         timecodeOf(2015, 0, 0, 20)},
        {"same day, negative", timecodeOf(2015, 0, 0, 30), timecodeOf(2015, 0, 0, 10), true, false,
         timecodeOf(0, 0, 0, kDay - 20)},
        {"other day, date kept", timecodeOf(2015, 0, 0, 30), timecodeOf(2015, 0, 1, 10), false, true,
         timecodeOf(2015, 0, 0, kDay - 20)},
        {"next day", timecodeOf(2015, 1, 27, kDay - 1), timecodeOf(2015, 2, 0, 5), true, false, timecodeOf(0, 0, 0, 6)},
        {"next day, more than one day", timecodeOf(2015, 1, 27, 5), timecodeOf(2015, 2, 0, 7), true, false,
         timecodeOf(0, 0, 1, 2)},
        {"leap February", timecodeOf(2016, 1, 27, 0), timecodeOf(2016, 2, 0, 0), true, false, timecodeOf(0, 0, 2, 0)},
        {"in frames", timecodeOf(2015, 11, 30, 100), timecodeOf(2016, 0, 2, 0), true, true,
         timecodeOf(0, 0, 0, kDay * 3 - 100)},
        {"days in 8 bits", timecodeOf(2015, 0, 0, 0), timecodeOf(2016, 0, 0, 1), true, false, timecodeOf(0, 0, 109, 1)},
        {"frames in 32 bits", timecodeOf(2000, 0, 0, 0), timecodeOf(2015, 0, 0, 1), true, true,
         timecodeOf(0, 0, 0, static_cast<std::uint32_t>(5479ULL * kDay + 1))},
    };
    for (const Case& c : cases) {
        const auto difference = ZANFCPTimecode::timecodeSubtracting(c.earlier, c.later, c.timecodeOnly, c.framesOnly);
        EXPECT_EQ(difference, c.expected) << c.name << ": " << difference.debugDescription();
    }
}

TEST(TimecodeArithmetic, EarlierDayIsReachedAroundTheEndOfAllYears)
{
    ZANFCPTimecode::fps25();
    const ZANFCPTimecode late = timecodeOf(2015, 2, 11, 3);
    const ZANFCPTimecode early = timecodeOf(2014, 5, 1, 1);
    StepByStep day{.day = 12, .month = 2, .year = 2015};
    std::uint64_t frames = 2160000 - 3 + 1;
    for (; day.day != early.day() || day.month != early.month() || day.year != early.year(); day.addDays(1))
        frames += 2160000;
    EXPECT_EQ(ZANFCPTimecode::timecodeSubtracting(late, early, true, true).framesSinceMidnight(),
              static_cast<std::uint32_t>(frames));
}

TEST(TimecodeArithmetic, ClassMethodsLeaveTheirArgumentsAlone)
{
    ZANFCPTimecode::fps25();
    const ZANFCPTimecode a = timecodeOf(0, 0, 1, 10);
    const ZANFCPTimecode b = timecodeOf(2015, 0, 0, 20);
    EXPECT_EQ(ZANFCPTimecode::timecodeAdding(a, b), timecodeOf(2015, 0, 1, 30));
    EXPECT_EQ(ZANFCPTimecode::timecodeMultiplying(b, 3), timecodeOf(2015, 0, 0, 60));
    EXPECT_EQ(b, timecodeOf(2015, 0, 0, 20));
}

} // namespace
} // namespace zanfcp
