#include "tests/mxf/essence/BuiltFile.h"
#include "tests/mxf/essence/EssenceFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;

/// Frames of 24 ms beside pictures: each lies in the package in whose time it begins.
struct Framed {
    const char* name;
    SRational pictures, sounds{125, 3};
    bool hasSystem = false, isElementAFrame = true, isSecondSound = false;
    bool isPictureLost = false; ///< of package 4
};

TEST(CodedSound, BesidePicturesIsCountedInItsOwnFrames)
{
    constexpr std::int64_t kPackages = 11;
    const Framed cases[] = {
        {.name = "an element a frame", .pictures = {25, 1}},
        {.name = "the same behind system items", .pictures = {25, 1}, .hasSystem = true},
        {.name = "an element a package", .pictures = {25, 1}, .isElementAFrame = false},
        {.name = "two of them that take turns", .pictures = {30000, 1001}, .isSecondSound = true},
        {.name = "packages without sound", .pictures = {50, 1}},
        {.name = "counted as the pictures are", .pictures = {25, 1}, .sounds = {25, 1}},
        {.name = "a lost picture", .pictures = {24000, 1001}, .hasSystem = true, .isPictureLost = true},
    };
    for (const Framed& c : cases) {
        SCOPED_TRACE(c.name);
        Built built;
        built.standard = {.materialPicture = kPackages, .filePicture = kPackages};
        built.standard.materialSound = built.standard.fileSound = -1;
        built.standard.pictureRate = c.pictures;
        built.standard.soundRate = c.sounds;
        built.standard.soundContainer = "06.0E.2B.34.04.01.01.02.0D.01.03.01.02.04.40.01";
        built.standard.soundCoding = "06.0E.2B.34.04.01.01.0D.04.02.02.02.04.01.02.00";
        built.standard.soundNumber = 0x16010501;
        Bytes all;
        built.essence = [&](MxfBuilder& file) {
            std::uint8_t frame = 0;
            for (std::uint8_t package = 0; package < kPackages; ++package) {
                if (c.hasSystem) file.klv(kSystemItem, Bytes(57));
                if (!c.isPictureLost || package != 4) file.klv(kPictureElement, Value(300, package));
                Bytes element;
                const double end = (package + 1.0) * c.pictures.den / c.pictures.num;
                for (; frame * 0.024 < end - 1e-9; ++frame) {
                    const Bytes bytes = Value(576, frame);
                    all = Join(all, bytes);
                    element = Join(element, bytes);
                    if (!c.isElementAFrame) continue;
                    for (const std::uint64_t number : {0x16010501U, 0x16010502U})
                        if (number == 0x16010501 || c.isSecondSound)
                            file.klv(ulOf(0x060E2B3401020101, 0x0D01030100000000 | number), bytes);
                }
                if (!c.isElementAFrame && !element.empty())
                    file.klv(ulOf(0x060E2B3401020101, 0x0D01030116010501), element);
            }
        };
        Playing playing{built.File()};
        ASSERT_EQ(playing.PlayAll(), kEnded);
        std::vector<std::int64_t> pictures(kPackages);
        std::iota(pictures.begin(), pictures.end(), 0);
        if (c.isPictureLost) pictures.erase(pictures.begin() + 4);
        EXPECT_EQ(Units(playing.streams[kPictures]), pictures);
        for (const Taken& one : playing.streams[kPictures].taken)
            EXPECT_EQ(one.bytes[0], one.sample.edit_unit);

        const bool isInFrames = c.sounds.num == 125;
        const std::vector<Taken> played = playing.streams[kSounds].taken;
        EXPECT_EQ(playing.streams[kSounds].All(), all);
        std::int64_t next = 0;
        for (const Taken& one : played) {
            EXPECT_EQ(one.sample.edit_unit, next);
            EXPECT_EQ(one.sample.flags & (mxf_sample_discontinuity | mxf_sample_damaged), 0U);
            const std::int64_t begin = std::exchange(next, next + one.sample.duration);
            if (!isInFrames) continue;
            EXPECT_EQ(one.bytes[0], begin);
            EXPECT_EQ(one.bytes.size(), 576U * static_cast<std::size_t>(one.sample.duration));
        }
        for (const Taken& one : played) {
            const std::int64_t last = one.sample.edit_unit + one.sample.duration - 1;
            const Taken* again = playing.After(kSounds, last, mxf_seek_exact);
            ASSERT_NE(again, nullptr);
            EXPECT_EQ(again->sample.edit_unit, one.sample.edit_unit);
            EXPECT_EQ(again->bytes, one.bytes);
        }
    }
}

} // namespace
