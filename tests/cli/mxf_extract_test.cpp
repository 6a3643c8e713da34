#include "tests/cli/Program.h"
#include "tests/support/Ffmpeg.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

namespace zanfcp::test {
namespace {

using nlohmann::ordered_json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr const char* kPictures = "-f lavfi -i testsrc2=s=320x240:r=25";
constexpr const char* kTone = "-f lavfi -i sine=sample_rate=48000";

/// Runs ffmpeg with blank-separated arguments and returns the path of what it made.
std::string make(const TempFolder& folder, const std::string& name, const std::string& arguments)
{
    std::istringstream words{arguments};
    std::vector<std::string> list{std::istream_iterator<std::string>{words}, {}};
    list.push_back(folder.file(name));
    runFfmpeg(list);
    return folder.file(name);
}

/// Two seconds of long-GOP MPEG-2 with B pictures, and two tracks of sound.
std::string makeLongGop(const TempFolder& folder)
{
    return make(folder, "long.mxf",
                std::string(kPictures) + " " + kTone + " " + kTone +
                    " -t 2 -map 0 -map 1 -map 2 -c:v mpeg2video -bf 2 -g 12 -c:a:0 pcm_s16le -c:a:1 pcm_s24le "
                    "-timecode 10:00:00:00 -f mxf");
}

/// What ffmpeg copies of a stream.
std::string copied(const TempFolder& folder, const std::string& path, std::size_t stream)
{
    runFfmpeg({"-i", path, "-map", "0:" + std::to_string(stream), "-c", "copy", "-copyinkf", "-f", "data",
               folder.file("copied")});
    return readFile(folder.file("copied"));
}

std::string extracted(const TempFolder& folder, const std::string& path, const std::vector<std::string>& options,
                      const std::string& name = "out.raw")
{
    const Outcome outcome = zanfcp(joined({"mxf", "extract", "-q", path, "-o", folder.file(name)}, options));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    return outcome.status == 0 ? readFile(folder.file(name)) : "failed";
}

std::vector<ordered_json> samplesOf(const std::string& path, int stream)
{
    const Outcome outcome = zanfcp({"mxf", "samples", "--json", "--stream", std::to_string(stream), path});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    std::vector<ordered_json> samples;
    std::istringstream lines{outcome.out};
    for (std::string line; std::getline(lines, line);)
        samples.push_back(ordered_json::parse(line));
    return samples;
}

/// The bytes of the samples that `isWanted` picks, as they lie in the file.
template <typename Pick> std::string bytesOf(const std::string& path, int stream, Pick isWanted)
{
    const std::string file = readFile(path);
    std::string bytes;
    for (const ordered_json& sample : samplesOf(path, stream))
        if (isWanted(sample))
            bytes += file.substr(sample["offset"].get<std::size_t>(), sample["size"].get<std::size_t>());
    return bytes;
}

TEST(MxfExtract, EveryStreamIsWhatFfmpegCopies)
{
    struct Case {
        const char* name;
        std::string arguments;
        bool canBePushed;
    };
    const std::string picture = kPictures;
    const std::string sound = std::string(" ") + kTone;
    const Case cases[] = {
        {"long-GOP MPEG-2 and two sound tracks",
         picture + sound + sound +
             " -t 1 -map 0 -map 1 -map 2 -c:v mpeg2video -bf 2 -g 12 -c:a:0 pcm_s16le "
             "-c:a:1 pcm_s24le -f mxf",
         true},
        {"AVC", picture + sound + " -t 1 -c:v libx264 -preset ultrafast -bf 2 -c:a pcm_s16le -f mxf", true},
        {"VC-3", "-f lavfi -i testsrc2=s=1920x1080:r=25 -t 0.12 -c:v dnxhd -b:v 120M -pix_fmt yuv422p -f mxf", true},
        {"ProRes", picture + " -t 0.4 -c:v prores -profile:v 3 -f mxf", true},
        {"JPEG 2000", picture + " -t 0.4 -c:v jpeg2000 -f mxf", true},
        {"D-10",
         "-f lavfi -i testsrc2=s=720x608:r=25" + sound +
             " -t 0.4 -ac 4 -c:v mpeg2video -pix_fmt yuv422p -b:v 30000k -minrate 30000k -maxrate 30000k -bufsize "
             "1200000 -rc_init_occupancy 1200000 -intra_vlc 1 -non_linear_quant 1 -qmin 1 -qmax 12 -g 0 -ps 1 -dc 10 "
             "-flags +ildct+low_delay -top 1 -c:a pcm_s16le -f mxf_d10",
         true},
        {"29.97 sound",
         "-f lavfi -i testsrc2=s=320x240:r=30000/1001" + sound + " -t 1 -c:v mpeg2video -c:a pcm_s16le -f mxf", true},
        {"OP-Atom picture",
         "-f lavfi -i testsrc2=s=1920x1080:r=25 -t 0.12 -c:v dnxhd -b:v 120M -pix_fmt yuv422p -f mxf_opatom", false},
        {"OP-Atom sound", std::string(kTone) + " -t 1 -c:a pcm_s24le -f mxf_opatom", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const TempFolder folder;
        const std::string path = make(folder, "a.mxf", c.arguments);
        const auto facts = probe(path);
        const std::size_t count = std::stoul(facts.at("format.nb_streams"));
        ASSERT_GT(count, 0U);
        for (std::size_t stream = 0; stream < count; ++stream) {
            SCOPED_TRACE(stream);
            const std::string expected = copied(folder, path, stream);
            ASSERT_THAT(expected, Not(IsEmpty()));
            const std::string number = std::to_string(stream);
            EXPECT_TRUE(extracted(folder, path, {"--stream", number}) == expected);
            const Outcome pushed =
                shell("cat " + path + " | $ZANFCP mxf stream - --stream " + number + " -o " + folder.file("pushed"));
            EXPECT_EQ(pushed.status, c.canBePushed ? 0 : 1) << pushed.err;
            if (c.canBePushed) {
                EXPECT_TRUE(readFile(folder.file("pushed")) == expected);
            } else {
                EXPECT_THAT(pushed.err, HasSubstr("Unsupported Op pattern!"));
            }
        }
    }
}

TEST(MxfExtract, SoundBecomesAWavFileThatOthersRead)
{
    const TempFolder folder;
    const std::string path = makeLongGop(folder);
    struct Case {
        const char* stream;
        const char* codec;
        std::size_t header;
    };
    for (const Case& c : {Case{"1", "pcm_s16le", 80}, Case{"2", "pcm_s24le", 104}}) {
        const std::string raw = extracted(folder, path, {"--stream", c.stream});
        const std::string wav = extracted(folder, path, {"--stream", c.stream}, "out.WAV");
        EXPECT_TRUE(wav.substr(c.header) == raw);
        auto facts = probe(folder.file("out.WAV"));
        EXPECT_EQ(facts["streams.stream.0.codec_name"], c.codec);
        EXPECT_EQ(facts["streams.stream.0.sample_rate"], "48000");
        EXPECT_EQ(facts["format.duration"], "2.000000");
        EXPECT_EQ(extracted(folder, path, {"--stream", c.stream, "--format", "raw"}, "raw.wav"), raw);

        // A pipe cannot be rewound: programs read on to its end. A file behind standard output can.
        const std::string line = "$ZANFCP mxf extract -q " + path + " --format wav -o - --stream " + c.stream;
        EXPECT_EQ(shell(line + " > " + folder.file("redirected.wav")).status, 0);
        EXPECT_TRUE(readFile(folder.file("redirected.wav")) == wav);
        EXPECT_EQ(shell(line + " | cat > " + folder.file("piped.wav")).status, 0);
        const std::string piped = readFile(folder.file("piped.wav"));
        EXPECT_TRUE(piped.substr(c.header) == raw);
        EXPECT_EQ(piped.substr(4, 4), "\xFF\xFF\xFF\xFF");
        EXPECT_EQ(piped.substr(c.header - 4, 4), "\xFF\xFF\xFF\xFF");
    }
}

TEST(MxfExtract, RangesAreSlices)
{
    const TempFolder folder;
    const std::string path = makeLongGop(folder);
    constexpr std::size_t kFrame = 1920 * 2;
    const std::string raw = extracted(folder, path, {"--stream", "1"});
    struct Case {
        std::vector<std::string> options;
        std::size_t from, to; ///< frames
    };
    const Case cases[] = {
        {{"--from", "10:00:00:10", "--to", "10:00:01:00"}, 10, 25},
        {{"--from", "10:00:01:24"}, 49, 50},
        {{"--to", "900001"}, 0, 1},
        {{"--from", "+5", "--to", "+00:00:00:07"}, 5, 7},
        {{"--from", "+0", "--to", "10:00:02:00"}, 0, 50},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.options.back());
        EXPECT_TRUE(extracted(folder, path, joined(c.options, {"--stream", "1"})) ==
                    raw.substr(c.from * kFrame, (c.to - c.from) * kFrame));
    }

    // Pictures: exactly those of the range, or the run of stored ones that they are decoded from.
    const std::vector<std::string> range = {"--stream", "0", "--from", "+20", "--to", "+32"};
    const auto isIn = [](const ordered_json& sample) { return sample["pts"] >= 20 && sample["pts"] < 32; };
    std::int64_t key = 0, last = 0;
    for (const ordered_json& sample : samplesOf(path, 0)) {
        if (sample["key"] && sample["pts"] <= 20) key = sample["editUnit"];
        if (isIn(sample)) last = sample["editUnit"];
    }
    EXPECT_TRUE(extracted(folder, path, joined(range, {"--exact"})) == bytesOf(path, 0, isIn));
    EXPECT_TRUE(extracted(folder, path, range) == bytesOf(path, 0, [key, last](const ordered_json& sample) {
                    return sample["editUnit"] >= key && sample["editUnit"] <= last;
                }));
}

TEST(MxfExtract, DropFrameLabelsAndClipsOfSound)
{
    const TempFolder folder;
    const std::string path = make(folder, "df.mxf",
                                  "-f lavfi -i testsrc2=s=320x240:r=30000/1001 -t 4 -c:v mpeg2video -g 1 -timecode "
                                  "00:58:58;00 -f mxf");
    // Label 00:59:00;02 follows 00:58:59;29.
    const std::string one = extracted(folder, path, {"--stream", "0", "--from", "00:58:59;29", "--to", "00:59:00;02"});
    EXPECT_TRUE(one == bytesOf(path, 0, [](const ordered_json& sample) { return sample["pts"] == 59; }));
    EXPECT_THAT(zanfcp({"mxf", "extract", path, "--stream", "0", "--to", "00:59:00;00", "-o", "x"}).err,
                HasSubstr("skipped at the start of every minute"));

    const std::string atom =
        make(folder, "atom.mxf", std::string(kTone) + " -t 1 -c:a pcm_s24le -timecode 10:00:00:00 -f mxf_opatom");
    const std::string raw = extracted(folder, atom, {"--stream", "0"});
    EXPECT_TRUE(extracted(folder, atom, {"--stream", "0", "--from", "+3", "--to", "+5"}) ==
                raw.substr(3 * 1920 * 3, 2 * 1920 * 3));
}

TEST(MxfExtract, RefusalsSayWhatThereIsAndLeaveNothing)
{
    const TempFolder folder;
    const std::string path = makeLongGop(folder);
    const std::string out = folder.file("out.wav");
    struct Case {
        std::vector<std::string> options;
        const char* message;
    };
    const Case cases[] = {
        {{"--stream", "3"}, "there is no stream 3; it has:\nSTREAM  KIND     CODEC"},
        {{"--stream", "0"}, "stream 0 is MPEG-2 MP@ML: only PCM and A-law go into a WAV file"},
        {{"--stream", "1", "--from", "09:59:59:24"},
         "--from 09:59:59:24: lies outside of the clip, which goes from 10:00:00:00 to 10:00:02:00 (50 frames)"},
        {{"--stream", "1", "--from", "10:00:02:00"}, "is the end of the clip"},
        {{"--stream", "1", "--to", "10:00:02:01"}, "lies outside of the clip"},
        {{"--stream", "1", "--from", "+9", "--to", "+9"}, "must lie behind --from +9; the frame at --to is left out"},
        {{"--stream", "1", "--to", "10:00:00:25"}, "frames end at 24 at a rate of 25"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        const Outcome outcome = zanfcp(joined({"mxf", "extract", path, "-o", out}, c.options));
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr(c.message));
    }
    EXPECT_THAT(namesIn(folder), ::testing::ElementsAre("long.mxf"));
    EXPECT_THAT(zanfcp({"mxf", "extract", path, "--stream", "0", "-o", path}).err,
                HasSubstr("is the file that is read"));
    EXPECT_THAT(shell("$ZANFCP mxf stream - --stream 0 -o " + path + " < " + path).err,
                HasSubstr("is the file that is read"));
    EXPECT_EQ(zanfcp({"mxf", "extract", path, "--stream", "0"}).status, 2);
    EXPECT_EQ(zanfcp({"mxf", "stream", path, "--stream", "0"}).status, 2);
    EXPECT_THAT(shell("$ZANFCP mxf extract " + path + " --stream 0 -o - > /dev/full").err,
                HasSubstr("No space left on device"));
}

TEST(MxfExtract, DamageCostsItsSamplesAndIsSaidOnce)
{
    const TempFolder folder;
    const std::string path = makeLongGop(folder);
    const auto sounds = samplesOf(path, 1);
    std::string bytes = readFile(path);
    // The key of the tenth sound sample: what is left of its package is found again behind it.
    bytes.replace(sounds[10]["offset"].get<std::size_t>() - 20, 16, 16, '\0');
    const std::string damaged = folder.write("damaged.mxf", bytes);
    const Outcome outcome = zanfcp({"mxf", "extract", damaged, "--stream", "1", "-o", folder.file("out.raw")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr("1 edit unit missing, the first at 10:00:00:11"));
    EXPECT_EQ(readFile(folder.file("out.raw")).size(), 49U * 1920 * 2);

    const std::string cut = folder.write("cut.mxf", bytes.substr(0, bytes.size() / 2));
    for (const std::string& line : {"$ZANFCP mxf extract " + cut, "$ZANFCP mxf stream - < " + cut}) {
        const Outcome short_ = shell(line + " --stream 0 -o " + folder.file("short.raw"));
        EXPECT_EQ(short_.status, 0) << short_.err;
        EXPECT_THAT(short_.err, HasSubstr("cut off"));
    }
}

TEST(MxfSamples, AreThePacketsOfFfprobe)
{
    const TempFolder folder;
    const std::string path = makeLongGop(folder);
    for (int stream = 0; stream < 3; ++stream) {
        SCOPED_TRACE(stream);
        const Outcome probed = shell("ffprobe -v error -of csv=p=0 -show_entries packet=pts,dts,size,flags "
                                     "-select_streams " +
                                     std::to_string(stream) + " " + path);
        std::istringstream lines{probed.out};
        const auto samples = samplesOf(path, stream);
        std::size_t count = 0;
        // One sound packet is as long as a picture, and its times count sound samples.
        const std::int64_t scale = stream == 0 ? 1 : 1920;
        for (std::string line; std::getline(lines, line); ++count) {
            ASSERT_LT(count, samples.size());
            const ordered_json& sample = samples[count];
            const std::string expected = std::to_string(sample["pts"].get<std::int64_t>() * scale) + "," +
                                         std::to_string(sample["dts"].get<std::int64_t>() * scale) + "," +
                                         std::to_string(sample["size"].get<std::size_t>()) +
                                         (sample["key"] ? ",K" : ",_");
            EXPECT_THAT(line, ::testing::StartsWith(expected)) << count;
        }
        EXPECT_EQ(count, 50U);
        EXPECT_EQ(samples.size(), count);
    }
    const Outcome table = zanfcp({"mxf", "samples", path});
    EXPECT_THAT(table.out, HasSubstr("STREAM  EDIT UNIT  LENGTH"));
    EXPECT_EQ(std::ranges::count(table.out, '\n'), 151);
}

TEST(MxfStream, EventsAndFormatsComeAsTheFileComes)
{
    const TempFolder folder;
    const std::string path = makeLongGop(folder);
    const Outcome outcome = shell("cat " + path + " | $ZANFCP mxf stream -");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("header parsed: OP1a, 3 streams, starts at 10:00:00:00\nSTREAM"));
    EXPECT_THAT(outcome.out, HasSubstr("end of the stream\nstream 0: 50 samples, "));
    EXPECT_THAT(outcome.out, HasSubstr("stream 2: 50 samples, 288000 bytes\n"));
    EXPECT_THAT(shell("$ZANFCP mxf stream - < /dev/null").err, HasSubstr("standard input: is empty"));
    EXPECT_THAT(shell("head -c 5000 /dev/zero | $ZANFCP mxf stream -").err, HasSubstr("no MXF header among its 5000"));
    EXPECT_THAT(zanfcp({"mxf", "stream", folder.file("none")}).err, HasSubstr("none: no such file"));
}

} // namespace
} // namespace zanfcp::test
