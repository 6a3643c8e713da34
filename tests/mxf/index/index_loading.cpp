#include "mxf/Status.h"
#include "mxf/index/MxfIndexParser.h"
#include "mxf/io/CachedReader.h"
#include "mxf/klv/PartitionReading.h"
#include "tests/mxf/index/SegmentBytes.h"
#include "tests/support/FakeClock.h"
#include "tests/support/MemorySource.h"
#include "tests/support/RecordingSnitcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using testing::Optional;
using zanfcp::test::FakeClock;
using zanfcp::test::MemorySource;
using zanfcp::test::RecordingSnitcher;

constexpr std::uint32_t kSid = 2;

/// A source that counts the bytes that are read.
class CountingSource : public MemorySource {
public:
    std::int64_t Read(void* buffer, std::size_t count) override
    {
        const std::int64_t got = MemorySource::Read(buffer, count);
        bytesRead += std::max<std::int64_t>(got, 0);
        return got;
    }
    std::int64_t bytesRead = 0;
};

SegmentSpec entries(std::uint64_t start, std::size_t count, std::uint64_t size)
{
    SegmentSpec spec{.start = start, .duration = count};
    for (std::size_t i = 0; i < count; ++i)
        spec.entries.push_back({.offset = (start + i) * size});
    return spec;
}

class IndexLoading : public testing::Test {
protected:
    void open(const MxfBuilder& file)
    {
        source.bytes = file.bytes;
        reader.Attach(&source, 0, CLoggerT<CSnitcher>{&sink});
    }
    int loadPartition(std::int64_t position)
    {
        const auto pack = ReadPartitionPackAt(source, dict, position);
        return pack ? parser.LoadSegmentFromPartition(*pack) : kNullArgument;
    }
    void loadRip()
    {
        const auto rip = CRandomIndexPack::LoadFromEnd(source, dict, 0, true);
        ASSERT_NE(rip, nullptr);
        parser.LoadSegments(*rip); // which need not keep the pack
    }
    std::int64_t offsetOf(std::int64_t unit)
    {
        const auto found = parser.Find(kSid, unit);
        return found ? found->streamOffset : -1;
    }

    CountingSource source;
    CMxfUlDict dict;
    RecordingSnitcher sink;
    FakeClock clock;
    CSourceReader reader{clock};
    CMxfIndexParser parser{&reader, CLoggerT<CSnitcher>{&sink}};
};

