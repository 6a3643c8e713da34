#include "project/Multiclip.h"

#include "project/Clips.h"
#include "tests/support/ElementLookup.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Recording.h"
#include "tests/xml/ElementSketch.h"
#include "xml/CommonElements.h"

#include <gtest/gtest.h>

namespace zanfcp::test {
namespace {

using namespace Convenience;

class MulticlipTest : public ::testing::Test {
protected:
    std::shared_ptr<PELElement> build(NSInteger mainFileIndex)
    {
        return multiclipElementForFiles({.files = files,
                                         .mainFileIndex = mainFileIndex,
                                         .multiclipDuration = 1250,
                                         .clips = clips,
                                         .loggingInfo = logging});
    }

    PELFileElements files = showRecording();
    std::shared_ptr<PELElement> logging = CommonElements::loggingInfoElementWithScene("12A", "3");
    PELElements clips = clipsForFileElements({.fileElements = files, .loggingInfo = logging, .useClipItems = true});
};

TEST_F(MulticlipTest, HoldsAllFilesAsAnglesOfTheMainFile)
{
    const auto multiclip = build(2);
    EXPECT_EQ(multiclip->identifier(), "C001.mov Multiclip 01");
    EXPECT_EQ(outline(multiclip),
              (Strings{"name=Multiclip", "duration=1250", "rate", "in=-1", "out=-1", "updatebehavior=add",
                       "masterclipid=C001.mov Clip", "ismasterclip=FALSE", "logginginfo", "media"}));
    EXPECT_EQ(outlineAt(multiclip, "media"), (Strings{"video", "audio"}));
    EXPECT_EQ(outlineAt(multiclip, "media/video/track"),
              (Strings{"clipitem#C001.mov Multiclip V01", "enabled=TRUE", "locked=FALSE"}));

    const auto item = at(multiclip, "media/video/track/clipitem");
    EXPECT_EQ(outline(item), (Strings{"name=C001.mov",
                                      "duration=1250",
                                      "rate",
                                      "start=0",
                                      "end=1250",
                                      "in=0",
                                      "out=1250",
                                      "pixelaspectratio=PAL-601",
                                      "anamorphic=TRUE",
                                      "alphatype=none",
                                      "masterclipid=C001.mov Clip",
                                      "syncoffset=0",
                                      "logginginfo",
                                      "file#C001.mov File",
                                      "sourcetrack",
                                      "link",
                                      "link",
                                      "link",
                                      "fielddominance=lower",
                                      "multiclip#Multiclip 0001"}));
    EXPECT_EQ(sketch(at(item, "file")), "file#C001.mov File()");
    EXPECT_EQ(sketch(at(item, "sourcetrack")), "sourcetrack(mediatype=video)");
    EXPECT_EQ(sketch(at(item, "link[1]")), "link(linkclipref=C001.mov Multiclip V01)");
    EXPECT_EQ(sketch(at(item, "link[3]")), "link(linkclipref=C001.mov Multiclip A02 groupindex=2)");
    EXPECT_EQ(outlineAt(item, "multiclip"),
              (Strings{"name=Multiclip", "collapsed=FALSE", "synctype=3", "angle", "angle", "angle", "angle"}));

    EXPECT_EQ(outlineAt(multiclip, "media/audio"), (Strings{"in=-1", "out=-1", "track", "track"}));
    EXPECT_EQ(outlineAt(multiclip, "media/audio/track[2]"),
              (Strings{"clipitem#C001.mov Multiclip A02", "enabled=TRUE", "locked=FALSE"}));
    EXPECT_EQ(outlineAt(multiclip, "media/audio/track[2]/clipitem"),
              (Strings{"name=C001.mov", "duration=1250", "rate", "start=0", "end=1250", "in=0", "out=1250",
                       "masterclipid=C001.mov Clip", "syncoffset=0", "logginginfo", "file#C001.mov File", "sourcetrack",
                       "multiclip#Multiclip 0001"}));
    EXPECT_EQ(sketch(at(multiclip, "media/audio/track[2]/clipitem/sourcetrack")),
              "sourcetrack(mediatype=audio trackindex=2)");
    EXPECT_EQ(sketch(at(multiclip, "media/audio/track[2]/clipitem/multiclip")), "multiclip#Multiclip 0001()");
    expectValid({multiclip});
}

TEST_F(MulticlipTest, OnlyTheMainAngleIsActive)
{
    files[3]->setMediaDelay(-7);
    const auto multiclip = build(1);
    for (int i = 1; i <= 4; ++i) {
        SCOPED_TRACE(i);
        const auto angle = at(multiclip, "media/video/track/clipitem/multiclip/angle[" + std::to_string(i) + "]");
        EXPECT_EQ(outline(angle),
                  i == 2 ? (Strings{"clip", "activevideoangle=TRUE", "activeaudioangle=TRUE"}) : Strings{"clip"});
        EXPECT_EQ(textAt(angle, "clip/name"), files[static_cast<std::size_t>(i - 1)]->name());
        EXPECT_EQ(textAt(angle, "clip/media/video/track/clipitem/mediadelay"), i == 4 ? "-7" : "0");
        // Angles refer to the file that their master clip describes.
        EXPECT_EQ(outlineAt(angle, "clip/media/video/track/clipitem/file"), Strings{});
    }
    EXPECT_EQ(clips[1]->identifier(), "B001.mov Clip"); // angles are copies
    EXPECT_FALSE(at(clips[1], "media/video/track/clipitem/mediadelay"));
    expectValid({multiclip});
}

TEST_F(MulticlipTest, MainFileTwiceInTheListIsActiveTwice)
{
    files[0] = files[2];
    const auto multiclip = build(2);
    EXPECT_EQ(textAt(multiclip, "media/video/track/clipitem/multiclip/angle[1]/activevideoangle"), "TRUE");
    EXPECT_EQ(textAt(multiclip, "media/video/track/clipitem/multiclip/angle[3]/activevideoangle"), "TRUE");
}

TEST_F(MulticlipTest, FourMonoTracksGiveFourItemsAndGroups)
{
    const auto multiclip = build(3);
    for (int i = 1; i <= 4; ++i) {
        SCOPED_TRACE(i);
        const std::string number = std::to_string(i);
        const std::string item = "media/audio/track[" + number + "]/clipitem";
        const std::string link = "media/video/track/clipitem/link[" + std::to_string(i + 1) + "]";
        EXPECT_EQ(idAt(multiclip, item), "SOUND.mov Multiclip A0" + number);
        EXPECT_EQ(textAt(multiclip, item + "/sourcetrack/trackindex"), number);
        EXPECT_EQ(textAt(multiclip, link + "/linkclipref"), "SOUND.mov Multiclip A0" + number);
        EXPECT_EQ(textAt(multiclip, link + "/groupindex"), number);
    }
    EXPECT_FALSE(at(multiclip, "media/audio/track[5]"));
    EXPECT_EQ(textAt(multiclip, "media/video/track/clipitem/fielddominance"), "<unknown>"); // no picture, no decision
    expectValid({multiclip});
}

TEST_F(MulticlipTest, MainFileWithoutSoundLeavesAudioEmpty)
{
    const auto multiclip = build(1);
    EXPECT_EQ(outlineAt(multiclip, "media/audio"), (Strings{"in=-1", "out=-1"}));
    EXPECT_FALSE(at(multiclip, "media/video/track/clipitem/link[2]"));
}

TEST_F(MulticlipTest, AbsentLoggingInfoIsLeftOut)
{
    logging = nullptr;
    clips = clipsForFileElements({.fileElements = files, .useClipItems = true});
    EXPECT_EQ(build(0)->XMLString().find("logginginfo"), std::string::npos);
}

TEST_F(MulticlipTest, MainFileOutsideTheListCountsAsAbsent)
{
    for (const NSInteger index : {NSInteger{4}, NSInteger{-1}, NSIntegerMax}) {
        SCOPED_TRACE(index);
        LogCapture log;
        const auto multiclip = build(index);
        EXPECT_EQ(multiclip->identifier(), " Multiclip 01");
        EXPECT_EQ(sketch(at(multiclip, "rate")), "rate(ntsc=FALSE timebase=0)");
        EXPECT_EQ(keysAt(multiclip, "media/video/track"), (Strings{"enabled", "locked"}));
        EXPECT_EQ(outlineAt(multiclip, "media/audio"), (Strings{"in=-1", "out=-1"}));
        EXPECT_EQ(log.errors(),
                  (Strings{"Parameter must not be nil or have zero length: name", "PELElement: Child is nil"}));
    }
}

TEST_F(MulticlipTest, PartsStandAlone)
{
    const auto track = videoTrackForMulticlipWithFiles(
        {.files = files, .mainFile = files[0], .clips = clips, .duration = 10, .linkElements = {}});
    EXPECT_EQ(outline(track), Strings{"clipitem#A001.mov Multiclip V01"}); // its state is for the caller to add
    EXPECT_FALSE(at(track, "clipitem/link"));

    EXPECT_EQ(linkElementsForMulticlipElement(nullptr, nullptr).size(), 1u);
    EXPECT_EQ(textAt(audioTrackForMulticlipWithFile(files[0], 12, 10, nullptr), "sourcetrack/trackindex"), "12");
    LogCapture log;
    EXPECT_FALSE(audioTrackForMulticlipWithFile(nullptr, 1, 10, nullptr));
}

} // namespace
} // namespace zanfcp::test
