#include "project/ProjectRoot.h"

#include "project/Options.h"
#include "tests/support/ElementLookup.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Recording.h"
#include "tests/xml/ElementSketch.h"

#include <gtest/gtest.h>

namespace zanfcp::test {
namespace {

using Convenience::rootElementForProject;

PELDictionary sequenceOptions(std::initializer_list<std::pair<std::string, PELValue>> more = {})
{
    PELDictionary options{{PELProjectAddSequence, true}};
    for (const auto& [key, value] : more)
        options.set(key, value);
    return options;
}

PELValue cut(int angle, const char* start, const char* end)
{
    return PELDictionary{{PELCutType, PELCutTypeCut},
                         {PELCutActiveAngleIndex, angle},
                         {PELCutStartTimecode, start},
                         {PELCutEndTimecode, end}};
}

/// Expects success and a document that xmllint takes.
std::shared_ptr<PELRootElement> build(const PELFileElements& files, const PELDictionary& options)
{
    std::shared_ptr<PELRootElement> root;
    EXPECT_EQ(rootElementForProject(&root, files, options), 0);
    if (!root) return PELRootElement::elementWithKey("none"); // has been reported; look-ups find nothing
    expectValid(*root);
    return root;
}

class ProjectRoot : public ::testing::Test {
protected:
    ProjectRoot() { PELSetFPSForRate({25, false}); }

    /// Builds from the recording. What is in a project lies under "project/children", in a bin under "…/bin/children".
    void build(const PELDictionary& options) { root = test::build(files, options); }
    std::shared_ptr<PELElement> sequence() { return at(root, "project/children/sequence"); }
    std::string sequenceText(std::string_view path) { return textAt(sequence(), path); }

