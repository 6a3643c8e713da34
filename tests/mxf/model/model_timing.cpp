#include "mxf/model/HeaderModel.h"
#include "mxf/model/Timing.h"
#include "tests/mxf/model/StandardFile.h"

#include <gtest/gtest.h>

#include <limits>

using namespace TamrelMxf;
using namespace TamrelMxf::test;

namespace {

constexpr SRational kNtsc{30000, 1001};
constexpr SRational kPal{25, 1};

TEST(Timing, RescaleIsExactAndRefusesWhatDoesNotFit)
{
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(Rescale(1601, {48000, 1}, kNtsc), 1); // the shortest of the five frames of 8008 samples
    EXPECT_EQ(Rescale(8008, {48000, 1}, kNtsc), 5);
    EXPECT_EQ(Rescale(100, kPal, {50, 1}), 200);
    EXPECT_EQ(Rescale(-3, {50, 1}, kPal), -2); // half away from zero
    EXPECT_EQ(Rescale(3, {50, 1}, kPal), 2);
    EXPECT_EQ(Rescale(kMost, kPal, kPal), kMost);
    EXPECT_EQ(Rescale(kMost, kPal, {50, 1}), std::nullopt);
    EXPECT_EQ(Rescale(kMost / 2, {2147483647, 2147483646}, {2147483646, 2147483647}), std::nullopt);
    EXPECT_EQ(Rescale(1, {25, 0}, kPal), std::nullopt);
    EXPECT_EQ(Rescale(1, kPal, {-25, 1}), std::nullopt);
}

TEST(Duration, ComesFromTheFirstThatKnowsIt)
{
    using ESource = SDuration::ESource;
    struct Case {
        const char* name;
        StandardFile file;
        std::int64_t expected;
        ESource source;
    };
    const Case cases[] = {
        {"material picture", {.materialPicture = 200, .materialSound = 300}, 200, ESource::picture},
        {"file picture", {.materialPicture = -1, .materialSound = 300, .filePicture = 210}, 210, ESource::picture},
        {"picture descriptor",
         {.materialPicture = -1, .materialSound = 300, .filePicture = -1, .fileSound = 300, .containerDuration = 220},
         220,
         ESource::picture},
        {"sound", {.materialPicture = -1, .materialSound = 300, .filePicture = -1}, 300, ESource::sound},
        {"0 is not believed", {.materialPicture = 0, .materialSound = 300, .filePicture = 0}, 300, ESource::sound},
        {"0 when nobody says more",
         {.materialPicture = 0, .materialSound = 0, .filePicture = -1, .fileSound = -1},
         0,
         ESource::picture},
        {"sound without picture", {.materialSound = 123, .hasPicture = false}, 123, ESource::sound},
        {"samples as frames of the picture",
         {.materialPicture = -1,
          .materialSound = 48048,
          .filePicture = -1,
          .pictureRate = kNtsc,
          .soundRate = {48000, 1}},
         30,
         ESource::sound},
        {"samples stay samples without picture",
         {.materialSound = 48048, .soundRate = {48000, 1}, .hasPicture = false},
         48048,
         ESource::sound},
        {"nothing",
         {.materialPicture = -1, .materialSound = -1, .filePicture = -1, .fileSound = -1},
         -1,
         ESource::none},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const SDuration duration = CalculateDuration(c.file.Model());
        EXPECT_EQ(duration.editUnits, c.expected);
        EXPECT_EQ(duration.source, c.source);
        EXPECT_EQ(duration.editRate, c.file.hasPicture ? c.file.pictureRate : c.file.soundRate);
    }
}

TEST(Duration, OtherSourcesHelpAnOpenHeader)
{
    using ESource = SDuration::ESource;
    const StandardFile open{.materialPicture = -1,
                            .materialSound = -1,
                            .filePicture = -1,
                            .fileSound = -1,
                            .pictureRate = kNtsc,
                            .soundRate = kNtsc};
    const SHeaderModel model = open.Model();
    StandardFile closed = open;
    closed.materialSound = 90;
    const SHeaderModel footer = closed.Model();
    struct Case {
        const char* name;
        SDurationSources sources;
        std::int64_t expected;
        ESource source;
    };
    const SIndexExtent index{.editUnits = 48048, .editRate = {48000, 1}};
    const SEssenceExtent essence{.editUnits = 10, .editRate = kNtsc};
    const Case cases[] = {
        {"footer first", {.footer = &footer, .index = index, .essence = essence}, 90, ESource::footer},
        {"a footer that knows nothing", {.footer = &model, .index = index, .essence = essence}, 30, ESource::index},
        {"the size of the essence", {.essence = essence}, 10, ESource::essence},
        {"an empty index", {.index = SIndexExtent{0, kNtsc}, .essence = essence}, 10, ESource::essence},
        {"an index without a rate", {.index = SIndexExtent{100, {0, 0}}}, -1, ESource::none},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const SDuration duration = CalculateDuration(model, c.sources);
        EXPECT_EQ(duration.editUnits, c.expected);
        EXPECT_EQ(duration.source, c.source);
        EXPECT_EQ(duration.editRate, kNtsc);
    }
}

TEST(StartTimecode, ComesFromMaterialThenFileThenTape)
{
    using ESource = SStartTimecode::ESource;
    struct Case {
        const char* name;
        StandardFile file;
        std::int64_t expected;
        std::int64_t sourceStart;
        ESource source;
    };
    const Case cases[] = {
        {"material", {.materialStart = 90000, .fileStart = 5}, 90000, 5, ESource::material},
        {"material 0: file", {.materialStart = 0, .fileStart = 5000}, 5000, 5000, ESource::file},
        {"no material: file less the clip's start",
         {.materialStart = {}, .fileStart = 5000, .clipStart = 100},
         4900,
         5000,
         ESource::file},
        {"a clip's start beyond the timecode is left alone",
         {.materialStart = {}, .fileStart = 50, .clipStart = 51},
         50,
         50,
         ESource::file},
        {"equal is not larger", {.materialStart = {}, .fileStart = 50, .clipStart = 50}, 0, 50, ESource::file},
        {"only the material's 0", {.materialStart = 0, .fileStart = {}}, 0, 0, ESource::material},
        {"a material timecode keeps the tape out",
         {.materialStart = 0, .fileStart = {}, .tapeStart = 7},
         0,
         0,
         ESource::material},
        {"tape, at the position that the file package names",
         {.materialStart = {}, .fileStart = {}, .tapeStart = 1000, .tapeClipStart = 250},
         1250,
         0,
         ESource::physical},
        {"tape, through a clip that starts later",
         {.materialStart = {}, .fileStart = {}, .tapeStart = 1000, .clipStart = 10, .tapeClipStart = 250},
         1260,
         0,
         ESource::physical},
        {"nothing", {.materialStart = {}, .fileStart = {}}, 0, 0, ESource::none},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const SStartTimecode found = FindStartTimecode(c.file.Model());
        EXPECT_EQ(found.start.start, c.expected);
        EXPECT_EQ(found.sourceStart, c.sourceStart);
        EXPECT_EQ(found.source, c.source);
    }
}

TEST(StartTimecode, CarriesBaseDropFrameAndUnits)
{
    const SStartTimecode ntsc = FindStartTimecode(
        StandardFile{.materialStart = 1800, .pictureRate = kNtsc, .base = 30, .dropFrame = true}.Model());
    EXPECT_TRUE(ntsc.start.dropFrame);
    EXPECT_EQ(ntsc.start.base, 30);

    // A clip that starts 48,048 samples in, of a file without picture: 30 frames of its timecode track.
    const SStartTimecode samples = FindStartTimecode(StandardFile{.materialStart = {},
                                                                  .fileStart = 1000,
                                                                  .clipStart = 48048,
                                                                  .pictureRate = kNtsc,
                                                                  .soundRate = {48000, 1},
                                                                  .base = 30,
                                                                  .hasPicture = false}
                                                         .Model());
    EXPECT_EQ(samples.start.start, 970);
    // Timecode that counts 25 of the 50 frames a second.
    const SStartTimecode halved = FindStartTimecode(
        StandardFile{.materialStart = {}, .fileStart = 1000, .clipStart = 100, .pictureRate = {50, 1}}.Model());
    EXPECT_EQ(halved.start.start, 950);
}

TEST(Timecode, IsThatOfTheComponentAtThePosition)
{
    MxfHeader header;
    header.Add(MxfSet("SourcePackage", 1).Package(0x4401, 1).Refs(0x4403, {10}))
        .Add(MxfSet("TimelineTrack", 10).U32(0x4801, 1).U32(0x4804, 77).Rate(0x4B01, 25, 1).Ref(0x4803, 11))
        .Add(MxfSet("Sequence", 11).Ul(0x0201, kTimecode).Refs(0x1001, {12, 13, 14}))
        .Add(MxfSet("Filler", 12).I64(0x0202, 10))
        .Add(MxfSet("TimecodeComponent", 13).I64(0x0202, 100).I64(0x1501, 1000).U16(0x1502, 25))
        .Add(MxfSet("TimecodeComponent", 14).I64(0x0202, 100).I64(0x1501, 5000).U16(0x1502, 25));
    const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(header.All()));
    const CMxfPackage& package = model.packages.at(0);
    const auto at = [&](std::int64_t position, SRational rate = kPal) {
        const auto timecode = TimecodeAt(package, position, rate);
        return timecode ? timecode->start : -1;
    };
    EXPECT_EQ(at(10), 1000);
    EXPECT_EQ(at(109), 1099);
    EXPECT_EQ(at(110), 5000);
    EXPECT_EQ(at(300), 5190);
    EXPECT_EQ(at(220, {50, 1}), 5000);
    EXPECT_EQ(FirstTimecode(package)->start, 1000);
    EXPECT_EQ(FirstTimecode(package)->trackNumber, 77U);
}

