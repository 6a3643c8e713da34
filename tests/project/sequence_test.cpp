#include "project/Sequence.h"

#include "project/Clips.h"
#include "project/Options.h"
#include "tests/support/ElementLookup.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Recording.h"
#include "tests/xml/ElementSketch.h"
#include "xml/CommonElements.h"

#include <gtest/gtest.h>

#include <limits>

namespace zanfcp::test {
namespace {

using namespace Convenience;

constexpr NSInteger kLeast = std::numeric_limits<NSInteger>::min();

PELValue cut(int angle, const char* start, const char* end)
{
    return PELDictionary{{PELCutType, PELCutTypeCut},
                         {PELCutActiveAngleIndex, angle},
                         {PELCutStartTimecode, start},
                         {PELCutEndTimecode, end}};
}

PELValue dissolve(const char* start, const char* end)
{
    return PELDictionary{{PELCutType, PELCutTypeDissolve}, {PELCutStartTimecode, start}, {PELCutEndTimecode, end}};
}

class SequenceTest : public ::testing::Test {
protected:
    SequenceTest() { PELSetFPSForRate({25, false}); }

    PELElements build(const PELArray& cuts, NSInteger highestOffset = 200)
    {
        return cutsForCuts({.cuts = cuts,
                            .files = files,
                            .multiclipMainFileIndex = 0,
                            .multiclipDuration = 1250,
                            .clips = clips,
                            .highestOffsetOfFiles = highestOffset,
                            .sequenceOffset = 10,
                            .loggingInfo = logging});
    }

