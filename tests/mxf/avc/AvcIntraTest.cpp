#include "mxf/avc/AvcIntra.h"
#include "mxf/avc/AvcAnalyser.h"
#include "mxf/avc/NalUnit.h"
#include "tests/mxf/avc/StreamFiles.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace zanfcp::test;

constexpr SAvcRatio k25{25, 1}, k30{30000, 1001}, k50{50, 1}, k60{60000, 1001};

std::string ratio(const SAvcRatio& value)
{
    return std::to_string(value.num) + "/" + std::to_string(value.den);
}

/// The stream's units but its parameter sets, behind start codes.
ByteRow withoutSets(const ByteRow& stream)
{
    ByteRow rest;
    CNalReader units = CNalReader::AnnexB(stream);
    while (units.Next()) {
        if (units.Type() == ENalType::sequenceParameterSet || units.Type() == ENalType::pictureParameterSet) continue;
        const auto whole = units.Whole();
        rest.insert(rest.end(), {0, 0, 0, 1});
        rest.insert(rest.end(), whole.begin(), whole.end());
    }
    return rest;
}

TEST(AvcIntra, SetsDecodeSlicesOfEveryClassAsTheirOwnSetsDo)
{
    struct Case {
        SAvcIntraFormat format;
        const char* size;
        const char* profile;
        std::size_t frameBytes;
    };
    const Case cases[] = {
        {{50, 1080, true, k25}, "1440x1080", "High 10 Intra", 281088},
        {{50, 1080, false, k30}, "1440x1080", "High 10 Intra", 232960},
        {{50, 720, false, k60}, "960x720", "High 10 Intra", 116736},
        {{100, 1080, true, k30}, "1920x1080", "High 4:2:2 Intra", 472576},
        {{100, 1080, false, k25}, "1920x1080", "High 4:2:2 Intra", 568832},
        {{100, 720, false, k50}, "1280x720", "High 4:2:2 Intra", 284672},
        {{200, 1080, true, k25}, "1920x1080", "High 4:2:2 Intra", 1144320},
        {{200, 720, false, k50}, "1280x720", "High 4:2:2 Intra", 572416},
    };
    const TempFolder folder;
    const std::string made = folder.file("made.h264");
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.size) + " class " + std::to_string(c.format.intraClass));
        runFfmpeg("-f lavfi -i testsrc2=s=" + std::string(c.size) + ":r=" + ratio(c.format.frameRate) +
                  " -frames:v 1 -pix_fmt " + (c.format.intraClass == 50 ? "yuv420p10le" : "yuv422p10le") +
                  " -c:v libx264 -avcintra-class " + std::to_string(c.format.intraClass) +
                  (c.format.isInterlaced ? " -flags +ilme+ildct " : " ") + made);
        const ByteRow stream = bytesOf(made);
        EXPECT_EQ(stream.size(), c.frameBytes);
        SAvcIntraFormat expected = c.format;
        expected.isInterlaced = false;
        EXPECT_EQ(AvcIntraFormatOfFrameSize(stream.size()), expected);

        const auto sets = MakeAvcIntraSets(c.format);
        ASSERT_TRUE(sets);
        const ByteRow bare = withoutSets(stream);
        const ByteRow mended = joined({sets->ToAnnexB(), bare});
        folder.write("mended.h264", std::string{mended.begin(), mended.end()});
        for (const char* name : {"made", "mended"})
            runFfmpeg("-i " + folder.file(name + std::string(".h264")) + " -f md5 " +
                      folder.file(name + std::string(".md5")));
        EXPECT_EQ(readFile(folder.file("mended.md5")), readFile(folder.file("made.md5")));

        CAvcAnalyser analyser;
        ASSERT_EQ(analyser.SetExtraData(sets->ToAnnexB()), 0);
        SAvcPicture picture;
        ASSERT_EQ(analyser.Analyse(bare, picture), 0);
        EXPECT_TRUE(picture.isKeyFrame);
        const SAvcFormat format = *analyser.Format();
        EXPECT_EQ(format.profileName, c.profile);
        EXPECT_EQ(std::to_string(format.displayWidth) + "x" + std::to_string(format.displayHeight), c.size);
        EXPECT_EQ(format.frameRate, c.format.frameRate);
        EXPECT_EQ(format.pictureAspect, (SAvcRatio{16, 9}));
        EXPECT_EQ(format.isInterlaced, c.format.isInterlaced);
        EXPECT_TRUE(format.isIntraOnly);
        EXPECT_EQ(format.reorderFrames, 0);
    }
}

TEST(AvcIntra, LabelsAndSizesThatAreNoneAreToldApart)
{
    std::array<std::uint8_t, 16> label{0x06, 0x0E, 0x2B, 0x34, 4, 1, 1, 0x0A, 4, 1, 2, 2, 1, 0x32, 0x21, 1};
    EXPECT_EQ(AvcIntraFormatOfLabel(label), (SAvcIntraFormat{50, 1080, true, k30}));
    label[7] = 0x0D; // the version does not count
    label[14] = 0x31;
    label[15] = 9;
    EXPECT_EQ(AvcIntraFormatOfLabel(label), (SAvcIntraFormat{100, 720, false, k50}));
    label[15] = 5;
    EXPECT_FALSE(AvcIntraFormatOfLabel(label));
    label[14] = 0x20; // unconstrained
    label[15] = 1;
    EXPECT_FALSE(AvcIntraFormatOfLabel(label));

    EXPECT_EQ(AvcIntraFormatOfFrameSize(568832 + 512)->intraClass, 100U);
    EXPECT_FALSE(AvcIntraFormatOfFrameSize(568833));
    const SAvcIntraFormat wrong[] = {
        {100, 720, true, k50}, {75, 1080, true, k25}, {100, 1088, false, k25}, {100, 1080, false, {}}};
    for (const SAvcIntraFormat& format : wrong)
        EXPECT_FALSE(MakeAvcIntraSets(format));
}

} // namespace
