// A program of its own: once a rate is selected there is no way back.

#include "tests/support/LogCapture.h"
#include "timecode/PELTimecodeObject.h"

#include <gmock/gmock.h>

namespace zanfcp {
namespace {

TEST(NoFrameRate, StateIsZero)
{
    EXPECT_FALSE(ZANFCPTimecode::hasValidFrameRate());
    EXPECT_EQ(ZANFCPTimecode::currentFrameRate(), 8U);
    EXPECT_EQ(ZANFCPTimecode::framesPerSecond(), 0U);
    EXPECT_EQ(ZANFCPTimecode::realFramesPerSecond(), 0.0);
    EXPECT_FALSE(ZANFCPTimecode::dropFrameTimecode());
    EXPECT_EQ(ZANFCPTimecode::framesPerHour(), 0U);
    EXPECT_EQ(ZANFCPTimecode::framesPerDay(), 0U);
}

TEST(NoFrameRate, FieldsAndConversionsAreZero)
{
    const auto timecode = ZANFCPTimecode::timecodeWithFrames(5000000000);
    EXPECT_EQ(timecode.framesSinceMidnight(), 705032704U) << "stored as it is, in 32 bits";
    EXPECT_TRUE(timecode.isDuration());
    EXPECT_EQ(timecode.hours() + timecode.minutes() + timecode.seconds() + timecode.frames(), 0U);
    EXPECT_EQ(timecode.secondsSinceMidnight(), 0.0);
    EXPECT_EQ(timecode.description(), "00:00:00:00");
    EXPECT_EQ(timecode.maximumMultiplePerDay(), 0U);
    EXPECT_EQ(ZANFCPTimecode::timecodeWithSeconds(10).framesSinceMidnight(), 0U);
    EXPECT_EQ(ZANFCPTimecode::timecodeWithHours(3).framesSinceMidnight(), 0U);
    EXPECT_EQ(PELTimecodeObject::framesFromString("17"), 17U);
}

TEST(NoFrameRate, EveryLabelIsIllegal)
{
    test::LogCapture log;
    EXPECT_EQ(PELTimecodeObject::framesFromString("00:00:00:00"), 0U);
    EXPECT_THAT(log.errors(), testing::ElementsAre("ZANFCPTimecode: Illegal timecode 00:00:00:00"));
}

TEST(NoFrameRate, ArithmeticEndsWithoutCarry)
{
    auto timecode = ZANFCPTimecode::timecodeWithString("2.1.2015 10");
    timecode.addFrames(4000000000);
    EXPECT_EQ(timecode.XMLRepresentation(), "2.1.2015 -294967286");
    timecode.setFramesSinceMidnight(10);
    timecode.multiplyBy(7);
    timecode.addSeconds(5);
    timecode.snapToMinute(5);
    timecode.snapToHour(1);
    EXPECT_EQ(timecode.XMLRepresentation(), "2.1.2015 70");
    EXPECT_FALSE(timecode.canMultiplyBy(1));
    timecode.subtractFrames(71);
    EXPECT_EQ(timecode.XMLRepresentation(), "1.1.2015 -1");
}

TEST(NoFrameRate, DatesHaveNoTime)
{
    const auto date = ZANFCPTimecode::timecodeWithString("2.1.2015 10");
    EXPECT_EQ(ZANFCPTimecode::timecodeWithDate(date.toDate()).XMLRepresentation(), "2.1.2015 0");
    EXPECT_EQ(date.toCFDate(), date.toDate());
    EXPECT_FALSE(ZANFCPTimecode::hasValidFrameRate());
}

} // namespace
} // namespace zanfcp