    PELFileElements files = showRecording();
    std::shared_ptr<PELElement> logging = CommonElements::loggingInfoElementWithScene("12A", "3");
    PELElements clips = clipsForFileElements({.fileElements = files, .loggingInfo = logging, .useClipItems = true});
};

TEST_F(SequenceTest, OffsetIsFromTheFirstFilesCommonFrame)
{
    struct Case {
        NSInteger fileStart, fileOffset, sequenceStart, expected;
    };
    const Case cases[] = {
        {1000, 200, 1200, 0},
        {1000, 200, 1500, 300},
        {1000, 200, 0, -1200},
        {NSIntegerMax, 1, 0, kLeast}, // wraps twice rather than overflows
    };
    for (const Case& c : cases) {
        PELTimecode start;
        start.frames = static_cast<std::uint64_t>(c.sequenceStart);
        const PELFileElements two{makeFile("A", emptyMovie(c.fileStart, 10)), makeFile("B", emptyMovie(77, 10))};
        two[0]->setOffset(c.fileOffset);
        two[1]->setOffset(99);
        EXPECT_EQ(sequenceOffsetForFiles(two, start), c.expected) << c.fileStart << " at " << c.sequenceStart;
    }
    PELTimecode start;
    start.frames = 5;
    EXPECT_EQ(sequenceOffsetForFiles({}, start), 5);
    EXPECT_EQ(sequenceOffsetForFiles({nullptr, files[0]}, start), 5);
}

TEST_F(SequenceTest, CutShowsOneAngleOfTheMulticlip)
{
    const auto item = multiclipCutWithID({.identifier = "Sequence Cut Multiclip 0007",
                                          .files = files,
                                          .activeAngleIndex = 2,
                                          .multiclipDuration = 1250,
                                          .clips = clips,
                                          .highestOffsetOfFiles = 200,
                                          .start = 50,
                                          .end = 75,
                                          .sequenceOffset = 10,
                                          .loggingInfo = logging});
    EXPECT_EQ(item->identifier(), "");
    EXPECT_EQ(outline(item),
              (Strings{"name=C001.mov", "duration=1250", "rate", "start=50", "end=75", "in=260", "out=285",
                       "pixelaspectratio=PAL-601", "enabled=TRUE", "anamorphic=TRUE", "alphatype=none",
                       "masterclipid=C001.mov Clip", "syncoffset=0", "logginginfo", "file#C001.mov File", "sourcetrack",
                       "fielddominance=lower", "multiclip#Sequence Cut Multiclip 0007"}));
    EXPECT_EQ(sketch(at(item, "file")), "file#C001.mov File()");
    EXPECT_EQ(sketch(at(item, "sourcetrack")), "sourcetrack(mediatype=video)");
    EXPECT_EQ(outlineAt(item, "multiclip"),
              (Strings{"name=Multiclip", "collapsed=FALSE", "synctype=3", "angle", "angle", "angle", "angle"}));
    for (int i = 1; i <= 4; ++i) {
        const auto angle = at(item, "multiclip/angle[" + std::to_string(i) + "]");
        EXPECT_EQ(outline(angle), i == 3 ? (Strings{"clip", "activevideoangle=TRUE"}) : Strings{"clip"}) << i;
        EXPECT_EQ(textAt(angle, "clip/name"), files[static_cast<std::size_t>(i - 1)]->name());
    }
    expectValid({item}, "sequence/media/video/track");
}

TEST_F(SequenceTest, CutIsPlacedByOffsetsButMarkedBesideDissolves)
{
    struct Case {
        const char* name;
        NSInteger highestOffset, sequenceOffset;
        bool previousIsDissolve, nextIsDissolve;
        const char *start, *end, *in, *out;
    };
    const Case cases[] = {
        {"no dissolves", 200, 10, false, false, "50", "75", "260", "285"},
        {"after a dissolve", 200, 10, true, false, "-1", "75", "260", "285"},
        {"before a dissolve", 200, 10, false, true, "50", "-1", "260", "285"},
        {"between dissolves", 200, 0, true, true, "-1", "-1", "250", "275"},
        {"no highest offset", NSIntegerMax, 10, false, false, "50", "75", "60", "85"},
        {"before the files", 0, -100, false, false, "50", "75", "-50", "-25"},
        {"sums wrap", kLeast, kLeast, false, false, "50", "75", "50", "75"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto item = multiclipCutWithID({.files = files,
                                              .activeAngleIndex = 0,
                                              .clips = clips,
                                              .highestOffsetOfFiles = c.highestOffset,
                                              .start = 50,
                                              .end = 75,
                                              .previousIsDissolve = c.previousIsDissolve,
                                              .nextIsDissolve = c.nextIsDissolve,
                                              .sequenceOffset = c.sequenceOffset});
        EXPECT_EQ(textAt(item, "start"), c.start);
        EXPECT_EQ(textAt(item, "end"), c.end);
        EXPECT_EQ(textAt(item, "in"), c.in);
        EXPECT_EQ(textAt(item, "out"), c.out);
        EXPECT_FALSE(at(item, "logginginfo"));
    }
}

TEST_F(SequenceTest, CutWithoutIdentifierIgnoresTheOneGiven)
{
    const auto item = multiclipCutWithFiles({.identifier = "ignored", .files = files, .clips = clips});
    EXPECT_EQ(idAt(item, "multiclip"), "");
    EXPECT_EQ(textAt(item, "multiclip/name"), "Multiclip");
}

TEST_F(SequenceTest, AngleOutsideTheListIsRefused)
{
    struct Case {
        NSInteger index;
        const char* line;
    };
    for (const Case& c : {Case{4, "PELElement: Index out of bounds: 4 (# of files: 4)"},
                          Case{-1, "PELElement: Index out of bounds: -1 (# of files: 4)"}}) {
        LogCapture log;
        EXPECT_FALSE(multiclipCutWithID({.files = files, .activeAngleIndex = c.index, .clips = clips}));
        EXPECT_EQ(log.errors(), Strings{c.line});
    }
    LogCapture log;
    files[1] = nullptr;
    EXPECT_FALSE(multiclipCutWithID({.files = files, .activeAngleIndex = 1, .clips = clips}));
    EXPECT_EQ(log.errors(), Strings{"Parameter must not be nil or have zero length: name"});
}

TEST_F(SequenceTest, FewerClipsThanFilesLeaveTheirAnglesOut)
{
    LogCapture log;
    clips.resize(2);
    const auto item = multiclipCutWithID({.files = files, .activeAngleIndex = 0, .clips = clips});
    EXPECT_TRUE(at(item, "multiclip/angle[2]"));
    EXPECT_FALSE(at(item, "multiclip/angle[3]"));
}

TEST_F(SequenceTest, CutsAndDissolvesKeepTheirOrderAndNumbers)
{
    LogCapture log;
    const PELElements track = build({cut(0, "00:00:00:00", "00:00:04:00"), dissolve("00:00:03:12", "00:00:04:12"),
                                     cut(1, "00:00:04:00", "00:00:08:00"), cut(3, "00:00:08:00", "00:00:09:00")});
    ASSERT_EQ(track.size(), 4u);
    EXPECT_EQ(track[0]->key(), "clipitem");
    EXPECT_EQ(track[1]->key(), "transitionitem");
    struct Case {
        std::size_t index;
        const char *name, *identifier, *start, *end, *in, *out;
    };
    const Case cases[] = {
        {0, "A001.mov", "Sequence Cut Multiclip 0001", "0", "-1", "210", "310"},
        {2, "B001.mov", "Sequence Cut Multiclip 0003", "-1", "200", "310", "410"},
        {3, "SOUND.mov", "Sequence Cut Multiclip 0004", "200", "225", "410", "435"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.index);
        EXPECT_EQ(textAt(track[c.index], "name"), c.name);
        EXPECT_EQ(textAt(track[c.index], "duration"), "1250");
        EXPECT_EQ(idAt(track[c.index], "multiclip"), c.identifier);
        EXPECT_EQ(textAt(track[c.index], "start"), c.start);
        EXPECT_EQ(textAt(track[c.index], "end"), c.end);
        EXPECT_EQ(textAt(track[c.index], "in"), c.in);
        EXPECT_EQ(textAt(track[c.index], "out"), c.out);
        EXPECT_EQ(at(track[c.index], "logginginfo"), logging);
    }
    EXPECT_EQ(log.errors(),
              (Strings{"PELElement: Element from 00:00:00:00 (0) to 00:00:04:00 (100) with frames 100",
                       "PELElement: Element from 00:00:04:00 (100) to 00:00:08:00 (200) with frames 100",
                       "PELElement: Element from 00:00:08:00 (200) to 00:00:09:00 (225) with frames 25"}));
    expectValid(track, "sequence/media/video/track");
}

TEST_F(SequenceTest, NeighboursCountByPositionAlone)
{
    const PELValue shown = cut(0, "00:00:00:00", "00:00:01:00");
    const PELValue mixed = dissolve("00:00:00:00", "00:00:01:00");
    const PELValue other = PELDictionary{{PELCutType, "wipe"}};
    struct Case {
        const char* name;
        PELArray cuts;
        Strings expected; ///< "start end" of clip items, "x" for transitions
    };
    const Case cases[] = {
        {"none", {}, {}},
        {"dissolve first", {mixed, shown}, {"x", "-1 25"}},
        {"dissolve last", {shown, mixed}, {"0 -1", "x"}},
        {"dissolves around", {mixed, shown, mixed}, {"x", "-1 -1", "x"}},
        {"two dissolves", {shown, mixed, mixed, shown}, {"0 -1", "x", "x", "-1 25"}},
        {"skipped records hide a dissolve", {mixed, other, shown, other, mixed}, {"x", "0 25", "x"}},
        {"other case", {PELDictionary{{PELCutType, "Cut"}}, PELDictionary{{PELCutType, "DISSOLVE"}}}, {}},
        {"no type, no dictionary", {PELDictionary{}, "cut", 7}, {}},
        {"type that is no text", {PELDictionary{{PELCutType, 1}}}, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Strings found;
        for (const auto& element : build(c.cuts))
            found.push_back(element->key() == "clipitem" ? textAt(element, "start") + " " + textAt(element, "end")
                                                         : "x");
        EXPECT_EQ(found, c.expected);
    }
}

TEST_F(SequenceTest, CutsReadTheirLabelsAtTheSelectedRate)
{
    PELSetFPSForRate({30, true});
    const PELElements track = build({cut(0, "00:01:00;02", "00:10:00;00")}, NSIntegerMax);
    EXPECT_EQ(textAt(track[0], "start"), "1800");
    EXPECT_EQ(textAt(track[0], "end"), "17982");
    EXPECT_EQ(textAt(track[0], "out"), "17992");
}

TEST_F(SequenceTest, CutOutsideTheListLeavesNothingInItsPlace)
{
    LogCapture log;
    const PELElements track = build({cut(9, "00:00:00:00", "00:00:01:00"), cut(0, "00:00:01:00", "00:00:02:00")});
    ASSERT_EQ(track.size(), 2u);
    EXPECT_FALSE(track[0]);
    EXPECT_TRUE(track[1]);
    EXPECT_EQ(log.errors()[1], "PELElement: Index out of bounds: 9 (# of files: 4)");
}

TEST_F(SequenceTest, DissolveIsACenteredCrossDissolve)
{
    const PELRate rate{30, true};
    const auto transition = dissolveWithStart(-12, 13, &rate);
    EXPECT_EQ(sketch(transition),
              "transitionitem(rate(ntsc=TRUE timebase=30) start=-12 end=13 alignment=center "
              "effect(name=Cross Dissolve effectid=Cross Dissolve effectcategory=Dissolve effecttype=transition "
              "mediatype=video wipecode=0 wipeaccuracy=100 startratio=0 endratio=1 reverse=FALSE))");
    EXPECT_EQ(sketch(crossDissolveEffectElement()), sketch(at(transition, "effect")));
    expectValid({transition}, "sequence/media/video/track");

    // Of the main file's rate, whatever rate the labels were read at.
    PELMovieProperties main = files[0]->movieProperties();
    main.timecode.rate = {24, true};
    files[0]->setMovieProperties(main);
    EXPECT_EQ(sketch(at(build({dissolve("00:00:01:00", "00:00:02:00")})[0], "rate")), "rate(ntsc=TRUE timebase=24)");

    LogCapture log;
    EXPECT_EQ(keysAt(dissolveWithStart(0, 1, nullptr), ""), (Strings{"start", "end", "alignment", "effect"}));
    EXPECT_EQ(log.errors()[0], "Parameter must not be NULL: rate");
}

TEST_F(SequenceTest, AudioHasOneTrackForEachChannel)
{
    const PELRate rate{24, true};
    files[3]->setMediaDelay(1000);
    const auto audio = audioElementForSequenceWithTracksFromFile({.file = files[3],
                                                                  .duration = 800,
                                                                  .highestOffsetOfFiles = 777,
                                                                  .rate = &rate,
                                                                  .sequenceOffset = 10,
                                                                  .loggingInfo = logging});
    EXPECT_EQ(outline(audio), (Strings{"format", "outputs", "in=-1", "out=-1", "track", "track", "track", "track"}));
    EXPECT_EQ(sketch(at(audio, "format")), "format(samplecharacteristics(depth=24 samplerate=48000))");
    EXPECT_EQ(sketch(at(audio, "outputs")),
              "outputs(group(index=1 numchannels=4 downmix=0 channel(index=1) channel(index=2) channel(index=3) "
              "channel(index=4)))");
    EXPECT_EQ(outlineAt(audio, "track[3]"), Strings{"clipitem"});
    EXPECT_EQ(outlineAt(audio, "track[3]/clipitem"),
              (Strings{"name=SOUND.mov", "duration=800", "rate", "start=0", "end=800", "logginginfo", "in=1160",
                       "out=1960", "file#SOUND.mov File", "sourcetrack"}));
    EXPECT_EQ(sketch(at(audio, "track[3]/clipitem/rate")), "rate(ntsc=TRUE timebase=24)");
    EXPECT_EQ(sketch(at(audio, "track[3]/clipitem/sourcetrack")), "sourcetrack(mediatype=audio trackindex=3)");
    expectValid({audio}, "sequence/media");
}

TEST_F(SequenceTest, AudioTakesTheFilesRateWhenNoneIsGiven)
{
    const auto audio = audioElementForSequenceWithTracksFromFile({.file = files[0], .duration = 1});
    EXPECT_EQ(sketch(at(audio, "track/clipitem/rate")), "rate(ntsc=FALSE timebase=25)");
    EXPECT_FALSE(at(audio, "track/clipitem/logginginfo"));
}

TEST_F(SequenceTest, AudioOfASilentOrAbsentFileHasNoTracks)
{
    for (const auto& file : {files[1], std::shared_ptr<PELFileElement>{}}) {
        const auto audio = audioElementForSequenceWithTracksFromFile({.file = file, .duration = 800});
        EXPECT_EQ(sketch(audio), "audio(format(samplecharacteristics(depth=0 samplerate=0)) "
                                 "outputs(group(index=1 numchannels=0 downmix=0)) in=-1 out=-1)");
        expectValid({audio}, "sequence/media");
    }
}

} // namespace
} // namespace zanfcp::test
