#include "mxf/Status.h"
#include "mxf/demuxer/RecordFilling.h"
#include "mxf/mxfDemux.h"
#include "tests/mxf/demuxer/DemuxerFile.h"
#include "tests/support/RecordingSnitcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using testing::Contains;
using testing::IsEmpty;
using zanfcp::test::RecordingSnitcher;

namespace {

TEST(FlatInterface, NullHandleGoesBeforeEverything)
{
    EXPECT_EQ(mxfDemuxOpen(nullptr, nullptr, nullptr, nullptr), -2);
    EXPECT_EQ(mxfDemuxGetFileInfo(nullptr, nullptr), -2);
    EXPECT_EQ(mxfDemuxGetIdentification(nullptr, -1, nullptr), -2);
    EXPECT_EQ(mxfDemuxGetTopPack(nullptr, -1, nullptr, true), -2);
    EXPECT_EQ(mxfDemuxGetStreamFormat(nullptr, -1, nullptr), -2);
    EXPECT_EQ(mxfDemuxGetDmFramework(nullptr, -1, nullptr, nullptr, nullptr), -2);
    EXPECT_EQ(mxfDemuxClose(nullptr), nullptr);
    mxfDemuxFree(nullptr);
}

TEST(FlatInterface, NullRecordGoesBeforeNothingOpenGoesBeforeBadIndex)
{
    CMxfDemuxer* const demuxer = mxfDemuxNew();
    mxf_file_info info{};
    mxf_identification identification{};
    mxf_top_pack pack{};
    mxf_stream_format format{};
    mxf_dmd_framework framework{};
    EXPECT_EQ(mxfDemuxOpen(demuxer, nullptr, nullptr, nullptr), -2);
    EXPECT_EQ(mxfDemuxGetFileInfo(demuxer, nullptr), -2);
    EXPECT_EQ(mxfDemuxGetFileInfo(demuxer, &info), -4);
    EXPECT_EQ(mxfDemuxGetIdentification(demuxer, 99, nullptr), -2);
    EXPECT_EQ(mxfDemuxGetIdentification(demuxer, 99, &identification), -4);
    EXPECT_EQ(mxfDemuxGetTopPack(demuxer, 99, nullptr, false), -2);
    EXPECT_EQ(mxfDemuxGetTopPack(demuxer, 99, &pack, false), -4);
    EXPECT_EQ(mxfDemuxGetStreamFormat(demuxer, 99, nullptr), -2);
    EXPECT_EQ(mxfDemuxGetStreamFormat(demuxer, 99, &format), -4);
    EXPECT_EQ(mxfDemuxGetDmFramework(demuxer, 99, nullptr, nullptr, nullptr), -2);
    EXPECT_EQ(mxfDemuxGetDmFramework(demuxer, 99, &framework, nullptr, nullptr), -4);
    EXPECT_EQ(mxfDemuxClose(demuxer), demuxer);
    mxfDemuxFree(demuxer);
}

/// Callbacks over bytes in memory.
struct InMemory {
    static std::int32_t Open(void*, const char*, void** handle) { return *handle = nullptr, 0; }
    static std::int32_t Seek(void* self, void*, std::int64_t to)
    {
        auto& source = *static_cast<zanfcp::test::MemorySource*>(self);
        return source.Seek(to < 0 ? source.GetSize() : to);
    }
    static std::int32_t Read(void* self, void*, void* buffer, std::size_t count)
    {
        return static_cast<std::int32_t>(static_cast<zanfcp::test::MemorySource*>(self)->Read(buffer, count));
    }
    static std::int32_t Close(void* self, void**) { return static_cast<zanfcp::test::MemorySource*>(self)->Close(); }
    static std::int64_t GetSize(void* self, void*) { return static_cast<zanfcp::test::MemorySource*>(self)->GetSize(); }
    static external_io Io(zanfcp::test::MemorySource& source)
    {
        return {Open, nullptr, Seek, Read, Close, GetSize, nullptr, &source};
    }
};

TEST(FlatInterface, OpensThroughCallbacksAndReleasesThemOnClose)
{
    zanfcp::test::MemorySource source{CompleteFile(StandardFile{}.Bytes())};
    mxf_demuxer_config config{};
    config.use_external_io = 1;
    config.io = InMemory::Io(source);
    CMxfDemuxer* const demuxer = mxfDemuxNew();
    ASSERT_EQ(mxfDemuxOpen(demuxer, "anything", &config, nullptr), 0);
    mxf_file_info info{};
    EXPECT_EQ(mxfDemuxGetFileInfo(demuxer, &info), 0);
    EXPECT_EQ(info.duration, 250);
    EXPECT_EQ(source.closes, 0);

    ASSERT_EQ(mxfDemuxOpen(demuxer, "again", &config, nullptr), 0);
    EXPECT_EQ(source.closes, 1) << "the first file is released before the second is read";
    mxfDemuxClose(demuxer);
    EXPECT_EQ(source.closes, 2);
    EXPECT_EQ(mxfDemuxGetFileInfo(demuxer, &info), -4);
    ASSERT_EQ(mxfDemuxOpen(demuxer, "once more", &config, nullptr), 0);
    mxfDemuxFree(demuxer);
    EXPECT_EQ(source.closes, 3);
}

TEST(FileInfo, IsFilledFromTheHeader)
{
    StandardFile file{.materialStart = 100, .fileStart = 70, .base = 30, .dropFrame = true};
    file.more.push_back(MxfSet("Identification", 900));
    Opened opened{CompleteFile(file.Bytes())};
    ASSERT_EQ(opened.status, 0);
    const mxf_file_info info = opened.Info();
    ASSERT_EQ(opened.infoStatus, 0);
    EXPECT_EQ(info.duration, 250);
    EXPECT_EQ(info.edit_rate_num, 25);
    EXPECT_EQ(info.edit_rate_den, 1);
    EXPECT_EQ(info.stream_count, 2U);
    EXPECT_EQ(info.index_value, 0xFFFFFFFFU); // no index table segment
    EXPECT_EQ(info.operational_pattern, 0x01010900U);
    EXPECT_EQ(info.complete, 1U);
    EXPECT_EQ(info.drop_frame, 1U);
    EXPECT_EQ(info.start_timecode, 100U);
    EXPECT_EQ(info.source_start_timecode, 70U);
    EXPECT_EQ(std::memcmp(info.instance_uid, Uid(1).bytes.data(), 16), 0);
    EXPECT_EQ(info.header_partition_status, 4U);
    EXPECT_EQ(info.marker_count, 0U);
    EXPECT_EQ(info.muxing_mode, 1U);
    EXPECT_EQ(info.timecode_base, 30);
    EXPECT_EQ(info.mark_in, -1);
    EXPECT_EQ(info.mark_out, -1);
    EXPECT_EQ(info.version, 0x0103);
    EXPECT_EQ(info.identification_count, 1U) << "a set that the preface does not own";
    EXPECT_EQ(info.one, 1U);
}

TEST(FileInfo, StartThatDoesNotFitCountsInItsDay)
{
    const struct {
        std::int64_t start;
        std::uint16_t base;
        bool dropFrame;
        std::uint32_t expected;
    } cases[] = {
        {-1, 25, false, 2159999},
        {-2160001, 25, false, 2159999},
        {-1, 30, true, 2589407},
        {-1, 60, true, 5178815},
        {-1, 0, false, 0},
        {2160000, 25, false, 2160000},
        {std::int64_t{2160000} * 10000 + 7, 25, false, 7},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.start) + " at " + std::to_string(c.base));
        const StandardFile file{
            .materialStart = c.start, .fileStart = c.start, .base = c.base, .dropFrame = c.dropFrame};
        Opened opened{CompleteFile(file.Bytes())};
        EXPECT_EQ(opened.Info().start_timecode, c.expected);
        EXPECT_EQ(opened.Info().source_start_timecode, c.expected);
    }
}

