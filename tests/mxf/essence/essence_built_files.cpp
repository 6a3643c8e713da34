#include "mxf/demuxer/Delivery.h"
#include "mxf/essence/Aes3Unpacking.h"
#include "mxf/essence/MemoryEssenceInput.h"
#include "mxf/essence/MxfInterleavedParser.h"
#include "mxf/essence/TrackMatch.h"
#include "mxf/essence/WalkedUnits.h"
#include "tests/mxf/demuxer/DemuxerFile.h"
#include "tests/mxf/essence/BuiltFile.h"
#include "tests/mxf/essence/EssenceFile.h"
#include "tests/support/RecordingSnitcher.h"
#include "tests/support/ShellTools.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using testing::ElementsAre;
using testing::HasSubstr;

/// One content package of the standard file; parts of it may be missing.
struct Package {
    std::uint8_t seed = 0;
    bool hasSystem = true, hasPicture = true, hasSound = true;
};
void Put(MxfBuilder& file, const Package& package)
{
    if (package.hasSystem) file.klv(kSystemItem, Bytes(57));
    if (package.hasPicture) file.klv(kPictureElement, Value(300, package.seed));
    if (package.hasSound) file.klv(kSoundElement, Value(5760, package.seed));
}

TEST(Packages, WithMissingElementsShiftNoOther)
{
    struct Case {
        const char* name;
        std::vector<Package> packages;
        std::vector<std::int64_t> pictures, sounds;
    };
    const Case cases[] = {
        {"whole", {{1}, {2}, {3}}, {0, 1, 2}, {0, 1, 2}},
        {"no picture", {{1}, {.seed = 2, .hasPicture = false}, {3}}, {0, 2}, {0, 1, 2}},
        {"no sound", {{1}, {.seed = 2, .hasSound = false}, {3}}, {0, 1, 2}, {0, 2}},
        {"nothing but the system item", {{1}, {2, true, false, false}, {3}}, {0, 2}, {0, 2}},
        {"no system items", {{1, false}, {2, false, false, true}, {3, false}}, {0, 2}, {0, 1, 2}},
        {"one system item missing", {{1}, {.seed = 2, .hasSystem = false}, {3}}, {0, 1, 2}, {0, 1, 2}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Built built;
        built.essence = [&](MxfBuilder& file) {
            for (const Package& package : c.packages)
                Put(file, package);
        };
        Playing playing{built.File()};
        EXPECT_EQ(playing.PlayAll(), kEnded);
        EXPECT_EQ(Units(playing.streams[kPictures]), c.pictures);
        EXPECT_EQ(Units(playing.streams[kSounds]), c.sounds);
        for (auto& [stream, keeper] : playing.streams)
            for (std::size_t i = 0; i < keeper.taken.size(); ++i) {
                const auto unit = keeper.taken[i].sample.edit_unit;
                EXPECT_EQ(keeper.taken[i].bytes[0], c.packages[static_cast<std::size_t>(unit)].seed);
                const bool follows = i == 0 ? unit == 0 : keeper.taken[i - 1].sample.edit_unit + 1 == unit;
                EXPECT_EQ((keeper.taken[i].sample.flags & mxf_sample_discontinuity) == 0, follows);
            }
    }
}

constexpr std::string_view kAvcFields = "06.0E.2B.34.04.01.01.0D.0D.01.03.01.02.10.60.09";
constexpr std::string_view kJpegInterlaced = "06.0E.2B.34.04.01.01.0D.0D.01.03.01.02.0C.03.00";
constexpr std::string_view kJpegFields = "06.0E.2B.34.04.01.01.0D.0D.01.03.01.02.0C.05.00";
constexpr std::string_view kJpegCoding = "06.0E.2B.34.04.01.01.07.04.01.02.02.03.01.01.00";

TEST(FieldWrapping, MakesOneSampleOfTwoFieldsWhereTheTrackCountsFrames)
{
    struct Case {
        std::string_view container;
        SRational rate;
        bool hasSystem, hasSound;
        std::size_t perUnit;
    };
    const Case cases[] = {
        {kAvcFields, {30000, 1001}, true, true, 2},   {kJpegFields, {25, 1}, false, true, 2},
        {kJpegInterlaced, {25, 1}, true, false, 2},   {kAvcFields, {50, 1}, true, false, 1},
        {kJpegFields, {60000, 1001}, false, true, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        Built built;
        built.standard = {.filePicture = -1, .pictureRate = c.rate, .soundRate = c.rate, .hasSound = c.hasSound};
        built.standard.materialPicture = -1;
        built.standard.pictureContainer = c.container;
        built.standard.pictureCoding = kJpegCoding;
        std::vector<Bytes> expected;
        built.essence = [&](MxfBuilder& file) {
            for (std::uint8_t unit = 0; unit < 6; ++unit) {
                if (c.hasSystem) file.klv(kSystemItem, Bytes(57));
                Bytes sample;
                for (std::uint8_t field = 0; field < c.perUnit; ++field) {
                    if (unit == 3 && field == 1) continue; // it is lost
                    const Bytes value = Value(300, static_cast<std::uint8_t>(2 * unit + field));
                    file.klv(kPictureElement, value);
                    sample = Join(sample, value);
                }
                if (c.hasSound) file.klv(kSoundElement, Bytes(5760, unit));
                expected.push_back(sample);
            }
        };
        Playing playing{built.File()};
        playing.streams[kPictures].refusals = 9;
        ASSERT_EQ(playing.PlayAll(), kEnded);
        const std::vector<Taken> played = playing.streams[kPictures].taken;
        ASSERT_EQ(played.size(), expected.size());
        for (std::size_t i = 0; i < played.size(); ++i) {
            EXPECT_EQ(played[i].bytes, expected[i]) << i;
            EXPECT_EQ(played[i].sample.edit_unit, static_cast<std::int64_t>(i));
            EXPECT_EQ((played[i].sample.flags & mxf_sample_damaged) != 0, c.perUnit == 2 && i == 3) << i;
            const Taken* again = playing.After(kPictures, static_cast<std::int64_t>(i), mxf_seek_exact);
            ASSERT_NE(again, nullptr);
            EXPECT_EQ(again->bytes, expected[i]) << i;
        }
    }
}

TEST(FieldWrapping, OfAFileThatGrowsIsMeasuredAsItIsDelivered)
{
    for (const auto& [rate, units] : {std::pair{SRational{25, 1}, 3U}, {SRational{50, 1}, 6U}}) {
        Built built;
        built.isClosed = false;
        built.standard = {.materialPicture = -1, .filePicture = -1, .pictureRate = rate, .hasSound = false};
        built.standard.pictureContainer = kAvcFields;
        built.essence = [](MxfBuilder& file) {
            for (std::uint8_t field = 0; field < 6; ++field)
                file.klv(kPictureElement, Value(300, field));
        };
        Playing playing{built.File()};
        (void)playing.PlayAll();
        EXPECT_EQ(playing.info.duration, units);
        EXPECT_EQ(playing.streams[kPictures].taken.size(), units);
    }
}

TEST(Packages, AreFoundBehindRunInFillAndOtherPartitions)
{
    Built built;
    built.runIn = Value(1000, 9);
    built.essence = [](MxfBuilder& file) {
        file.fill(512);
        Put(file, {1});
        file.partition({.kind = 3, .bodySID = 77}); // of another container, with the same keys in it
        Put(file, {50});
        file.partition({.kind = 3, .bodySID = 1, .bodyOffset = 6135});
        Put(file, {2});
        file.fill(300);
    };
    for (const bool isListed : {true, false}) {
        SCOPED_TRACE(isListed);
        built.isClosed = isListed;
        Playing playing{built.File()};
        EXPECT_EQ(playing.PlayAll(), isListed ? kEnded : kNeedsData);
        ASSERT_THAT(Units(playing.streams[kPictures]), ElementsAre(0, 1));
        EXPECT_EQ(playing.streams[kPictures].taken[1].bytes, Value(300, 2));
        EXPECT_EQ(playing.streams[kSounds].taken[1].bytes, Value(5760, 2));
    }
}

TEST(Damage, CostsTheDamagedSamplesAndIsReportedOnce)
{
    constexpr std::size_t kPackageBytes = 77 + 320 + 5780;
    struct Case {
        const char* name;
        std::size_t at; ///< from the second package on
        Bytes bytes;
        std::vector<std::int64_t> pictures, sounds;
        std::int64_t damaged; ///< unit of the picture that is marked, -1: none
    };
    const Case cases[] = {
        {"key of a picture", 77, Bytes(16), {0, 2, 3}, {0, 1, 2, 3}, -1},
        {"length of a picture beyond the file", 77 + 17, {0x7F, 0xFF, 0xFF}, {0, 1, 2, 3}, {0, 1, 2, 3}, 1},
        {"length of a picture into the next package", 77 + 17, {0, 0x15, 0}, {0, 1, 2, 3}, {0, 1, 2, 3}, 1},
        {"length of a picture too short", 77 + 17, {0, 0, 100}, {0, 1, 2, 3}, {0, 1, 2, 3}, -1},
        {"system item", 0, Bytes(77), {0, 1, 2, 3}, {0, 1, 2, 3}, -1},
        {"everything but the end of the sound", 0, Bytes(3000), {0, 2, 3}, {0, 2, 3}, -1},
    };
    for (const bool hasIndex : {true, false}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << c.name << (hasIndex ? ", index" : ""));
            if (!hasIndex && c.sounds.size() == 3) continue; // nothing tells that a package is gone
            std::size_t second = 0;
            Built built;
            if (hasIndex) built.footerIndex = IndexSegment({.unitBytes = kPackageBytes});
            built.essence = [&](MxfBuilder& file) {
                for (std::uint8_t seed = 1; seed <= 4; ++seed) {
                    if (seed == 2) second = file.bytes.size();
                    Put(file, {seed});
                }
            };
            Bytes file = built.File();
            std::ranges::copy(c.bytes, file.begin() + static_cast<std::ptrdiff_t>(second + c.at));
            zanfcp::test::RecordingSnitcher sink;
            Playing playing{file, &sink};
            EXPECT_EQ(playing.PlayAll(), kEnded);
            EXPECT_EQ(Units(playing.streams[kPictures]), c.pictures);
            EXPECT_EQ(Units(playing.streams[kSounds]), c.sounds);
            for (const Taken& one : playing.streams[kPictures].taken)
                EXPECT_EQ((one.sample.flags & mxf_sample_damaged) != 0, one.sample.edit_unit == c.damaged);
            EXPECT_EQ(
                std::ranges::count_if(sink.lines, [](const std::string& m) { return m.find("amaged") != m.npos; }), 1);
        }
    }
}

