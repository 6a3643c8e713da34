#include "mxf/klv/PartitionScanner.h"

#include "mxf/Limits.h"
#include "mxf/Status.h"
#include "tests/support/FakeClock.h"
#include "tests/support/MemorySource.h"
#include "tests/support/MxfBuilder.h"
#include "tests/support/RecordingSnitcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using testing::ElementsAre;
using testing::IsEmpty;
using zanfcp::test::FakeClock;
using zanfcp::test::MemorySource;
using zanfcp::test::RecordingSnitcher;

/// Notes what the scanner hands on.
class Client final : public CPartitionClient {
public:
    bool HasIndexParser() const override { return hasIndexParser; }
    int LoadSegmentFromPartition(const CPartitionPack& partition) override
    {
        calls.push_back("index " + std::to_string(partition.extent.position));
        return partition.extent.position == failsAt ? kFailed : kSuccess;
    }
    void LoadSegments(CRandomIndexPack& rip) override { calls.push_back("rip " + std::to_string(rip.EntryCount())); }
    void ScanFooter(const CPartitionPack& footer) override
    {
        calls.push_back("footer " + std::to_string(footer.extent.position));
    }

    bool hasIndexParser = true;
    std::int64_t failsAt = -1;
    std::vector<std::string> calls;
};

/// Metadata that can be told apart: a primer pack of `size` bytes in all.
Bytes metadataOf(std::size_t size, std::uint8_t content)
{
    return klvBytes(kPrimerKey, size - 20, content);
}

class PartitionScanner : public testing::Test {
protected:
    void SetUp() override { dict.Init(); }

    void attach(Bytes bytes, bool lazy = true, std::uint32_t timeout = 0)
    {
        source.bytes = std::move(bytes);
        sink.lines.clear();
        client.calls.clear();
        reader.Attach(&source, timeout, CLoggerT<CSnitcher>{&sink});
        scanner.Reset(CLoggerT<CSnitcher>{&sink}, &client, lazy);
    }
    int find(Bytes bytes)
    {
        attach(std::move(bytes));
        return scanner.FindPartitionWithMetadata();
    }
    Bytes metadata() const { return {scanner.Metadata().begin(), scanner.Metadata().end()}; }

    CMxfUlDict dict;
    MemorySource source;
    RecordingSnitcher sink;
    Client client;
    FakeClock clock;
    CSourceReader reader{clock};
    CPartitionScanner scanner{reader, dict};
};

const Bytes kIndex = klvBytes(kIndexKey, 60);

