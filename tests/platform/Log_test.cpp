#include "platform/Log.h"

#include "platform/Format.h"
#include "tests/support/LogCapture.h"

#include <atomic>
#include <gmock/gmock.h>
#include <thread>
#include <vector>

namespace zanfcp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Format, TextsLongerThanTheFirstBufferAreWhole)
{
    for (const std::size_t length : {0U, 1U, 254U, 255U, 256U, 257U, 100000U}) {
        const std::string text(length, 'x');
        EXPECT_EQ(format("%s", text.c_str()), text) << length;
    }
    EXPECT_EQ(format("%02i:%5.2f|%%|%s", 7, 1.5, "\xC3\xA4"), "07: 1.50|%|\xC3\xA4");
}

TEST(Log, LinesReachTheSinkWithTheirLevel)
{
    test::LogCapture log;
    ZAN_LOG_ERROR("%s is %d", "answer", 42);
    ZAN_LOG_DEFAULT("plain");
    EXPECT_THAT(log.errors(), ElementsAre("answer is 42"));
    EXPECT_THAT(log.texts(LogLevel::normal), ElementsAre("plain"));
}

TEST(Log, SwitchedOffLevelIsSilent)
{
    test::LogCapture log;
    ZANLogger::setEnabled(LogLevel::normal, false);
    ZAN_LOG_DEFAULT("dropped");
    ZAN_LOG_ERROR("kept");
    EXPECT_FALSE(ZANLogger::isEnabled(LogLevel::normal));
    ZANLogger::setEnabled(LogLevel::normal, true);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0].text, "kept");
}

TEST(Log, FormerSinkComesBack)
{
    test::LogCapture outer;
    {
        test::LogCapture inner;
        ZAN_LOG_ERROR("inner");
        EXPECT_THAT(inner.errors(), ElementsAre("inner"));
    }
    EXPECT_THAT(outer.errors(), IsEmpty());
    ZAN_LOG_ERROR("outer");
    EXPECT_THAT(outer.errors(), ElementsAre("outer"));
}

TEST(Log, SinkIsCalledByOneThreadAtATime)
{
    std::atomic<int> inside{0};
    int overlaps = 0;
    int lines = 0;
    const auto before = ZANLogger::setSink([&](LogLevel, std::string_view) {
        if (++inside != 1) ++overlaps;
        ++lines;
        std::this_thread::yield();
        --inside;
    });
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([] {
            for (int line = 0; line < 500; ++line)
                ZAN_LOG_DEFAULT("line %d", line);
        });
    for (std::thread& thread : threads)
        thread.join();
    ZANLogger::setSink(before);
    EXPECT_EQ(overlaps, 0);
    EXPECT_EQ(lines, 2000);
}

} // namespace
} // namespace zanfcp
