#include "media/PELFileElement.h"

#include "media/ZANFCPAdditions.h"
#include "tests/support/ElementLookup.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Recording.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <limits>

namespace zanfcp {
namespace {

using test::makeFile;
using test::outline;
using test::outlineAt;
using test::Strings;
using test::textAt;

constexpr NSInteger kLeast = std::numeric_limits<NSInteger>::min();

TEST(FileElement, WritesAllThatAMovieHolds)
{
    PELMovieProperties movie = test::cameraMovie("01:00:08:00", 900, 3);
    movie.audioChannelCount = 6;
    const auto file = makeFile("Größe & Co #1.mov", movie);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->identifier(), "Größe & Co #1.mov File");
    EXPECT_EQ(file->name(), "Größe & Co #1.mov");
    EXPECT_EQ(file->movieProperties(), movie);
    EXPECT_EQ(outline(file), (Strings{"name=Größe & Co #1.mov",
                                      "pathurl=file:///Volumes/Show%2012/Gr%C3%B6%C3%9Fe%20&%20Co%20%231.mov", "rate",
                                      "duration=900", "timecode", "media"}));
    EXPECT_EQ(outlineAt(file, "timecode"),
              (Strings{"rate", "frame=90200", "displayformat=NDF", "source=source", "reel"}));
    EXPECT_EQ(textAt(file, "timecode/reel/name"), "A001");
    EXPECT_EQ(outlineAt(file, "media"), (Strings{"video", "audio", "audio", "audio"}));
    EXPECT_EQ(outlineAt(file, "media/video"), (Strings{"duration=900", "samplecharacteristics"}));
    EXPECT_EQ(outline(file->sampleCharacteristics()),
              (Strings{"width=1920", "height=1080", "anamorphic=FALSE", "pixelaspectratio=square",
                       "fielddominance=none", "rate"}));
    EXPECT_EQ(textAt(file, "media/audio/samplecharacteristics/samplerate"), "48000");
    EXPECT_EQ(textAt(file, "media/audio/samplecharacteristics/depth"), "24");
    EXPECT_EQ(textAt(file, "media/audio/channelcount"), "2");
    test::expectValid({file}, "clip");
}

TEST(FileElement, LeavesOutWhatAMovieDoesNotHold)
{
    struct Case {
        const char* name;
        void (*change)(PELMovieProperties&);
        Strings children;
        Strings media;
    };
    const Case cases[] = {
        {"no picture", [](PELMovieProperties& m) { m.hasVideo = false; }, {"timecode", "media"}, {"audio"}},
        {"no timecode", [](PELMovieProperties& m) { m.hasTimecode = false; }, {"media"}, {"video", "audio"}},
        {"no sound", [](PELMovieProperties& m) { m.hasAudio = false; }, {"timecode", "media"}, {"video"}},
        {"sound without tracks",
         [](PELMovieProperties& m) { m.audioTrackCount = 0; },
         {"timecode", "media"},
         {"video"}},
        {"sound without channels",
         [](PELMovieProperties& m) { m.audioChannelCount = 0; },
         {"timecode", "media"},
         {"video"}},
        {"nothing", [](PELMovieProperties& m) { m = {}; }, {"media"}, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PELMovieProperties movie = test::cameraMovie("01:00:00:00", 10, 1);
        c.change(movie);
        const auto file = makeFile("A.mov", movie);
        ASSERT_TRUE(file);
        Strings children = outline(file);
        ASSERT_GT(children.size(), 4u); // name, pathurl, rate and duration are always there
        children.erase(children.begin(), children.begin() + 4);
        EXPECT_EQ(children, c.children);
        EXPECT_EQ(outlineAt(file, "media"), c.media);
        EXPECT_EQ(file->sampleCharacteristics() != nullptr, movie.hasVideo);
        test::expectValid({file}, "clip");
    }
}

TEST(FileElement, UndefinedDurationAndEmptyURLAreRefused)
{
    test::LogCapture log;
    PELMovieProperties endless;
    endless.duration = NSNotFound;
    EXPECT_FALSE(makeFile("A.mov", endless));
    EXPECT_FALSE(PELFileElement::fileElementWithURLMovieProperties(FileURL{}, {}));
    EXPECT_EQ(log.errors(), (Strings{"Parameter must not be undefined: duration",
                                     "One of two parameters must not be nil or have zero length: name, pathurl"}));
}

TEST(FileElement, ReelThatFillsItsFieldIsReadToItsEnd)
{
    PELMovieProperties movie = test::cameraMovie("01:00:00:00", 10, 0);
    movie.reel.fill('R'); // no terminating NUL
    EXPECT_EQ(textAt(makeFile("A.mov", movie), "timecode/reel/name"), std::string(256, 'R'));
}

TEST(FileElement, MissingFilesAreLeftOutAndNamed)
{
    const test::TempFolder folder;
    const auto url = [&](const char* name) { return FileURL::fileURLWithPath(folder.file(name)); };
    folder.write("a.txt", "not a movie");
    folder.write("c.MOV", "not read either: capitals");
    test::LogCapture log;
    const PELFileElements files =
        PELFileElement::fileElementsWithURLs({url("a.txt"), url("b b.mov"), url("c.MOV")}, {});
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0]->name(), "a.txt");
    EXPECT_EQ(files[1]->name(), "c.MOV");
    EXPECT_EQ(log.texts(LogLevel::normal),
              Strings{"PELFileElement: File not found: " + url("b b.mov").absoluteString()});
    EXPECT_EQ(log.errors(), Strings{});