TEST_F(PartitionScanner, MetadataIsFoundBehindAnyRunIn)
{
    const Bytes looksLikeKlv = klvBytes(kPictureKey, 5);
    Bytes falseLength = klvBytes(kPictureKey, 40);
    falseLength[17] = 0x7F;
    struct Case {
        const char* name;
        Bytes runIn;
        std::size_t metadataSize;
        std::size_t fill;
    };
    const Case cases[] = {
        {"none", {}, 300, 0},
        {"fill between pack and metadata", {}, 300, 356},
        {"metadata larger than the probe", {}, 60000, 40},
        {"metadata of megabytes", {}, 5'000'000, 0},
        {"fill beyond the probe", {}, 300, 65'536 - 108},
        {"short run-in", Bytes(11, 0x41), 300, 40},
        {"pack across the end of the probe", Bytes(2000, 0x41), 300, 40},
        {"key across the end of the probe", Bytes(2040, 0x41), 300, 40},
        {"pack behind the probe", Bytes(9000, 0x41), 300, 40},
        {"longest run-in", Bytes(kMaxRunInBytes, 0x41), 3000, 40},
        {"run-in of starts of keys", Bytes(3000, 0x06), 300, 0},
        {"run-in that is KLV", looksLikeKlv, 300, 0},
        {"run-in whose length leads astray", falseLength, 300, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Bytes expected = metadataOf(c.metadataSize, 0x77);
        MxfBuilder b{c.runIn};
        b.partition({.bodySID = 5, .metadata = expected, .fill = c.fill}).essence(4000);
        const auto runIn = static_cast<std::int64_t>(c.runIn.size());
        ASSERT_EQ(find(b.bytes), kSuccess);
        EXPECT_EQ(scanner.HeaderPartition()->extent.position, runIn);
        EXPECT_EQ(scanner.HeaderPartition()->bodySID, 5u);
        EXPECT_EQ(scanner.MetadataPartition(), scanner.HeaderPartition());
        EXPECT_EQ(scanner.RunInCorrection(), -runIn);
        EXPECT_EQ(metadata(), expected);
        EXPECT_EQ(scanner.MetadataPosition(), runIn + 108 + static_cast<std::int64_t>(c.fill));
        EXPECT_TRUE(clock.sleeps.empty());
    }
}

TEST_F(PartitionScanner, OneReadServesASmallHeader)
{
    ASSERT_EQ(find(MxfBuilder{}.partition({.metadata = metadataOf(1500, 1)}).essence(9000).bytes), kSuccess);
    EXPECT_EQ(source.reads, 1);
}

TEST_F(PartitionScanner, FailsWhereNoPartitionPackCanBeRead)
{
    MxfBuilder valid;
    valid.partition({.metadata = metadataOf(300, 1)}).essence(100);
    const Bytes& base = valid.bytes;
    ASSERT_EQ(find(base), kSuccess); // so each edit below is the only fault
    const auto edited = [&](std::size_t at, std::uint8_t to) {
        Bytes bytes = base;
        bytes[at] = to;
        return bytes;
    };
    const std::string noData = "error: parse headers failure, no enough data";
    const std::string noPack = "error: parse headers failure, no partition pack";
    struct Case {
        const char* name;
        Bytes bytes;
        int status;
        std::string lastLine;
    };
    const Case cases[] = {
        {"empty", {}, kFailed, noData},
        {"127 bytes", Bytes(base.begin(), base.begin() + 127), kFailed, noData},
        {"no key", edited(0, 0), kFailed, noPack},
        {"primer pack in its place", edited(13, 0x05), kFailed, noPack},
        {"length of the pack beyond the file", edited(18, 0x7F), kCutShort, ""},
        {"pack larger than any", edited(17, 0x7F), kCutShort, ""},
        {"pack of indefinite length", edited(16, 0x80), kCutShort, ""},
        {"pack without its last fixed field", edited(19, 79), kCutShort, ""},
        {"run-in one byte too long", MxfBuilder{Bytes(kMaxRunInBytes + 1, 0x41)}.partition({}).bytes, kFailed, noPack},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(find(c.bytes), c.status);
        EXPECT_EQ(scanner.HeaderPartition(), nullptr);
        EXPECT_THAT(metadata(), IsEmpty());
        if (!c.lastLine.empty()) {
            ASSERT_FALSE(sink.lines.empty());
            EXPECT_EQ(sink.lines.back(), c.lastLine);
        }
    }
    reader.Attach(nullptr, 0, {});
    EXPECT_EQ(scanner.FindPartitionWithMetadata(), kNotOpen);
    EXPECT_EQ(scanner.LoadRIP(), kNotOpen);
    EXPECT_EQ(scanner.LoadFooter(), kNotOpen);
    EXPECT_EQ(scanner.ScanPartitions(), kNotOpen);
    EXPECT_FALSE(scanner.IsMxfComplete());
}

TEST_F(PartitionScanner, FalseHeaderByteCountGivesWhatIsThereWithoutTakingMemoryForIt)
{
    MxfBuilder b;
    b.partition({.metadata = metadataOf(3000, 1)});
    for (const unsigned high : {0x01u, 0x7Fu, 0xFFu}) {
        Bytes bytes = b.bytes;
        bytes[20 + 32] = static_cast<std::uint8_t>(high); // the top byte of the count
        ASSERT_EQ(find(bytes), kSuccess);
        EXPECT_EQ(metadata(), metadataOf(3000, 1));
    }
}

TEST_F(PartitionScanner, WaitsForMetadataThatIsStillBeingWritten)
{
    MxfBuilder b;
    b.partition({.status = 1, .metadata = metadataOf(9000, 3)}).essence(100);
    attach(Bytes(b.bytes.begin(), b.bytes.begin() + 1000), true, 10);
    clock.onSleep = [&] {
        source.bytes.assign(b.bytes.begin(), b.bytes.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                                   source.bytes.size() + 3000, b.bytes.size())));
    };
    ASSERT_EQ(scanner.FindPartitionWithMetadata(), kSuccess);
    EXPECT_EQ(metadata(), metadataOf(9000, 3));
    EXPECT_FALSE(clock.sleeps.empty());
    EXPECT_FALSE(reader.IsStopped());
}

