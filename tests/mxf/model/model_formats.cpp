#include "mxf/model/StreamFormat.h"
#include "platform/FourCC.h"
#include "tests/support/MxfSets.h"

#include <gtest/gtest.h>

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using zanfcp::FourCC;

namespace {

SStreamFormat DescribePicture(const SPictureDescriptor& picture, std::string_view container = {})
{
    SDescriptor descriptor;
    descriptor.picture = picture;
    if (!container.empty()) descriptor.essenceContainer = Label(container);
    return DescribeStream({.kind = EDataKind::picture, .descriptor = &descriptor});
}

TEST(Codings, LabelsNameFamilyAndWrapping)
{
    struct Case {
        const char* label;
        const char* family;
        EWrapping wrapping;
    };
    const Case cases[] = {
        {"06.0E.2B.34.04.01.01.02.0D.01.03.01.02.04.60.01", "MPEG", EWrapping::frame},
        {"06.0E.2B.34.04.01.01.02.0D.01.03.01.02.04.61.02", "MPEG", EWrapping::clip}, // the second stream
        {"06.0E.2B.34.04.01.01.09.0D.01.03.01.02.04.47.07", "MPEG", EWrapping::custom},
        {"06.0E.2B.34.04.01.01.0A.0D.01.03.01.02.10.63.09", "AVC byte stream", EWrapping::field},
        {"06.0E.2B.34.04.01.01.01.0D.01.03.01.02.06.02.00", "PCM", EWrapping::clip},
        {"06.0E.2B.34.04.01.01.01.0D.01.03.01.02.06.03.00", "PCM", EWrapping::frame},
        {"06.0E.2B.34.04.01.01.0D.0D.01.03.01.02.0C.03.00", "JPEG 2000", EWrapping::frame},
        {"06.0E.2B.34.04.01.01.0A.0D.01.03.01.02.11.02.00", "VC-3", EWrapping::clip},
        {"06.0E.2B.34.04.01.01.03.04.01.02.02.01.04.03.55", "MPEG-2", EWrapping::unknown}, // below the long GOP branch
        {"06.0E.2B.34.04.01.01.0A.04.01.02.02.71.77.00.00", "VC-3", EWrapping::unknown},   // an identifier yet to come
    };
    for (const Case& c : cases) {
        const SCoding* coding = FindCoding(Label(c.label));
        ASSERT_NE(coding, nullptr) << c.label;
        EXPECT_EQ(coding->family, c.family) << c.label;
        EXPECT_EQ(coding->wrapping, c.wrapping) << c.label;
    }
    EXPECT_EQ(FindCoding(Label("06.0E.2B.34.04.01.01.01.09.09.09.09.09.09.09.09")), nullptr);
    EXPECT_EQ(FindCoding(SUl{}), nullptr);
}

TEST(StreamFormat, CodingLabelsDecideKindFamilyAndCode)
{
    struct Case {
        const char* coding;
        EEssenceKind kind;
        std::uint8_t profile, family;
        FourCC codec;
    };
    using enum EEssenceKind;
    const Case cases[] = {
        {"06.0E.2B.34.04.01.01.03.04.01.02.02.01.01.11.00", mpegPicture, 2, 1, FourCC{"mp2v"}},
        {"06.0E.2B.34.04.01.01.01.04.01.02.02.01.02.01.05", mpegPicture, 2, 2, FourCC{"mx3p"}},
        {"06.0E.2B.34.04.01.01.03.04.01.02.02.01.03.03.00", mpegPicture, 2, 3, FourCC{"mp2v"}},
        {"06.0E.2B.34.04.01.01.03.04.01.02.02.01.04.02.00", mpegPicture, 2, 4, FourCC{"mp2v"}},
        {"06.0E.2B.34.04.01.01.08.04.01.02.02.01.05.20.20", mpegPicture, 2, 5, FourCC{"mp2v"}},
        {"06.0E.2B.34.04.01.01.03.04.01.02.02.01.10.00.00", mpegPicture, 1, 0, FourCC{"mp1v"}},
        {"06.0E.2B.34.04.01.01.03.04.01.02.02.01.20.02.00", mpeg4Part2, 4, 0, FourCC{"mp4v"}},
        {"06.0E.2B.34.04.01.01.0A.04.01.02.02.01.32.31.02", avc, 0, 0, FourCC{"ai15"}},
        {"06.0E.2B.34.04.01.01.0D.04.01.02.02.01.31.40.01", avc, 0, 0, FourCC{"avc1"}},
        {"06.0E.2B.34.04.01.01.0D.04.01.02.02.01.42.20.01", hevc, 0, 0, FourCC{"hvc1"}},
        {"06.0E.2B.34.04.01.01.01.04.01.02.02.02.02.06.00", dv, 0, 0, FourCC{"dvh5"}},
        {"06.0E.2B.34.04.01.01.0D.04.01.02.02.03.06.05.00", proRes, 0, 0, FourCC{"ap4h"}},
        {"06.0E.2B.34.04.01.01.0A.04.01.02.02.03.01.01.03", jpeg2000, 0, 0, FourCC{"mjp2"}},
        {"06.0E.2B.34.04.01.01.0A.04.01.02.02.71.13.00.00", vc3, 0, 0, FourCC{"AVdn"}},
        {"06.0E.2B.34.04.01.01.0A.04.01.02.01.01.02.02.01", uncompressed, 0, 0, FourCC{"v210"}},
        {"06.0E.2B.34.04.01.01.0D.04.01.02.01.02.01.02.02", raw, 0, 0, FourCC{}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.coding);
        const SStreamFormat format = DescribePicture({.coding = Label(c.coding)});
        EXPECT_EQ(format.essenceKind, c.kind);
        EXPECT_EQ(format.profile, c.profile);
        EXPECT_EQ(format.family, c.family);
        EXPECT_EQ(format.codec, c.codec.value);
        EXPECT_FALSE(format.codecName.empty());
    }
}

TEST(StreamFormat, MpegWithoutATrueCodingLabelIsNamedByItsSequenceOrItsSamples)
{
    constexpr std::string_view kMpegStream = "06.0E.2B.34.04.01.01.02.0D.01.03.01.02.04.60.01";
    constexpr std::string_view kMainLevel = "06.0E.2B.34.04.01.01.01.04.01.02.02.01.01.00.00";
    struct Case {
        const char* name;
        SPictureDescriptor picture;
        std::uint8_t family;
    };
    const Case cases[] = {
        {"422P@HL", {.mpeg = SMpegVideo{.profileAndLevel = 0x82}}, 4},
        {"MP@HL", {.mpeg = SMpegVideo{.profileAndLevel = 0x44}}, 3},
        {"MP@H-14", {.mpeg = SMpegVideo{.profileAndLevel = 0x46}}, 5},
        {"4:2:2 of 1920", {.storedWidth = 1920, .horizontalSubsampling = 2, .verticalSubsampling = 1}, 4},
        {"4:2:0 of 1440", {.storedWidth = 1440, .horizontalSubsampling = 2, .verticalSubsampling = 2}, 3},
        {"4:2:0 of 720", {.storedWidth = 720, .horizontalSubsampling = 2, .verticalSubsampling = 2}, 1},
        {"nothing", {}, 0},
        {"main level of 1920", {.coding = Label(kMainLevel), .storedWidth = 1920}, 0},
        {"the same with a sequence header",
         {.coding = Label(kMainLevel), .storedWidth = 1280, .mpeg = SMpegVideo{.profileAndLevel = 0x44}},
         3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const SStreamFormat format = DescribePicture(c.picture, kMpegStream);
        EXPECT_EQ(format.essenceKind, EEssenceKind::mpegPicture);
        EXPECT_EQ(format.profile, 2);
        EXPECT_EQ(format.family, c.family);
    }
}

TEST(StreamFormat, FieldPicturesMakeFramesOfTwiceTheHeight)
{
    struct Case {
        std::uint32_t width, height;
        std::optional<std::uint8_t> layout, dominance;
        std::uint32_t frameHeight;
        bool interlaced;
        std::uint8_t first;
    };
    const Case cases[] = {
        {1920, 540, 1, {}, 1080, true, 1},    {720, 288, 1, 2, 576, true, 2},
        {720, 576, 1, 1, 576, true, 1}, // the whole height where a field belongs
        {1920, 1080, 1, {}, 1080, true, 1},   {1920, 540, 4, {}, 1080, false, 0}, // a segmented frame is progressive
        {1920, 1080, 3, {}, 1080, true, 1},   {1920, 1080, 0, 2, 1080, false, 0},
        {1920, 1080, {}, {}, 1080, false, 0}, {0xFFFFFFFF, 0xFFFFFFFF, 1, {}, 0xFFFFFFFF, true, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << "x" << c.height);
        const SStreamFormat format = DescribePicture(
            {.storedWidth = c.width, .storedHeight = c.height, .frameLayout = c.layout, .fieldDominance = c.dominance});
        EXPECT_EQ(format.height, c.height);
        EXPECT_EQ(format.frameHeight, c.frameHeight);
        EXPECT_EQ(format.isInterlaced, c.interlaced);
        EXPECT_EQ(format.fieldDominance, c.first);
    }
}

TEST(StreamFormat, RatesBecomeCodes)
{
    struct Case {
        SRational rate;
        std::uint32_t code;
    };
    const Case cases[] = {{{24000, 1001}, 2398}, {{24, 1}, 2400},       {{25, 1}, 2500},
                          {{30000, 1001}, 2997}, {{60000, 1001}, 5994}, {{2147483647, 1}, 4294967295}};
    for (const Case& c : cases) {
        SDescriptor descriptor;
        descriptor.picture.emplace();
        descriptor.sampleRate = c.rate;
        CMxfTrack track;
        track.editRate = SRational{1, 1}; // the descriptor knows better
        const SStreamFormat format =
            DescribeStream({.kind = EDataKind::picture, .track = &track, .descriptor = &descriptor});
        EXPECT_EQ(format.frameRateCode, c.code);
        EXPECT_EQ(format.frameRate, c.rate.ToDouble());
    }
}

TEST(StreamFormat, SoundIsSamplesUnlessALabelSaysOtherwise)
{
    struct Case {
        const char* name;
        const char* container;
        SSoundDescriptor sound;
        EEssenceKind kind;
        FourCC codec;
        std::uint32_t blockAlign, bitRate;
    };
    constexpr const char* kWave = "06.0E.2B.34.04.01.01.01.0D.01.03.01.02.06.01.00";
    constexpr const char* kD10 = "06.0E.2B.34.04.01.01.01.0D.01.03.01.02.01.01.01";
    constexpr const char* kMpegAudio = "06.0E.2B.34.04.01.01.02.0D.01.03.01.02.04.40.01";
    const SRational rate{48000, 1};
    const Case cases[] = {
        {"24 bits, block stated",
         kWave,
         {.samplingRate = rate, .channelCount = 2, .quantizationBits = 24, .blockAlign = 6},
         EEssenceKind::pcm,
         FourCC{"in24"},
         6,
         2304000},
        {"16 bits, block not stated",
         kWave,
         {.samplingRate = rate, .channelCount = 1, .quantizationBits = 16},
         EEssenceKind::pcm,
         FourCC{"sowt"},
         2,
         768000},
        {"20 bits in 32",
         kWave,
         {.samplingRate = rate,
          .channelCount = 1,
          .quantizationBits = 20,
          .blockAlign = 4,
          .averageBytesPerSecond = 192000},
         EEssenceKind::pcm,
         FourCC{"in32"},
         4,
         1536000},
        {"beside a D-10 picture",
         kD10,
         {.samplingRate = rate, .channelCount = 8, .quantizationBits = 24},
         EEssenceKind::pcm,
         FourCC{"in24"},
         24,
         9216000},
        {"MPEG audio",
         kMpegAudio,
         {.coding = Label("06.0E.2B.34.04.01.01.0D.04.02.02.02.04.01.02.00")},
         EEssenceKind::mpegAudio,
         FourCC{".mp2"},
         0,
         0},
        {"MPEG audio under a label of AES3 payloads",
         kMpegAudio,
         {.coding = Label("06.0E.2B.34.04.01.01.01.04.02.02.02.03.02.05.00")},
         EEssenceKind::mpegAudio,
         FourCC{".mp2"},
         0,
         0},
        {"AC-3 under such a label",
         kMpegAudio,
         {.coding = Label("06.0E.2B.34.04.01.01.01.04.02.02.02.03.02.01.00")},
         EEssenceKind::ac3,
         FourCC{"ac-3"},
         0,
         0},
        {"AC-3 in AES3",
         "06.0E.2B.34.04.01.01.01.0D.01.03.01.02.06.03.00",
         {.channelCount = 2,
          .quantizationBits = 16,
          .coding = Label("06.0E.2B.34.04.01.01.01.04.02.02.02.03.02.01.00")},
         EEssenceKind::codedInAes3,
         FourCC{"ac-3"},
         4,
         0},
        {"16 bits, big-endian",
         kWave,
         {.samplingRate = rate,
          .channelCount = 1,
          .quantizationBits = 16,
          .coding = Label("06.0E.2B.34.04.01.01.07.04.02.02.01.7E.00.00.00")},
         EEssenceKind::pcm,
         FourCC{"twos"},
         2,
         768000},
        {"8 bits",
         kWave,
         {.samplingRate = rate, .channelCount = 1, .quantizationBits = 8},
         EEssenceKind::pcm,
         FourCC{"raw "},
         1,
         384000},
        {"MPEG audio by its container", kMpegAudio, {}, EEssenceKind::mpegAudio, FourCC{".mp2"}, 0, 0},
        {"impossible numbers",
         kWave,
         {.samplingRate = SRational{2147483647, 1},
          .channelCount = 0xFFFFFFFF,
          .quantizationBits = 0xFFFFFFFF,
          .blockAlign = 0xFFFF},
         EEssenceKind::pcm,
         FourCC{"sowt"},
         0xFFFF,
         0xFFFFFFFF},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SDescriptor descriptor;
        descriptor.essenceContainer = Label(c.container);
        descriptor.sound = c.sound;
        const SStreamFormat format = DescribeStream({.kind = EDataKind::sound, .descriptor = &descriptor});
        EXPECT_EQ(format.type, EStreamType::sound);
        EXPECT_EQ(format.essenceKind, c.kind);
        EXPECT_EQ(FourCC{format.codec}.text(), c.codec.text());
        EXPECT_EQ(format.blockAlign, c.blockAlign);
        EXPECT_EQ(format.bitRate, c.bitRate);
    }
}

TEST(StreamFormat, SubDescriptorsTellOfTheStream)
{
    SDescriptor descriptor;
    descriptor.picture = SPictureDescriptor{.pixelLayout = {{'R', 12}, {'G', 12}, {'B', 12}}};
    descriptor.subDescriptors.emplace_back().codedVideo =
        SCodedVideo{.profile = 122, .level = 41, .maxGop = 1, .maximumBitRate = 100'000'000};
    const SStreamFormat format = DescribeStream({.kind = EDataKind::picture, .descriptor = &descriptor});
    EXPECT_EQ(format.profile, 122);
    EXPECT_EQ(format.level, 41);
    EXPECT_EQ(format.maxGop, 1);
    EXPECT_EQ(format.bitRate, 100'000'000U);
    EXPECT_EQ(format.componentDepth, 12U);
    EXPECT_EQ(format.horizontalSubsampling, 1U);
}

TEST(StreamFormat, AStreamWithoutADescriptorIsStillAStream)
{
    CMxfTrack track;
    track.id = 7;
    track.number = 0x17010201;
    track.editRate = SRational{25, 1};
    const SStreamFormat format = DescribeStream({.kind = EDataKind::data, .track = &track, .bodySid = 3});
    EXPECT_EQ(format.type, EStreamType::data);
    EXPECT_EQ(format.trackId, 7U);
    EXPECT_EQ(format.bodySid, 3U);
    EXPECT_EQ(format.frameRateCode, 2500U);
}

} // namespace
