#include "tests/mxf/demuxer/DemuxerFile.h"
#include "tests/mxf/essence/EssenceFile.h"
#include "tests/support/FakeClock.h"
#include "tests/support/RecordingSnitcher.h"
#include "tests/support/ShellTools.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using zanfcp::test::readFile;
using zanfcp::test::succeeds;
using zanfcp::test::TempFolder;

#define PICTURE "-f lavfi -i testsrc2=s=320x240:r=25:d=1.6 "
#define NTSC "-f lavfi -i testsrc2=s=320x240:r=30000/1001:d=1.5 "
#define HIGH "-f lavfi -i testsrc2=s=1920x1080:r=25:d=0.24 "
#define SOUND "-f lavfi -i sine=r=48000:d=1.6 "
#define D10                                                                                                            \
    "-f lavfi -i testsrc2=s=720x608:r=25:d=0.4 -f lavfi -i sine=r=48000:d=0.4 -c:v mpeg2video -pix_fmt yuv422p "       \
    "-b:v 30M -minrate 30M -maxrate 30M -bufsize 1200k -rc_init_occupancy 1200k -intra_vlc 1 -qmax 12 "                \
    "-flags +ildct+low_delay -g 0 "

struct Made {
    const char* name;
    const char* arguments; ///< of ffmpeg, up to the output
    bool isPiped = false;  ///< written without going back
    /// Nothing is written of the order of the pictures, and ffprobe shows them as they are stored.
    bool isOrderLost = false;
};

const Made kMade[] = {
    {"MpegLongGop", PICTURE SOUND SOUND "-map 0 -map 1 -map 2 -c:v mpeg2video -g 12 -bf 2 -c:a pcm_s16le -f mxf"},
    {"MpegOpenGopNtsc", NTSC SOUND "-c:v mpeg2video -g 15 -bf 2 -c:a pcm_s16le -ac 2 -shortest -f mxf"},
    {"MpegPiped", PICTURE SOUND "-c:v mpeg2video -g 12 -bf 2 -c:a pcm_s16le -f mxf", true},
    {"MpegIntra", PICTURE "-c:v mpeg2video -g 1 -f mxf"},
    {"Avc", PICTURE SOUND "-c:v libx264 -bf 2 -g 12 -c:a pcm_s16le -shortest -f mxf", false, true},
    {"AvcOpenGop", PICTURE "-c:v libx264 -bf 3 -x264-params open-gop=1:keyint=12:min-keyint=12:slices=2 -f mxf", false,
     true},
    {"Vc3WithSound24", HIGH SOUND "-c:v dnxhd -b:v 120M -pix_fmt yuv422p -c:a pcm_s24le -shortest -f mxf"},
    {"ProRes", HIGH "-c:v prores -profile:v 2 -f mxf"},
    {"Jpeg2000", PICTURE "-c:v jpeg2000 -f mxf"},
    {"Dv", "-f lavfi -i testsrc2=s=720x576:r=25:d=0.4 -c:v dvvideo -pix_fmt yuv420p -f mxf"},
    {"D10Sound16", D10 "-c:a pcm_s16le -ac 2 -f mxf_d10"},
    {"D10Sound24", D10 "-c:a pcm_s24le -ac 4 -f mxf_d10"},
    {"AtomPicture", HIGH "-c:v dnxhd -b:v 120M -pix_fmt yuv422p -f mxf_opatom"},
    {"AtomDv", "-f lavfi -i testsrc2=s=720x576:r=25:d=0.4 -c:v dvvideo -pix_fmt yuv420p -f mxf_opatom"},
    {"AtomSound", SOUND "-c:a pcm_s16le -f mxf_opatom"},
};

struct Packet {
    std::int64_t pts = 0, dts = 0, size = 0, position = 0;
    bool isKey = false;
};

class RealEssence : public testing::TestWithParam<Made> {
protected:
    static const TempFolder& Folder()
    {
        static const TempFolder folder;
        return folder;
    }
    static std::string Path() { return Folder().file(std::string{GetParam().name} + ".mxf"); }
    static std::string Ask(const std::string& command)
    {
        EXPECT_EQ(std::system((command + " >" + Folder().file("answer")).c_str()), 0) << command;
        return readFile(Folder().file("answer"));
    }