    // Files of an unknown type are there all the same, without anything read from them.
    EXPECT_EQ(files[0]->movieProperties(), PELMovieProperties{});
    EXPECT_EQ(textAt(files[0], "duration"), "0");
    EXPECT_EQ(files[0]->offset(), 0);
    EXPECT_TRUE(PELFileElement::fileElementsWithURLs({}, {}).empty());
}

TEST(FileElement, CopyIsAReferenceOfThePlainClass)
{
    const auto file = makeFile("A001.mov", test::cameraMovie("01:00:00:00", 100, 2));
    const auto copy = file->copy();
    EXPECT_EQ(std::dynamic_pointer_cast<PELFileElement>(copy), nullptr);
    EXPECT_EQ(copy->key(), "file");
    EXPECT_EQ(copy->identifier(), "A001.mov File");
    EXPECT_TRUE(copy->canHaveChildren());
    EXPECT_EQ(copy->children(), nullptr);
}

TEST(FileElement, ChildrenMadeByKeyAreOfItsClass)
{
    const auto file = PELFileElement::elementWithKey("file");
    EXPECT_TRUE(std::dynamic_pointer_cast<PELFileElement>(file->addChildWithKey("name", std::string("A"))));
}

TEST(FileElement, DescriptionAddsNameOffsetDelayAndProperties)
{
    const auto file = makeFile("A001.mov", test::emptyMovie(1000, 100));
    file->setOffset(-5);
    file->setMediaDelay(7);
    const std::string text = file->description();
    EXPECT_EQ(text.rfind("<PELFileElement: 0x", 0), 0u) << text;
    const std::string end =
        " identifier: \"A001.mov File\" name: A001.mov, offset: -5, mediaDelay: 7, movieProperties: " +
        NSStringFromPELMovieProperties(file->movieProperties());
    ASSERT_GT(text.size(), end.size());
    EXPECT_EQ(text.substr(text.size() - end.size()), end);
}