TEST_F(PartitionScanner, TakesTheMostFinalMetadata)
{
    const Bytes inHeader = metadataOf(200, 2), inFirst = metadataOf(300, 3), inSecond = metadataOf(400, 4),
                inFooter = metadataOf(500, 5);
    struct Case {
        const char* name;
        std::uint8_t headerStatus;
        Bytes header, first, second, footer;
        bool rip, statedFooter, hasFooter;
        Bytes expected;
    };
    const Case cases[] = {
        {"closed complete header", 4, inHeader, inFirst, inSecond, inFooter, true, true, true, inHeader},
        {"open incomplete header", 1, inHeader, inFirst, inSecond, inFooter, true, true, true, inFooter},
        {"closed incomplete header", 2, inHeader, inFirst, inSecond, inFooter, true, true, true, inFooter},
        {"open complete header", 3, inHeader, inFirst, inSecond, inFooter, true, true, true, inFooter},
        {"closed complete header without metadata", 4, {}, inFirst, inSecond, inFooter, true, true, true, inFooter},
        {"footer not stated", 1, inHeader, inFirst, inSecond, inFooter, true, false, true, inFooter},
        {"footer without a random index pack", 1, inHeader, inFirst, {}, inFooter, false, true, true, inFooter},
        {"bare footer, latest body", 1, inHeader, inFirst, inSecond, {}, true, true, true, inSecond},
        {"bare footer and second body", 1, inHeader, inFirst, {}, {}, true, false, true, inFirst},
        {"along the chain of previous partitions", 1, inHeader, inFirst, inSecond, {}, false, true, true, inSecond},
        {"further along the chain", 1, {}, inFirst, {}, {}, false, true, true, inFirst},
        {"walking to the footer", 1, inHeader, {}, {}, inFooter, false, false, true, inFooter},
        {"walking in a growing file", 1, inHeader, inFirst, inSecond, {}, false, false, false, inSecond},
        {"nothing but the header's", 1, inHeader, {}, {}, {}, true, true, true, inHeader},
        {"nothing but the header's, chained", 1, inHeader, {}, {}, {}, false, true, true, inHeader},
        {"nothing but the header's, growing", 1, inHeader, {}, {}, {}, false, false, false, inHeader},
        {"none at all", 1, {}, {}, {}, {}, true, true, true, {}},
    };
    for (const std::size_t runIn : {0u, 500u})
        for (const Case& c : cases) {
            SCOPED_TRACE(c.name);
            MxfBuilder b{Bytes(runIn, 0x41)};
            b.partition({.status = c.headerStatus, .metadata = c.header, .fill = 30});
            b.partition({.kind = 3, .status = 1, .bodySID = 1, .metadata = c.first, .fill = 50});
            b.essence(3000).essence(3000).fill(100);
            b.partition({.kind = 3, .status = 1, .bodySID = 1, .metadata = c.second}).fill(20).essence(3000);
            if (c.hasFooter) b.partition({.kind = 4, .metadata = c.footer, .fill = 20});
            if (c.statedFooter) b.stateFooter();
            if (c.rip) b.randomIndexPack();
            ASSERT_EQ(find(b.bytes), kSuccess);
            EXPECT_EQ(metadata(), c.expected);
            EXPECT_EQ(scanner.HeaderPartition()->extent.position, static_cast<std::int64_t>(runIn));
            EXPECT_TRUE(clock.sleeps.empty());
        }
}

TEST_F(PartitionScanner, MetadataThatWasCutOffIsNotPreferred)
{
    MxfBuilder b;
    b.partition({.status = 1, .metadata = metadataOf(200, 2)}).essence(100);
    b.partition({.kind = 4, .metadata = metadataOf(500, 5)}).stateFooter();
    b.bytes.pop_back();
    ASSERT_EQ(find(b.bytes), kSuccess);
    EXPECT_EQ(metadata(), metadataOf(200, 2));
}

TEST_F(PartitionScanner, ChainThatLeadsBackUpEnds)
{
    MxfBuilder b;
    b.partition({.status = 1, .metadata = metadataOf(200, 2)});
    b.partition({.kind = 3}).essence(10).partition({.kind = 4}).stateFooter();
    b.bytes[static_cast<std::size_t>(b.positionOf(1)) + 20 + 16 + 7] =
        static_cast<std::uint8_t>(b.positionOf(1)); // its own previous partition
    ASSERT_EQ(find(b.bytes), kSuccess);
    EXPECT_EQ(metadata(), metadataOf(200, 2));
}