    void SetUp() override
    {
        if (std::filesystem::exists(Path())) return;
        const std::string to = GetParam().isPiped ? " pipe:1 | cat >" : " ";
        const std::string make = std::string{"ffmpeg -nostdin -v error -y "} + GetParam().arguments + to + Path();
        ASSERT_EQ(std::system(make.c_str()), 0) << make;
    }

    static std::string Copied(int stream)
    {
        return Ask("ffmpeg -nostdin -v error -i " + Path() + " -map 0:" + std::to_string(stream) +
                   " -c copy -f data pipe:1");
    }
    static std::vector<Packet> Packets(int stream)
    {
        std::istringstream lines{Ask("ffprobe -v error -show_packets -of csv=p=0 -show_entries "
                                     "packet=pts,dts,size,pos,flags -select_streams " +
                                     std::to_string(stream) + " " + Path())};
        std::vector<Packet> packets;
        char comma = 0;
        std::string flags;
        for (Packet p; lines >> p.pts >> comma >> p.dts >> comma >> p.size >> comma >> p.position >> comma >> flags;) {
            p.isKey = flags.starts_with('K');
            packets.push_back(p);
        }
        return packets;
    }
};

INSTANTIATE_TEST_SUITE_P(All, RealEssence, testing::ValuesIn(kMade),
                         [](const auto& made) { return std::string{made.param.name}; });

TEST_P(RealEssence, SamplesAreThoseThatAnotherReaderCopies)
{
    Playing playing{Path()};
    ASSERT_EQ(playing.PlayAll(), kEnded);
    ASSERT_FALSE(playing.streams.empty());
    for (auto& [stream, keeper] : playing.streams) {
        SCOPED_TRACE(stream);
        const std::string copied = Copied(stream);
        const auto bytes = keeper.All();
        EXPECT_TRUE(std::ranges::equal(bytes, copied, {}, {}, [](char c) { return static_cast<std::uint8_t>(c); }))
            << bytes.size() << " bytes, not the " << copied.size();

        mxf_stream_format format{};
        ASSERT_EQ(playing.demuxer.GetStreamFormat(stream, &format, false, false), 0);
        const bool isSound = format.stream_type == 2;
        const std::vector<Packet> packets = Packets(stream);
        ASSERT_EQ(keeper.taken.size(), packets.size());
        std::int64_t played = 0; // bytes of sound so far
        for (std::size_t i = 0; i < packets.size(); ++i) {
            SCOPED_TRACE(i);
            const mxf_sample& sample = keeper.taken[i].sample;
            const Packet& packet = packets[i];
            EXPECT_EQ(sample.size, packet.size);
            EXPECT_EQ((sample.flags & mxf_sample_key) != 0, packet.isKey);
            EXPECT_EQ((sample.flags & mxf_sample_last) != 0, i + 1 == packets.size());
            EXPECT_EQ(sample.flags & (mxf_sample_discontinuity | mxf_sample_damaged), 0U);
            if (isSound) { // counted in samples there, in edit units here
                EXPECT_EQ(played / format.block_align, packet.pts);
                EXPECT_EQ(sample.pts, sample.dts);
                played += sample.size;
                continue;
            }
            if (!GetParam().isOrderLost) {
                EXPECT_EQ(sample.pts, packet.pts);
                EXPECT_EQ(sample.dts, packet.dts);
            }
            // It names the key where this names the value, but for what one element holds together.
            const std::int64_t inFront = sample.position - packet.position;
            EXPECT_TRUE(inFront == 0 || inFront == 20 || inFront == 25) << inFront;
        }
    }
}

TEST_P(RealEssence, PicturesAreShownInTheOrderOfADecoder)
{
    if (!GetParam().isOrderLost) {
        GTEST_SKIP() << "compared packet by packet";
    }
    Playing playing{Path()};
    ASSERT_EQ(playing.PlayAll(), kEnded);
    const std::vector<Taken>& taken = playing.streams[0].taken;
    std::istringstream lines{Ask("ffprobe -v error -select_streams v -show_frames -show_entries "
                                 "frame=coded_picture_number " +
                                 Path())};
    const std::string word = "coded_picture_number=";
    std::size_t shown = 0;
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(word)) {
            const auto stored = static_cast<std::size_t>(std::stoi(line.substr(word.size())));
            EXPECT_EQ(taken.at(stored).sample.pts, shown++);
        }
    EXPECT_EQ(shown, taken.size());
    for (std::size_t i = 1; i < taken.size(); ++i)
        EXPECT_LT(taken[i - 1].sample.dts, taken[i].sample.dts);
}

