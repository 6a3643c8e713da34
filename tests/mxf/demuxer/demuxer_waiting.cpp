#include "mxf/Status.h"
#include "tests/mxf/demuxer/DemuxerFile.h"
#include "tests/support/FakeClock.h"
#include "tests/support/RecordingSnitcher.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using testing::ElementsAre;
using zanfcp::test::FakeClock;
using zanfcp::test::RecordingSnitcher;
using zanfcp::test::TempFolder;

namespace {

mxf_demuxer_config WithTimeout(std::uint32_t seconds)
{
    mxf_demuxer_config config{};
    config.timeout = seconds;
    return config;
}

void WriteFile(const std::string& path, const Bytes& bytes)
{
    std::ofstream out{path, std::ios::binary};
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

TEST(OpeningByPath, GivesUpOnceMoreSecondsThanTheTimeOutHavePassed)
{
    const struct {
        std::uint32_t timeout;
        std::size_t sleeps;
        const char* seconds;
    } cases[] = {{0, 2, "1"}, {1, 4, "2"}, {10, 22, "11"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.timeout);
        FakeClock clock;
        RecordingSnitcher sink;
        CMxfDemuxer demuxer{clock};
        const mxf_demuxer_config config = WithTimeout(c.timeout);
        EXPECT_EQ(demuxer.Open("/nowhere/at all.mxf", &config, &sink), kTimedOut);
        EXPECT_EQ(clock.sleeps, std::vector<std::uint32_t>(c.sleeps, 500));
        EXPECT_THAT(sink.lines, ElementsAre(std::string("error: Unable to open file /nowhere/at all.mxf after ") +
                                            c.seconds + " seconds"));
    }
}

TEST(OpeningByPath, TakesAFileThatAppearsMeanwhile)
{
    const TempFolder folder;
    const std::string path = folder.file("late.mxf");
    FakeClock clock;
    clock.onSleep = [&] {
        if (clock.sleeps.size() == 3) WriteFile(path, CompleteFile(StandardFile{}.Bytes()));
    };
    CMxfDemuxer demuxer{clock};
    const mxf_demuxer_config config = WithTimeout(10);
    EXPECT_EQ(demuxer.Open(path.c_str(), &config, nullptr), kSuccess);
    EXPECT_EQ(clock.sleeps.size(), 3U);
}

TEST(GrowingFile, IsOpenedWhileItsHeaderIsStillBeingWritten)
{
    const Bytes whole = CompleteFile(StandardFile{}.Bytes());
    Bytes written(whole.begin(), whole.begin() + 500);
    FakeClock clock;
    clock.onSleep = [&] {
        const std::size_t more = std::min(written.size() + 400, whole.size() - 2500);
        written.assign(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(more));
    };
    CMxfDemuxer demuxer{clock};
    const mxf_demuxer_config config = WithTimeout(10);
    ASSERT_EQ(demuxer.Open(std::make_unique<BorrowedSource>(written), &config, {}), kSuccess);
    EXPECT_GT(clock.sleeps.size(), 2U);
    EXPECT_EQ(demuxer.Streams().size(), 2U);
}

TEST(GrowingFile, ThatStopsInItsHeaderIsWaitedForAsLongAsToldAndNotAPollLonger)
{
    const Bytes whole = CompleteFile(StandardFile{}.Bytes());
    for (const std::uint32_t timeout : {0U, 3U, 10U}) {
        SCOPED_TRACE(timeout);
        // The sets that follow the material package are missing, and with them all essence tracks.
        zanfcp::test::MemorySource cut{{whole.begin(), whole.begin() + 2500}};
        FakeClock clock;
        CMxfDemuxer demuxer{clock};
        RecordingSnitcher sink;
        const mxf_demuxer_config config = WithTimeout(timeout);
        (void)demuxer.Open(std::make_unique<zanfcp::test::MemorySource>(cut.bytes), &config,
                           CLoggerT<CSnitcher>{&sink});
        EXPECT_EQ(clock.sleeps.size(), 2 * timeout);
        EXPECT_THAT(sink.lines, testing::Contains("warning: header metadata is cut short"));
    }
}

TEST(GrowingFile, IsCompleteAndKnowsItsDurationOnceTheFooterIsThere)
{
    const StandardFile begun{.materialPicture = -1, .materialSound = -1, .filePicture = -1, .fileSound = -1};
    MxfBuilder builder;
    builder.partition({.status = 1, .bodySID = 1, .metadata = begun.Bytes()}).essence(1000);
    Bytes written = builder.bytes;
    FakeClock clock;
    CMxfDemuxer demuxer{clock};
    ASSERT_EQ(demuxer.Open(std::make_unique<BorrowedSource>(written), nullptr, {}), kSuccess);
    mxf_file_info info{};
    ASSERT_EQ(demuxer.GetFileInfo(&info), kSuccess);
    EXPECT_EQ(info.complete, 0U);
    EXPECT_EQ(info.duration, 1) << "one element is there";
    EXPECT_EQ(info.header_partition_status, 1U);

    written = builder.essence(1000).bytes;
    ASSERT_EQ(demuxer.GetFileInfo(&info), kSuccess);
    EXPECT_EQ(info.complete, 0U);
    EXPECT_EQ(info.file_size, static_cast<std::int64_t>(written.size()));

    written = builder.partition({.kind = 4, .metadata = StandardFile{}.Bytes()}).randomIndexPack().bytes;
    ASSERT_EQ(demuxer.GetFileInfo(&info), kSuccess);
    EXPECT_EQ(info.complete, 1U);
    EXPECT_EQ(info.duration, 250);
    EXPECT_EQ(info.stream_count, 2U);

    written.resize(written.size() + 100); // the file is complete: what follows changes nothing
    ASSERT_EQ(demuxer.GetFileInfo(&info), kSuccess);
    EXPECT_EQ(info.complete, 1U);
    EXPECT_EQ(info.duration, 250);
}

TEST(GrowingFile, SaysWhichSetsOfTheFooterHaveNoPlace)
{
    StandardFile closed;
    closed.more.push_back(MxfSet("TimelineTrack", 800));
    closed.more.push_back(MxfSet("TimelineTrack", 801).U32(0x4801, 9));
    closed.more.push_back(MxfSet("Sequence", 802));
    closed.more.push_back(MxfSet("Sequence", 803).I64(0x0202, 9));
    const StandardFile begun{.materialPicture = -1, .materialSound = -1, .filePicture = -1, .fileSound = -1};
    MxfBuilder builder;
    builder.partition({.status = 1, .bodySID = 1, .metadata = begun.Bytes()}).essence(1000);
    Bytes written = builder.bytes;
    FakeClock clock;
    RecordingSnitcher sink;
    CMxfDemuxer demuxer{clock};
    ASSERT_EQ(demuxer.Open(std::make_unique<BorrowedSource>(written), nullptr, CLoggerT<CSnitcher>{&sink}), kSuccess);
    sink.lines.clear();
    written = builder.partition({.kind = 4, .metadata = closed.Bytes()}).randomIndexPack().bytes;
    mxf_file_info info{};
    ASSERT_EQ(demuxer.GetFileInfo(&info), kSuccess);
    EXPECT_EQ(info.duration, 250);
    EXPECT_THAT(sink.lines, testing::ElementsAre(testing::StartsWith("info: random index pack found"),
                                                 "error: footer scanning: cannot update track",
                                                 "error: footer scanning: cannot find track in lists",
                                                 "error: footer scanning: cannot update sequence",
                                                 "warning: footer scanning: cannot find sequence in lists"));
}

TEST(CompleteFile, WithALyingHeaderByteCountIsNotWaitedFor)
{
    Bytes lying = CompleteFile(StandardFile{}.Bytes());
    lying[20 + 32 + 3] = 0x7F; // a header of half a terabyte
    FakeClock clock;
    CMxfDemuxer demuxer{clock};
    const mxf_demuxer_config config = WithTimeout(10);
    EXPECT_EQ(demuxer.Open(std::make_unique<BorrowedSource>(lying), &config, {}), kSuccess);
    EXPECT_EQ(clock.sleeps.size(), 0U);
}

} // namespace