TEST(FileInfo, UntouchedWhileTheSizeIsTheSame)
{
    Opened opened{CompleteFile(StandardFile{}.Bytes())};
    mxf_file_info info = opened.Info();
    info.duration = 4711;
    EXPECT_EQ(opened.demuxer.GetFileInfo(&info), 0);
    EXPECT_EQ(info.duration, 4711);
    info.file_size -= 1;
    EXPECT_EQ(opened.demuxer.GetFileInfo(&info), 0);
    EXPECT_EQ(info.duration, 250);
}

TEST(Streams, TakeIndexesBelowTheirCount)
{
    Opened opened{CompleteFile(StandardFile{}.Bytes())};
    const struct {
        int index, status;
        std::uint32_t type;
    } cases[] = {{-1, -3, 0}, {0, 0, 1}, {1, 0, 2}, {2, -3, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.index);
        EXPECT_EQ(opened.Stream(c.index).stream_type, c.type);
        EXPECT_EQ(opened.streamStatus, c.status);
    }
}

TEST(Streams, StartWhereTheClipAndTheOriginSay)
{
    Opened opened{CompleteFile(StandardFile{.clipStart = 40}.Bytes())};
    EXPECT_EQ(opened.Stream(0).start_offset, 40);
}

TEST(Streams, SegmentsOfOneMaterialTrackAreOneStream)
{
    std::vector<SStreamLink> links(5);
    CMxfTrack picture, sound, other;
    links[0].kind = links[2].kind = EDataKind::picture;
    links[1].kind = links[3].kind = links[4].kind = EDataKind::sound;
    links[0].materialTrack = links[2].materialTrack = &picture;
    links[1].materialTrack = &sound;
    links[3].materialTrack = &other;
    EXPECT_THAT(JoinStreams(links).Leaders(), testing::ElementsAre(0, 1, 3, 4));
    links[3].materialTrack = &sound;
    EXPECT_THAT(JoinStreams(links).Leaders(), testing::ElementsAre(0, 1, 4));
    links[2].materialTrack = nullptr;
    links[3].materialTrack = nullptr;
    EXPECT_THAT(JoinStreams(links).Leaders(), testing::ElementsAre(0, 1, 2, 3, 4));
}

