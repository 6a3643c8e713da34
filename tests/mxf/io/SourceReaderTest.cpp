#include "mxf/io/SourceReader.h"

#include "mxf/Status.h"
#include "tests/support/FakeClock.h"
#include "tests/support/MemorySource.h"
#include "tests/support/RecordingSnitcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace {

using namespace TamrelMxf;
using zanfcp::test::MemorySource;

/// A reader over ten bytes of which 20 are asked for.
class SourceReader : public testing::Test {
protected:
    void attach(std::uint32_t timeoutSeconds) { reader.Attach(&source, timeoutSeconds, CLoggerT<CSnitcher>{&sink}); }
    int read(int count = 20) { return reader.ReadSource(buffer.data(), 0, count); }
    void grow(std::size_t size) { source.bytes.resize(size); }

    MemorySource source{std::vector<std::uint8_t>(10, 1)};
    zanfcp::test::RecordingSnitcher sink;
    zanfcp::test::FakeClock clock;
    CSourceReader reader{clock};
    std::array<std::uint8_t, 20> buffer{};
};

TEST_F(SourceReader, WithoutASourceNothingIsOpen)
{
    EXPECT_EQ(read(), kNotOpen);
}

TEST_F(SourceReader, FullReadAndReadErrorReturnAtOnce)
{
    attach(10);
    EXPECT_EQ(read(10), 10);
    source.readError = -3;
    EXPECT_EQ(read(), -3);
    EXPECT_TRUE(clock.sleeps.empty());
}

TEST_F(SourceReader, FailedSeekIsReported)
{
    attach(10);
    source.seekError = 5;
    EXPECT_EQ(read(), kFailed);
    source.seekError = 0;
    clock.onSleep = [this] { source.seekError = 6; };
    EXPECT_EQ(read(), kFailed);
    EXPECT_THAT(sink.lines, testing::ElementsAre("error: Seeking error 5", "error: Seeking error 6"));
}

TEST_F(SourceReader, CompleteFileIsReadOnce)
{
    attach(10);
    reader.SetComplete(true);
    EXPECT_EQ(read(), 10);
    EXPECT_EQ(source.reads, 1);
}

TEST_F(SourceReader, WaitsForTheRestInHalfSeconds)
{
    attach(10);
    clock.onSleep = [this] {
        if (clock.sleeps.size() == 3) grow(20);
    };
    EXPECT_EQ(read(), 20);
    EXPECT_THAT(clock.sleeps, testing::ElementsAre(500, 500, 500));
    EXPECT_FALSE(reader.IsStopped());
}

TEST_F(SourceReader, GivesUpAfterTheTimeoutAndNeverWaitsAgain)
{
    attach(2);
    EXPECT_EQ(read(), 10);
    EXPECT_EQ(clock.sleeps.size(), 4u);
    EXPECT_TRUE(reader.IsStopped());
    EXPECT_EQ(read(), 10);
    EXPECT_EQ(clock.sleeps.size(), 4u);
    EXPECT_THAT(sink.lines, testing::ElementsAre("warning: reading canceled after 2 sec (timeout)"));
    attach(2); // a fresh start clears the flag
    EXPECT_FALSE(reader.IsStopped());
}

TEST_F(SourceReader, TimeoutOfZeroStopsSilently)
{
    attach(0);
    EXPECT_EQ(read(), 10);
    EXPECT_TRUE(clock.sleeps.empty());
    EXPECT_TRUE(reader.IsStopped());
    EXPECT_TRUE(sink.lines.empty());
}

TEST_F(SourceReader, ProgressRestartsTheWait)
{
    attach(1);
    clock.onSleep = [this] { grow(std::min<std::size_t>(source.bytes.size() + 1, 14)); };
    EXPECT_EQ(read(), 14);
    EXPECT_EQ(clock.sleeps.size(), 4u + 2u); // four bytes came, one a sleep, then a whole second without any
}

TEST_F(SourceReader, AsksWhetherTheFileIsCompleteOnlyWithAHeaderAndSomeBytes)
{
    int asked = 0;
    bool answer = false;
    reader.SetCompletenessTest([&] { return ++asked, answer; });
    struct Case {
        const char* name;
        std::size_t bytes;
        bool headerParsed;
        bool complete;
        int asked;
    };
    const Case cases[] = {
        {"no header yet", 10, false, true, 0},
        {"nothing arrived", 0, true, true, 0},
        {"still being written", 10, true, false, 3},
        {"complete", 10, true, true, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        attach(1);
        reader.SetHeaderParsed(c.headerParsed);
        grow(c.bytes);
        answer = c.complete;
        asked = 0;
        EXPECT_EQ(read(), static_cast<int>(c.bytes));
        EXPECT_EQ(asked, c.asked);
        EXPECT_EQ(reader.IsComplete(), c.complete && c.asked > 0);
        EXPECT_EQ(reader.IsStopped(), !reader.IsComplete());
    }
}

} // namespace