    PELFileElements files = showRecording();
    std::shared_ptr<PELRootElement> root;
};

TEST_F(ProjectRoot, EmptyOptionsGiveAProjectWithOneClipPerFile)
{
    LogCapture log;
    build({});
    EXPECT_EQ(keysAt(root, ""), (Strings{"importoptions", "project"}));
    EXPECT_EQ(outlineAt(root, "importoptions"), Strings{"createnewproject=TRUE"});
    EXPECT_EQ(outlineAt(root, "project"), (Strings{"name=Project", "children"}));
    EXPECT_EQ(outlineAt(root, "project/children"), Strings{"bin"});
    EXPECT_EQ(outlineAt(root, "project/children/bin"), (Strings{"name=Bin", "children"}));
    EXPECT_EQ(outlineAt(root, "project/children/bin/children"),
              (Strings{"clip#A001.mov Clip", "clip#B001.mov Clip", "clip#C001.mov Clip", "clip#SOUND.mov Clip"}));
    EXPECT_EQ(keysAt(root, "project/children/bin/children/clip"),
              (Strings{"name", "duration", "rate", "masterclipid", "ismasterclip", "in", "out", "file"}));
    EXPECT_EQ(log.errors(), Strings{});
    EXPECT_EQ(log.texts(LogLevel::normal), (Strings{"PELElement: Adding project", "PELElement: Adding bin",
                                                    "PELElement: Adding clips", "PELElement: Created XML"}));
}

TEST_F(ProjectRoot, StepsAreLoggedAsTheyAreTaken)
{
    const Strings begin{"PELElement: Adding project",        "PELElement: Adding bin",
                        "PELElement: Adding clips",          "PELElement: Adding multiclip",
                        "PELElement: Adding sequence",       "PELElement: Adding sequence media",
                        "PELElement: Adding sequence video", "PELElement: Adding sequence cuts"};
    const auto expectLog = [&](const PELDictionary& options, const Strings& rest) {
        LogCapture log;
        build(options);
        Strings expected = begin;
        if (options.boolFor(PELUseFirstClipSettings))
            expected.insert(expected.begin() + 6, "PELElement: Will use first clip settings");
        expected.insert(expected.end(), rest.begin(), rest.end());
        EXPECT_EQ(log.texts(LogLevel::normal), expected);
    };
    expectLog(sequenceOptions(), {"PELElement: Has no cuts, creating default", "PELElement: Adding sequence audio",
                                  "PELElement: Adding markers", "PELElement: Created XML"});
    expectLog(
        sequenceOptions({{PELUseFirstClipSettings, true},
                         {PELSoundSourceIndex, 1},
                         {PELCuts, PELArray{cut(0, "00:00:00:00", "00:00:01:00")}}}),
        {"PELElement: Has cuts, creating multiclip cut", "PELElement: Adding markers", "PELElement: Created XML"});
}

TEST_F(ProjectRoot, SequenceNeedsMulticlipAndMulticlipNeedsClipItems)
{
    struct Case {
        const char* name;
        PELDictionary options;
        bool clipItems, multiclip, sequence;
    };
    const Case cases[] = {
        {"nothing", {}, false, false, false},
        {"clip items", {{PELProjectUseCliptitems, true}}, true, false, false},
        {"multiclip", {{PELProjectAddMulticlip, true}, {PELProjectUseCliptitems, false}}, true, true, false},
        {"sequence", {{PELProjectAddSequence, true}, {PELProjectAddMulticlip, false}}, true, true, true},
        {"text that is true", {{PELProjectAddSequence, "YES"}}, true, true, true},
        {"all off",
         {{PELProjectAddSequence, 0}, {PELProjectAddMulticlip, "no"}, {PELProjectUseCliptitems, 0.0}},
         false,
         false,
         false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        build(c.options);
        const auto clips = at(root, "project/children/bin/children");
        EXPECT_EQ(at(clips, "clip[4]/media") != nullptr, c.clipItems);
        EXPECT_EQ(at(clips, "clip[4]/file") == nullptr, c.clipItems);
        EXPECT_EQ(idAt(clips, "clip[5]"), c.multiclip ? "A001.mov Multiclip 01" : "<nothing>");
        EXPECT_EQ(sequence() != nullptr, c.sequence);
    }
}

TEST_F(ProjectRoot, WithoutProjectTheBinLiesUnderTheRoot)
{
    build(sequenceOptions({{PELAddProject, false}}));
    EXPECT_EQ(keysAt(root, ""), (Strings{"importoptions", "bin", "sequence"}));
    EXPECT_EQ(textAt(root, "sequence/name"), "Sequence");
    build({{PELAddProject, 1}});
    EXPECT_EQ(keysAt(root, ""), (Strings{"importoptions", "project"}));
}

TEST_F(ProjectRoot, NamesAndLabelsGoWhereTheyBelong)
{
    build(sequenceOptions({{PELProjectName, "Show & Tell"},
                           {PELBinName, "Day <1>"},
                           {PELBinLabel, "Interviews"},
                           {PELClipLabel, "Best Take"},
                           {PELSequenceName, "Cut 1"},
                           {PELSequenceLabel, "B Roll"}}));
    EXPECT_EQ(textAt(root, "project/name"), "Show & Tell");
    EXPECT_EQ(outlineAt(root, "project/children/bin"), (Strings{"name=Day <1>", "children", "labels"}));
    EXPECT_EQ(textAt(root, "project/children/bin/labels/label"), "Interviews");
    EXPECT_EQ(textAt(root, "project/children/bin/children/clip[4]/labels/label"), "Best Take");
    EXPECT_FALSE(at(root, "project/children/bin/children/clip[5]/labels")); // the multiclip has none
    EXPECT_EQ(sequenceText("name"), "Cut 1");
    EXPECT_EQ(sequenceText("labels/label"), "B Roll");

    build(sequenceOptions({{PELBinLabel, ""}, {PELClipLabel, ""}, {PELSequenceLabel, ""}, {PELSequenceName, ""}}));
    EXPECT_EQ(root->XMLString().find("<label"), std::string::npos);
    EXPECT_FALSE(at(sequence(), "name")); // the one name that may be empty
}

TEST_F(ProjectRoot, SequenceHoldsItsPartsInOrder)
{
    build(sequenceOptions({{PELProjectScene, "12A"},
                           {PELMasterComment1, "windy"},
                           {PELMasterComment1AddToSequence, true},
                           {PELSequenceLabel, "Good Take"},
                           {PELSequenceStartTimecode, "10:00:00:00"},
                           {PELMarkers, PELArray{PELDictionary{{PELMarkerName, "M"}}}}}));
    EXPECT_EQ(outline(sequence()),
              (Strings{"name=Sequence", "duration=800", "rate", "updatebehavior=add", "logginginfo", "comments",
                       "labels", "timecode", "in=-1", "out=-1", "media", "ismasterclip=FALSE", "marker"}));
    EXPECT_EQ(sequence()->identifier(), "");
    EXPECT_EQ(sketch(at(sequence(), "timecode")),
              "timecode(rate(ntsc=FALSE timebase=25) frame=900000 displayformat=NDF)");
    EXPECT_EQ(keysAt(sequence(), "media"), (Strings{"video", "audio"}));
    EXPECT_EQ(keysAt(sequence(), "media/video"), (Strings{"format", "track"}));
    EXPECT_EQ(sketch(at(sequence(), "media/video/format")),
              "format(samplecharacteristics(width=1920 height=1080 anamorphic=FALSE pixelaspectratio=square "
              "fielddominance=none rate(ntsc=FALSE timebase=25) codec(name=H.264 appspecificdata(appname=Final Cut Pro "
              "appmanufacturer=Apple Inc. appversion=7.0 data(qtcodec(codecname=H.264 codectypename=H.264 "
              "codectypecode=avc1 codecvendorcode=appl spatialquality=512 temporalquality=256 keyframerate=0 "
              "datarate=0))))))");

    build(sequenceOptions());
    EXPECT_EQ(keysAt(root, "project/children/sequence"),
              (Strings{"name", "duration", "rate", "updatebehavior", "in", "out", "media", "ismasterclip"}));
}

TEST_F(ProjectRoot, DefaultCutShowsTheMainFileOverTheWholeSequence)
{
    build(sequenceOptions({{PELMulticlipMainFileIndex, 2}, {PELProjectTake, "7"}}));
    const auto track = at(sequence(), "media/video/track");
    EXPECT_EQ(outline(track), Strings{"clipitem"});
    const auto item = at(track, "clipitem");
    EXPECT_EQ(textAt(item, "name"), "C001.mov");
    EXPECT_EQ(textAt(item, "duration"), "1250");
    EXPECT_EQ(textAt(item, "start"), "0");
    EXPECT_EQ(textAt(item, "end"), "800");
    EXPECT_EQ(textAt(item, "in"), "200");
    EXPECT_EQ(textAt(item, "out"), "1000");
    EXPECT_EQ(textAt(item, "logginginfo/shottake"), "7");
    EXPECT_EQ(idAt(item, "multiclip"), "");
    EXPECT_EQ(textAt(item, "multiclip/angle[3]/activevideoangle"), "TRUE");
    EXPECT_EQ(idAt(root, "project/children/bin/children/clip[5]"), "C001.mov Multiclip 01");
}

TEST_F(ProjectRoot, ImportOptionsAreWrittenAsGiven)
{
    struct Case {
        const char* name;
        PELDictionary options;
        Strings expected;
    };
    const PELDictionary given{{"deletethisxmlfileatimport", false}, {"targetprojectname", "Show"}};
    const Case cases[] = {
        {"given", {{PELImportOptions, given}}, {"deletethisxmlfileatimport=FALSE", "targetprojectname=Show"}},
        {"empty", {{PELImportOptions, PELDictionary{}}}, {}},
        {"given, first clip decides",
         {{PELImportOptions, given}, {PELUseFirstClipSettings, true}},
         {"deletethisxmlfileatimport=FALSE", "targetprojectname=Show", "defsequencepresetname=useFirstClipSettings"}},
        {"default, first clip decides",
         {{PELUseFirstClipSettings, true}},
         {"createnewproject=TRUE", "defsequencepresetname=useFirstClipSettings"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        build(c.options);
        EXPECT_EQ(outlineAt(root, "importoptions"), c.expected);
    }
}

TEST_F(ProjectRoot, FirstClipSettingsLeaveFormatEmptyAndOverridesUnread)
{
    build(sequenceOptions({{PELUseFirstClipSettings, true},
                           {PELSequenceSettingsOverrides, PELDictionary{{PELEditingTimebaseOverride, 50}}},
                           {PELSequenceTemplateFileIndex, 3}})); // a file without a picture will do
    EXPECT_EQ(sketch(at(sequence(), "media/video/format")), "format(samplecharacteristics())");
    EXPECT_EQ(sequenceText("rate/timebase"), "25");
}

TEST_F(ProjectRoot, OverridesChangeTheSequenceAlone)
{
    struct Case {
        const char* name;
        PELDictionary overrides;
        std::string_view path; ///< in the sample characteristics
        const char* expected;
    };
    const Case cases[] = {
        {"anamorphic", {{PELAnamorphicOverride, true}}, "anamorphic", "TRUE"},
        {"not anamorphic", {{PELAnamorphicOverride, "no"}}, "anamorphic", "FALSE"},
        {"timebase", {{PELEditingTimebaseOverride, 50}}, "rate/timebase", "50"},
        {"timebase as a fraction", {{PELEditingTimebaseOverride, 59.94}}, "rate/timebase", "59.94"},
        {"field dominance", {{PELFieldDominanceOverride, "upper"}}, "fielddominance", "upper"},
        {"unknown field dominance", {{PELFieldDominanceOverride, "middle"}}, "fielddominance", "middle"},
        {"pixel aspect", {{PELPixelAspectRatioOverride, "PAL-601"}}, "pixelaspectratio", "PAL-601"},
        {"width of a pair", {{PELFrameSizeWidthOverride, 1280}, {PELFrameSizeHeightOverride, "720"}}, "width", "1280"},
        {"height of a pair", {{PELFrameSizeWidthOverride, 1280}, {PELFrameSizeHeightOverride, "720"}}, "height", "720"},
        {"width alone", {{PELFrameSizeWidthOverride, 1280}}, "width", "1920"},
        {"height alone", {{PELFrameSizeHeightOverride, 720}}, "height", "1080"},
        {"value of the wrong type", {{PELFieldDominanceOverride, 2}}, "fielddominance", "none"},
        {"none", {}, "rate/timebase", "25"},
    };
    const std::string before = sketch(files[0]);
    const PELMovieProperties properties = files[0]->movieProperties();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const PELDictionary options = sequenceOptions({{PELSequenceSettingsOverrides, c.overrides}});
        const PELDictionary sameOptions = options;
        build(options);
        EXPECT_EQ(sequenceText("media/video/format/samplecharacteristics/" + std::string(c.path)), c.expected);
        EXPECT_EQ(sketch(files[0]), before);
        EXPECT_EQ(files[0]->movieProperties(), properties);
        EXPECT_EQ(options, sameOptions);
    }
}

TEST_F(ProjectRoot, TimebaseOverrideRetimesTheSequence)
{
    build(sequenceOptions(
        {{PELSequenceSettingsOverrides, PELDictionary{{PELEditingTimebaseOverride, 50}}},
         {PELSequenceStartTimecode, "00:00:01:00"},
         {PELMarkers, PELArray{PELDictionary{{PELMarkerName, "M"}, {PELMarkerStartFrame, "00:00:02:10"}}}}}));
    EXPECT_EQ(sketch(at(sequence(), "rate")), "rate(ntsc=FALSE timebase=50)");
    EXPECT_EQ(sketch(at(sequence(), "timecode")), "timecode(rate(ntsc=FALSE timebase=50) frame=50 displayformat=NDF)");
    EXPECT_EQ(sequenceText("media/audio/track/clipitem/rate/timebase"), "50");
    EXPECT_EQ(sequenceText("marker/in"), "110");
    // The clips stay what their files are, and the default cut follows the rate of its file.
    EXPECT_EQ(sequenceText("media/video/track/clipitem/rate/timebase"), "25");
    EXPECT_EQ(textAt(root, "project/children/bin/children/clip/rate/timebase"), "25");
}

TEST_F(ProjectRoot, LabelsAreReadAtTheSequencesRateWhicheverWasSelectedBefore)
{
    PELSetFPSForRate({60, true});
    build(sequenceOptions(
        {{PELCuts, PELArray{cut(0, "00:00:01:00", "00:00:02:00")}},
         {PELMarkers, PELArray{PELDictionary{{PELMarkerName, "M"}, {PELMarkerStartFrame, "00:00:04:00"}}}}}));
    EXPECT_EQ(sequenceText("media/video/track/clipitem/end"), "50");
    EXPECT_EQ(sequenceText("marker/in"), "100");
}

TEST_F(ProjectRoot, DurationAndOffsetFollowStartTimecodeAndCuts)
{
    struct Case {
        const char* name;
        PELDictionary options;
        const char *duration, *in, *audioIn, *audioOut;
    };
    const PELArray cuts{cut(0, "00:00:00:00", "00:00:04:00"), cut(2, "00:00:04:00", "00:00:40:00")};
    const PELArray openEnd{cut(0, "00:00:00:00", "00:00:04:00"), PELDictionary{{PELCutType, PELCutTypeDissolve}}};
    const char start[] = "01:00:10:00"; // 50 frames after the first common one
    const Case cases[] = {
        {"no start", {{PELCuts, cuts}}, "800", "200", "150", "950"},
        {"start, no cuts", {{PELSequenceStartTimecode, start}}, "800", "200", "150", "950"},
        {"start and cuts", {{PELSequenceStartTimecode, start}, {PELCuts, cuts}}, "1000", "200", "150", "1150"},
        {"start, last cut without an end",
         {{PELSequenceStartTimecode, start}, {PELCuts, openEnd}},
         "800",
         "200",
         "150",
         "950"},
        {"corrected offsets",
         {{PELSequenceStartTimecode, start}, {PELCuts, cuts}, {PELSequenceCorrectFileOffsets, true}},
         "800",
         "250",
         "200",
         "1000"},
        {"correction without a start", {{PELSequenceCorrectFileOffsets, true}}, "800", "200", "150", "950"},
        {"duration given", {{PELSequenceDuration, 123}}, "123", "200", "150", "273"},
        {"duration given, start and cuts",
         {{PELSequenceDuration, 123}, {PELSequenceStartTimecode, start}, {PELCuts, cuts}},
         "1000",
         "200",
         "150",
         "1150"},
        {"duration 0 is one", {{PELSequenceDuration, 0}}, "0", "200", "150", "150"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PELDictionary options = c.options;
        options.set(PELProjectAddSequence, true);
        build(options);
        EXPECT_EQ(sequenceText("duration"), c.duration);
        EXPECT_EQ(sequenceText("media/video/track/clipitem/in"), c.in);
        if (!options.contains(PELCuts)) {
            EXPECT_EQ(sequenceText("media/video/track/clipitem/end"), c.duration);
        }
        EXPECT_EQ(sequenceText("media/audio/track/clipitem/duration"), c.duration);
        EXPECT_EQ(sequenceText("media/audio/track/clipitem/in"), c.audioIn);
        EXPECT_EQ(sequenceText("media/audio/track/clipitem/out"), c.audioOut);
    }
}

TEST_F(ProjectRoot, SoundComesFromTheFileChosen)
{
    struct Case {
        const char* name;
        PELDictionary options;
        const char* file; ///< of the first audio track
        Strings media;
    };
    const Case cases[] = {
        {"most tracks", {}, "SOUND.mov File", {"video", "audio"}},
        {"chosen", {{PELSoundSourceIndex, 2}}, "C001.mov File", {"video", "audio"}},
        {"chosen, silent", {{PELSoundSourceIndex, 1}}, "<nothing>", {"video"}},
        {"outside the list", {{PELSoundSourceIndex, 4}}, "<nothing>", {"video"}},
        {"below the list", {{PELSoundSourceIndex, -1}}, "<nothing>", {"video"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PELDictionary options = c.options;
        options.set(PELProjectAddSequence, true);
        LogCapture log;
        build(options);
        EXPECT_EQ(idAt(sequence(), "media/audio/track/clipitem/file"), c.file);
        EXPECT_EQ(keysAt(sequence(), "media"), c.media);
        EXPECT_EQ(log.errors(), Strings{});
    }
}

TEST_F(ProjectRoot, LoggingInfoGoesToClipsAndSequenceAsAsked)
{
    struct Case {
        const char* name;
        PELDictionary options;
        const char *clips, *sequence;
    };
    const Case cases[] = {
        {"nothing", {}, "nothing", "nothing"},
        {"empty texts", {{PELProjectScene, ""}, {PELProjectTake, ""}}, "nothing", "nothing"},
        {"scene and take",
         {{PELProjectScene, "12A"}, {PELProjectTake, "3"}},
         "logginginfo(scene=12A shottake=3)",
         "logginginfo(scene=12A shottake=3)"},
        {"good nowhere", {{PELGoodShot, true}}, "nothing", "nothing"},
        {"good sequence", {{PELGoodShot, true}, {PELGoodShotAddToSequence, true}}, "nothing", "logginginfo(good=TRUE)"},
        {"good clips",
         {{PELGoodShot, true}, {PELGoodShotAddToClipsAndMulticlips, true}, {PELProjectTake, "3"}},
         "logginginfo(shottake=3 good=TRUE)",
         "logginginfo(shottake=3)"},
        {"not good",
         {{PELGoodShotAddToSequence, true}, {PELGoodShotAddToClipsAndMulticlips, true}},
         "nothing",
         "nothing"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PELDictionary options = c.options;
        options.set(PELProjectAddSequence, true);
        build(options);
        const auto bin = at(root, "project/children/bin/children");
        EXPECT_EQ(sketch(at(sequence(), "logginginfo")), c.sequence);
        for (const char* path : {"clip[1]/logginginfo", "clip[5]/logginginfo",
                                 "clip[5]/media/video/track/clipitem/multiclip/angle/clip/logginginfo"})
            EXPECT_EQ(sketch(at(bin, path)), c.clips) << path;
        for (const char* path : {"media/video/track/clipitem/logginginfo", "media/audio/track/clipitem/logginginfo"})
            EXPECT_EQ(sketch(at(sequence(), path)), c.clips) << path;
    }
}

TEST_F(ProjectRoot, MasterCommentGoesWhereItIsWanted)
{
    EXPECT_STREQ(PELMasterComment1AddToClipsAndMulticlips, "masterComment1ToClipsAndMulticlips");
    struct Case {
        const char* name;
        PELDictionary options;
        const char *clip, *sequence;
    };
    const Case cases[] = {
        {"nowhere", {{PELMasterComment1, "windy"}}, "<nothing>", "<nothing>"},
        {"clips", {{PELMasterComment1, "windy"}, {"masterComment1ToClipsAndMulticlips", true}}, "windy", "<nothing>"},
        {"sequence", {{PELMasterComment1, "windy"}, {PELMasterComment1AddToSequence, true}}, "<nothing>", "windy"},
        {"other spelling",
         {{PELMasterComment1, "windy"}, {"masterComment1AddToClipsAndMulticlips", true}},
         "<nothing>",
         "<nothing>"},
        {"empty",
         {{PELMasterComment1, ""},
          {PELMasterComment1AddToSequence, true},
          {"masterComment1ToClipsAndMulticlips", true}},
         "<nothing>",
         "<nothing>"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PELDictionary options = c.options;
        options.set(PELProjectAddSequence, true);
        build(options);
        EXPECT_EQ(textAt(root, "project/children/bin/children/clip/comments/mastercomment1"), c.clip);
        EXPECT_EQ(sequenceText("comments/mastercomment1"), c.sequence);
    }
}

TEST_F(ProjectRoot, MarkersHaveInPointsAndEndsOnlyWithADuration)
{
    struct Case {
        const char* name;
        PELDictionary marker;
        const char* expected;
    };
    const Case cases[] = {
        {"all",
         {{PELMarkerName, "Goal"},
          {PELMarkerComment, "1:0"},
          {PELMarkerColor, PELColor{1, 0.5, 0, 0.25}},
          {PELMarkerStartFrame, "00:00:10:05"},
          {PELMarkerDuration, 25}},
         "marker(name=Goal comment=1:0 color(red=255 green=127 blue=0 alpha=63) in=255 out=280)"},
        {"name alone", {{PELMarkerName, "M"}}, "marker(name=M in=0 out=-1)"},
        {"duration 0",
         {{PELMarkerName, "M"}, {PELMarkerStartFrame, "00:00:01:00"}, {PELMarkerDuration, 0}},
         "marker(name=M in=25 out=-1)"},
        {"negative duration",
         {{PELMarkerName, "M"}, {PELMarkerStartFrame, "00:00:01:00"}, {PELMarkerDuration, -5}},
         "marker(name=M in=25 out=-1)"},
        {"endless duration wraps",
         {{PELMarkerName, "M"}, {PELMarkerStartFrame, "00:00:01:00"}, {PELMarkerDuration, NSIntegerMax}},
         "marker(name=M in=25 out=24)"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const PELArray markers{PELDictionary{{PELMarkerName, "before"}}, c.marker};
        build(sequenceOptions({{PELMarkers, markers}}));
        EXPECT_EQ(sequenceText("marker/name"), "before");
        EXPECT_EQ(sketch(at(sequence(), "marker[2]")), c.expected);
    }
    build({{PELMarkers, PELArray{PELDictionary{}}}}); // without a sequence even a wrong marker is no matter
}

TEST_F(ProjectRoot, FailuresSayWhichStepAndLeaveTheRootAlone)
{
    struct Case {
        const char* name;
        std::int32_t status;
        PELDictionary options;
        Strings errors; ///< the last lines of error level
    };
    const Case cases[] = {
        {"project without a name",
         838,
         {{PELProjectName, ""}},
         {"Parameter must not be nil or have zero length: name", "PELElement: Child is nil",
          "PELElement: Could not add project"}},
        {"bin without a name",
         852,
         {{PELBinName, ""}},
         {"Parameter must not be nil or have zero length: name", "PELElement: Child is nil",
          "PELElement: Could not add bin"}},
        {"template without a picture",
         1036,
         sequenceOptions({{PELSequenceTemplateFileIndex, 3}}),
         {"Parameter must not be NULL: sampleCharacteristics", "PELElement: Child is nil",
          "PELElement: Could not add video element"}},
        {"template outside the list",
         1036,
         sequenceOptions({{PELSequenceTemplateFileIndex, 4}}),
         {"PELElement: Could not add video element"}},
        {"template below the list",
         1036,
         sequenceOptions({{PELSequenceTemplateFileIndex, -1}}),
         {"PELElement: Could not add video element"}},
        {"main file outside the list",
         1083,
         sequenceOptions({{PELMulticlipMainFileIndex, 4}}),
         {"PELElement: Index out of bounds: 4 (# of files: 4)", "PELElement: Could not create multiclip cut"}},
        {"angle outside the list",
         1106,
         sequenceOptions({{PELCuts, PELArray{cut(4, "00:00:00:00", "00:00:01:00")}}}),
         {"PELElement: Index out of bounds: 4 (# of files: 4)", "PELElement: Child is nil",
          "PELElement: Could not add multiclip cut"}},
        {"marker without a name",
         1162,
         sequenceOptions({{PELMarkers, PELArray{PELDictionary{{PELMarkerComment, "?"}}}}}),
         {"Parameter must not be nil or have zero length: name", "PELElement: Child is nil",
          "PELElement: Could not add marker"}},
        {"marker that is none",
         1162,
         sequenceOptions({{PELMarkers, PELArray{7}}}),
         {"PELElement: Could not add marker"}},
    };
    const auto before = PELRootElement::elementWithKey("before");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::shared_ptr<PELRootElement> result = before;
        LogCapture log;
        EXPECT_EQ(rootElementForProject(&result, files, c.options), c.status);
        EXPECT_EQ(result, before);
        const Strings errors = log.errors();
        ASSERT_GE(errors.size(), c.errors.size());
        EXPECT_EQ((Strings{errors.end() - static_cast<std::ptrdiff_t>(c.errors.size()), errors.end()}), c.errors);
        EXPECT_EQ(log.lines().back().text, c.errors.back()); // nothing is attempted after it
    }
}

TEST_F(ProjectRoot, ClipThatCannotBeAddedIsNoErrorLine)
{
    files[1] = nullptr;
    LogCapture log;
    EXPECT_EQ(rootElementForProject(&root, files, {}), 883);
    EXPECT_FALSE(root);
    EXPECT_EQ(log.lines().back().text, "PELElement: Could not add clips");
    EXPECT_EQ(log.lines().back().level, LogLevel::normal);
}

TEST_F(ProjectRoot, NoPlaceForTheRootAndNoFilesAreRefusedSilently)
{
    LogCapture log;
    EXPECT_EQ(rootElementForProject(nullptr, files, {}), -50);
    EXPECT_EQ(rootElementForProject(&root, {}, {}), -50);
    EXPECT_FALSE(root);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ProjectRoot, ValuesOfTheWrongTypeReadAsAbsent)
{
    build(sequenceOptions({{PELProjectName, 7},
                           {PELBinName, PELArray{}},
                           {PELImportOptions, "x"},
                           {PELCuts, "x"},
                           {PELMarkers, 3},
                           {PELSequenceStartTimecode, 90000},
                           {PELSequenceSettingsOverrides, PELArray{}}}));
    EXPECT_EQ(textAt(root, "project/name"), "Project");
    EXPECT_EQ(textAt(root, "project/children/bin/name"), "Bin");
    EXPECT_EQ(outlineAt(root, "importoptions"), Strings{"createnewproject=TRUE"});
    EXPECT_FALSE(at(sequence(), "timecode"));
    EXPECT_TRUE(at(sequence(), "media/video/track/clipitem"));
}

TEST_F(ProjectRoot, RecordingWithoutACommonSpanStillGivesADocument)
{
    files = {makeFile("A.mov", cameraMovie("01:00:00:00", 100, 1)),
             makeFile("B.mov", cameraMovie("02:00:00:00", 50, 1))};
    PELFileElement::calculateOffsetsForFiles(files);
    build(sequenceOptions());
    EXPECT_EQ(sequenceText("duration"), "-89900");
}

} // namespace
} // namespace zanfcp::test
