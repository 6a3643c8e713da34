#include "mxf/essence/MemoryEssenceInput.h"
#include "mxf/essence/MxfInterleavedParser.h"
#include "tests/mxf/essence/EssenceFile.h"
#include "tests/mxf/model/StandardFile.h"
#include "tests/support/MxfBuilder.h"
#include "tests/support/RecordingSnitcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using testing::ElementsAre;
using testing::HasSubstr;

const Bytes kPictureElement = ulOf(0x060E2B3401020101, 0x0D01030115010501);
const Bytes kSoundElement = ulOf(0x060E2B3401020101, 0x0D01030116010301);
const Bytes kSystemItem = ulOf(0x060E2B3402050101, 0x0D01030104010100);

/// Bytes that no two seeds share, and that look like nothing.
Bytes Value(std::size_t size, std::uint8_t seed)
{
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), seed);
    return bytes;
}

/// A local set item.
Bytes Item(std::uint16_t tag, const Bytes& value)
{
    return Join(BigEndian(tag, 2), BigEndian(value.size(), 2), value);
}

struct Index {
    std::uint32_t unitBytes = 0;      ///< constant size
    std::vector<std::uint64_t> units = {}; ///< or where each begins
    SRational rate{25, 1};
    std::uint32_t indexSid = 129, bodySid = 1;
};
Bytes IndexSegment(const Index& index)
{
    std::vector<Bytes> entries;
    for (const std::uint64_t offset : index.units)
        entries.push_back(Join(Bytes{0, 0, 0x80}, BigEndian(offset, 8)));
    Bytes set = Join(Item(0x3C0A, Bytes(16, 7)), Item(0x3F0B, Ratio(index.rate.num, index.rate.den)),
                     Item(0x3F0C, BigEndian(0, 8)), Item(0x3F0D, BigEndian(index.units.size(), 8)),
                     Item(0x3F05, BigEndian(index.unitBytes, 4)), Item(0x3F06, BigEndian(index.indexSid, 4)),
                     Item(0x3F07, BigEndian(index.bodySid, 4)));
    if (!entries.empty()) set = Join(set, Item(0x3F0A, Batch(entries)));
    return MxfBuilder{}.klv(kIndexKey, set).bytes;
}

/// The file of StandardFile, its essence between header and footer.
struct Built {
    StandardFile standard = {.pictureRate = {25, 1}, .soundRate = {25, 1}};
    std::function<void(MxfBuilder&)> essence;
    Bytes headerIndex = {}, footerIndex = {};
    Bytes runIn = {};
    bool isClosed = true; ///< with a footer and a random index pack

    Bytes File() const
    {
        MxfBuilder builder{runIn};
        builder.partition({.status = static_cast<std::uint8_t>(isClosed ? 4 : 1),
                           .bodySID = 1,
                           .indexSID = 129,
                           .metadata = standard.Bytes(),
                           .index = headerIndex});
        essence(builder);
        if (!isClosed) return builder.bytes;
        builder.partition({.kind = 4, .indexSID = 129, .index = footerIndex});
        return builder.stateFooter().randomIndexPack().bytes;
    }
};

std::vector<std::int64_t> Units(const Keeper& keeper)
{
    std::vector<std::int64_t> units;
    for (const Taken& one : keeper.taken)
        units.push_back(one.sample.edit_unit);
    return units;
}

constexpr int kPictures = 0, kSounds = 1;

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
                std::ranges::count_if(sink.lines, [](const std::string& m) { return m.find("amaged") != m.npos; }),
                1);
        }
    }
}

} // namespace
