#include "tests/cli/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

namespace zanfcp::test {
namespace {

using nlohmann::ordered_json;
using ::testing::HasSubstr;
using ::testing::Not;

std::vector<ordered_json> jsonLines(const std::string& text)
{
    std::vector<ordered_json> lines;
    std::istringstream stream{text};
    for (std::string line; std::getline(stream, line);)
        lines.push_back(ordered_json::parse(line));
    return lines;
}

TEST(Inspect, JsonHasTheFieldsOfTheRecordByTheirNames)
{
    const Outcome outcome = zanfcp({"inspect", "--json", sample("CAM_A.mov")});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    // As make_samples.sh made it; the codec's own texts are the encoder's.
    ordered_json expected = ordered_json::parse(R"({
        "schemaVersion": 1, "path": "", "status": 0, "codec": "", "hasVideo": true, "width": 1280, "height": 720,
        "pixelAspectRatio": "square", "anamorphic": false, "duration": 100,
        "videoCodec": {"name": "", "typeName": "", "typeCode": "avc1", "vendorCode": "", "spatialQuality": 512,
                       "temporalQuality": 512, "keyframeRate": 0, "dataRate": 0, "fieldDominance": "none"},
        "hasAudio": true, "audioSampleRate": 48000, "audioBitDepth": 0, "audioTrackCount": 1,
        "audioChannelCount": 1, "hasTimecode": true,
        "timecode": {"kind": 1, "rate": {"timebase": 25, "isNTSC": false}, "frames": 900005, "hasDropframe": false,
                     "string": "10:00:00:05"},
        "reel": "A001", "missingBytes": 0, "nominalFrameRate": 25.0})");
    const std::vector<ordered_json> lines = jsonLines(outcome.out);
    ASSERT_EQ(lines.size(), 1U);
    expected["path"] = sample("CAM_A.mov");
    for (const char* key : {"name", "typeName", "vendorCode"}) {
        EXPECT_TRUE(lines[0]["videoCodec"][key].is_string());
        expected["videoCodec"][key] = lines[0]["videoCodec"][key];
    }
    expected["codec"] = lines[0]["videoCodec"]["name"].get<std::string>() + " (avc1)";
    EXPECT_EQ(lines[0].dump(1), expected.dump(1));
}

TEST(Inspect, AFileThatCannotBeReadKeepsAllKeysAndFailsTheRun)
{
    const TempFolder folder;
    const std::string text = folder.write("notes.txt", "no movie");
    const std::string broken = folder.write("broken.mov", std::string(100, 'x'));
    const std::string capitals = writeCamera(folder, "A.MOV", {});
    const std::string good = writeCamera(folder, "good.mov", {});
    const Outcome outcome =
        zanfcp({"inspect", "--json", folder.file("none.mov"), text, broken, capitals, folder.path().string(), good});
    EXPECT_EQ(outcome.status, 1);
    const auto lines = jsonLines(outcome.out);
    ASSERT_EQ(lines.size(), 6U);
    for (std::size_t i = 0; i < 6; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(lines[i]["status"], i == 5 ? 0 : -38);
        ASSERT_EQ(lines[i].size(), lines[5].size());
        for (const auto& [key, value] : lines[5].items())
            EXPECT_STREQ(lines[i][key].type_name(), value.type_name()) << key;
    }
    EXPECT_THAT(outcome.err, HasSubstr("none.mov: no such file"));
    EXPECT_THAT(outcome.err, HasSubstr("notes.txt: unknown type: .txt"));
    EXPECT_THAT(outcome.err, HasSubstr("broken.mov: could not be read"));
    EXPECT_THAT(outcome.err, HasSubstr("A.MOV: unknown type: the extension must be in lower case, .mov"));
    EXPECT_THAT(outcome.err, HasSubstr("is a folder"));
}

TEST(Inspect, APipeIsRefusedAndDoesNotBlock)
{
    const TempFolder folder;
    const Outcome outcome = shell("cd '" + folder.path().string() + "' && mkfifo x.mov && $ZANFCP inspect x.mov");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("x.mov: is no regular file"));
}

TEST(Inspect, TheTableShowsWhatAPersonAsksFor)
{
    const TempFolder folder;
    const std::string camera = writeCamera(folder, "CAM.mov", {.start = 1800, .timebase = 30, .ntsc = true});
    const Outcome outcome = zanfcp({"inspect", camera, sample("SOUND.mov")});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    for (const char* shown : {"FILE", "1920x1080", "29.97 DF", "00:01:00;02", "H.264 (avc1)", "SND1"})
        EXPECT_THAT(outcome.out, HasSubstr(shown));
    EXPECT_THAT(outcome.out, HasSubstr("00:00:04:00  100")); // the sound file is measured
    EXPECT_EQ(outcome.err, "");
}