TEST(StartTimecode, ChainsOfPackagesThatReturnToTheirStartEnd)
{
    MxfHeader header;
    header.Add(MxfSet("MaterialPackage", 1).Package(0x4401, 1).Refs(0x4403, {10}))
        .Add(MxfSet("TimelineTrack", 10).U32(0x4801, 1).Rate(0x4B01, 25, 1).Ref(0x4803, 11))
        .Add(MxfSet("SourceClip", 11).Ul(0x0201, kPicture).Package(0x1101, 2).U32(0x1102, 1).I64(0x1201, 5))
        .Add(MxfSet("SourcePackage", 2).Package(0x4401, 2).Refs(0x4403, {20}))
        .Add(MxfSet("TimelineTrack", 20).U32(0x4801, 1).Rate(0x4B01, 25, 1).Ref(0x4803, 21))
        .Add(MxfSet("SourceClip", 21).Ul(0x0201, kPicture).Package(0x1101, 2).U32(0x1102, 1).I64(0x1201, 5));
    const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(header.All()));
    EXPECT_EQ(FindStartTimecode(model).source, SStartTimecode::ESource::none);
}

TEST(Marks, StandInThreePlaces)
{
    constexpr std::string_view kIn = "06.0E.2B.34.01.01.01.0A.07.02.01.03.01.0E.00.00";
    constexpr std::string_view kOut = "06.0E.2B.34.01.01.01.0A.07.02.01.03.02.04.00.00";
    constexpr std::string_view kTimebase = "06.0E.2B.34.01.01.01.0C.06.01.01.03.0E.00.00.00";
    constexpr std::string_view kMarker = "06.0E.2B.34.01.01.01.0C.06.01.01.04.02.0F.00.00";
    constexpr std::string_view kEnd = "06.0E.2B.34.01.01.01.01.07.02.01.03.02.00.00.00";
    struct Case {
        const char* name;
        MxfSet package, track, marker;
        std::int64_t in, out;
        std::uint32_t timebase;
    };
    const MxfSet package = MxfSet("MaterialPackage", 1).Package(0x4401, 1).Refs(0x4403, {10});
    const MxfSet track = MxfSet("TimelineTrack", 10).U32(0x4801, 4);
    const MxfSet marker("PackageMarker", 20);
    const Case cases[] = {
        {"package set",
         MxfSet(package)
             .Dynamic(kIn, BigEndian(5, 8))
             .Dynamic(kOut, BigEndian(9, 8))
             .Dynamic(kTimebase, BigEndian(2, 4)),
         track, marker, 5, 9, 2},
        {"marker", MxfSet(package).Dynamic(kMarker, Join(Uid(20).bytes)), track,
         MxfSet(marker).Dynamic(kIn, BigEndian(6, 8)).Dynamic(kTimebase, BigEndian(3, 4)), 6, -1, 3},
        {"track", package, MxfSet(track).I64(0x4B06, 7).I64(0x4B07, 8), marker, 7, 8, 4},
        {"end relative time", MxfSet(package).Dynamic(kEnd, BigEndian(11, 8)), track, marker, 11, -1, 0},
        {"an unknown position is no mark", MxfSet(package).Dynamic(kIn, Bytes(8, 0xFF)), track, marker, -1, -1, 0},
        {"package set of a source package",
         MxfSet("SourcePackage", 2).Package(0x4401, 2).Refs(0x4403, {10}).Dynamic(kIn, BigEndian(5, 8)), track, marker,
         5, -1, 0},
        {"none", package, track, marker, -1, -1, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MxfHeader header;
        header.Add(c.package).Add(c.track).Add(c.marker);
        const SMarks marks = FindMarks(BuildHeaderModel(ReadHeaderSets(header.All())));
        EXPECT_EQ(marks.markIn.value_or(-1), c.in);
        EXPECT_EQ(marks.markOut.value_or(-1), c.out);
        EXPECT_EQ(marks.timebaseTrackId, c.timebase);
    }
}

} // namespace
