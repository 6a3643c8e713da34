#include "tests/mxf/essence/BuiltFile.h"
#include "tests/mxf/essence/EssenceFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;

/// Without system items nothing but the index tells of an element whose key became another one.
TEST(Damage, OfAKeyThatStaysAKeyShiftsNoOther)
{
    for (const std::size_t at : {5U, 8U, 12U, 14U}) { // no element, no such item, another kind, another number
        for (const std::size_t damaged : {0U, 2U, 5U}) {
            const bool hasSound = damaged != 0;
            if (at >= 12 && !hasSound) continue; // so the first element is of another stream
            SCOPED_TRACE(testing::Message() << "byte " << at << " of unit " << damaged);
            Built built;
            built.footerIndex = IndexSegment({.unitBytes = hasSound ? 340U + 5780U : 340U});
            built.essence = [&](MxfBuilder& file) {
                for (std::uint8_t seed = 0; seed < 6; ++seed) {
                    Bytes key = kPictureElement;
                    if (seed == damaged) key[at] ^= 0x20;
                    file.klv(key, Value(320, seed));
                    if (hasSound) file.klv(kSoundElement, Value(5760, seed));
                }
            };
            Playing playing{built.File()};
            EXPECT_EQ(playing.PlayAll(), kEnded);
            for (const int stream : {kPictures, kSounds})
                for (const Taken& one : playing.streams[stream].taken)
                    EXPECT_EQ(one.bytes.front(), one.sample.edit_unit);
            EXPECT_GE(playing.streams[kPictures].taken.size(), 5U);
            EXPECT_EQ(playing.streams[kSounds].taken.size(), hasSound ? 6U : 0U);
        }
    }
}

TEST(Damage, OfTheFirstElementOfAStreamLeavesTheOthersAlone)
{
    struct Case {
        const char* name;
        std::size_t at; // in the first element of sound
        Bytes bytes;
        std::size_t sounds; // at least
    };
    const Case cases[] = {{"length beyond the file", 16, {0x87, 1, 2, 3, 4, 5, 6, 7}, 3},
                          {"length too short", 16, {0x83, 0, 0x04, 0}, 3},
                          {"number of the track", 14, {0x7E, 0}, 3}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::size_t sound = 0;
        Built built;
        built.essence = [&](MxfBuilder& file) {
            for (std::uint8_t seed = 1; seed <= 4; ++seed) {
                file.klv(kPictureElement, Value(320, seed));
                if (seed == 1) sound = file.bytes.size();
                file.klv(kSoundElement, Value(5760, seed));
            }
        };
        Bytes file = built.File();
        std::ranges::copy(c.bytes, file.begin() + static_cast<std::ptrdiff_t>(sound + c.at));
        Playing playing{file};
        EXPECT_EQ(playing.PlayAll(), kEnded);
        EXPECT_EQ(Units(playing.streams[kPictures]), (std::vector<std::int64_t>{0, 1, 2, 3}));
        EXPECT_GE(playing.streams[kSounds].taken.size(), c.sounds);
    }
}

} // namespace
