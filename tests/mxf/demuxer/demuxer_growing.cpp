#include "mxf/Status.h"
#include "tests/mxf/demuxer/DemuxerFile.h"
#include "tests/support/FakeClock.h"
#include "tests/support/ShellTools.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using zanfcp::test::FakeClock;
using zanfcp::test::succeeds;
using zanfcp::test::TempFolder;

namespace {

const StandardFile kOpen{.materialPicture = -1, .materialSound = -1, .filePicture = -1, .fileSound = -1};
const Bytes kSoundKey = ulOf(0x060E2B3401020101, 0x0D01030116010301);
const Bytes kSystemKey = ulOf(0x060E2B3402050101, 0x0D01030104010100);

/// A file as it is being written, and the demuxer that looks at it.
struct Growing {
    explicit Growing(const Bytes& begun) : written{begun}
    {
        auto made = std::make_unique<BorrowedSource>(written);
        source = made.get();
        status = demuxer.Open(std::move(made), nullptr, {});
    }
    const mxf_file_info& Look(const Bytes& now)
    {
        written = now;
        source->reads = 0;
        EXPECT_EQ(demuxer.GetFileInfo(&info), kSuccess);
        return info;
    }

    Bytes written;
    FakeClock clock;
    CMxfDemuxer demuxer{clock};
    BorrowedSource* source = nullptr;
    int status = 1;
    mxf_file_info info{};
};

void AddFrames(MxfBuilder& builder, int count)
{
    for (int i = 0; i < count; ++i)
        builder.klv(kSystemKey, Bytes(57)).essence(300).klv(kSoundKey, Bytes(5760)).fill(100);
}

TEST(GrowingFile, CountsTheFramesThatAreThereWhole)
{
    MxfBuilder builder;
    builder.partition({.status = 1, .bodySID = 1, .metadata = kOpen.Bytes()});
    Growing file{builder.bytes};
    ASSERT_EQ(file.status, kSuccess);
    AddFrames(builder, 3);
    const std::size_t threeFrames = builder.bytes.size();
    AddFrames(builder, 1);
    Bytes cut = builder.bytes;
    for (const std::size_t size : {threeFrames, threeFrames + 17, threeFrames + 77 + 319}) {
        cut.assign(builder.bytes.begin(), builder.bytes.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(file.Look(cut).duration, 3) << size;
    }
    EXPECT_EQ(file.Look(builder.bytes).duration, 4);

    // Partitions of other streams between ours, and one whose pack is there before its index table.
    builder.partition({.kind = 3, .status = 1, .bodySID = 7}).essence(10).essence(10);
    EXPECT_EQ(file.Look(builder.bytes).duration, 4);
    builder.partition({.kind = 3, .status = 1, .bodySID = 1, .index = klvBytes(kIndexKey, 500)});
    cut.assign(builder.bytes.begin(), builder.bytes.end() - 100);
    EXPECT_EQ(file.Look(cut).duration, 4);
    AddFrames(builder, 6);
    EXPECT_EQ(file.Look(builder.bytes).duration, 10);
    EXPECT_EQ(file.info.complete, 0U);
    EXPECT_EQ(file.info.edit_rate_num, 25);
    EXPECT_TRUE(file.clock.sleeps.empty()) << "a look never waits";
}

TEST(GrowingFile, IsNotWalkedTwice)
{
    MxfBuilder builder;
    builder.partition({.status = 1, .bodySID = 1, .metadata = kOpen.Bytes()});
    AddFrames(builder, 100);
    Growing file{builder.bytes};
    EXPECT_EQ(file.Look(builder.bytes).duration, 100);
    AddFrames(builder, 1);
    EXPECT_EQ(file.Look(builder.bytes).duration, 101);
    EXPECT_LT(file.source->reads, 20);
}

TEST(GrowingFile, MeasuresWhatLiesInOneElement)
{
    const StandardFile sound{
        .materialStart = 5, .materialSound = -1, .fileSound = -1, .soundRate = {48000, 1}, .hasPicture = false};
    const struct {
        const char* name;
        std::uint64_t length; ///< as stated, in eight bytes
    } cases[] = {{"not known yet", 0}, {"beyond the end", 1'000'000'000}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        MxfBuilder builder;
        builder.partition({.status = 1, .metadata = sound.Bytes()});
        builder.partition({.kind = 3, .status = 1, .bodySID = 1});
        putBytes(builder.bytes, kSoundKey);
        builder.bytes.push_back(0x88);
        putNumber(builder.bytes, c.length, 8);
        Growing file{builder.bytes};
        ASSERT_EQ(file.status, kSuccess);
        for (const int samples : {1000, 48000}) {
            builder.bytes.resize(builder.bytes.size() + static_cast<std::size_t>(3 * samples) + 1, 0x11);
            EXPECT_EQ(file.Look(builder.bytes).duration, samples == 1000 ? 1000 : 49000);
        }
        EXPECT_EQ(file.info.edit_rate_num, 48000);
    }
    // Pictures of unknown size in one element: nobody knows.
    MxfBuilder builder;
    builder.partition({.status = 1, .bodySID = 1, .metadata = kOpen.Bytes()}).essence(100000);
    builder.bytes.pop_back();
    Growing file{builder.bytes};
    EXPECT_EQ(file.Look(builder.bytes).duration, -1);
}

TEST(GrowingFile, TakesTheHeaderThatIsFilledInAtTheEnd)
{
    const StandardFile closed{};
    MxfBuilder builder;
    builder.partition({.status = 1, .bodySID = 1, .metadata = kOpen.Bytes()});
    AddFrames(builder, 2);
    Growing file{builder.bytes};
    EXPECT_EQ(file.Look(builder.bytes).duration, 2);
    builder.partition({.kind = 4}).randomIndexPack();
    EXPECT_EQ(file.Look(builder.bytes).complete, 1U);
    EXPECT_EQ(file.info.duration, 2);
    EXPECT_EQ(file.info.header_partition_status, 1U);

    MxfBuilder header;
    header.partition({.bodySID = 1, .metadata = closed.Bytes()});
    ASSERT_LT(header.bytes.size(), builder.bytes.size());
    std::ranges::copy(header.bytes, builder.bytes.begin());
    file.info = {}; // the size is the same: only who asks afresh is answered
    EXPECT_EQ(file.Look(builder.bytes).duration, 250);
    EXPECT_EQ(file.info.header_partition_status, 4U);
    EXPECT_EQ(file.info.complete, 1U);

    Bytes torn = builder.bytes; // the header of a file that somebody is overwriting
    std::fill(torn.begin() + 200, torn.begin() + 4000, std::uint8_t{0});
    torn[14] = 1;
    file.info = {};
    EXPECT_EQ(file.Look(torn).duration, 250);
}

/// What another program appends to a file, a piece at each line it is sent.
class Writer {
public:
    explicit Writer(const std::string& script) : pipe_{popen(script.c_str(), "w")} {}
    ~Writer() { pclose(pipe_); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    void Next()
    {
        std::fputc('\n', pipe_);
        std::fflush(pipe_);
    }

private:
    std::FILE* pipe_;
};

/// Looks until `isReached`, for some seconds at most.
template <typename Test> bool LookUntil(CMxfDemuxer& demuxer, mxf_file_info& info, Test isReached)
{
    std::int64_t before = info.duration;
    for (int tries = 0; tries < 500; ++tries) {
        EXPECT_EQ(demuxer.GetFileInfo(&info), kSuccess);
        EXPECT_GE(info.duration, before);
        before = info.duration;
        if (isReached(info)) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    return false;
}

TEST(GrowingFile, OfAnotherProcessIsFollowedToItsEnd)
{
    const TempFolder folder;
    MxfBuilder builder;
    builder.partition({.status = 1, .bodySID = 1, .metadata = kOpen.Bytes()});
    const std::size_t headerEnd = builder.bytes.size();
    AddFrames(builder, 10);
    const std::size_t tenFrames = builder.bytes.size();
    AddFrames(builder, 10);
    const std::size_t allFrames = builder.bytes.size();
    builder.partition({.kind = 4, .metadata = StandardFile{}.Bytes()}).randomIndexPack();
    const std::string whole = folder.write("whole", std::string(builder.bytes.begin(), builder.bytes.end()));
    const std::string path = folder.file("growing.mxf");
    const auto piece = [&](std::size_t from, std::size_t to) {
        return "tail -c +" + std::to_string(from + 1) + " " + whole + " | head -c " + std::to_string(to - from) + ";";
    };
    Writer writer{"(" + piece(0, headerEnd / 2) + "sleep 0.6;" + piece(headerEnd / 2, tenFrames) + "read x;" +
                  piece(tenFrames, allFrames) + "read x;" + piece(allFrames, builder.bytes.size()) + ") > " + path};

    CMxfDemuxer demuxer;
    mxf_demuxer_config config{};
    config.timeout = 10;
    ASSERT_EQ(demuxer.Open(path.c_str(), &config, nullptr), kSuccess);
    mxf_file_info info{};
    EXPECT_TRUE(LookUntil(demuxer, info, [](const auto& now) { return now.duration == 10; }));
    writer.Next();
    EXPECT_TRUE(LookUntil(demuxer, info, [](const auto& now) { return now.duration == 20; }));
    EXPECT_EQ(info.complete, 0U);
    writer.Next();
    EXPECT_TRUE(LookUntil(demuxer, info, [](const auto& now) { return now.complete == 1; }));
    EXPECT_EQ(info.duration, 250) << "what the footer says";
}

TEST(GrowingFile, OfARecordingIsFollowedToItsEnd)
{
    if (!succeeds("ffmpeg -version")) GTEST_SKIP() << "no ffmpeg";
    const TempFolder folder;
    const std::string path = folder.file("recording.mxf");
    Writer writer{"ffmpeg -v error -nostdin -re -f lavfi -i testsrc2=s=320x240:r=25 -f lavfi -i sine=r=48000 -t 1.2 "
                  "-c:v mpeg2video -c:a pcm_s16le -flush_packets 1 " +
                  path};
    CMxfDemuxer demuxer;
    mxf_demuxer_config config{};
    config.timeout = 10;
    ASSERT_EQ(demuxer.Open(path.c_str(), &config, nullptr), kSuccess);
    mxf_file_info info{};
    EXPECT_TRUE(LookUntil(demuxer, info, [](const auto& now) { return now.duration > 3; }));
    EXPECT_TRUE(LookUntil(demuxer, info, [&](mxf_file_info& now) {
        const bool isClosed = now.complete == 1 && now.header_partition_status == 4;
        if (now.complete == 1) now.file_size = 0; // the header is filled in last: ask on
        return isClosed;
    }));
    EXPECT_EQ(info.duration, 30);
    EXPECT_EQ(info.stream_count, 2U);
}

} // namespace