const std::vector<std::uint8_t> kIndexSegment{0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                                              0x0D, 0x01, 0x02, 0x01, 0x01, 0x10, 0x01, 0x00};

/// Turns all index table segments into KLVs that mean nothing to anyone.
std::vector<std::uint8_t> WithoutIndex(const std::string& content)
{
    std::vector<std::uint8_t> bytes{content.begin(), content.end()};
    while (const auto found = std::ranges::search(bytes, kIndexSegment))
        *(found.begin() + 13) = 0x7E;
    return bytes;
}

TEST_P(RealEssence, SeekingDeliversWhatPlayingDoes)
{
    for (const bool hasIndex : {true, false}) {
        SCOPED_TRACE(hasIndex ? "index" : "no index");
        const std::string content = readFile(Path());
        const std::vector<std::uint8_t> bytes =
            hasIndex ? std::vector<std::uint8_t>{content.begin(), content.end()} : WithoutIndex(content);
        if (!hasIndex && std::string{GetParam().name} == "AtomPicture") continue; // nothing else tells their size
        Playing played{bytes};
        ASSERT_EQ(played.PlayAll(), kEnded);
        Playing seeking{bytes};
        for (auto& [stream, keeper] : played.streams) {
            std::vector<Taken>& all = keeper.taken;
            for (std::size_t i = all.size(); i-- > 0;) { // backwards, the hardest way
                SCOPED_TRACE(all[i].sample.pts);
                const std::int64_t position = all[i].sample.pts + (all[i].sample.duration - 1) / 2;
                const Taken* exact = seeking.After(stream, position, mxf_seek_exact);
                ASSERT_NE(exact, nullptr);
                EXPECT_EQ(exact->sample.pts, all[i].sample.pts);
                EXPECT_EQ(exact->sample.dts, all[i].sample.dts);
                EXPECT_EQ(exact->sample.flags, all[i].sample.flags | mxf_sample_discontinuity);
                EXPECT_EQ(exact->bytes, all[i].bytes);
                EXPECT_EQ(seeking.seek.edit_unit, all[i].sample.edit_unit);
                const Taken* key = seeking.After(stream, position, mxf_seek_key_frame);
                ASSERT_NE(key, nullptr);
                EXPECT_TRUE(key->sample.flags & mxf_sample_key);
                EXPECT_LE(key->sample.edit_unit, all[i].sample.edit_unit);

                mxf_sample_info info{};
                info.stream = static_cast<std::uint32_t>(stream);
                ASSERT_EQ(seeking.demuxer.GetIdxEntryInfo(0, static_cast<int>(all[i].sample.edit_unit), &info), 0);
                EXPECT_EQ(info.pts, all[i].sample.pts);
                EXPECT_EQ(info.flags & mxf_sample_key, all[i].sample.flags & mxf_sample_key);
                ASSERT_EQ(seeking.demuxer.FillSampleOffset(&info), 0);
                EXPECT_LE(info.position, all[i].sample.position);
            }
            const std::int64_t end = all.back().sample.edit_unit + all.back().sample.duration;
            EXPECT_EQ(seeking.After(stream, end, mxf_seek_exact | mxf_seek_stored), nullptr);
            EXPECT_EQ(seeking.After(stream, -1, mxf_seek_exact | mxf_seek_stored), nullptr);
        }
    }
}