/// Four packages with 128 bytes of fill behind each, and where they begin.
struct Four {
    Four()
    {
        built.essence = [this](MxfBuilder& file) {
            const std::size_t first = file.bytes.size();
            for (std::uint8_t seed = 1; seed <= 4; ++seed) {
                begins.push_back(file.bytes.size() - first);
                Put(file, {seed});
                file.fill(128);
            }
        };
        (void)built.File();
    }
    Built built;
    std::vector<std::uint64_t> begins;
};

TEST(Damage, UnitsThatAreLostTakeNoRoom)
{
    CWalkedUnits units;
    constexpr std::int64_t kFar = std::int64_t{1} << 60;
    EXPECT_TRUE(units.Add({.unit = 0, .position = 100}));
    EXPECT_TRUE(units.Add({.unit = 1, .position = 200, .isKey = false}));
    EXPECT_TRUE(units.Add({.unit = kFar, .position = 300, .shift = -1, .isKey = false}));
    EXPECT_TRUE(units.Add({.unit = kFar + 1, .position = 400}));
    EXPECT_EQ(units.Count(), kFar + 2);
    const std::pair<std::int64_t, std::int64_t> places[] = {{0, 100}, {1, 200}, {2, 300}, {kFar, 300}, {kFar + 1, 400}};
    for (const auto& [unit, position] : places)
        EXPECT_EQ(units.Find(unit)->position, position) << unit;
    EXPECT_EQ(units.Find(-1), nullptr);
    EXPECT_EQ(units.Find(kFar + 2), nullptr);
    EXPECT_EQ(units.KeyFrameOf(kFar), 0);
    EXPECT_EQ(units.StoredAt(kFar - 1), kFar);
    EXPECT_EQ(units.StoredAt(5), -1);
}

