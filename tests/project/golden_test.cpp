#include "project/Options.h"
#include "project/ProjectRoot.h"
#include "tests/support/ElementLookup.h"
#include "tests/support/Recording.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace zanfcp::test {
namespace {

constexpr char kGolden[] = ZANFCP_GOLDEN_FOLDER "/concert.xml";
constexpr PELRate kRate{.timebase = 30, .isNTSC = true};

PELMovieProperties movie(std::string_view reel, std::string_view startTimecode, NSInteger duration,
                         std::uint64_t audioTracks)
{
    PELMovieProperties properties = soundMovie(startTimecode, duration, audioTracks);
    properties.timecode = PELTimecodeMakeWithString(startTimecode, kRate);
    setField(properties.reel, reel);
    return properties;
}

struct Picture {
    NSInteger width, height;
    PELPixelAspectRatio pixelAspectRatio;
    bool anamorphic;
    const char *codec, *vendor;
    FourCC code;
    PELFieldDominance fieldDominance;
};

PELMovieProperties withPicture(PELMovieProperties properties, const Picture& picture)
{
    properties.hasVideo = true;
    properties.width = picture.width;
    properties.height = picture.height;
    properties.pixelAspectRatio = picture.pixelAspectRatio;
    properties.anamorphic = picture.anamorphic;
    setField(properties.videoCodec.name, picture.codec);
    setField(properties.videoCodec.typeName, picture.codec);
    properties.videoCodec.typeCode = picture.code;
    if (picture.vendor != nullptr) properties.videoCodec.vendorCode = picture.vendor;
    properties.videoCodec.spatialQuality = 1023;
    properties.videoCodec.fieldDominance = picture.fieldDominance;
    return properties;
}

/// Three cameras and a sound recorder at 29.97, named as nobody should name files.
PELFileElements concert()
{
    const PELFileElements files{
        makeFile("Bühne links #1.mov", withPicture(movie("A001", "20:14:59;28", 5400, 1),
                                                   {1440, 1080, PELPixelAspectRatio::hd1440x1080, false, "HDV 1080i60",
                                                    "appl", FourCC{"hdv2"}, PELFieldDominance::upper})),
        makeFile("Totale & Licht.mov", withPicture(movie("B <001>", "20:15:02;00", 5100, 0),
                                                   {1920, 1080, PELPixelAspectRatio::square, false, "Apple ProRes 422",
                                                    "appl", FourCC{"apcn"}, PELFieldDominance::none})),
        makeFile("\"Kran\" 100%?.mov", withPicture(movie("C'001", "20:15:01;15", 5300, 0),
                                                   {720, 480, PELPixelAspectRatio::ntsc601, true, "DV - NTSC", nullptr,
                                                    FourCC{"dvc "}, PELFieldDominance::lower})),
        makeFile("Ton ]]> 🎙.mov", movie("SND", "20:14:50;00", 6000, 2)),
    };
    PELFileElement::calculateOffsetsForFiles(files);
    PELFileElement::calculateMediaDelaysForFiles(files);
    return files;
}

PELDictionary options()
{
    const PELArray cuts{
        PELDictionary{{PELCutType, PELCutTypeCut},
                      {PELCutActiveAngleIndex, 0},
                      {PELCutStartTimecode, "00:00:00;00"},
                      {PELCutEndTimecode, "00:01:00;02"}},
        PELDictionary{
            {PELCutType, PELCutTypeDissolve}, {PELCutStartTimecode, "00:00:59;17"}, {PELCutEndTimecode, "00:01:00;17"}},
        PELDictionary{{PELCutType, PELCutTypeCut},
                      {PELCutActiveAngleIndex, 2},
                      {PELCutStartTimecode, "00:01:00;02"},
                      {PELCutEndTimecode, "00:02:30;02"}},
    };
    const PELArray markers{
        PELDictionary{{PELMarkerName, "Applaus"},
                      {PELMarkerComment, "bis zum <Ende> & weiter"},
                      {PELMarkerColor, PELColor{1, 0.5, 0.25, 1}},
                      {PELMarkerStartFrame, "00:00:10;00"},
                      {PELMarkerDuration, 60}},
        PELDictionary{{PELMarkerName, "Zugabe"}, {PELMarkerStartFrame, "00:02:00;04"}},
    };
    const PELDictionary overrides{{PELAnamorphicOverride, false},
                                  {PELFieldDominanceOverride, "upper"},
                                  {PELFrameSizeWidthOverride, 1280},
                                  {PELFrameSizeHeightOverride, 720},
                                  {PELPixelAspectRatioOverride, "square"}};
    return {{PELImportOptions, PELDictionary{{"createnewproject", "TRUE"}, {"displaynonfatalerrors", false}}},
            {PELProjectName, "Konzert <12.> \"Probe\""},
            {PELBinName, "Tag 1"},
            {PELBinLabel, "Interviews"},
            {PELClipLabel, "Best Take"},
            {PELProjectAddSequence, true},
            {PELMulticlipMainFileIndex, 0},
            {PELSequenceTemplateFileIndex, 1},
            {PELSequenceName, "Rohschnitt"},
            {PELSequenceLabel, "Good Take"},
            {PELSequenceStartTimecode, "01:00:00;00"},
            {PELProjectScene, "12A"},
            {PELProjectTake, "3"},
            {PELMasterComment1, "Wind & Regen"},
            {PELMasterComment1AddToSequence, true},
            {PELMasterComment1AddToClipsAndMulticlips, true},
            {PELGoodShot, true},
            {PELGoodShotAddToSequence, true},
            {PELSequenceSettingsOverrides, overrides},
            {PELCuts, cuts},
            {PELMarkers, markers}};
}

/// To replace the golden document after a wanted change: ZANFCP_UPDATE_GOLDEN=1 test_project, then read its diff.
TEST(GoldenDocument, ConcertIsWrittenByteForByte)
{
    std::shared_ptr<PELRootElement> root;
    ASSERT_EQ(Convenience::rootElementForProject(&root, concert(), options()), 0);
    expectValid(*root);
    const std::string text = root->XMLDescription();
    if (std::getenv("ZANFCP_UPDATE_GOLDEN") != nullptr) {
        std::ofstream out{kGolden, std::ios::binary};
        ASSERT_TRUE(out << text << std::flush);
        GTEST_SKIP() << "the golden document was replaced";
    }
    EXPECT_EQ(text, readFile(kGolden));
}

} // namespace
} // namespace zanfcp::test