/// Header, two body partitions with index tables, a footer with index table and metadata.
MxfBuilder closedFile(std::size_t runIn = 0)
{
    MxfBuilder b{Bytes(runIn, 0x41)};
    b.partition({.metadata = metadataOf(200, 2)});
    b.partition({.kind = 3, .bodySID = 1}).essence(300);
    b.partition({.kind = 3, .bodySID = 1, .bodyOffset = 320, .indexSID = 2, .index = kIndex}).essence(300);
    b.partition({.kind = 4, .indexSID = 2, .metadata = metadataOf(100, 1), .index = kIndex});
    return b.stateFooter();
}

TEST_F(PartitionScanner, CompleteFileHandsOnFooterAndIndexTables)
{
    for (const std::size_t runIn : {0u, 700u}) {
        MxfBuilder b = closedFile(runIn).randomIndexPack();
        ASSERT_EQ(find(b.bytes), kSuccess);
        sink.lines.clear();
        source.Seek(1234);
        EXPECT_TRUE(scanner.IsMxfComplete());
        EXPECT_EQ(source.GetPos(), 1234);
        const std::string second = std::to_string(b.positionOf(2)), footer = std::to_string(b.positionOf(3));
        EXPECT_THAT(client.calls,
                    ElementsAre("rip 4", "index " + footer, "footer " + footer, "index " + second, "index " + footer));
        EXPECT_THAT(sink.lines, ElementsAre("info: random index pack found, 4 entries"));
        EXPECT_EQ(scanner.SourceSize(), static_cast<std::int64_t>(b.bytes.size()));
        EXPECT_EQ(scanner.FooterPartition()->extent.position, b.positionOf(3));
        EXPECT_EQ(scanner.RandomIndexPack()->TranslateOffset(320, 1), b.positionOf(2) + 108 + 80);

        source.bytes.clear(); // once known, it stays known
        EXPECT_TRUE(scanner.IsMxfComplete());
    }
}

TEST_F(PartitionScanner, WithoutAnIndexParserNoIndexTableIsHandedOn)
{
    client.hasIndexParser = false;
    MxfBuilder b = closedFile().randomIndexPack();
    ASSERT_EQ(find(b.bytes), kSuccess);
    EXPECT_TRUE(scanner.IsMxfComplete());
    EXPECT_THAT(client.calls, ElementsAre("footer " + std::to_string(b.positionOf(3))));
}

TEST_F(PartitionScanner, EagerLoadingDoesNotGoThroughTheRandomIndexPack)
{
    attach(closedFile().randomIndexPack().bytes, false);
    ASSERT_EQ(scanner.FindPartitionWithMetadata(), kSuccess);
    EXPECT_EQ(scanner.LoadRIP(), kSuccess);
    EXPECT_THAT(client.calls, IsEmpty());
    EXPECT_TRUE(scanner.RandomIndexPack()->PartitionsOf(1).empty());
    EXPECT_EQ(scanner.ScanPartitions(), kSuccess);
    EXPECT_EQ(scanner.RandomIndexPack()->PartitionsOf(1).size(), 2u);
}