TEST_F(IndexLoading, SegmentsOfAPartitionAreFoundHoweverTheyAreCounted)
{
    struct Case {
        const char* name;
        MxfBuilder file;
        int status;
        std::int64_t covered;
    };
    const Bytes first = segmentKlv(entries(0, 5, 10));
    const Bytes second = segmentKlv(entries(5, 5, 10));
    Bytes both = first;
    putBytes(both, MxfBuilder{}.fill(100).bytes);
    putBytes(both, second);
    const Bytes metadata = klvBytes(kPrimerKey, 60);
    Bytes withDark = first;
    putBytes(withDark, klvBytes(kPictureKey, 10));
    putBytes(withDark, second);
    Bytes unnamed = segmentKlv({.duration = 4, .indexSid = {}, .entries = entries(0, 4, 10).entries});
    const auto file = [] { return MxfBuilder{}; };
    const std::vector<Case> cases{
        {"counted", file().partition({.indexSID = kSid, .metadata = metadata, .index = both}).essence(50), 0, 10},
        {"fill in front", file().partition({.metadata = metadata, .index = both, .fill = 64}).essence(50), 0, 10},
        {"not counted",
         file().partition({.metadata = metadata}).fill(40).klv(kIndexKey, segmentValue(entries(0, 5, 10))).essence(9),
         0, 5},
        {"something else among them", file().partition({.index = withDark}).essence(50), 0, 10},
        {"IndexSID is that of the partition", file().partition({.indexSID = kSid, .index = unnamed}).essence(50), 0, 4},
        {"none", file().partition({.metadata = metadata}).essence(50), kFailed, 0},
        {"nothing behind the pack", file().partition({}), kFailed, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        open(c.file);
        parser.Reset();
        EXPECT_EQ(loadPartition(0), c.status);
        EXPECT_THAT(parser.CoveredUnits(kSid), Optional(c.covered));
        const auto pack = ReadPartitionPackAt(source, dict, 0);
        const std::int64_t before = source.bytesRead;
        EXPECT_EQ(parser.LoadSegmentFromPartition(*pack), c.status) << "asked again";
        // Where nothing was found, or the file ends, there may be more the next time.
        EXPECT_LE(source.bytesRead - before, c.status == kSuccess ? 0 : 4 * 32);
        EXPECT_FALSE(parser.HasTable(9));
    }
}

TEST_F(IndexLoading, CutSegmentsAreCompletedWhenTheFileGrows)
{
    MxfBuilder file;
    Bytes index = segmentKlv(entries(0, 5, 10));
    const std::size_t firstSize = index.size();
    putBytes(index, segmentKlv(entries(5, 5, 10)));
    file.partition({.index = index});
    const std::size_t begin = file.bytes.size() - index.size();
    MxfBuilder growing;
    for (const std::size_t size :
         {begin, begin + 20, begin + firstSize - 1, begin + firstSize, file.bytes.size() - 1}) {
        SCOPED_TRACE(size);
        growing.bytes.assign(file.bytes.begin(), file.bytes.begin() + static_cast<std::ptrdiff_t>(size));
        open(growing);
        EXPECT_EQ(loadPartition(0), kCutShort);
        EXPECT_THAT(parser.CoveredUnits(kSid), Optional(size >= begin + firstSize ? 5 : 0));
    }
    open(file);
    EXPECT_EQ(loadPartition(0), kSuccess);
    EXPECT_THAT(parser.CoveredUnits(kSid), Optional(10));
    EXPECT_EQ(parser.Segments(kSid).size(), 2u);

    // Partitions that come later, first without and then with a random index pack.
    file.partition({.kind = 3, .index = segmentKlv(entries(10, 5, 10))});
    open(file);
    EXPECT_EQ(loadPartition(file.positionOf(1)), kSuccess);
    EXPECT_THAT(parser.CoveredUnits(kSid), Optional(15));
    file.partition({.kind = 4, .index = segmentKlv(entries(8, 12, 1000))}).randomIndexPack();
    open(file);
    loadRip();
    EXPECT_EQ(offsetOf(7), 70);
    EXPECT_EQ(offsetOf(8), 8000) << "the footer lies last";
    EXPECT_THAT(parser.CoveredUnits(kSid), Optional(20));
    EXPECT_THAT(sink.lines, testing::IsEmpty());
}

/// Sixteen body partitions with ten edit units each, and a footer with what is told.
MxfBuilder longFile(const Bytes& footerIndex)
{
    MxfBuilder file;
    file.partition({.kind = 2}).essence(10);
    for (std::uint64_t i = 0; i < 16; ++i)
        file.partition({.kind = 3, .index = segmentKlv(entries(10 * i, 10, 10))}).essence(500);
    return std::move(file.partition({.kind = 4, .index = footerIndex}).randomIndexPack());
}

TEST_F(IndexLoading, OnlyWhatAQuestionNeedsIsReadAndThatOnce)
{
    open(longFile(segmentKlv({.unitSize = 77})));
    loadRip();
    const int before = source.reads;
    EXPECT_EQ(offsetOf(1'000'000), 77'000'000);
    EXPECT_LE(source.reads - before, 16) << "the footer says it all";

    open(longFile({}));
    parser.Reset();
    loadRip();
    const std::int64_t start = source.bytesRead;
    EXPECT_TRUE(parser.HasTable(kSid));
    EXPECT_LT(source.bytesRead - start, 4 * 500);
    EXPECT_EQ(offsetOf(3), 30);
    EXPECT_THAT(parser.CoveredUnits(kSid), Optional(160));
    const std::int64_t all = source.bytesRead;
    EXPECT_LT(all - start, 18 * 600) << "every partition once";
    EXPECT_FALSE(parser.HasTable(9));
    EXPECT_EQ(offsetOf(160), -1);
    EXPECT_EQ(source.bytesRead, all);
    EXPECT_THAT(sink.lines, testing::IsEmpty());
}

TEST_F(IndexLoading, OfASourceWithACacheNoBlocksAreReadInVain)
{
    // Partitions of one size, then with and without a table by turns, then with tables that differ.
    struct Case {
        const char* name;
        std::size_t (*units)(std::size_t partition);
        int reads; ///< beside one of each partition
    };
    const Case cases[] = {
        {"of one size", [](std::size_t) -> std::size_t { return 200; }, 2},
        {"every other one without", [](std::size_t i) -> std::size_t { return i % 2 * 200; }, 2},
        {"growing", [](std::size_t i) -> std::size_t { return 100 + 10 * i; }, 2},
        {"shrinking", [](std::size_t i) -> std::size_t { return 420 - 10 * i; }, 34},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MxfBuilder file;
        std::int64_t needed = 0;
        std::int64_t unit = 0;
        file.partition({.kind = 2}).essence(10);
        for (std::size_t i = 0; i < 32; ++i) {
            const Bytes index = segmentKlv(entries(static_cast<std::uint64_t>(unit), c.units(i), 10));
            file.partition({.kind = 3, .index = c.units(i) == 0 ? Bytes{} : index}).essence(20'000);
            needed += 200 + static_cast<std::int64_t>(index.size());
            unit += static_cast<std::int64_t>(c.units(i));
        }
        file.partition({.kind = 4}).randomIndexPack();
        CCachedReader<CountingSource> cached;
        cached.bytes = file.bytes;
        reader.Attach(&cached, 0, CLoggerT<CSnitcher>{&sink});
        parser.Reset();
        const auto rip = CRandomIndexPack::LoadFromEnd(cached, dict, 0, true);
        ASSERT_NE(rip, nullptr);
        parser.LoadSegments(*rip);
        cached.reads = 0;
        cached.bytesRead = 0;
        EXPECT_THAT(parser.CoveredUnits(kSid), Optional(unit));
        EXPECT_LE(cached.reads, 34 + c.reads);
        const std::int64_t most = needed + (c.reads == 2 ? needed / 2 : needed * 3);
        EXPECT_LT(cached.bytesRead, most + 3 * 8192) << needed;
        EXPECT_EQ(cached.GetBufferSize(), 8192);
    }
}

TEST_F(IndexLoading, TheLastPartitionIsBelievedInWhateverOrderTheyAreRead)
{
    const Bytes footer = segmentKlv(entries(5, 10, 1000));
    const auto expectTruth = [&] {
        for (const auto& [unit, offset] : {std::pair{4, 40}, {5, 5000}, {14, 14000}, {15, 150}, {159, 1590}, {160, -1}})
            EXPECT_EQ(offsetOf(unit), offset) << unit;
    };
    const MxfBuilder file = longFile(footer);
    open(file);
    loadRip();
    expectTruth();
    parser.Reset();
    for (const std::size_t partition : {17U, 3U, 1U, 16U, 2U}) // the footer is known first when it is looked for
        EXPECT_EQ(loadPartition(file.positionOf(partition)), kSuccess);
    EXPECT_EQ(offsetOf(14), 14000);
    loadRip();
    expectTruth();
}

TEST_F(IndexLoading, UnreadablePartitionsCostOnlyThemselves)
{
    MxfBuilder file = longFile({});
    file.bytes[static_cast<std::size_t>(file.positionOf(3))] = 0;
    open(file);
    loadRip();
    EXPECT_EQ(offsetOf(25), -1);
    EXPECT_EQ(offsetOf(35), 350);
    EXPECT_THAT(parser.CoveredUnits(kSid), Optional(20));
    const std::string place = std::to_string(file.positionOf(3));
    EXPECT_THAT(sink.lines, testing::ElementsAre("error: Cannot load index from partition at " + place));
}

TEST_F(IndexLoading, SegmentsInsideEachOtherAreNotReadAgainAndAgain)
{
    // Every 300 bytes a segment begins that reaches to the end, and a partition whose index table it is.
    Bytes nested(60'000);
    for (std::size_t at = 0; at < nested.size(); at += 300) {
        Bytes header = kIndexKey;
        putNumber(header, 0x83ULL << 24 | (nested.size() - at - 20), 4);
        std::ranges::copy(header, nested.begin() + static_cast<std::ptrdiff_t>(at));
    }
    MxfBuilder file;
    file.bytes = nested;
    open(file);
    CPartitionPack pack;
    for (pack.extent.position = 0; pack.extent.position < 60'000; pack.extent.position += 300)
        (void)parser.LoadSegmentFromPartition(pack);
    EXPECT_LT(source.bytesRead, 3 * static_cast<std::int64_t>(file.bytes.size()));
}

TEST_F(IndexLoading, HalfAMillionEditUnitsAreReadOnce)
{
    constexpr std::size_t kPerSegment = 5000;
    Bytes index;
    for (std::uint64_t start = 0; start < 500'000; start += kPerSegment)
        putBytes(index, segmentKlv(entries(start, kPerSegment, 40'000)));
    MxfBuilder file;
    file.partition({.kind = 2}).essence(100);
    file.partition({.kind = 4, .index = index}).randomIndexPack();
    open(file);
    loadRip();
    const std::int64_t before = source.bytesRead;
    EXPECT_EQ(offsetOf(499'999), 499'999 * 40'000LL);
    EXPECT_LT(source.bytesRead - before, static_cast<std::int64_t>(index.size()) + 20'000);
    EXPECT_THAT(parser.UnitAtOffset(kSid, 123'456 * 40'000LL + 39'999), Optional(123'456));
}

} // namespace
