#include "tests/support/LogCapture.h"
#include "tests/timecode/Rates.h"
#include "timecode/PELTimecode.h"
#include "timecode/PELTimecodeObject.h"

#include <cmath>
#include <gmock/gmock.h>
#include <vector>

namespace zanfcp {
namespace {

using test::kRateRows;
using test::RateRow;
using testing::IsEmpty;

struct Label {
    std::uint32_t minute, second, frame;
};

/// Every label of an hour, counted one frame after the other.
std::vector<Label> countOneHour(const RateRow& rate)
{
    std::vector<Label> labels;
    for (Label at{0, 0, 0}; at.minute < 60;) {
        labels.push_back(at);
        if (++at.frame < rate.framesPerSecond) continue;
        at.frame = 0;
        if (++at.second < 60) continue;
        at.second = 0;
        ++at.minute;
        if (at.minute % 10 != 0) at.frame = rate.droppedPerMinute;
    }
    return labels;
}

TEST(FrameRates, EachSelectionSetsItsRow)
{
    for (const RateRow& rate : kRateRows) {
        SCOPED_TRACE(rate.name);
        rate.select();
        EXPECT_TRUE(ZANFCPTimecode::hasValidFrameRate());
        EXPECT_EQ(ZANFCPTimecode::currentFrameRate(), rate.index);
        EXPECT_EQ(ZANFCPTimecode::framesPerSecond(), rate.framesPerSecond);
        EXPECT_EQ(ZANFCPTimecode::realFramesPerSecond(), rate.real);
        EXPECT_EQ(ZANFCPTimecode::dropFrameTimecode(), rate.droppedPerMinute != 0);
        EXPECT_EQ(ZANFCPTimecode::framesPerHour(), rate.framesPerHour);
        EXPECT_EQ(ZANFCPTimecode::framesPerDay(), rate.framesPerHour * 24);
    }
}

TEST(FrameRates, EveryFrameOfAnHourKeepsItsLabelBothWays)
{
    test::LogCapture log;
    for (const RateRow& rate : kRateRows) {
        SCOPED_TRACE(rate.name);
        rate.select();
        const std::vector<Label> labels = countOneHour(rate);
        ASSERT_EQ(labels.size(), rate.framesPerHour);
        ZANFCPTimecode back;
        for (std::uint32_t index = 0; index < rate.framesPerHour; ++index) {
            const std::uint32_t hour = index % 26; // hours past a day too
            const Label& label = labels[index];
            ZANFCPTimecode timecode;
            timecode.setFramesSinceMidnight(hour * rate.framesPerHour + index);
            ASSERT_EQ(timecode.hours(), hour) << index;
            ASSERT_EQ(timecode.minutes(), label.minute) << index;
            ASSERT_EQ(timecode.seconds(), label.second) << index;
            ASSERT_EQ(timecode.frames(), label.frame) << index;
            back.setHours(static_cast<std::uint8_t>(hour), static_cast<std::uint8_t>(label.minute),
                          static_cast<std::uint8_t>(label.second), static_cast<std::uint8_t>(label.frame));
            ASSERT_EQ(back, timecode) << index;
        }
    }
    EXPECT_THAT(log.errors(), IsEmpty());
}

TEST(FrameRates, LabelsThatAreNotCountedAreIllegal)
{
    ZANLogger::setEnabled(LogLevel::error, false); // one line for each of a million labels
    for (const RateRow& rate : kRateRows) {
        SCOPED_TRACE(rate.name);
        rate.select();
        std::vector<bool> counted(64U * 64U * 64U);
        for (const Label& label : countOneHour(rate))
            counted[(label.minute * 64 + label.second) * 64 + label.frame] = true;
        for (std::uint32_t packed = 0; packed < counted.size(); ++packed) {
            if (counted[packed]) continue;
            ZANFCPTimecode timecode;
            timecode.setHours(1, static_cast<std::uint8_t>(packed / 4096), static_cast<std::uint8_t>(packed / 64 % 64),
                              static_cast<std::uint8_t>(packed % 64));
            ASSERT_EQ(timecode.framesSinceMidnight(), rate.framesPerHour) << packed;
        }
    }
    ZANLogger::setEnabled(LogLevel::error, true);
}

TEST(FrameRates, AwkwardLabels)
{
    struct Case {
        void (*select)();
        const char* text;
        std::uint32_t frames;
        const char* label; ///< as a duration
        std::vector<std::string> errors;
    };
    const Case cases[] = {
        {ZANFCPTimecode::fps2997, "00:00:59;29", 1799, "00:00:59:29", {}},
        {ZANFCPTimecode::fps2997, "00:01:00;02", 1800, "00:01:00:02", {}},
        {ZANFCPTimecode::fps2997, "00:10:00;00", 17982, "00:10:00:00", {}},
        {ZANFCPTimecode::fps2997, "00:10:00:01", 17983, "00:10:00:01", {}},
        {ZANFCPTimecode::fps2997, "00:59:59;29", 107891, "00:59:59:29", {}},
        {ZANFCPTimecode::fps2997, "25:00:00;00", 2697300, "25:00:00:00", {}},
        {ZANFCPTimecode::fps5994, "00:01:00;04", 3600, "00:01:00:04", {}},
        {ZANFCPTimecode::fps5994, "00:59:59;59", 215783, "00:59:59:59", {}},
        {ZANFCPTimecode::fps2997, "00:01:00;00", 0, "00:00:00:00", {"ZANFCPTimecode: Illegal timecode 00:01:00:00"}},
        {ZANFCPTimecode::fps2997,
         "02:01:00:01",
         215784,
         "02:00:00:00",
         {"ZANFCPTimecode: Illegal timecode 02:01:00:01"}},
        {ZANFCPTimecode::fps5994, "00:01:00;03", 0, "00:00:00:00", {"ZANFCPTimecode: Illegal timecode 00:01:00:03"}},
        {ZANFCPTimecode::fps25, "01:00:00:00", 90000, "01:00:00:00", {}},
        {ZANFCPTimecode::fps25, "00:00:00:25", 0, "00:00:00:00", {"ZANFCPTimecode: Illegal timecode 00:00:00:25"}},
        {ZANFCPTimecode::fps25, "01:60:00:00", 90000, "01:00:00:00", {"ZANFCPTimecode: Illegal timecode 01:60:00:00"}},
        {ZANFCPTimecode::fps25, "255:00:00:00", 22950000, "255:00:00:00", {}},
        {ZANFCPTimecode::fps25, "257:00:00:00", 90000, "01:00:00:00", {}}, // cut to 8 bits
        {ZANFCPTimecode::fps25, "00:256:300:00", 1100, "00:00:44:00", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        test::LogCapture log;
        c.select();
        const auto timecode = ZANFCPTimecode::timecodeWithString(c.text);
        EXPECT_EQ(timecode.framesSinceMidnight(), c.frames);
        EXPECT_EQ(timecode.description(), c.label);
        EXPECT_EQ(log.errors(), c.errors);
    }
}

TEST(FrameRates, SelectedForARecord)
{
    struct Case {
        PELRate rate;
        std::uint32_t index;
    };
    const Case cases[] = {{{24, false}, 1}, {{24, true}, 0},         {{25, false}, 2}, {{25, true}, 2},
                          {{30, false}, 4}, {{30, true}, 3},         {{50, false}, 5}, {{50, true}, 5},
                          {{60, false}, 7}, {{60, true}, 6},         {{48, false}, 2}, {{0, false}, 2},
                          {{-1, true}, 2},  {{NSNotFound, false}, 2}};
    for (const Case& c : cases) {
        SCOPED_TRACE(NSStringFromPELRate(c.rate));
        c.index == 2 ? ZANFCPTimecode::fps60() : ZANFCPTimecode::fps25();
        PELSetFPSForRate(c.rate);
        EXPECT_EQ(ZANFCPTimecode::currentFrameRate(), c.index);
    }
}

TEST(RateRecord, DescribesItselfIn32Bits)
{
    EXPECT_EQ(NSStringFromPELRate(PELRateMake(30, true)), "timebase: 30, isNTSC: 1");
    EXPECT_EQ(NSStringFromPELRate(PELRateMake(25, false)), "timebase: 25, isNTSC: 0");
    EXPECT_EQ(NSStringFromPELRate(PELRateMake(NSNotFound, false)), "timebase: -1, isNTSC: 0");
}

std::string textOf(const PELTimecode& timecode)
{
    return {timecode.string.data()};
}

TEST(TimecodeRecord, MadeFromATextSelectsItsRate)
{
    ZANFCPTimecode::fps25();
    const PELTimecode timecode = PELTimecodeMakeWithString("00:01:00;02", PELRateMake(30, true));
    EXPECT_EQ(timecode.kind, 1);
    EXPECT_EQ(timecode.rate, PELRateMake(30, true));
    EXPECT_EQ(timecode.frames, 1800U);
    EXPECT_TRUE(timecode.hasDropframe);
    EXPECT_EQ(textOf(timecode), "00:01:00;02");
    EXPECT_EQ(ZANFCPTimecode::currentFrameRate(), 3U);
}

TEST(TimecodeRecord, LongTextIsCutBetweenCharacters)
{
    test::LogCapture log;
    const PELRate rate = PELRateMake(25, false);
    const PELTimecode cut = PELTimecodeMakeWithString("01:00:00:001234", rate);
    EXPECT_EQ(textOf(cut), "01:00:00:00");
    EXPECT_EQ(cut.string.back(), '\0');
    EXPECT_EQ(cut.frames, 90000U);
    EXPECT_EQ(textOf(PELTimecodeMakeWithString("0123456789\xC3\xA4", rate)), "0123456789");
    EXPECT_EQ(textOf(PELTimecodeMakeWithString(std::string(20, '\x80'), rate)), std::string(11, '\x80'));
    EXPECT_EQ(PELTimecodeMakeWithString("12\xC3\xA4", rate).frames, 0U) << "read as ASCII";
}

TEST(TimecodeRecord, OnlyElevenCharactersReplaceTheText)
{
    const PELRate rate = PELRateMake(25, false);
    PELTimecode before;
    before.rate = PELRateMake(60, false);
    std::ranges::copy(std::string_view{"00:00:01:00"}, before.string.begin());

    for (const char* text : {"1:00:00:00", "01:00:00:000", ""}) {
        SCOPED_TRACE(text);
        const PELTimecode made = PELTimecodeMakeWithCString(text, rate, before);
        EXPECT_EQ(textOf(made), "00:00:01:00");
        EXPECT_EQ(made.frames, 25U);
        EXPECT_EQ(made.rate, rate);
        EXPECT_EQ(made.kind, 1);
    }
    EXPECT_EQ(PELTimecodeMakeWithCString(std::nullopt, rate, before).frames, 25U);
    EXPECT_EQ(PELTimecodeMakeWithCString("1:00:00:00", rate).frames, 0U);
    EXPECT_EQ(PELTimecodeMakeWithCString("01:00:00:00", rate, before).frames, 90000U);
}

TEST(TimecodeRecord, ConversionReadsTheTextAtItsOwnRate)
{
    PELTimecode timecode = PELTimecodeMakeWithString("00:00:01:00", PELRateMake(25, false));
    timecode.rate = PELRateMake(50, false);
    EXPECT_EQ(PELTimecodeConvertStringToFrames(timecode), 50U);
    EXPECT_EQ(timecode.frames, 25U);
    EXPECT_EQ(ZANFCPTimecode::currentFrameRate(), 5U);

    timecode.string.fill('1'); // no room for a NUL
    EXPECT_EQ(PELTimecodeConvertStringToFrames(timecode), 111111111111U % (1ULL << 32U));
}

TEST(TimecodeRecord, Describes)
{
    PELTimecode timecode = PELTimecodeMakeWithString("01:00:00:00", PELRateMake(25, false));
    EXPECT_EQ(NSStringFromPELTimecode(timecode), "rate: {timebase: 25, isNTSC: 0}, string: 01:00:00:00");
    timecode.kind = 0;
    timecode.hasDropframe = true;
    EXPECT_EQ(NSStringFromPELTimecode(timecode), "rate: {timebase: 25, isNTSC: 0}, frames: 90000, hasDropframe: 1");
}

} // namespace
} // namespace zanfcp