TEST(Heights, OnlyThePaddingOfACoderIsTakenOff)
{
    const struct {
        const char* name;
        std::uint32_t stored, shown;
        std::int32_t y;
        std::uint32_t expected;
    } cases[] = {
        {"1088 lines", 1088, 1080, 0, 1080},        {"544 lines of a field", 544, 540, 0, 540},
        {"without padding", 1080, 1080, 0, 1080},   {"D-10 with the lines above", 304, 288, 16, 304},
        {"512 lines, 486 shown", 512, 486, 0, 512}, {"nothing said", 720, 0, 0, 720},
        {"displayed inside", 1088, 800, 0, 1088},   {"shown one line down", 1088, 1080, 1, 1088},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        SStreamFormat format;
        format.height = c.stored;
        format.displayed = {.x = 0, .y = c.y, .width = 1920, .height = c.shown};
        EXPECT_EQ(HeightWithoutPadding(format), c.expected);
    }
}

TEST(Widths, OnlyThePaddingOfACoderIsTakenOff)
{
    const struct {
        const char* name;
        std::uint32_t stored, sampled, shown;
        std::int32_t x;
        std::uint32_t expected;
    } cases[] = {
        {"a cinema picture in blocks", 2000, 1998, 1998, 0, 1998}, {"without padding", 1998, 1998, 1998, 0, 1998},
        {"edges that are not shown", 720, 720, 712, 0, 720},       {"edges at both sides", 720, 704, 704, 8, 720},
        {"more than one block", 1920, 1440, 1440, 0, 1920},        {"nothing said", 1280, 0, 0, 0, 1280},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        SStreamFormat format;
        format.width = c.stored;
        format.sampledWidth = c.sampled;
        format.displayed = {.x = c.x, .y = 0, .width = c.shown, .height = 1080};
        EXPECT_EQ(WidthWithoutPadding(format), c.expected);
    }
}

TEST(Identifications, TakeIndexesBelowTheirCount)
{
    Opened opened{CompleteFile(StandardFile{}.Bytes())};
    mxf_identification identification{};
    EXPECT_EQ(opened.demuxer.GetIdentification(&identification, -1), -11);
    EXPECT_EQ(opened.demuxer.GetIdentification(&identification, 1), -11);
    ASSERT_EQ(opened.demuxer.GetIdentification(&identification, 0), 0);
    EXPECT_EQ(std::wstring(identification.company_name), L"Company");
    EXPECT_EQ(std::wstring(identification.product_name), L"Product");
    EXPECT_EQ(std::wstring(identification.version_string), L"1.0");
}

TEST(Identifications, LongAndForeignTextsAreCutAtACharacter)
{
    CMxfPackage package;
    mxf_top_pack pack;
    package.name = "\x41\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    FillRecord(pack, package);
    EXPECT_EQ(std::wstring(pack.name), L"A\u00E9\u20AC\U0001F600");
    package.name = std::string(5000, 'x');
    FillRecord(pack, package);
    EXPECT_EQ(std::wstring(pack.name), std::wstring(1023, L'x'));
}

