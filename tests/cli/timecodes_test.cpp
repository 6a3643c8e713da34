#include "cli/Timecodes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zanfcp::cli {
namespace {

constexpr PELRate k25{25, false};
constexpr PELRate k2997{30, true};
constexpr PELRate k5994{60, true};

TEST(RateNamed, KnowsWhatPeopleWriteAndNothingElse)
{
    struct Case {
        const char* name;
        std::optional<PELRate> rate;
    };
    const Case cases[] = {
        {"23.976", PELRate{24, true}},
        {"23.98", PELRate{24, true}},
        {"24", PELRate{24, false}},
        {"25", k25},
        {"29.97", k2997},
        {"29.97DF", k2997},
        {"29.97ndf", PELRate{30, false}},
        {"30", PELRate{30, false}},
        {"50", PELRate{50, false}},
        {"59.94", k5994},
        {"59.94ndf", PELRate{60, false}},
        {"60", PELRate{60, false}},
        {"", {}},
        {"29", {}},
        {"25.0", {}},
        {"25 ", {}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(rateNamed(c.name), c.rate) << c.name;
}

TEST(FramesFromText, LabelsAndCountsRoundTrip)
{
    struct Case {
        const char* label;
        PELRate rate;
        NSInteger frames;
    };
    const Case cases[] = {
        {"00:00:00:00", k25, 0},         {"01:00:00:00", k25, 90000},  {"23:59:59:24", k25, 2159999},
        {"00:00:59;29", k2997, 1799},    {"00:01:00;02", k2997, 1800}, {"00:10:00;00", k2997, 17982},
        {"23:59:59;29", k2997, 2589407}, {"00:01:00;04", k5994, 3600}, {"00:09:59;59", k5994, 35963},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        const auto frames = framesFromText(c.label, c.rate);
        ASSERT_TRUE(frames);
        EXPECT_EQ(*frames, c.frames);
        EXPECT_EQ(labelFromFrames(c.frames, c.rate), c.label);
        EXPECT_EQ(*framesFromText(std::to_string(c.frames), c.rate), c.frames);
    }
    EXPECT_EQ(*framesFromText("00:01:00:02", k2997), 1800); // ":" is read at drop-frame rates too
}

TEST(FramesFromText, SaysWhatIsWrongWithALabel)
{
    struct Case {
        std::string text;
        PELRate rate;
        const char* why;
    };
    const Case cases[] = {
        {"", k25, "HH:MM:SS:FF"},
        {"1:00:00:00", k25, "HH:MM:SS:FF"},
        {"01:00:00:00 ", k25, "HH:MM:SS:FF"},
        {"01;00:00:00", k25, "HH:MM:SS:FF"},
        {"01:00:00.00", k25, "HH:MM:SS:FF"},
        {"-5", k25, "HH:MM:SS:FF"},
        {"1000000000", k25, "at most 9 digits"},
        {"24:00:00:00", k25, "24 hours"},
        {"00:60:00:00", k25, "end at 59"},
        {"00:00:60:00", k25, "end at 59"},
        {"00:00:00:25", k25, "frames end at 24"},
        {"00:00:00;10", k25, "drop-frame"},
        {"00:01:00;01", k2997, "labels 00 to 01 are skipped"},
        {"00:09:00;03", k5994, "labels 00 to 03 are skipped"},
        {std::string("00:00:00:0\0", 11), k25, "HH:MM:SS:FF"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const auto frames = framesFromText(c.text, c.rate);
        ASSERT_FALSE(frames);
        EXPECT_THAT(frames.error().what, ::testing::HasSubstr(c.why));
    }
}

TEST(LabelFromFrames, WrapsAtMidnightBothWays)
{
    EXPECT_EQ(labelFromFrames(2160000, k25), "00:00:00:00");
    EXPECT_EQ(labelFromFrames(-1, k25), "23:59:59:24");
    EXPECT_EQ(labelFromFrames(-1, k2997), "23:59:59;29");
}

TEST(RateText, NamesTheRealRate)
{
    EXPECT_EQ(rateText({24, true}), "23.98");
    EXPECT_EQ(rateText(k2997), "29.97 DF");
    EXPECT_EQ(rateText({29, false}), "29"); // a movie without timecode track
    EXPECT_EQ(rateText({}), "unknown");
    EXPECT_FALSE(isTimecodeRate({29, false}));
}

TEST(LabelAtBase, CountsAtRatesThatNoTimecodeHas)
{
    struct Case {
        std::int64_t frames;
        std::uint16_t base;
        bool dropFrame;
        const char* label;
    };
    const Case cases[] = {
        {1799, 30, true, "00:00:59;29"},  {1800, 30, true, "00:01:00;02"},     {17982, 30, true, "00:10:00;00"},
        {1800, 30, false, "00:01:00:00"}, {3600, 60, true, "00:01:00;04"},     {7200, 120, true, "00:01:00;08"},
        {4800, 48, false, "00:01:40:00"}, {1500, 25, true, "00:01:00:00"}, // no such thing as drop-frame at 25
        {-1, 25, false, "23:59:59:24"},   {2160000, 25, false, "00:00:00:00"}, {1000, 0, false, ""},
        {1000, 65535, false, ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(labelAtBase(c.frames, c.base, c.dropFrame), c.label) << c.frames << " at " << c.base;
}

} // namespace
} // namespace zanfcp::cli
