#include "tests/cli/Program.h"
#include "tests/mxf/demuxer/DemuxerFile.h"
#include "tests/support/Ffmpeg.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace zanfcp::test {
namespace {

using nlohmann::ordered_json;
using ::testing::HasSubstr;
using ::testing::Not;
using MxfBytes = TamrelMxf::test::Bytes;

std::string write(const TempFolder& folder, std::string_view name, const MxfBytes& bytes)
{
    return folder.write(name, std::string(bytes.begin(), bytes.end()));
}

ordered_json info(const std::string& path)
{
    const Outcome outcome = zanfcp({"mxf", "info", "--json", path});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    return ordered_json::parse(outcome.out);
}

std::vector<std::string> picture(const std::string& size, const std::string& rate, const std::vector<std::string>& more)
{
    return joined({"-f", "lavfi", "-i", "testsrc2=d=1:s=" + size + ":r=" + rate}, more);
}
const std::vector<std::string> kSine = {"-f", "lavfi", "-i", "sine=r=48000:d=1"};

TEST(MxfInfo, SaysHowFfmpegMadeTheFile)
{
    struct Case {
        const char* name;
        std::vector<std::string> arguments;
        ordered_json expected; ///< by JSON pointer
    };
    const Case cases[] = {
        {"MPEG-2 long GOP, interlaced, two sound tracks",
         picture("1920x1080", "25",
                 joined(kSine, {"-map", "0",          "-map",      "1",          "-map",   "1",
                                "-c:v", "mpeg2video", "-pix_fmt",  "yuv422p",    "-flags", "+ilme+ildct",
                                "-top", "1",          "-g",        "12",         "-bf",    "2",
                                "-c:a", "pcm_s24le",  "-timecode", "10:00:00:05"})),
         {{"/operationalPattern/name", "OP1a"},
          {"/status", "closed complete"},
          {"/complete", true},
          {"/start/label", "10:00:00:05"},
          {"/duration/editUnits", 25},
          {"/duration/label", "00:00:01:00"},
          {"/streams/0/codec/code", "mp2v"},
          {"/streams/0/picture/height", 1080},
          {"/streams/0/picture/interlaced", true},
          {"/streams/0/picture/subsampling", "4:2:2"},
          {"/streams/0/wrapping", "frame"},
          {"/streams/2/sound/bits", 24},
          {"/streams/2/sound/sampleRate", 48000.0},
          {"/streams/2/codec/name", "PCM"},
          {"/streams/3", nullptr}}},
        {"AVC, drop-frame",
         picture("1280x720", "30000/1001", {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-timecode", "10:11:12;13"}),
         {{"/start/label", "10:11:12;13"},
          {"/start/dropFrame", true},
          {"/duration/seconds", 1.001},
          {"/streams/0/codec/name", "AVC"},
          {"/streams/0/editRate/den", 1001},
          {"/streams/0/picture/interlaced", false},
          {"/streams/0/picture/subsampling", "4:2:0"}}},
        {"a width between blocks, colours newer than the dictionary",
         picture("1998x1080", "24",
                 {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-color_primaries", "bt2020", "-color_trc", "arib-std-b67",
                  "-colorspace", "bt2020nc"}),
         {{"/streams/0/picture/width", 1998},
          {"/streams/0/picture/stored/width", 2000},
          {"/streams/0/picture/colour/transfer/name", "ITU-R BT.2100 HLG Transfer Characteristic"},
          {"/streams/0/picture/colour/primaries/name", "ITU-R BT.2020 Color Primaries"},
          {"/streams/0/picture/colour/equations/name", "ITU-R BT.2020 Coding Equations"}}},
        {"OP-Atom picture",
         picture(
             "1920x1080", "25",
             {"-c:v", "dnxhd", "-b:v", "120M", "-pix_fmt", "yuv422p", "-timecode", "09:59:50:00", "-f", "mxf_opatom"}),
         {{"/operationalPattern/name", "OP-Atom"},
          {"/muxing", "single stream"},
          {"/start/label", "09:59:50:00"},
          {"/streams/0/codec/name", "VC-3"},
          {"/streams/0/wrapping", "clip"},
          {"/streams/0/picture/displayed/height", 1080}}},
        {"OP-Atom sound",
         joined(kSine, {"-c:a", "pcm_s16le", "-f", "mxf_opatom", "-mxf_audio_edit_rate", "25"}),
         {{"/streams/0/kind", "sound"},
          {"/streams/0/picture", nullptr},
          {"/streams/0/sound/bits", 16},
          {"/duration/seconds", 1.0}}},
    };
    const TempFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string path = folder.file("made.mxf");
        runFfmpeg(joined(c.arguments, {path}));
        const ordered_json facts = info(path);
        for (const auto& [place, value] : c.expected.items()) {
            const ordered_json::json_pointer pointer{place};
            EXPECT_EQ(facts.contains(pointer) ? facts.at(pointer) : ordered_json(nullptr), value) << place;
        }
        const Outcome page = zanfcp({"mxf", "info", path}); // the page tells the same
        EXPECT_EQ(page.status, 0);
        EXPECT_THAT(page.out, HasSubstr(facts["operationalPattern"]["name"].get<std::string>()));
        EXPECT_THAT(page.out, HasSubstr(facts["start"]["label"].get<std::string>() + ", base "));
        EXPECT_THAT(page.out, HasSubstr(facts["streams"][0]["codec"]["name"].get<std::string>()));
    }
}

TEST(MxfInfo, FindsTheSamePartitionsWhateverTheFileHasToFindThemBy)
{
    const TempFolder folder;
    const std::string whole = folder.file("whole.mxf");
    runFfmpeg(picture("320x240", "25", {"-c:v", "mpeg2video", whole}));
    const ordered_json expected = info(whole)["partitions"];
    ASSERT_EQ(expected["way"], "random index pack");
    ASSERT_EQ(expected["entries"].size(), 3U);
    const std::string bytes = readFile(whole);
    constexpr std::size_t kRipSize = 57;

    const ordered_json linked =
        info(folder.write("linked.mxf", bytes.substr(0, bytes.size() - kRipSize)))["partitions"];
    EXPECT_EQ(linked["way"], "links from the footer");
    EXPECT_EQ(linked["whole"], true);
    EXPECT_EQ(linked["entries"], expected["entries"]);

    const auto footer = expected["entries"][2]["offset"].get<std::size_t>();
    for (const std::size_t cut : {footer, footer - 100}) {
        const Outcome outcome = zanfcp({"mxf", "info", "--json", folder.write("walked.mxf", bytes.substr(0, cut))});
        const ordered_json facts = ordered_json::parse(outcome.out);
        EXPECT_EQ(facts["complete"], false);
        EXPECT_EQ(facts["partitions"]["way"], "walk from the start");
        EXPECT_EQ(facts["partitions"]["whole"], cut == footer);
        ASSERT_EQ(facts["partitions"]["entries"].size(), 2U);
        EXPECT_EQ(facts["partitions"]["entries"][1], expected["entries"][1]);
    }
}

/// A camera file with a tape behind it and everything that people attach.
MxfBytes annotatedFile()
{
    using namespace TamrelMxf::test;
    StandardFile file{.materialStart = std::nullopt, .fileStart = std::nullopt, .tapeStart = 100, .tapeClipStart = 25};
    MxfHeader header; // of sets with the same Instance UID the first counts: these hold more than the standard ones
    header.Add(MxfSet("Preface", 1).Refs(0x3B06, {4, 5}).Ref(0x3B03, 2));
    header.Add(MxfSet("ContentStorage", 2).Refs(0x1901, {100, 200, 300, 500}).Refs(0x1902, {3}));
    header.Raw(file.Bytes());
    header.Add(MxfSet("Identification", 5).Text(0x3C01, u"evil\x1B[2J\u202E").Text(0x3C02, u"\xD800 lone"));
    header.Add(
        MxfSet("PackageMarker", 900).Dynamic("06.0E.2B.34.01.01.01.0A.07.02.01.03.01.0E.00.00", BigEndian(12, 8)));
    header.Add(MxfSet("SourcePackage", 500).Package(0x4401, 500).Text(0x4402, u"Log").Refs(0x4403, {510}));
    header.Add(MxfSet("EventTrack", 510).U32(0x4801, 7).Rate(0x4901, 25, 1).Ref(0x4803, 511));
    header.Add(
        MxfSet("DMSegment", 511).Ul(0x0201, kDescriptive).I64(0x0601, 40).Text(0x0602, u"good take").Ref(0x6101, 512));
    header.Add(MxfSet("ClipFramework", 512).Dynamic("06.0E.2B.34.01.01.01.04.01.05.0C.00.00.00.00.00", Hex("413031")));
    return CompleteFile(header.All());
}

TEST(MxfInfo, TellsOfTapesAndShowsNothingThatSteersTheTerminal)
{
    const TempFolder folder;
    const std::string path = write(folder, "tape.mxf", annotatedFile());
    const ordered_json facts = info(path);
    EXPECT_EQ(facts["start"]["from"], "tape or other source package");
    EXPECT_EQ(facts["start"]["label"], "00:00:05:00"); // 100 + 25 frames
    ASSERT_EQ(facts["packages"].size(), 4U);
    EXPECT_EQ(facts["packages"][2]["descriptor"]["physical"]["manufacturer"], "Maker");
    EXPECT_EQ(facts["packages"][1]["tracks"][0]["components"][0]["sourcePackage"], 2);

    const Outcome page = zanfcp({"mxf", "info", path});
    EXPECT_EQ(page.status, 0);
    for (const char* shown :
         {"TapeDescriptor, tape, Maker", "Package markers\n  in 12, ",
          "7      descriptive, event  25         ClipFramework, at 40, good take",
          "Descriptive framework: ClipFramework\n  Place           track 7 of a source package, at 40", "A01"})
        EXPECT_THAT(page.out, HasSubstr(shown));
    EXPECT_THAT(page.out, Not(HasSubstr("\x1B")));
    EXPECT_THAT(page.out, Not(HasSubstr("\u202E")));
}

TEST(MxfInfo, QuietHidesWarningsAndNeverErrors)
{
    const TempFolder folder;
    MxfBytes bytes = annotatedFile();
    const MxfBytes rubbish(100, 'x');
    bytes.insert(bytes.begin(), rubbish.begin(), rubbish.end()); // a run-in, which the library remarks on
    const std::string path = write(folder, "run-in.mxf", bytes);
    const Outcome loud = zanfcp({"mxf", "info", path});
    EXPECT_EQ(loud.status, 0);
    EXPECT_THAT(loud.out, HasSubstr("behind a run-in of 100"));
    EXPECT_THAT(loud.err, HasSubstr("zanfcp: warning: " + path + ": Non-KLV data"));
    EXPECT_EQ(zanfcp({"mxf", "info", "-q", path}).err, "");
    EXPECT_EQ(zanfcp({"-q", "inspect", path}).err, "");

    struct Case {
        std::string path;
        const char* message;
    };
    const Case cases[] = {
        {folder.file("none.mxf"), "no such file"},
        {folder.path().string(), "is a folder"},
        {folder.write("empty.mxf", ""), "is empty"},
        {folder.write("text.mxf", std::string(70'000, 'x')),
         "could not be read as an MXF file\n  parse headers failure"},
    };
    for (const Case& c : cases) {
        const Outcome outcome = zanfcp({"mxf", "info", "--json", "-q", c.path});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr("zanfcp: " + c.path + ": " + c.message));
    }
}

TEST(MxfInfo, NoPrefixAndNoChangedByteBreaksIt)
{
    const TempFolder folder;
    const MxfBytes good = annotatedFile();
    const auto check = [&](const MxfBytes& bytes) {
        const std::string path = write(folder, "bad.mxf", bytes);
        const Outcome outcome = zanfcp({"mxf", "info", path});
        EXPECT_TRUE(outcome.status == 0 || outcome.status == 1) << outcome.err;
        const Outcome dump = zanfcp({"mxf", "dump", path});
        EXPECT_TRUE(dump.status == 0 || dump.status == 1) << dump.err;
    };
    for (std::size_t at = 200; at < good.size(); at += good.size() / 16) {
        check(MxfBytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(at)));
        MxfBytes changed = good;
        changed[at] ^= 0xFF;
        check(changed);
    }
}

TEST(Build, MxfStandsBesideQuickTime)
{
    const TempFolder folder;
    const std::string camera = folder.file("CAM_X.mxf");
    runFfmpeg(joined({"-f", "lavfi", "-i", "testsrc2=d=2:s=1280x720:r=25"},
                     {"-c:v", "mpeg2video", "-timecode", "10:00:00:10", camera}));
    const std::string project = folder.file("show.xml");
    const Outcome outcome =
        zanfcp({"build", camera, sample("CAM_A.mov"), sample("SOUND.mov"), "--sequence", "-o", project, "--validate"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("common span: 10:00:00:10 to 10:00:02:09, 50 frames"));
    EXPECT_THAT(outcome.err, Not(HasSubstr("warning")));
    EXPECT_THAT(readFile(project), HasSubstr("CAM_X.mxf</pathurl>"));
}

TEST(Inspect, TellsWhatAnMxfPictureReallyIs)
{
    const TempFolder folder;
    const std::string path = folder.file("a.mxf");
    runFfmpeg(picture("1280x720", "25", {"-c:v", "libx264", "-pix_fmt", "yuv420p", path}));
    const Outcome table = zanfcp({"inspect", path});
    EXPECT_EQ(table.err, "");
    EXPECT_THAT(table.out, HasSubstr("AVC (avc1)"));
}

} // namespace
} // namespace zanfcp::test