/// Tables as some writers make them: they lead to each picture and move none.
TEST(OrderOfMpeg, IsReadFromThePicturesWhereTheIndexLeavesItOut)
{
    const TempFolder folder;
    const std::string path = folder.file("a.mxf");
    ASSERT_TRUE(succeeds("ffmpeg -nostdin -y " PICTURE SOUND "-c:v mpeg2video -g 12 -bf 2 -f mxf " + path));
    const std::string content = readFile(path);
    std::vector<std::uint8_t> bytes{content.begin(), content.end()};
    const std::vector<std::uint8_t> entries{0x3F, 0x0A};
    const auto segment = std::ranges::search(bytes, kIndexSegment).begin();
    const auto at = std::ranges::search(segment, bytes.end(), entries.begin(), entries.end()).begin();
    ASSERT_NE(at, bytes.end());
    const auto number = [&at](int from) { return std::size_t{at[from]} << 8 | at[from + 1]; };
    const std::size_t count = number(6), size = number(10);
    ASSERT_EQ(number(2), 8 + count * size);
    for (std::size_t i = 0; i < count; ++i) {
        const auto entry = at + static_cast<std::ptrdiff_t>(12 + i * size);
        entry[0] = entry[1] = 0;
        entry[2] = (entry[2] & 3U) == 0 ? 0x80 : 0x20; // a picture that is decoded alone, or any other
    }

    Playing whole{path}, played{bytes};
    ASSERT_EQ(whole.PlayAll(), kEnded);
    ASSERT_EQ(played.PlayAll(), kEnded);
    const std::vector<Taken>& all = whole.streams[0].taken;
    ASSERT_EQ(played.streams[0].taken.size(), all.size());
    std::size_t key = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(i);
        if ((all[i].sample.flags & mxf_sample_key) != 0) key = i;
        EXPECT_EQ(played.streams[0].taken[i].sample.pts, all[i].sample.pts);
        EXPECT_EQ(played.streams[0].taken[i].sample.dts, all[i].sample.dts);
        for (const int stream : {0, 1}) { // the pictures follow the sound as well
            Playing seeking{bytes};
            const Taken* const found = seeking.After(stream, all[i].sample.pts, mxf_seek_exact);
            ASSERT_NE(found, nullptr);
            ASSERT_FALSE(seeking.streams[0].taken.empty());
            const mxf_sample& picture = seeking.streams[0].taken.front().sample;
            EXPECT_EQ(picture.pts, all.at(static_cast<std::size_t>(picture.edit_unit)).sample.pts);
        }
        Playing seeking{bytes};
        ASSERT_NE(seeking.After(0, all[i].sample.pts, mxf_seek_key_frame), nullptr);
        EXPECT_TRUE(seeking.streams[0].taken.front().sample.flags & mxf_sample_key);
        if (all[i].sample.pts < all[key].sample.pts) // it needs the group before as well
            EXPECT_LT(seeking.seek.edit_unit, static_cast<std::int64_t>(key));
        else
            EXPECT_EQ(seeking.seek.edit_unit, static_cast<std::int64_t>(key));
    }
}

/// Groups that never begin the count of their pictures anew, as those of broadcasters do.
TEST(OpenGroupsOfAvc, KeepTheirOrderBehindACut)
{
    const TempFolder folder;
    const std::string path = folder.file("a.mxf"), behind = folder.file("b.mxf");
    if (!succeeds("ffmpeg -nostdin -y " PICTURE
                  "-c:v libx264 -bf 3 -x264-params open-gop=1:keyint=12:min-keyint=12 -f mxf " +
                  path) ||
        !succeeds("ffmpeg -nostdin -y -ss 0.5 -i " + path + " -c copy -f mxf " + behind))
        GTEST_SKIP() << "no ffmpeg with this encoder";
    Playing playing{path};
    ASSERT_EQ(playing.PlayAll(), kEnded);
    const std::vector<Taken>& all = playing.streams[0].taken;

    Playing cut{behind};
    ASSERT_EQ(cut.PlayAll(), kEnded);
    const std::vector<Taken>& rest = cut.streams[0].taken;
    ASSERT_GT(rest.size(), 20U);
    ASSERT_LT(rest.size(), all.size());
    const std::size_t from = all.size() - rest.size();
    for (std::size_t i = 0; i < rest.size(); ++i)
        EXPECT_EQ(rest[i].sample.pts, all[from + i].sample.pts - all[from].sample.pts) << i;
}