TEST(TopPacks, AreTheMaterialPackageAndTheSourcePackages)
{
    Opened opened{CompleteFile(StandardFile{.tapeStart = 1000}.Bytes())};
    const struct {
        bool material;
        int index, status;
        std::uint32_t umid;
    } cases[] = {{true, 7, 0, 100}, {false, 0, 0, 200}, {false, 1, 0, 300}, {false, 2, -11, 0}, {false, -1, -11, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.index);
        mxf_top_pack pack{};
        EXPECT_EQ(opened.demuxer.GetTopPack(&pack, c.material, c.index), c.status);
        EXPECT_EQ(std::memcmp(pack.umid, Umid(c.umid).bytes.data(), 32), 0);
        EXPECT_EQ(std::wstring(pack.name), c.status == 0 ? L"Name" : L"");
    }
}

TEST(Opening, RefusesWhatIsNoMxfFile)
{
    const Bytes metadata = StandardFile{}.Bytes();
    Bytes body = CompleteFile(metadata);
    body[13] = 3;
    const Bytes noTracks = CompleteFile(StandardFile{.hasPicture = false, .hasSound = false}.Bytes());
    const struct {
        const char* name;
        Bytes bytes;
        int status;
        const char* message;
    } cases[] = {
        {"nothing", {}, -1, "error: parse headers failure, no enough data"},
        {"127 bytes", Bytes(127), -1, "error: parse headers failure, no enough data"},
        {"noise", Bytes(5000, 0x42), -1, "error: parse headers failure, no partition pack"},
        {"a body partition first", body, -1, "error: First partition is not header!"},
        {"no metadata", CompleteFile({}), -1, "error: parse headers failure, no header metadata"},
        {"no essence track", noTracks, -7, "error: parse headers failure, no essence track"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        RecordingSnitcher sink;
        Opened opened{c.bytes, nullptr, &sink};
        EXPECT_EQ(opened.status, c.status);
        EXPECT_THAT(sink.lines, Contains(c.message));
        (void)opened.Info();
        EXPECT_EQ(opened.infoStatus, -4);
        EXPECT_EQ(
            opened.demuxer.Open(std::make_unique<zanfcp::test::MemorySource>(CompleteFile(metadata)), nullptr, {}), 0)
            << "usable again";
        EXPECT_EQ(CMxfDemuxer::Create(std::make_unique<zanfcp::test::MemorySource>(c.bytes), nullptr, {}), nullptr);
    }
}

TEST(Opening, AtomAndOp1bLoadTheirIndexOnDemand)
{
    const struct {
        std::uint64_t pattern;
        bool lazy;
    } cases[] = {{0x0D01020101010900, false},
                 {0x0D01020101020900, true},
                 {0x0D01020110000000, true},
                 {0x0D01020102010900, false}};
    for (const auto& c : cases) {
        Opened opened{CompleteFile(StandardFile{}.Bytes(), {.pattern = c.pattern})};
        ASSERT_EQ(opened.status, 0);
        EXPECT_EQ(opened.demuxer.GetLazyIndexLoading(), c.lazy) << std::hex << c.pattern;
    }
}

TEST(Wrapping, OfASingleStreamIsThatOfTheEssence)
{
    const auto wrappingOf = [](int elements, std::uint64_t pattern) {
        const StandardFile file{.hasSound = false};
        MxfBuilder builder;
        builder.partition({.metadata = file.Bytes()});
        builder.partition({.kind = 3, .bodySID = 1});
        for (int i = 0; i < elements; ++i)
            builder.essence(100);
        builder.partition({.kind = 4});
        builder.stateFooter().randomIndexPack();
        for (std::size_t i = 0; i < 8; ++i)
            builder.bytes[20 + 64 + 8 + i] = static_cast<std::uint8_t>(pattern >> (8 * (7 - i)));
        Opened opened{builder.bytes};
        return opened.Stream(0).wrapping;
    };
    constexpr std::uint64_t kAtom = 0x0D01020110000000;
    EXPECT_EQ(wrappingOf(1, kAtom), 2U);
    EXPECT_EQ(wrappingOf(2, kAtom), 1U);
    EXPECT_EQ(wrappingOf(0, kAtom), 1U) << "no essence: what the label says";
    EXPECT_EQ(wrappingOf(1, 0x0D01020101010900), 1U) << "more streams than one: what the label says";
}

TEST(Frameworks, AreListedWithTheirProperties)
{
    MxfHeader header;
    header.Add(MxfSet("Preface", 1).Ref(0x3B03, 2));
    header.Add(MxfSet("ContentStorage", 2).Refs(0x1901, {200}).Refs(0x1902, {3}));
    header.Add(MxfSet("EssenceContainerData", 3).Package(0x2701, 200).U32(0x3F07, 1));
    header.Add(MxfSet("SourcePackage", 200).Package(0x4401, 200).Refs(0x4403, {210, 220}));
    header.Add(
        MxfSet("TimelineTrack", 210).U32(0x4801, 1).U32(0x4804, 0x15010501).Rate(0x4B01, 25, 1).Ref(0x4803, 211));
    header.Add(MxfSet("Sequence", 211).Ul(0x0201, kPicture).I64(0x0202, 10));
    header.Add(MxfSet("EventTrack", 220).U32(0x4801, 2).Rate(0x4901, 25, 1).Ref(0x4803, 221));
    header.Add(MxfSet("Sequence", 221).Ul(0x0201, kDescriptive).Refs(0x1001, {222, 223}));
    for (const std::uint32_t n : {222U, 223U}) {
        header.Add(MxfSet("DMSegment", n)
                       .Ul(0x0201, kDescriptive)
                       .I64(0x0601, n)
                       .I64(0x0202, 5)
                       .Text(0x0602, u"take")
                       .Ref(0x6101, n + 10));
        header.Add(MxfSet("ClipFramework", n + 10)
                       .Dynamic("06.0E.2B.34.01.01.01.04.01.05.0C.00.00.00.00.00", Hex("413031"))
                       .Dynamic("06.0E.2B.34.01.01.01.05.06.01.01.04.05.40.11.02", Refs({n + 20})));
        header.Add(
            MxfSet("Shot", n + 20).Dynamic("06.0E.2B.34.01.01.01.05.03.02.01.06.0D.01.00.00", Utf16(u"close-up")));
    }
    Opened opened{CompleteFile(header.All())};
    ASSERT_EQ(opened.status, 0);

    std::uint32_t count = 0;
    EXPECT_EQ(opened.demuxer.GetDmFramework(0, nullptr, &count, nullptr), 0);
    ASSERT_EQ(count, 2U);
    mxf_dmd_framework framework{};
    ASSERT_EQ(opened.demuxer.GetDmFramework(1, &framework, nullptr, nullptr), 0);
    EXPECT_EQ(framework.event_start, 223);
    EXPECT_EQ(framework.duration, 5);
    EXPECT_EQ(framework.track_id, 2U);
    EXPECT_EQ(framework.material, 0U);
    EXPECT_EQ(std::string(framework.class_name), "ClipFramework");
    EXPECT_EQ(std::string(framework.comment), "take");
    std::vector<std::string> properties;
    for (std::uint32_t i = 0; i < framework.property_count; ++i)
        properties.push_back(std::string(framework.properties[i].name) + "=" + framework.properties[i].value);
    EXPECT_THAT(properties,
                testing::UnorderedElementsAre("ClipNumber=A01", "ClipShotObjects.ShotDescription=close-up"));

    const mxf_dmd_framework* list[2] = {};
    count = 1; // room for one
    EXPECT_EQ(opened.demuxer.GetDmFramework(0, nullptr, &count, list), 0);
    EXPECT_EQ(count, 2U);
    ASSERT_NE(list[0], nullptr);
    EXPECT_EQ(list[0]->event_start, 222);
    EXPECT_EQ(list[1], nullptr);
    EXPECT_EQ(opened.demuxer.GetDmFramework(2, &framework, nullptr, nullptr), -11);
    EXPECT_EQ(opened.demuxer.GetDmFramework(-1, &framework, nullptr, nullptr), -11);
    EXPECT_EQ(opened.demuxer.GetDmFramework(0, &framework, nullptr, list), -2) << "a list without room";
}

TEST(HostileFiles, SurviveEveryPrefixAndEveryChangedByte)
{
    const Bytes whole = CompleteFile(StandardFile{.tapeStart = 5}.Bytes());
    int opened = 0;
    const auto query = [&](const Bytes& bytes) {
        Opened file{bytes};
        const mxf_file_info info = file.Info();
        if (file.status == 0) ++opened;
        EXPECT_EQ(file.infoStatus, file.status == 0 ? 0 : -4);
        for (std::uint32_t i = 0; i <= info.stream_count; ++i)
            (void)file.Stream(static_cast<int>(i));
        mxf_dmd_framework framework{};
        (void)file.demuxer.GetDmFramework(0, &framework, nullptr, nullptr);
    };
    for (std::size_t size = 0; size < whole.size(); size += 13)
        query({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
    for (std::size_t at = 0; at < whole.size() - 2200; at += 5) {
        Bytes changed = whole;
        changed[at] ^= 0xFF;
        query(changed);
    }
    EXPECT_GT(opened, 100);
}

} // namespace
