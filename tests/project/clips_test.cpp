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

std::shared_ptr<PELElement> loggingInfo()
{
    return CommonElements::loggingInfoElementWithScene("12A", "3");
}

TEST(CodecElement, StatesTheCodecAndItsApplication)
{
    PELMovieProperties movie = cameraMovie("00:00:00:00", 10, 0);
    setField(movie.videoCodec.typeName, "H.264 & more");
    movie.videoCodec.keyframeRate = 24;
    movie.videoCodec.dataRate = -1;
    const auto codec = codecElementWithMovieProperties(&movie);
    EXPECT_EQ(sketch(codec),
              "codec(name=H.264 appspecificdata(appname=Final Cut Pro appmanufacturer=Apple Inc. appversion=7.0 "
              "data(qtcodec(codecname=H.264 codectypename=H.264 & more codectypecode=avc1 codecvendorcode=appl "
              "spatialquality=512 temporalquality=256 keyframerate=24 datarate=-1))))");
    expectValid({codec}, "sequence/media/video/format/samplecharacteristics");
}

TEST(CodecElement, AbsentVendorLeavesItsElementEmpty)
{
    PELMovieProperties movie = cameraMovie("00:00:00:00", 10, 0);
    movie.videoCodec.vendorCode.reset();
    const auto codec = codecElementWithMovieProperties(&movie);
    EXPECT_EQ(sketch(at(codec, "appspecificdata/data/qtcodec/codecvendorcode")), "codecvendorcode()");
    expectValid({codec}, "sequence/media/video/format/samplecharacteristics");
}

TEST(SourceTrack, WritesTheIndexUnlessUndefined)
{
    EXPECT_EQ(sketch(sourceTrackElementWithMediaType("audio", 2)), "sourcetrack(mediatype=audio trackindex=2)");
    EXPECT_EQ(sketch(sourceTrackElementWithMediaType("video", NSNotFound)), "sourcetrack(mediatype=video)");
}

TEST(Clips, AbsentArgumentsAreRefusedByName)
{
    LogCapture log;
    EXPECT_FALSE(codecElementWithMovieProperties(nullptr));
    EXPECT_FALSE(sourceTrackElementWithMediaType(std::nullopt, 1));
    EXPECT_FALSE(Convenience::clipElementWithID({.identifier = "A Clip", .name = "A"}));
    EXPECT_EQ(log.errors(), (Strings{"Parameter must not be NULL: movieProperties",
                                     "Parameter must not be NULL: mediaType", "Parameter must not be NULL: file"}));
}