/// The picture that begins the count of a group, or another one.
TEST(LostPictures, CostNoOtherItsPlace)
{
    const TempFolder folder;
    for (const char* coding :
         {"-c:v libx264 -bf 3 -x264-params open-gop=1:keyint=12:min-keyint=12",
          "-c:v libx264 -bf 3 -x264-params keyint=12:min-keyint=12:repeat-headers=1", "-c:v mpeg2video -g 12 -bf 2"}) {
        SCOPED_TRACE(coding);
        const std::string path = folder.file("a.mxf");
        if (!succeeds("ffmpeg -nostdin -y " PICTURE + std::string{coding} + " -f mxf " + path)) continue;
        const std::string content = readFile(path);
        for (const bool hasIndex : {true, false}) {
            const std::vector<std::uint8_t> whole =
                hasIndex ? std::vector<std::uint8_t>{content.begin(), content.end()} : WithoutIndex(content);
            Playing playing{whole};
            ASSERT_EQ(playing.PlayAll(), kEnded);
            const std::vector<Taken>& all = playing.streams[0].taken;
            for (std::size_t lost = 3; lost < all.size(); ++lost) {
                SCOPED_TRACE(lost);
                std::vector<std::uint8_t> bytes = whole;
                std::fill_n(bytes.begin() + all[lost].sample.position - 20, 16, std::uint8_t{0});
                Playing damaged{std::move(bytes)};
                ASSERT_EQ(damaged.PlayAll(), kEnded);
                const std::vector<Taken>& left = damaged.streams[0].taken;
                ASSERT_EQ(left.size(), all.size() - 1);
                for (std::size_t i = 0; i < left.size(); ++i)
                    EXPECT_EQ(left[i].sample.pts, all[i < lost ? i : i + 1].sample.pts) << i;
            }
        }
    }
}

/// Clips in one element, whose length is written at the end.
struct Clip {
    const char* name;
    const char* arguments;
};

class RealClip : public testing::TestWithParam<Clip> {
protected:
    void SetUp() override
    {
        const TempFolder folder;
        const std::string path = folder.file("a.mxf");
        if (!zanfcp::test::succeeds("ffmpeg -nostdin -y " + std::string{GetParam().arguments} + " -f mxf_opatom " +
                                    path))
            GTEST_SKIP() << "no ffmpeg with this encoder";
        const std::string file = readFile(path);
        whole.assign(file.begin(), file.end());
        const std::vector<std::uint8_t> key{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x02, 0x01, 0x01, 0x0D, 0x01, 0x03, 0x01};
        const auto element = std::ranges::search(whole, key).begin();
        ASSERT_NE(element, whole.end());
        begin = static_cast<std::size_t>(element - whole.begin());
        Playing playing{whole};
        ASSERT_EQ(playing.PlayAll(), kEnded);
        expected = std::move(playing.streams[0].taken);
        ASSERT_GT(expected.size(), 3U);
        std::fill_n(element + 17, whole[begin + 16] & 0x0F, std::uint8_t{0}); // its length
    }

    std::vector<std::uint8_t> whole;
    std::size_t begin = 0; ///< of the element
    std::vector<Taken> expected;
};