TEST(FileElement, SampleRecordingIsReadAndLinedUp)
{
    std::vector<FileURL> urls;
    for (const char* name : {"CAM_A.mov", "CAM_B.mov", "CAM_C.mov", "SOUND.mov"})
        urls.push_back(FileURL::fileURLWithPath(std::string(ZANFCP_SAMPLES_FOLDER "/") + name));
    const PELFileElements files = PELFileElement::fileElementsWithURLs(urls, {{PELMeasureSoundFiles, true}});
    ASSERT_EQ(files.size(), 4u);
    struct Case { // as samples/make_samples.sh has it
        const char *name, *start, *reel;
        NSInteger duration, offset;
        Strings media;
    };
    const Case cases[] = {
        {"CAM_A.mov", "10:00:00:05", "A001", 100, 5, {"video", "audio"}},
        {"CAM_B.mov", "10:00:00:10", "B001", 85, 0, {"video", "audio"}},
        {"CAM_C.mov", "10:00:00:00", "C001", 95, 10, {"video", "audio"}},
        {"SOUND.mov", "10:00:00:00", "SND1", 100, 10, {"audio", "audio"}},
    };
    for (std::size_t i = 0; i < files.size(); ++i) {
        SCOPED_TRACE(cases[i].name);
        EXPECT_EQ(files[i]->name(), cases[i].name);
        EXPECT_STREQ(files[i]->movieProperties().timecode.string.data(), cases[i].start);
        EXPECT_EQ(textAt(files[i], "timecode/reel/name"), cases[i].reel);
        EXPECT_EQ(textAt(files[i], "duration"), std::to_string(cases[i].duration));
        EXPECT_EQ(files[i]->offset(), cases[i].offset);
        EXPECT_EQ(outlineAt(files[i], "media"), cases[i].media);
        test::expectValid({files[i]}, "clip");
    }
    EXPECT_EQ(PELGetSequenceDurationForFileElements(files), 85); // 10:00:00:10 to the last frame of B and C
    EXPECT_EQ(PELGetMulticlipDurationOfFileElements(files), 105);
}

struct Span {
    NSInteger start;
    NSInteger duration;
};

PELFileElements filesOf(const std::vector<Span>& spans)
{
    PELFileElements files;
    for (const Span& span : spans)
        files.push_back(makeFile("F" + std::to_string(files.size()), test::emptyMovie(span.start, span.duration)));
    return files;
}