TEST(Links, GroupTheChannelsOfEachTrack)
{
    struct Case {
        const char* name;
        std::uint64_t tracks, channels;
        Strings expected;
    };
    const Strings videoAlone{"link(linkclipref=A001.mov V01)"};
    const Case cases[] = {
        {"no sound", 0, 0, videoAlone},
        {"channels without tracks", 0, 2, videoAlone},
        {"tracks without channels", 2, 0, videoAlone},
        {"two mono tracks",
         2,
         2,
         {"link(linkclipref=A001.mov V01)", "link(linkclipref=A001.mov A01 groupindex=1)",
          "link(linkclipref=A001.mov A02 groupindex=2)"}},
        {"two stereo tracks",
         2,
         4,
         {"link(linkclipref=A001.mov V01)", "link(linkclipref=A001.mov A01 groupindex=1)",
          "link(linkclipref=A001.mov A02 groupindex=1)", "link(linkclipref=A001.mov A03 groupindex=2)",
          "link(linkclipref=A001.mov A04 groupindex=2)"}},
        {"more tracks than channels",
         3,
         2,
         {"link(linkclipref=A001.mov V01)", "link(linkclipref=A001.mov A01 groupindex=1)",
          "link(linkclipref=A001.mov A02 groupindex=2)"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PELMovieProperties movie = cameraMovie("00:00:00:00", 10, c.tracks);
        movie.audioChannelCount = c.channels;
        Strings links;
        for (const auto& link : linkElementsForFileElement(makeFile("A001.mov", movie)))
            links.push_back(sketch(link));
        EXPECT_EQ(links, c.expected);
    }
    LogCapture log;
    const PELElements ofNothing = linkElementsForFileElement(nullptr);
    ASSERT_EQ(ofNothing.size(), 1u);
    EXPECT_EQ(sketch(ofNothing[0]), "link(linkclipref= V01)");
    EXPECT_TRUE(log.lines().empty());
}

TEST(MasterClip, WithoutClipItemsHoldsTheFileAlone)
{
    const auto file = makeFile("A001.mov", cameraMovie("01:00:00:00", 1000, 2));
    const auto clip = Convenience::clipElementWithID({.identifier = "the id",
                                                      .name = "the name",
                                                      .duration = 77,
                                                      .rate = {24, true},
                                                      .fileElement = file,
                                                      .loggingInfo = loggingInfo()});
    EXPECT_EQ(clip->identifier(), "the id");
    EXPECT_EQ(outline(clip),
              (Strings{"name=the name", "duration=77", "rate", "logginginfo", "masterclipid=A001.mov Clip",
                       "ismasterclip=TRUE", "in=-1", "out=-1", "file#A001.mov File"}));
    EXPECT_EQ(sketch(at(clip, "rate")), "rate(ntsc=TRUE timebase=24)");
    EXPECT_EQ(at(clip, "file"), file); // the element itself, not a reference to it
    expectValid({clip});

    const auto plain = Convenience::clipElementWithID({.identifier = "id", .name = "n", .fileElement = file});
    EXPECT_EQ(keysAt(plain, ""),
              (Strings{"name", "duration", "rate", "masterclipid", "ismasterclip", "in", "out", "file"}));
}

TEST(MasterClip, ClipItemsDescribePictureAndEachChannel)
{
    PELMovieProperties movie = cameraMovie("01:00:00:00", 1000, 2);
    movie.anamorphic = true;
    movie.pixelAspectRatio = PELPixelAspectRatio::hd1440x1080;
    movie.videoCodec.fieldDominance = PELFieldDominance::upper;
    const auto file = makeFile("A001.mov", movie);
    const auto logging = loggingInfo();
    const auto clip = Convenience::clipElementWithID({.identifier = "A001.mov Clip",
                                                      .name = "A001.mov",
                                                      .duration = 1000,
                                                      .rate = {30, true},
                                                      .fileElement = file,
                                                      .loggingInfo = logging,
                                                      .useClipItems = true});
    EXPECT_EQ(outline(clip),
              (Strings{"name=A001.mov", "duration=1000", "rate", "logginginfo", "masterclipid=A001.mov Clip",
                       "ismasterclip=TRUE", "in=-1", "out=-1", "updatebehavior=add", "media"}));
    EXPECT_EQ(outlineAt(clip, "media"), (Strings{"video", "audio"}));
    EXPECT_EQ(outlineAt(clip, "media/video"), Strings{"track"});
    EXPECT_EQ(outlineAt(clip, "media/video/track"), (Strings{"clipitem#A001.mov V01", "enabled=TRUE", "locked=FALSE"}));
    EXPECT_EQ(outlineAt(clip, "media/video/track/clipitem"),
              (Strings{"name=A001.mov", "duration=1000", "rate", "start=0", "end=1000", "in=0", "out=1000",
                       "pixelaspectratio=HD-(1440x1080)", "anamorphic=TRUE", "alphatype=none", "fielddominance=upper",
                       "masterclipid=A001.mov Clip", "logginginfo", "file#A001.mov File", "sourcetrack", "link", "link",
                       "link"}));
    EXPECT_EQ(sketch(at(clip, "media/video/track/clipitem/rate")), "rate(ntsc=TRUE timebase=30)"); // the clip's own
    EXPECT_EQ(sketch(at(clip, "media/video/track/clipitem/sourcetrack")), "sourcetrack(mediatype=video)");
    EXPECT_EQ(at(clip, "media/video/track/clipitem/file"), file);

    EXPECT_EQ(outlineAt(clip, "media/audio"), (Strings{"in=-1", "out=-1", "track", "track"}));
    EXPECT_EQ(outlineAt(clip, "media/audio/track[2]"),
              (Strings{"clipitem#A001.mov A02", "enabled=TRUE", "locked=FALSE"}));
    EXPECT_EQ(outlineAt(clip, "media/audio/track[2]/clipitem"),
              (Strings{"name=A001.mov", "duration=1000", "rate", "start=0", "end=1000", "in=0", "out=1000",
                       "logginginfo", "masterclipid=A001.mov Clip", "file#A001.mov File", "sourcetrack"}));
    EXPECT_EQ(sketch(at(clip, "media/audio/track[2]/clipitem/file")), "file#A001.mov File()");
    EXPECT_EQ(sketch(at(clip, "media/audio/track[2]/clipitem/sourcetrack")),
              "sourcetrack(mediatype=audio trackindex=2)");

    // One logging-info element under four parents, printed in full under each.
    for (const char* path : {"logginginfo", "media/video/track/clipitem/logginginfo",
                             "media/audio/track[1]/clipitem/logginginfo", "media/audio/track[2]/clipitem/logginginfo"})
        EXPECT_EQ(at(clip, path), logging) << path;
    const std::string text = clip->XMLString();
    std::size_t count = 0;
    for (std::size_t found = text.find("<scene>12A</scene>"); found != std::string::npos;
         found = text.find("<scene>12A</scene>", found + 1))
        ++count;
    EXPECT_EQ(count, 4u);
    expectValid({clip});
}

TEST(MasterClip, WritesWhatTheFileHas)
{
    struct Case {
        const char* name;
        PELMovieProperties movie;
        Strings media, audio;
        const char* fieldDominance;
    };
    PELMovieProperties twoStereoTracks = cameraMovie("01:00:00:00", 100, 2);
    twoStereoTracks.audioChannelCount = 4;
    PELMovieProperties claimsSound = cameraMovie("01:00:00:00", 100, 0);
    claimsSound.hasAudio = true;
    PELMovieProperties deniesSound = cameraMovie("01:00:00:00", 100, 2);
    deniesSound.hasAudio = false;
    const Case cases[] = {
        {"picture alone", cameraMovie("01:00:00:00", 100, 0), {"video"}, {}, "none"},
        {"sound alone", soundMovie("01:00:00:00", 100, 1), {"video", "audio"}, {"in", "out", "track"}, "<unknown>"},
        {"two stereo tracks",
         twoStereoTracks,
         {"video", "audio"},
         {"in", "out", "track", "track", "track", "track"},
         "none"},
        {"sound without channels", claimsSound, {"video", "audio"}, {"in", "out"}, "none"},
        {"channels without sound", deniesSound, {"video"}, {}, "none"},
        {"nothing", {}, {"video"}, {}, "<unknown>"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto clip = Convenience::clipElementWithID(
            {.name = "A", .fileElement = makeFile("A.mov", c.movie), .useClipItems = true});
        EXPECT_EQ(keysAt(clip, "media"), c.media);
        EXPECT_EQ(keysAt(clip, "media/audio"), c.audio);
        EXPECT_EQ(textAt(clip, "media/video/track/clipitem/fielddominance"), c.fieldDominance);
        expectValid({clip});
    }
}

TEST(MasterClip, FileWithoutNameLeavesItsTracksEmpty)
{
    LogCapture log;
    const auto nameless = PELFileElement::elementWithKey("file");
    PELMovieProperties movie = soundMovie("01:00:00:00", 10, 1);
    nameless->setMovieProperties(movie);
    const auto clip = Convenience::clipElementWithID({.name = "A", .fileElement = nameless, .useClipItems = true});
    EXPECT_EQ(keysAt(clip, "media/video/track"), (Strings{"enabled", "locked"}));
    EXPECT_EQ(keysAt(clip, "media/audio/track"), (Strings{"enabled", "locked"}));
    EXPECT_EQ(log.errors()[0], "Parameter must not be nil or have zero length: name");
    EXPECT_EQ(log.errors()[1], "PELElement: Child is nil");
}

TEST(MasterClips, OnePerFileInOrder)
{
    const PELFileElements files = showRecording();
    const PELElements clips = clipsForFileElements({.fileElements = files,
                                                    .label = "Good Take",
                                                    .loggingInfo = loggingInfo(),
                                                    .masterComment = "windy",
                                                    .useClipItems = true});
    ASSERT_EQ(clips.size(), 4u);
    for (std::size_t i = 0; i < clips.size(); ++i) {
        EXPECT_EQ(clips[i]->identifier(), files[i]->name() + " Clip");
        EXPECT_EQ(textAt(clips[i], "name"), files[i]->name());
        EXPECT_EQ(textAt(clips[i], "duration"), std::to_string(files[i]->movieProperties().duration));
        EXPECT_EQ(sketch(at(clips[i], "rate")), "rate(ntsc=FALSE timebase=25)");
        EXPECT_EQ(at(clips[i], "media/video/track/clipitem/file"), files[i]);
    }
    Strings keys = keysAt(clips[0], "");
    EXPECT_EQ((Strings{keys.end() - 3, keys.end()}), (Strings{"media", "labels", "comments"}));
    EXPECT_EQ(sketch(at(clips[3], "labels")), "labels(label=Good Take)");
    EXPECT_EQ(sketch(at(clips[3], "comments")), "comments(mastercomment1=windy)");
    expectValid(clips);
}

TEST(MasterClips, EmptyTextsAddNothingAndAbsentFilesStayInTheirPlace)
{
    LogCapture log;
    const PELFileElements files{nullptr, makeFile("A001.mov", cameraMovie("01:00:00:00", 100, 0))};
    const PELElements clips = clipsForFileElements({.fileElements = files});
    ASSERT_EQ(clips.size(), 2u);
    EXPECT_FALSE(clips[0]);
    EXPECT_EQ(keysAt(clips[1], ""),
              (Strings{"name", "duration", "rate", "masterclipid", "ismasterclip", "in", "out", "file"}));
    EXPECT_EQ(log.errors(), Strings{"Parameter must not be NULL: file"});
}

} // namespace
} // namespace zanfcp::test