TEST(Seeking, GoesWhereTheIndexLeadsAndWhereItDoesNot)
{
    const Four four;
    const std::vector<std::uint64_t> right{four.begins.begin(), four.begins.begin() + 4};
    const auto constant = static_cast<std::uint32_t>(right[1]);
    struct Case {
        const char* name;
        Bytes header, footer;
    };
    const Case cases[] = {
        {"variable sizes in the footer", {}, IndexSegment({.units = right})},
        {"variable sizes in the header", IndexSegment({.units = right}), {}},
        {"constant size", {}, IndexSegment({.unitBytes = constant})},
        {"of half of the packages", {}, IndexSegment({.units = {right[0], right[1]}})},
        {"that leads into the essence", {}, IndexSegment({.units = {3, 999, 5000, 7777}})},
        {"that leads behind the file", {}, IndexSegment({.unitBytes = 1U << 31})},
        {"none", {}, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Built built = four.built;
        built.headerIndex = c.header;
        built.footerIndex = c.footer;
        built.standard.clipStart = 1;
        Playing playing{built.File()};
        for (const int unit : {3, 0, 2, 1}) {
            const Taken* sound = playing.After(kSounds, unit - 1, mxf_seek_exact);
            ASSERT_NE(sound, nullptr) << unit;
            EXPECT_EQ(sound->bytes, Value(5760, static_cast<std::uint8_t>(unit + 1)));
            EXPECT_EQ(sound->sample.edit_unit, unit);
            EXPECT_EQ(sound->sample.pts, unit - 1); // the first one lies in front of what is played
        }
        const Bytes last = playing.streams[kPictures].taken.back().bytes;
        EXPECT_EQ(playing.After(kSounds, 4, mxf_seek_stored), nullptr);
        EXPECT_EQ(playing.After(kSounds, INT64_MAX, mxf_seek_exact), nullptr);
        EXPECT_EQ(playing.demuxer.Push(0), 0); // the place is as before
        EXPECT_EQ(playing.streams[kPictures].taken.back().sample.edit_unit, 2);
    }
}

TEST(Delivery, OffersARefusedSampleAgainAndHeedsWhoListens)
{
    const Four four;
    Playing playing{four.built.File()};
    Keeper& pictures = playing.streams[kPictures];
    Keeper& sounds = playing.streams[kSounds];
    sounds.refusals = 2;
    EXPECT_EQ(playing.demuxer.Push(0), kRefused);
    EXPECT_EQ(playing.demuxer.Push(0), kRefused);
    EXPECT_EQ(playing.demuxer.Push(0), kDelivered);
    EXPECT_THAT(Units(pictures), ElementsAre(0));
    EXPECT_THAT(Units(sounds), ElementsAre(0));
    EXPECT_EQ(playing.demuxer.AddStream(0, kSounds, &sounds), kOutOfRange); // it has one
    EXPECT_EQ(playing.demuxer.RemoveStream(0, kPictures), 0);
    EXPECT_EQ(playing.demuxer.RemoveStream(0, kPictures), kOutOfRange);
    EXPECT_EQ(playing.demuxer.Push(0), kDelivered);
    EXPECT_EQ(playing.demuxer.AddStream(0, kPictures, &pictures), 0);
    EXPECT_EQ(playing.PlayAll(), kEnded);
    EXPECT_THAT(Units(pictures), ElementsAre(0, 2, 3));
    EXPECT_THAT(Units(sounds), ElementsAre(0, 1, 2, 3));
    EXPECT_TRUE(pictures.taken[1].sample.flags & mxf_sample_discontinuity);
}

/// A parser of class TParser for bytes that have no header, and receivers for its picture and sound.
template <class TParser> struct Bare {
    explicit Bare(std::uint32_t bodySid, std::span<const std::uint8_t> bytes = {}, bool isComplete = false)
        : input{bytes, isComplete}
    {
        std::vector<SEssenceTrack> tracks(2);
        for (std::uint32_t i = 0; i < 2; ++i) {
            tracks[i].stream = i;
            tracks[i].format.type = i == 0 ? EStreamType::picture : EStreamType::sound;
            tracks[i].format.bodySid = bodySid;
            tracks[i].format.trackNumber = i == 0 ? 0x15010501 : 0x16010301;
            tracks[i].format.editRate = {25, 1};
        }
        parser = std::make_unique<TParser>(context, tracks);
        for (std::uint32_t i = 0; i < 2; ++i)
            EXPECT_EQ(parser->AddStream(i, &keepers[i]), 0);
    }

    CMxfUlDict dict;
    CRandomIndexPack partitions{nullptr, dict, 0};
    CMemoryEssenceInput input;
    SEssenceContext context{
        .input = input, .dict = dict, .partitions = partitions, .index = nullptr, .start = {}, .logger = {}};
    std::unique_ptr<TParser> parser;
    Keeper keepers[2];
};

TEST(Delivery, OfAFileThatGrowsGoesOnWhereItStopped)
{
    const Bytes file = Four{}.built.File();
    for (const std::size_t step : {std::size_t{1}, std::size_t{700}, std::size_t{9000}}) {
        Bare<CMxfInterleavedStreamParser> pushed{1};
        int result = kNeedsData;
        std::size_t have = 0;
        for (; result == kNeedsData && have < file.size(); result = pushed.parser->Push()) {
            have = std::min(have + step, file.size());
            pushed.input.Extend(std::span{file}.first(have), false);
        }
        EXPECT_EQ(result, kEnded);
        EXPECT_TRUE(step > 1 || have < file.size()); // the footer partition says so, nothing behind it does
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_EQ(pushed.keepers[0].taken.at(i).bytes, Value(300, static_cast<std::uint8_t>(i + 1)));
            EXPECT_EQ(pushed.keepers[1].taken.at(i).bytes, Value(5760, static_cast<std::uint8_t>(i + 1)));
        }
    }
}