TEST(FileTiming, CommonAndWholeSpan)
{
    struct Case {
        const char* name;
        std::vector<Span> files;
        NSInteger firstCommon, lastCommon, first, last, multiclip, sequence;
    };
    const Case cases[] = {
        {"no files", {}, 0, -1, 0, -1, 0, 0},
        {"one file", {{1000, 100}}, 1000, 1099, 1000, 1099, 100, 100},
        {"three that overlap", {{1000, 500}, {1200, 500}, {1100, 500}}, 1200, 1499, 1000, 1699, 700, 300},
        {"no overlap", {{1000, 100}, {1200, 50}}, 1200, 1099, 1000, 1249, 250, -100},
        {"one without length", {{1000, 100}, {1050, 0}}, 1050, 1049, 1000, 1099, 100, 0},
        {"frames above 63 bits are negative", {{-10, 5}, {10, 5}}, 10, -6, -10, 14, 25, -15},
        {"sums wrap", {{NSIntegerMax, 2}, {kLeast, kLeast}}, NSIntegerMax, kLeast, kLeast, -1, kLeast, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const PELFileElements files = filesOf(c.files);
        EXPECT_EQ(static_cast<NSInteger>(PELGetFirstCommonTimecodeOfFileElements(files).frames), c.firstCommon);
        EXPECT_EQ(PELGetLastCommonFrameOfFileElements(files), c.lastCommon);
        EXPECT_EQ(static_cast<NSInteger>(PELGetFirstTimecodeOfFiles(files).frames), c.first);
        EXPECT_EQ(PELGetLastTimecodeAsFramesOfFiles(files), c.last);
        EXPECT_EQ(PELGetMulticlipDurationOfFileElements(files), c.multiclip);
        EXPECT_EQ(PELGetSequenceDurationForFileElements(files), c.sequence);
    }
}

TEST(FileTiming, AbsentFilesCountAsAllZero)
{
    PELFileElements files = filesOf({{1000, 100}});
    files.insert(files.begin(), nullptr);
    EXPECT_EQ(PELGetFirstCommonTimecodeOfFileElements(files).frames, 1000u);
    EXPECT_EQ(PELGetFirstTimecodeOfFiles(files), PELTimecode{});
    EXPECT_EQ(PELGetLastCommonFrameOfFileElements(files), -1);
    EXPECT_EQ(PELGetLastTimecodeAsFramesOfFiles(files), 1099);
    EXPECT_EQ(PELGetIndexOfFileWithMostSoundTracks(files), 0);
    PELFileElement::calculateOffsetsForFiles(files);
    PELFileElement::calculateMediaDelaysForFiles(files);
    EXPECT_EQ(PELFileElement::highestOffsetOfFiles(files), 0);
}

TEST(FileTiming, EarlierOfTwoEqualStartsGivesTheWholeTimecode)
{
    PELFileElements files = filesOf({{1000, 10}, {1200, 10}, {1200, 10}, {1000, 10}});
    const auto setText = [&](std::size_t index, std::string_view text, NSInteger timebase) {
        PELMovieProperties properties = files[index]->movieProperties();
        test::setField(properties.timecode.string, text);
        properties.timecode.rate = {timebase, true};
        files[index]->setMovieProperties(properties);
    };
    setText(0, "first", 24);
    setText(1, "second", 30);
    setText(2, "third", 50);
    setText(3, "fourth", 60);
    EXPECT_EQ(PELGetFirstCommonTimecodeOfFileElements(files), files[1]->movieProperties().timecode);
    EXPECT_EQ(PELGetFirstTimecodeOfFiles(files), files[0]->movieProperties().timecode);
}

TEST(FileTiming, OffsetsReachTheLatestStart)
{
    const PELFileElements files = filesOf({{1000, 10}, {1200, 10}, {1100, 10}});
    for (const auto& file : files)
        file->setMediaDelay(99);
    PELFileElement::calculateOffsetsForFiles(files);
    PELFileElement::calculateMediaDelaysForFiles(files);
    const NSInteger expected[] = {200, 0, 100};
    for (std::size_t i = 0; i < files.size(); ++i) {
        EXPECT_EQ(files[i]->offset(), expected[i]) << i;
        EXPECT_EQ(files[i]->mediaDelay(), 0) << i;
    }
    EXPECT_EQ(PELFileElement::highestOffsetOfFiles(files), 200);
}

TEST(FileTiming, HighestOffsetIsUndefinedWithoutOneAboveMinusOne)
{
    const PELFileElements files = filesOf({{0, 0}, {0, 0}});
    struct Case {
        NSInteger first, second, expected;
    };
    for (const Case& c : {Case{0, -1, 0}, Case{-1, -1, NSIntegerMax}, Case{-2, kLeast, NSIntegerMax}, Case{3, 7, 7}}) {
        files[0]->setOffset(c.first);
        files[1]->setOffset(c.second);
        EXPECT_EQ(PELFileElement::highestOffsetOfFiles(files), c.expected) << c.first << " and " << c.second;
    }
    EXPECT_EQ(PELFileElement::highestOffsetOfFiles({}), NSIntegerMax);
}

TEST(FileTiming, FirstFileWithMostSoundTracks)
{
    struct Case {
        std::vector<std::uint64_t> tracks;
        NSInteger expected;
    };
    for (const Case& c :
         {Case{{}, -1}, Case{{0}, 0}, Case{{2, 4, 4}, 1}, Case{{0, 0}, 0}, Case{{8, 4}, 0}, Case{{1, 2, 3}, 2}}) {
        PELFileElements files;
        for (const std::uint64_t tracks : c.tracks)
            files.push_back(makeFile("F", test::soundMovie("00:00:00:00", 1, tracks)));
        EXPECT_EQ(PELGetIndexOfFileWithMostSoundTracks(files), c.expected) << c.tracks.size() << " files";
    }
}

TEST(FourCharCode, IsAlwaysFourCharacters)
{
    using ZANFCPAdditions::stringWithFourCharCode;
    EXPECT_EQ(stringWithFourCharCode(FourCC{"avc1"}), "avc1");
    EXPECT_EQ(stringWithFourCharCode(FourCC{0x64766320}), "dvc ");
    EXPECT_EQ(stringWithFourCharCode(FourCC{}), std::string(4, '\0'));
    EXPECT_EQ(stringWithFourCharCode(FourCC{0x61FF7A80}), "a\uFFFDz\uFFFD");
}

} // namespace
} // namespace zanfcp
