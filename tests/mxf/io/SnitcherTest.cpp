#include "mxf/io/Snitcher.h"

#include "tests/support/RecordingSnitcher.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

TEST(Logger, PassesEachLevelOnAndDropsEverythingWithoutASink)
{
    zanfcp::test::RecordingSnitcher sink;
    for (CSnitcher* target : {static_cast<CSnitcher*>(nullptr), static_cast<CSnitcher*>(&sink)}) {
        const CLoggerT<CSnitcher> logger{target};
        logger.LogError("no %s at %d", "key", 4);
        logger.LogWarning("%.0f bytes", 1e12);
        logger.LogInfo("done");
    }
    EXPECT_THAT(sink.lines, testing::ElementsAre("error: no key at 4", "warning: 1000000000000 bytes", "info: done"));
}

TEST(DebugSnitcher, WritesOneLineAMessage)
{
    const zanfcp::test::TempFolder folder;
    const std::string path = folder.file("log");
    std::FILE* stream = std::fopen(path.c_str(), "w");
    ASSERT_NE(stream, nullptr);
    CDebugSnitcher sink{stream};
    const CLoggerT<CSnitcher> logger{&sink};
    logger.LogError("a %d", 1);
    logger.LogInfo("b");
    std::fclose(stream);
    EXPECT_EQ(zanfcp::test::readFile(path), "mxf error: a 1\nmxf info: b\n");
}

} // namespace
