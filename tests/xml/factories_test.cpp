#include "tests/support/LogCapture.h"
#include "tests/xml/ElementSketch.h"
#include "xml/CommonElements.h"
#include "xml/MajorElements.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace zanfcp {
namespace {

using namespace CommonElements;
using namespace MajorElements;
using test::LogCapture;
using test::sketch;
using testing::ElementsAre;
using testing::IsEmpty;

using Element = std::shared_ptr<PELElement>;

const PELRate kNtsc30{30, true};
const PELRate kPal{25, false};

Element leaf(std::string_view key, std::string_view text)
{
    return PELElement::elementWithKeyStringValue(key, text);
}

/// "track" with one "clipitem" for each name.
Element trackOf(std::initializer_list<const char*> names)
{
    auto track = PELElement::elementWithKey("track");
    for (const char* name : names)
        track->addChild(PELElement::elementWithKeyIdentifier("clipitem", name));
    return track;
}

/// A clip with a picture track of two clip items and two sound tracks, the first of two clip items.
Element clipWithMedia()
{
    auto video = PELElement::elementWithKeyChildren("video", {trackOf({"V1", "V2"}), trackOf({"V3"})});
    auto audio =
        PELElement::elementWithKeyChildren("audio", {leaf("in", "-1"), trackOf({"A1", "A2"}), trackOf({"A3"})});
    auto media = PELElement::elementWithKeyChildren("media", {std::move(video), std::move(audio)});
    return PELElement::elementWithKeyChildren("clip", {std::move(media)}, "A001 Clip");
}

struct Made {
    Element element;
    std::string expected;
};

void expectAll(std::initializer_list<Made> cases)
{
    for (const Made& made : cases)
        EXPECT_EQ(sketch(made.element), made.expected);
}

TEST(Factories, ContainersHaveTheirChildrenInOrder)
{
    const LogCapture log;
    expectAll({
        {importOptionsElementWithOptions({}), "importoptions()"},
        {importOptionsElementWithOptions({{"z", "as it is"}, {"a", true}, {"b", 0}, {"c", 0.5}, {"d", -7}, {"e", ""}}),
         "importoptions(z=as it is a=TRUE b=FALSE c=TRUE d=TRUE e=)"},
        {projectElementWithName("Show"), "project(name=Show children())"},
        {binElementWithName("Day 1"), "bin(name=Day 1 children())"},
        {childrenElement(), "children()"},
        {mediaElement(), "media()"},
        {clipElementWithID("C1", "A001", 250, &kPal), "clip#C1(name=A001 duration=250 rate(ntsc=FALSE timebase=25))"},
        {clipElementWithID("", "", -1, nullptr), "clip(duration=-1)"},
        {sequenceElementWithID("S1", "", 0, &kNtsc30), "sequence#S1(duration=0 rate(ntsc=TRUE timebase=30))"},
        {sequenceElementWithID("S1", "Cut", 9, nullptr), "sequence#S1(name=Cut duration=9)"},
    });
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(Factories, TimesAndColoursAreWrittenInTheirTexts)
{
    const LogCapture log;
    const PELTimecode dropFrame{.rate = kNtsc30, .frames = 107892, .hasDropframe = true};
    const PELTimecode nonDrop{.rate = kPal, .frames = std::numeric_limits<std::uint64_t>::max()};
    const std::string dropText = "rate(ntsc=TRUE timebase=30) frame=107892 displayformat=DF";
    const PELColor orange{1.0, 0.5, 0.0, 0.999};
    expectAll({
        {rateElementWithRate(&kNtsc30), "rate(ntsc=TRUE timebase=30)"},
        {timecodeElementWithTimecode(&dropFrame), "timecode(" + dropText + ")"},
        {timecodeElementWithTimecode(&nonDrop),
         "timecode(rate(ntsc=FALSE timebase=25) frame=18446744073709551615 displayformat=NDF)"},
        {timecodeElementWithTimecode(&dropFrame, "source", "A001"),
         "timecode(" + dropText + " source=source reel(name=A001))"},
        {timecodeElementWithTimecode(&dropFrame, "", ""), "timecode(" + dropText + ")"},
        {reelElementWithName("A001"), "reel(name=A001)"},
        {markerElementWithName({.name = "Clap", .comment = "loud", .color = &orange, .inPoint = 12, .outPoint = 20}),
         "marker(name=Clap comment=loud color(red=255 green=127 blue=0 alpha=254) in=12 out=20)"},
        {markerElementWithName({.name = "Clap"}), "marker(name=Clap in=0 out=-1)"},
        {colorElementWithColor(&orange), "color(red=255 green=127 blue=0 alpha=254)"},
    });
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(Factories, MediaElementsHaveTheirChildrenInOrder)
{
    const LogCapture log;
    const std::string pal = "rate(ntsc=FALSE timebase=25)";
    const FileURL url = FileURL::fileURLWithPath("/media/a b.mov");
    expectAll({
        {clipItemElementWithID(
             {.identifier = "I1", .name = "A001", .duration = 9, .rate = &kPal, .start = -1, .end = 4}),
         "clipitem#I1(name=A001 duration=9 " + pal + " start=-1 end=4)"},
        {fileElementWithID({.identifier = "F1", .duration = 9, .rate = &kPal, .name = "a b.mov", .pathURL = url}),
         "file#F1(name=a b.mov pathurl=file:///media/a%20b.mov " + pal + " duration=9)"},
        {fileElementWithID({.duration = 0, .rate = &kPal, .pathURL = url}),
         "file(pathurl=file:///media/a%20b.mov " + pal + " duration=0)"},
        {fileElementWithID({.duration = 9, .rate = &kPal, .name = "a"}), "file(name=a " + pal + " duration=9)"},
        {videoElementWithDuration(9, 1920, 1080), "video(duration=9 samplecharacteristics(width=1920 height=1080))"},
        {videoElementWithDuration({.duration = 9,
                                   .width = 720,
                                   .height = 576,
                                   .anamorphic = true,
                                   .pixelAspectRatio = PELPixelAspectRatio::pal601,
                                   .fieldDominance = PELFieldDominance::lower,
                                   .rate = &kPal}),
         "video(duration=9 samplecharacteristics(width=720 height=576 anamorphic=TRUE pixelaspectratio=PAL-601 "
         "fielddominance=lower " +
             pal + "))"},
        {videoElementWithDuration({.width = 0, .height = 0, .rate = &kPal}),
         "video(duration=0 samplecharacteristics(width=0 height=0 anamorphic=FALSE pixelaspectratio=<not set> " + pal +
             "))"},
        {videoElementWithSampleCharacteristics(PELElement::elementWithKey("samplecharacteristics")),
         "video(format(samplecharacteristics()))"},
        {audioElementWithSampleRate(48000, 24, 8),
         "audio(samplecharacteristics(samplerate=48000 depth=24) channelcount=8)"},
        {formatElementWithWidth({.width = 720,
                                 .height = 480,
                                 .anamorphic = false,
                                 .pixelAspectRatio = "NTSC-601",
                                 .fieldDominance = "upper",
                                 .rate = &kNtsc30}),
         "format(samplecharacteristics(width=720 height=480 anamorphic=FALSE pixelaspectratio=NTSC-601 "
         "fielddominance=upper rate(ntsc=TRUE timebase=30)))"},
        {formatElementWithWidth({.width = 1, .height = 2, .anamorphic = true, .pixelAspectRatio = "x", .rate = &kPal}),
         "format(samplecharacteristics(width=1 height=2 anamorphic=TRUE pixelaspectratio=x " + pal + "))"},
        {trackElementWithClipItem(PELElement::elementWithKey("clipitem")), "track(clipitem())"},
    });
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(Factories, MulticlipsAndLoggingInfoHoldWhatIsGiven)
{
    const LogCapture log;
    const PELElements angles = {PELElement::elementWithKeyIdentifier("angle", "2"),
                                PELElement::elementWithKeyIdentifier("angle", "1")};
    expectAll({
        {multiclipElementWithID("M1", "Multiclip", angles), "multiclip#M1(name=Multiclip angle#2() angle#1())"},
        {angleElementWithClipID("C1", true, true), "angle(activevideoangle=TRUE activeaudioangle=TRUE clip#C1())"},
        {angleElementWithClipID("C1", false, false), "angle(clip#C1())"},
        {angleElementWithClip(PELElement::elementWithKeyIdentifier("clip", "C1"), true, false, 3),
         "angle(clip() activevideoangle=TRUE)"},
        {loggingInfoElementWithDescription(
             {.description = "d", .scene = "s", .shottake = "t", .lognote = "n", .good = true}),
         "logginginfo(description=d scene=s shottake=t lognote=n good=TRUE)"},
        {loggingInfoElementWithDescription({.good = true}), "logginginfo(good=TRUE)"},
        {loggingInfoElementWithDescription({}), "nothing"},
        {loggingInfoElementWithScene("12", "3"), "logginginfo(scene=12 shottake=3)"},
        {loggingInfoElementWithScene("", ""), "nothing"},
    });
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(Factories, RefusesEachMissingArgumentWithOneLine)
{
    const std::string noText = "Parameter must not be nil or have zero length: ";
    const std::string noObject = "Parameter must not be NULL: ";
    const std::string undefined = "Parameter must not be undefined: ";
    const struct {
        std::function<Element()> make;
        std::string line;
    } cases[] = {
        {[] { return projectElementWithName(""); }, noText + "name"},
        {[] { return binElementWithName(""); }, noText + "name"},
        {[] { return rateElementWithRate(nullptr); }, noObject + "rate"},
        {[] { return timecodeElementWithTimecode(nullptr); }, noObject + "timecode"},
        {[] { return timecodeElementWithTimecode(nullptr, "s", "r"); }, noObject + "timecode"},
        {[] { return reelElementWithName(""); }, noText + "name"},
        {[] { return markerElementWithName({.name = "", .comment = "c"}); }, noText + "name"},
        {[] { return colorElementWithColor(nullptr); }, noObject + "color"},
        {[] { return clipItemElementWithID({.identifier = "I", .rate = &kPal}); }, noText + "name"},
        {[] { return fileElementWithID({.identifier = "F"}); }, noObject + "rate"},
        {[] { return fileElementWithID({.rate = &kPal}); }, undefined + "duration"},
        {[] { return fileElementWithID({.duration = 1, .rate = &kPal}); },
         "One of two parameters must not be nil or have zero length: name, pathurl"},
        {[] { return videoElementWithDuration(1, NSNotFound, NSNotFound); }, undefined + "width"},
        {[] { return videoElementWithDuration(1, 2, NSNotFound); }, undefined + "height"},
        {[] { return videoElementWithDuration({.height = 2}); }, undefined + "width"},
        {[] { return videoElementWithDuration({.width = 1}); }, undefined + "height"},
        {[] { return videoElementWithSampleCharacteristics(nullptr); }, noObject + "sampleCharacteristics"},
        {[] { return audioElementWithSampleRate(NSNotFound, NSNotFound, NSNotFound); }, undefined + "samplerate"},
        {[] { return audioElementWithSampleRate(1, NSNotFound, NSNotFound); }, undefined + "depth"},
        {[] { return audioElementWithSampleRate(1, 2, NSNotFound); }, undefined + "channelCount"},
        {[] { return formatElementWithWidth({.pixelAspectRatio = "x"}); }, undefined + "width"},
        {[] { return formatElementWithWidth({.width = 1, .pixelAspectRatio = "x"}); }, undefined + "height"},
        {[] { return formatElementWithWidth({.width = 1, .height = 2}); }, noText + "par"},
        {[] { return trackElementWithClipItem(nullptr); }, noObject + "clipItem"},
        {[] { return multiclipElementWithID("M", "", {}); },
         "Parameter must not be nil or have a count of zero: angles"},
        {[] { return multiclipElementWithID("M", "", {mediaElement()}); }, noText + "name"},
        {[] { return angleElementWithClip(nullptr, true, true, 0); }, noObject + "clip"},
        {[] { return angleElementWithClipID("", true, true); }, noText + "clipID"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        const LogCapture log;
        EXPECT_EQ(c.make(), nullptr);
        EXPECT_THAT(log.errors(), ElementsAre(c.line));
        EXPECT_EQ(log.lines().size(), 1U);
    }
}

TEST(Factories, GoesOnWithoutARateWhereItIsNoGroundForRefusal)
{
    const LogCapture log;
    expectAll({
        {clipItemElementWithID({.name = "A001"}), "clipitem(name=A001 duration=0 start=0 end=0)"},
        {formatElementWithWidth({.width = 1, .height = 2, .pixelAspectRatio = "x"}),
         "format(samplecharacteristics(width=1 height=2 anamorphic=FALSE pixelaspectratio=x))"},
    });
    EXPECT_THAT(log.errors(), ElementsAre("Parameter must not be NULL: rate", "Parameter must not be NULL: rate"));
}

TEST(Factories, WritesTheLow32BitsOfSignedNumbersAndAll64OfUnsigned)
{
    const PELRate strange{-1, false};
    expectAll({
        {clipElementWithID("", "", NSNotFound, nullptr), "clip(duration=-1)"},
        {clipElementWithID("", "", 2147483648, nullptr), "clip(duration=-2147483648)"},
        {clipElementWithID("", "", 4294967301, nullptr), "clip(duration=5)"},
        {clipElementWithID("", "", std::numeric_limits<NSInteger>::min(), nullptr), "clip(duration=0)"},
        {rateElementWithRate(&strange), "rate(ntsc=FALSE timebase=18446744073709551615)"},
    });
}

TEST(Factories, ColourComponentsThatNoDisplayHasStayWithin32Bits)
{
    const PELColor strange{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), -1e300,
                           2};
    const PELColor negative{-0.001, -0.5, 0, 1};
    expectAll({
        {colorElementWithColor(&strange), "color(red=0 green=2147483647 blue=-2147483648 alpha=510)"},
        {colorElementWithColor(&negative), "color(red=0 green=-127 blue=0 alpha=255)"},
    });
}

TEST(Factories, FileElementIsOfTheClassAskedFor)
{
    struct OwnElement : PELElement, PELElementFactories<OwnElement> {
        using PELElement::PELElement;
        using PELElementFactories<OwnElement>::elementWithKeyIdentifier;
    };
    const std::shared_ptr<OwnElement> own =
        fileElementWithID<OwnElement>({.identifier = "F1", .duration = 1, .rate = &kPal, .name = "a"});
    EXPECT_EQ(sketch(own), "file#F1(name=a rate(ntsc=FALSE timebase=25) duration=1)");
    const LogCapture log;
    EXPECT_EQ(fileElementWithID<OwnElement>({}), nullptr);
}

TEST(AngleWithClip, DelaysTheFirstPictureItemAndEverySoundItemOfTheCopy)
{
    const Element clip = clipWithMedia();
    const std::string before = sketch(clip);

    EXPECT_EQ(sketch(angleElementWithClip(clip, false, true, -4)),
              "angle(clip(media(video(track(clipitem#V1(mediadelay=-4) clipitem#V2()) track(clipitem#V3())) "
              "audio(in=-1 track(clipitem#A1(mediadelay=-4) clipitem#A2(mediadelay=-4)) "
              "track(clipitem#A3(mediadelay=-4))))) activeaudioangle=TRUE)");
    EXPECT_EQ(sketch(clip), before);
}

TEST(AngleWithClip, WithoutDelayIsACopyWithoutIdentifier)
{
    const Element clip = clipWithMedia();
    const std::string before = sketch(clip);
    const Element angle = angleElementWithClip(clip, false, false, NSNotFound);

    EXPECT_EQ(sketch(angle), "angle(" + std::string(before).replace(0, 14, "clip") + ")");
    angle->childAtPath("clip/media/video/track/clipitem")->setIdentifier("changed");
    EXPECT_EQ(sketch(clip), before);
}

TEST(AngleWithClip, TakesClipsWhoseMediaIsNotThereOrIsText)
{
    const LogCapture log;
    auto tracks = [](Element track) {
        return PELElement::elementWithKeyChildren("audio", {leaf("track", "text"), std::move(track)});
    };
    auto clip = [](PELElements children) {
        return PELElement::elementWithKeyChildren("clip",
                                                  {PELElement::elementWithKeyChildren("media", std::move(children))});
    };
    const auto textItem = PELElement::elementWithKeyChildren("track", {leaf("clipitem", "text")});
    expectAll({
        {angleElementWithClip(leaf("clip", "text"), false, false, 1), "angle(clip=text)"},
        {angleElementWithClip(clip({leaf("video", "text"), leaf("audio", "text")}), false, false, 1),
         "angle(clip(media(video=text audio=text)))"},
        {angleElementWithClip(clip({tracks(textItem)}), false, false, 1),
         "angle(clip(media(audio(track=text track(clipitem=text)))))"},
    });
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(LabelsAndComments, GatherUnderOneChild)
{
    const auto element = PELElement::elementWithKeyChildren("bin", {leaf("name", "Day 1")});
    EXPECT_TRUE(addLabel(*element, "Good Take"));
    EXPECT_TRUE(addCommentForCommentKey(*element, "first", "mastercomment1"));
    EXPECT_TRUE(addLabel(*element, "Best Take"));
    EXPECT_TRUE(addLabel2(*element, "B Roll"));
    EXPECT_TRUE(addLabelForLabelKey(*element, "own", "label3"));
    for (const char* key : {"mastercomment2", "mastercomment3", "mastercomment4", "clipcommenta", "clipcommentb"})
        EXPECT_TRUE(addCommentForCommentKey(*element, "c", key));

    EXPECT_EQ(sketch(element),
              "bin(name=Day 1 labels(label=Good Take label=Best Take label2=B Roll label3=own) "
              "comments(mastercomment1=first mastercomment2=c mastercomment3=c mastercomment4=c clipcommenta=c "
              "clipcommentb=c))");
}

TEST(LabelsAndComments, RefusedOnesLeaveTheElementAlone)
{
    const LogCapture log;
    const auto bin = PELElement::elementWithKey("bin");
    const auto text = leaf("name", "Day 1");
    EXPECT_FALSE(addLabel(*bin, ""));
    EXPECT_FALSE(addLabel2(*bin, ""));
    EXPECT_FALSE(addCommentForCommentKey(*bin, "", "mastercomment1"));
    for (const char* key : {"", "comment", "mastercomment", "mastercomment0", "mastercomment5", "MasterComment1",
                            "clipcommentc", "mastercomment11"})
        EXPECT_FALSE(addCommentForCommentKey(*bin, "c", key)) << key;
    EXPECT_FALSE(addLabel(*text, "Good Take"));
    EXPECT_FALSE(addCommentForCommentKey(*text, "c", "clipcommenta"));

    EXPECT_EQ(sketch(bin), "bin()");
    EXPECT_EQ(sketch(text), "name=Day 1");
    EXPECT_THAT(log.lines(), IsEmpty());
}

} // namespace
} // namespace zanfcp