TEST_F(PartitionScanner, CompletenessFollowsFromWhatTheFileEndsIn)
{
    struct Case {
        const char* name;
        std::function<Bytes()> bytes;
        bool complete;
        std::vector<std::string> lines;
    };
    const auto openFile = [] { // a header that names no footer
        return MxfBuilder{}.partition({.status = 1, .metadata = metadataOf(200, 2)}).essence(3000);
    };
    const std::string found = "info: random index pack found, ";
    const Case cases[] = {
        {"footer without a random index pack", [] { return closedFile().bytes; }, true, {}},
        {"growing: no footer offset yet", [&] { return openFile().bytes; }, false, {}},
        {"growing: footer beyond the end", [&] { return openFile().stateFooter(90000).bytes; }, false, {}},
        {"growing: footer right at the end", [&] { return openFile().stateFooter(108 + 200 + 3020).bytes; }, false, {}},
        {"random index pack without a footer",
         [&] { return openFile().randomIndexPack().bytes; },
         true,
         {found + "1 entries"}},
        {"footer found through the random index pack",
         [&] { return openFile().partition({.kind = 4}).randomIndexPack().bytes; },
         true,
         {found + "2 entries"}},
        {"false footer offset, no random index pack",
         [&] { return openFile().partition({.kind = 4}).stateFooter(1000).bytes; },
         false,
         {"warning: The header partiton has wrong footer offset (1000)!"}},
        {"footer offset that leads to a body partition",
         [&] { return openFile().partition({.kind = 3}).essence(9).stateFooter(108 + 200 + 3020).bytes; },
         false,
         {"warning: The header partiton has wrong footer offset (3328)!"}},
        {"false footer offset, random index pack",
         [&] { return openFile().partition({.kind = 4}).stateFooter(1000).randomIndexPack().bytes; },
         true,
         {found + "2 entries", "warning: The header partiton has wrong footer offset (1000)!"}},
        {"footer offset of all ones",
         [&] { return openFile().stateFooter(~std::uint64_t{0}).bytes; },
         false,
         {"warning: The header partiton has wrong footer offset (18446744073709551616)!"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_EQ(find(c.bytes()), kSuccess);
        EXPECT_EQ(scanner.IsMxfComplete(), c.complete);
        EXPECT_EQ(sink.lines, c.lines);
        EXPECT_EQ(scanner.IsMxfComplete(), c.complete) << "asked again";
        EXPECT_EQ(sink.lines, c.lines) << "nothing is reported twice";
    }
}

TEST_F(PartitionScanner, UnknownPlaceOfTheSourceIsNotComplete)
{
    ASSERT_EQ(find(closedFile().bytes), kSuccess);
    source.place = -1;
    EXPECT_FALSE(scanner.IsMxfComplete());
}

TEST_F(PartitionScanner, PartitionsThatCannotBeLoadedAreReportedAndSkipped)
{
    MxfBuilder b = closedFile().randomIndexPack();
    attach(b.bytes);
    ASSERT_EQ(scanner.FindPartitionWithMetadata(), kSuccess);
    EXPECT_EQ(scanner.ScanPartitions(), kFailed) << "no random index pack yet";
    ASSERT_EQ(scanner.LoadRIP(), kSuccess);
    client.calls.clear();
    sink.lines.clear();
    client.failsAt = b.positionOf(2);
    source.bytes[static_cast<std::size_t>(b.positionOf(1))] = 0;
    EXPECT_EQ(scanner.ScanPartitions(), kSuccess);
    const auto message = [&](std::size_t index) {
        return "error: Cannot load index from partition at " + std::to_string(b.positionOf(index));
    };
    EXPECT_THAT(sink.lines, ElementsAre(message(1), message(2)));
    EXPECT_EQ(client.calls.back(), "index " + std::to_string(b.positionOf(3)));
}

TEST_F(PartitionScanner, FooterMetadataIsNotScannedWhenItWasTheOneParsed)
{
    MxfBuilder b;
    b.partition({.status = 1}).essence(100).partition({.kind = 4, .metadata = metadataOf(100, 1)}).stateFooter();
    ASSERT_EQ(find(b.bytes), kSuccess);
    EXPECT_EQ(scanner.MetadataPartition()->kind, EPartitionKind::footer);
    EXPECT_TRUE(scanner.IsMxfComplete());
    EXPECT_THAT(client.calls, IsEmpty());
}

TEST_F(PartitionScanner, SurvivesFilesCutAnywhereAndAnyByteChanged)
{
    // Small, so that every prefix and a change of every byte can be tried. The sanitizers are the judges; beyond
    // them, no answer may point outside the file.
    MxfBuilder b = closedFile(3).randomIndexPack();
    const auto check = [&](const Bytes& bytes) {
        const int status = find(bytes);
        EXPECT_EQ(status == kSuccess, scanner.HeaderPartition() != nullptr);
        (void)scanner.IsMxfComplete();
        const auto end = scanner.MetadataPosition() + static_cast<std::int64_t>(scanner.Metadata().size());
        EXPECT_LE(end, std::max<std::int64_t>(static_cast<std::int64_t>(bytes.size()), 0));
        if (scanner.RandomIndexPack() == nullptr) return;
        for (const std::int64_t offset : {0, 319, 320, 640})
            EXPECT_LT(scanner.RandomIndexPack()->TranslateOffset(offset, 1), static_cast<std::int64_t>(bytes.size()));
    };
    for (std::size_t size = 0; size <= b.bytes.size(); ++size)
        check(Bytes(b.bytes.begin(), b.bytes.begin() + static_cast<std::ptrdiff_t>(size)));
    for (std::size_t at = 0; at < b.bytes.size(); ++at)
        for (const unsigned to : {0x00u, 0x01u, 0x7Fu, 0x80u, 0x88u, 0xFFu}) {
            Bytes bytes = b.bytes;
            bytes[at] = static_cast<std::uint8_t>(to);
            check(bytes);
        }
}

} // namespace