TEST(Delivery, OfAFileOnDiskSeesWhatIsWrittenLater)
{
    const Bytes whole = Four{}.built.File();
    for (const std::size_t cut : {whole.size() - 9000, whole.size() - 400}) {
        Bytes held{whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(cut)};
        CMxfDemuxer demuxer;
        ASSERT_EQ(demuxer.Open(std::make_unique<BorrowedSource>(held), nullptr, {}), 0);
        ASSERT_EQ(demuxer.CreateParser(0), 0);
        Keeper sounds;
        ASSERT_EQ(demuxer.AddStream(0, kSounds, &sounds), 0);
        int result = 0;
        while (result == 0)
            result = demuxer.Push(0);
        EXPECT_EQ(result, kNeedsData);
        EXPECT_LT(sounds.taken.size(), 4U);
        held = whole;
        while ((result = demuxer.Push(0)) == 0) {
        }
        EXPECT_EQ(result, kEnded);
        EXPECT_THAT(Units(sounds), ElementsAre(0, 1, 2, 3));
        EXPECT_EQ(sounds.taken[3].bytes, Value(5760, 4));
    }
}

TEST(Delivery, OfSeveralContainersKeepsThemApart)
{
    MxfBuilder file;
    file.partition({.bodySID = 0});
    std::map<std::uint32_t, std::uint64_t> begun; // bytes of each container so far
    std::uint8_t seed = 0;
    for (const std::uint32_t sid : {1U, 2U, 2U, 1U, 3U, 2U}) {
        file.partition({.kind = 3, .bodySID = sid, .bodyOffset = begun[sid]});
        const std::size_t before = file.bytes.size();
        Put(file, {++seed});
        begun[sid] += file.bytes.size() - before;
    }
    file.partition({.kind = 4});
    for (const auto& [sid, seeds] : std::map<std::uint32_t, std::vector<int>>{{1, {1, 4}}, {2, {2, 3, 6}}, {3, {5}}}) {
        Bare<CMxfInterleavedParser> one{sid, file.bytes, true};
        while (one.parser->Push() == kDelivered) {
        }
        ASSERT_EQ(one.keepers[0].taken.size(), seeds.size());
        for (std::size_t i = 0; i < seeds.size(); ++i)
            EXPECT_EQ(one.keepers[1].taken[i].bytes, Value(5760, static_cast<std::uint8_t>(seeds[i])));
    }
    std::vector<SStreamLink> links(4);
    for (std::size_t i = 0; i < links.size(); ++i)
        links[i].bodySid = std::vector<std::uint32_t>{7, 3, 0, 7}[i];
    const std::vector<std::size_t> streams{0, 1, 2, 3};
    const auto files = FilesOf(links, streams); // what is not in the file counts for nothing
    ASSERT_EQ(files.size(), 2U);
    EXPECT_THAT(files[0].streams, ElementsAre(0, 3));
    EXPECT_THAT(files[1].streams, ElementsAre(1));
}