TEST_P(RealClip, IsDeliveredWhileItIsWritten)
{
    for (const std::size_t first : {std::size_t{0}, std::size_t{25}, std::size_t{30}, std::size_t{100'000}}) {
        SCOPED_TRACE(first);
        const auto upTo = [&](std::size_t count) {
            return std::vector(whole.begin(),
                               whole.begin() + static_cast<std::ptrdiff_t>(std::min(count, whole.size())));
        };
        std::vector<std::uint8_t> written = upTo(begin + first);
        zanfcp::test::FakeClock clock;
        clock.onSleep = [&] { written = upTo(written.size() + whole.size() / 10); };
        zanfcp::test::RecordingSnitcher sink;
        CMxfDemuxer demuxer{clock};
        mxf_demuxer_config config{};
        config.timeout = 3;
        ASSERT_EQ(demuxer.Open(std::make_unique<BorrowedSource>(written), &config, CLoggerT<CSnitcher>{&sink}), 0);
        Keeper keeper;
        ASSERT_EQ(demuxer.CreateParser(0), 0);
        ASSERT_EQ(demuxer.AddStream(0, 0, &keeper), 0);
        int result = 0;
        while ((result = demuxer.Push(0)) == kDelivered) {
        }
        EXPECT_EQ(result, kEnded);
        EXPECT_LT(clock.sleeps.size(), 15U) << "waited for more when all was there";
        ASSERT_EQ(keeper.taken.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_EQ(keeper.taken[i].bytes, expected[i].bytes) << i;
        EXPECT_TRUE(
            std::ranges::none_of(sink.lines, [](const auto& line) { return line.find("amaged") != line.npos; }));
    }
}

TEST_P(RealClip, CutOffDeliversItsWholeUnits)
{
    const auto fourth = static_cast<std::size_t>(expected[3].sample.position);
    whole.resize(fourth + 100);
    Playing playing{whole};
    EXPECT_EQ(playing.PlayAll(), kNeedsData);
    const std::vector<Taken>& taken = playing.streams[0].taken;
    ASSERT_EQ(taken.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(taken[i].bytes, expected[i].bytes) << i;
}

INSTANTIATE_TEST_SUITE_P(
    All, RealClip,
    testing::Values(Clip{"Vc3", HIGH "-c:v dnxhd -b:v 36M -pix_fmt yuv422p"},
                    Clip{"Vc3Resolution", PICTURE "-c:v dnxhd -profile:v dnxhr_lb -pix_fmt yuv422p"},
                    Clip{"Dv", "-f lavfi -i testsrc2=s=720x576:r=25:d=0.4 -c:v dvvideo -pix_fmt yuv420p"},
                    Clip{"Sound", SOUND "-c:a pcm_s16le"}),
    [](const auto& one) { return std::string{one.param.name}; });

/// Bytes read from a file.
struct CountedFile {
    std::FILE* file = nullptr;
    std::int64_t bytes = 0;

    static CountedFile& of(void* context) { return *static_cast<CountedFile*>(context); }
    mxf_demuxer_config config()
    {
        mxf_demuxer_config made{};
        made.use_external_io = 1;
        made.lazy_index_loading = 1;
        made.io.open = [](void* context, const char* path, void**) -> std::int32_t {
            of(context).file = std::fopen(path, "rb");
            return of(context).file == nullptr ? -1 : 0;
        };
        made.io.seek = [](void* context, void*, std::int64_t to) -> std::int32_t {
            return std::fseek(of(context).file, static_cast<long>(std::max<std::int64_t>(to, 0)),
                              to < 0 ? SEEK_END : SEEK_SET);
        };
        made.io.read = [](void* context, void*, void* buffer, std::size_t count) -> std::int32_t {
            const auto got = static_cast<std::int32_t>(std::fread(buffer, 1, count, of(context).file));
            of(context).bytes += got;
            return got;
        };
        made.io.close = [](void* context, void**) -> std::int32_t { return std::fclose(of(context).file); };
        made.io.get_size = [](void* context, void*) {
            struct stat found {};
            return fstat(fileno(of(context).file), &found) == 0 ? std::int64_t{found.st_size} : std::int64_t{-1};
        };
        made.io.context = this;
        return made;
    }
};

TEST(Seeking, ReadsNoEssenceInFrontOfWhereTheIndexLeads)
{
    if (!succeeds("ffmpeg -version")) GTEST_SKIP() << "no ffmpeg";
    const TempFolder folder;
    for (const char* coding :
         {"-c:v mpeg2video -bf 0 -g 5", "-c:v mpeg2video -bf 2 -g 12", "-c:v libx264 -bf 0 -g 12"}) {
        SCOPED_TRACE(coding);
        const std::string path = folder.file("long.mxf");
        ASSERT_TRUE(
            succeeds(std::string("ffmpeg -y -f lavfi -i testsrc2=s=640x360:r=25:d=12 -b:v 8M ") + coding + " " + path));
        CountedFile counted;
        const mxf_demuxer_config config = counted.config();
        TamrelMxf::CMxfDemuxer demuxer;
        ASSERT_EQ(demuxer.Open(path.c_str(), &config, nullptr), 0);
        ASSERT_EQ(demuxer.CreateParser(0), 0);
        mxf_dmuxer_seek seek{};
        seek.position = 250;
        ASSERT_EQ(demuxer.Seek(0, &seek), 0);
        ASSERT_EQ(demuxer.Push(0), 0);
        EXPECT_LT(counted.bytes, 1'000'000) << "of some ten million";
    }
}

} // namespace