TEST(Inspect, TimecodeThatCountsOtherFramesThanThePicturesIsWarnedOf)
{
    const TempFolder folder;
    const auto make = [&](const char* name, const char* rate, const char* start, const char* more = "") {
        ASSERT_EQ(shell("cd '" + folder.path().string() + "' && ffmpeg -v error -f lavfi -i testsrc2=s=64x64:r=" +
                        rate + ":d=1 -c:v mpeg2video " + more + " -timecode '" + start + "' " + name)
                      .status,
                  0);
    };
    make("ndf.mov", "30000/1001", "01:00:00:00");
    make("ndf.mxf", "30000/1001", "01:00:00:00", "-g 1");
    make("df.mov", "30000/1001", "01:00:00;00");
    make("df.mxf", "30000/1001", "01:00:00;00", "-g 1");
    make("film.mov", "24000/1001", "01:00:00:00");
    const Outcome outcome =
        shell("cd '" + folder.path().string() + "' && $ZANFCP inspect df.mov df.mxf film.mov ndf.mov ndf.mxf");
    const auto line = [](const std::string& file) {
        return "zanfcp: warning: " + file +
               " shows 29.97 pictures a second, but its timecode counts 30, and the project takes it for that\n";
    };
    EXPECT_EQ(outcome.err, line("ndf.mov") + line("ndf.mxf"));
    const Outcome json = shell("cd '" + folder.path().string() + "' && $ZANFCP inspect --json film.mov ndf.mxf");
    EXPECT_EQ(jsonLines(json.out).at(0)["nominalFrameRate"], 23.976);
    EXPECT_EQ(jsonLines(json.out).at(1)["nominalFrameRate"], 29.97);
}

TEST(Inspect, CutFilesAndRatesWithoutTimecodeAreWarnedOf)
{
    const TempFolder folder;
    ASSERT_EQ(shell("cd '" + folder.path().string() +
                    "' && for m in fast.mov frag.mov; do ffmpeg -v error -f lavfi -i " +
                    "testsrc2=s=64x64:r=12:d=1 -c:v mjpeg -g 1 -pix_fmt yuvj420p -movflags $([ $m = fast.mov ] && " +
                    "echo +faststart || echo +frag_every_frame) $m && head -c -100 $m >cut_$m; done")
                  .status,
              0);
    const Outcome whole = zanfcp({"inspect", "--json", folder.file("fast.mov"), folder.file("frag.mov")});
    const Outcome cut = zanfcp({"inspect", "--json", folder.file("cut_fast.mov"), folder.file("cut_frag.mov")});
    EXPECT_EQ(whole.status + cut.status, 0);
    ASSERT_EQ(jsonLines(whole.out).size() + jsonLines(cut.out).size(), 4U);
    for (const std::size_t i : {0U, 1U})
        EXPECT_EQ(jsonLines(whole.out)[i]["missingBytes"], 0);
    EXPECT_EQ(jsonLines(cut.out)[0]["missingBytes"], 100);
    const Outcome table = zanfcp({"inspect", folder.file("cut_fast.mov")});
    EXPECT_THAT(table.err, HasSubstr("cut_fast.mov is cut short: 100 bytes are missing at its end"));
    EXPECT_THAT(table.err, HasSubstr("rate of 12 frames a second, which timecode does not know"));
}

TEST(Inspect, InterlacedIsPassedOn)
{
    const Outcome outcome = zanfcp({"inspect", "--json", "--interlaced", sample("CAM_A.mov")});
    ASSERT_EQ(outcome.status, 0);
    EXPECT_EQ(jsonLines(outcome.out).at(0)["videoCodec"]["fieldDominance"], "upper");
}

TEST(Inspect, NamesThatAreNoTextNeitherBreakTheJsonNorSteerTheTerminal)
{
    const TempFolder folder;
    const std::string path = writeCamera(folder, "a\x1B[31m\n\xFF.mov", {});
    const Outcome json = zanfcp({"inspect", "--json", path});
    EXPECT_EQ(json.status, 0);
    ASSERT_EQ(jsonLines(json.out).size(), 1U);
    EXPECT_THAT(jsonLines(json.out)[0]["path"].get<std::string>(), HasSubstr("a\x1B[31m\n\uFFFD.mov"));

    const Outcome table = zanfcp({"inspect", path});
    EXPECT_EQ(table.status, 0);
    EXPECT_THAT(table.out, HasSubstr("a\\x1B[31m\\x0A\\xFF.mov"));
    EXPECT_THAT(table.out, Not(HasSubstr("\x1B")));
}

} // namespace
} // namespace zanfcp::test