TEST(Elements, FindTheirTrack)
{
    struct Case {
        const char* name;
        std::vector<std::uint32_t> numbers; ///< of the tracks: a picture, then sounds
        std::uint32_t element;
        int expected; ///< -1: none
    };
    const Case cases[] = {
        {"the number itself", {0x15010501, 0x16020301, 0x16020302}, 0x16020302, 2},
        {"wrong count in byte 14", {0x15010501, 0x16020301, 0x16020302}, 0x16080302, 2},
        {"no number in byte 16", {0x15010501, 0x16020300}, 0x16020301, 1},
        {"no number at all", {0, 0}, 0x16010301, 1},
        {"no number, two of the kind", {0x15010501, 0, 0}, 0x16010301, -1},
        {"data that no track describes", {0x15010501, 0x16010301}, 0x17010201, -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<SEssenceTrack> tracks(c.numbers.size());
        for (std::size_t i = 0; i < tracks.size(); ++i) {
            tracks[i].format.trackNumber = c.numbers[i];
            tracks[i].format.type = i == 0 ? EStreamType::picture : EStreamType::sound;
        }
        CTrackMatch match{tracks};
        const auto found = match.Find(SUl::From(
            Join(BigEndian(0x060E2B3401020101, 8), BigEndian(0x0D010301, 4), BigEndian(c.element, 4)).data()));
        EXPECT_EQ(found ? static_cast<int>(*found) : -1, c.expected);
    }
}

TEST(EightChannels, AreUnpackedToThoseInUse)
{
    Bytes element{0, 2, 0, 0x05}; // two samples, channels 0 and 2 are valid
    for (std::uint32_t i = 0; i < 16; ++i)
        for (const std::uint32_t byte : {0x08U | i % 8, 0x20U + i, 0x40U + i, 0xF0U + i % 8})
            element.push_back(static_cast<std::uint8_t>(byte));
    SStreamFormat format;
    format.bitsPerSample = 24;
    const auto unpack = [&](std::uint32_t channels) {
        format.channelCount = channels;
        Bytes samples;
        Aes3::Unpack(element, format, samples);
        return samples;
    };
    // Bits 4 to 27 of the words, lowest byte first.
    const Bytes first{0x00, 0x02, 0x04}, third{0x20, 0x22, 0x24};
    const Bytes two = unpack(2);
    ASSERT_EQ(two.size(), 12U);
    EXPECT_TRUE(std::equal(first.begin(), first.end(), two.begin()));
    EXPECT_TRUE(std::equal(third.begin(), third.end(), two.begin() + 3));
    EXPECT_EQ(unpack(8).size(), 48U); // more than are valid: all of them
    format.bitsPerSample = 16;
    EXPECT_EQ(unpack(2).size(), 8U);
    element.pop_back();
    EXPECT_EQ(unpack(2).size(), 4U);
}

/// The standard file with nothing but sound of 1000 samples of three bytes, in one element or several.
struct Sound {
    const char* name;
    std::vector<std::size_t> elements; ///< bytes of each
    SRational rate{25, 1};
    std::vector<std::size_t> samples = {}; ///< bytes of each that is delivered
    std::int64_t statedLength = -1;        ///< of the first element, -1: the true one
    bool isClosed = true;
};

TEST(Blocks, OfSoundAreCutIntoEditUnits)
{
    constexpr std::size_t kUnit = 5760;
    const Sound cases[] = {
        {"one element", {3 * kUnit}, {25, 1}, {kUnit, kUnit, kUnit}},
        {"one element, samples as edit units", {3 * kUnit}, {48000, 1}, {kUnit, kUnit, kUnit}},
        {"one element, cut short", {3 * kUnit - 300}, {25, 1}, {kUnit, kUnit, kUnit - 300}},
        {"1601 and 1602 samples", {3 * 8008}, {30000, 1001}, {4806, 4803, 4806, 4803, 4806}},
        {"several edit units an element", {2 * kUnit, 2 * kUnit}, {25, 1}, {kUnit, kUnit, kUnit, kUnit}},
        {"parts of edit units", {4000, 4000, 4000, 5280}, {25, 1}, {kUnit, kUnit, kUnit}},
        {"samples in frames", {kUnit, kUnit}, {48000, 1}, {kUnit, kUnit}},
        {"a length that is not written yet", {3 * kUnit}, {25, 1}, {kUnit, kUnit, kUnit}, 0},
        {"a length that was never updated", {3 * kUnit}, {25, 1}, {kUnit, kUnit, kUnit}, 100},
        {"the same while it is written", {3 * kUnit - 1}, {25, 1}, {kUnit, kUnit}, 0, false},
    };
    for (const Sound& c : cases) {
        SCOPED_TRACE(c.name);
        Bytes all(std::accumulate(c.elements.begin(), c.elements.end(), std::size_t{0}));
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = static_cast<std::uint8_t>(i * 7 + i / 251);
        Built built;
        built.standard.hasPicture = false;
        built.standard.soundRate = c.rate;
        built.isClosed = c.isClosed;
        built.essence = [&](MxfBuilder& file) {
            const std::size_t length = file.bytes.size() + 17;
            std::size_t done = 0;
            for (const std::size_t size : c.elements) {
                file.klv(kSoundElement, {all.begin() + static_cast<std::ptrdiff_t>(done),
                                         all.begin() + static_cast<std::ptrdiff_t>(done + size)});
                done += size;
            }
            if (c.statedLength < 0) return;
            std::ranges::copy(BigEndian(static_cast<std::uint64_t>(c.statedLength), 3),
                              file.bytes.begin() + static_cast<std::ptrdiff_t>(length));
        };
        const Bytes file = built.File();
        Playing playing{file};
        EXPECT_EQ(playing.PlayAll(), c.isClosed ? kEnded : kNeedsData);
        const std::vector<Taken> played = playing.streams[0].taken;
        std::vector<std::size_t> sizes;
        std::size_t begin = 0;
        std::int64_t next = 0;
        for (const Taken& one : played) {
            EXPECT_TRUE(std::ranges::equal(one.bytes, std::span{all}.subspan(begin, one.bytes.size())));
            EXPECT_EQ(one.bytes[0], file[static_cast<std::size_t>(one.sample.position)]);
            EXPECT_EQ(one.sample.edit_unit, next);
            next += one.sample.duration;
            begin += one.bytes.size();
            sizes.push_back(one.bytes.size());
        }
        EXPECT_EQ(sizes, c.samples);
        for (std::size_t i = played.size(); i-- > 0;) {
            const mxf_sample& sample = played[i].sample;
            const Taken* again = playing.After(0, sample.pts + sample.duration - 1, mxf_seek_exact);
            ASSERT_NE(again, nullptr);
            EXPECT_EQ(again->bytes, played[i].bytes);
            EXPECT_EQ(again->sample.edit_unit, sample.edit_unit);
        }
    }
}

} // namespace
