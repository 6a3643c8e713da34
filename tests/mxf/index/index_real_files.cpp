#include "mxf/Status.h"
#include "mxf/index/MxfIndexParser.h"
#include "mxf/io/BufferedFileSource.h"
#include "mxf/klv/PartitionScanner.h"
#include "tests/support/FakeClock.h"
#include "tests/support/RecordingSnitcher.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <ostream>
#include <sstream>

namespace {

using namespace TamrelMxf;
using namespace zanfcp::test;

/// Files of an independent writer; what an independent reader says of their packets is the truth.
struct Made {
    const char* name;
    const char* arguments;       ///< of ffmpeg, up to the output
    std::size_t streams;         ///< all elements of which the delta array tells where they lie
    std::int64_t positionToUnit; ///< from the first byte of the unit to what ffprobe calls the position of its picture
    bool isConstant;
    bool hasDisplayOrder; ///< the writer enters temporal offsets
};

void PrintTo(const Made& made, std::ostream* out)
{
    *out << made.name;
}

#define PICTURE "-f lavfi -i testsrc2=s=320x240:r=25:d=4 "
#define SOUND "-f lavfi -i sine=r=48000:d=4 "

const Made kMade[] = {
    {"long groups with sound",
     PICTURE SOUND SOUND "-map 0 -map 1 -map 2 -c:v mpeg2video -g 12 -bf 2 -c:a pcm_s16le -f mxf", 3, 512, false, true},
    {"long closed groups", PICTURE "-c:v mpeg2video -g 15 -bf 3 -flags +cgop -sc_threshold 1000000000 -f mxf", 1, 512,
     false, true},
    {"pictures of H 264", PICTURE "-c:v libx264 -g 12 -bf 2 -pix_fmt yuv420p -f mxf", 1, 512, false, false},
    {"constant units",
     "-f lavfi -i testsrc2=s=720x608:r=25:d=0.4 " SOUND "-t 0.4 -c:v mpeg2video -pix_fmt yuv422p -b:v 30M "
     "-minrate 30M -maxrate 30M -bufsize 1200k -rc_init_occupancy 1200k -intra_vlc 1 -qmax 12 "
     "-flags +ildct+low_delay -g 0 -c:a pcm_s16le -ac 2 -f mxf_d10",
     2, 512, true, true},
    {"intra pictures of H 264",
     "-f lavfi -i testsrc2=s=1920x1080:r=25:d=0.2 -c:v libx264 -avcintra-class 100 -pix_fmt yuv422p10 -flags +ildct "
     "-x264-params interlaced=1 -f mxf",
     1, 512, true, true},
    {"clip wrapped atom",
     "-f lavfi -i testsrc2=s=1920x1080:r=25:d=0.2 -c:v dnxhd -b:v 120M -pix_fmt yuv422p -f mxf_opatom", 1, 25, true,
     true},
};

struct Packet {
    std::size_t stream = 0;
    std::int64_t pts = 0;
    std::int64_t position = 0;
    bool isKey = false;
};

std::vector<Packet> packetsOf(const TempFolder& folder, const std::string& path)
{
    const std::string list = folder.file("packets");
    const std::string command =
        "ffprobe -v error -of csv=p=0 -show_entries packet=stream_index,pts,pos,flags '" + path + "' >'" + list + "'";
    EXPECT_EQ(std::system(command.c_str()), 0);
    std::vector<Packet> packets;
    std::istringstream lines{readFile(list)};
    for (std::string line; std::getline(lines, line);) {
        std::replace(line.begin(), line.end(), ',', ' ');
        std::istringstream fields{line};
        Packet& packet = packets.emplace_back();
        std::string flags;
        fields >> packet.stream >> packet.pts >> packet.position >> flags;
        packet.isKey = flags.starts_with('K');
    }
    return packets;
}

/// Hands what the partitions carry to the index parser, as the demuxer does.
class Client final : public CPartitionClient {
public:
    explicit Client(CMxfIndexParser& parser) : parser_{parser} {}
    bool HasIndexParser() const override { return true; }
    int LoadSegmentFromPartition(const CPartitionPack& pack) override { return parser_.LoadSegmentFromPartition(pack); }
    void LoadSegments(CRandomIndexPack& rip) override { parser_.LoadSegments(rip); }
    void ScanFooter(const CPartitionPack&) override {}

private:
    CMxfIndexParser& parser_;
};

class IndexRealFiles : public testing::TestWithParam<Made> {};

TEST_P(IndexRealFiles, EditUnitsLieAndShowWhereAnotherReaderFindsThem)
{
    constexpr std::uint32_t kBodySid = 1;
    constexpr std::uint32_t kIndexSid = 2;
    const Made& made = GetParam();
    const TempFolder folder;
    const std::string path = folder.file("made.mxf");
    ASSERT_EQ(std::system((std::string("ffmpeg -nostdin -v error -y ") + made.arguments + " '" + path + "'").c_str()),
              0);
    const std::vector<Packet> packets = packetsOf(folder, path);
    ASSERT_FALSE(packets.empty());

    for (const bool isLazy : {true, false}) {
        SCOPED_TRACE(isLazy ? "lazy" : "at once");
        CMxfUlDict dict;
        RecordingSnitcher sink;
        FakeClock clock;
        CSourceReader reader{clock};
        const auto source = CBufferedFileSource2::Create(path.c_str(), 0);
        ASSERT_NE(source, nullptr);
        reader.Attach(source.get(), 0, CLoggerT<CSnitcher>{&sink});
        CMxfIndexParser index{&reader, CLoggerT<CSnitcher>{&sink}};
        Client client{index};
        CPartitionScanner scanner{reader, dict};
        scanner.Reset({}, &client, isLazy);
        ASSERT_EQ(scanner.FindPartitionWithMetadata(), kSuccess);
        ASSERT_EQ(isLazy ? scanner.LoadRIP() == kSuccess : scanner.IsMxfComplete(), true);
        CRandomIndexPack& rip = *scanner.RandomIndexPack();
        if (!isLazy) (void)scanner.ScanPartitions(); // enters the partitions by their BodySID

        EXPECT_EQ(index.EditRate(kIndexSid), (SRational{25, 1}));
        EXPECT_EQ(index.ConstantSize(kIndexSid).has_value(), made.isConstant);
        std::int64_t unit = 0;
        std::int64_t lastKey = 0;
        std::size_t element = 0;
        std::int64_t delay = 0;
        for (const Packet& packet : packets) {
            const bool isPicture = packet.stream == 0;
            SCOPED_TRACE(unit);
            if (!isPicture) {
                const auto offset = index.ElementOffset(kIndexSid, unit - 1, ++element);
                // Elements in front of this one: the system item, then the streams in their order.
                ASSERT_TRUE(offset);
                EXPECT_EQ(rip.TranslateOffset(*offset, kBodySid), packet.position);
                continue;
            }
            const auto found = index.Find(kIndexSid, unit);
            ASSERT_TRUE(found);
            EXPECT_EQ(rip.TranslateOffset(found->streamOffset, kBodySid) + made.positionToUnit, packet.position);
            EXPECT_EQ(found->isKey, packet.isKey);
            if (packet.isKey) lastKey = unit;
            EXPECT_LE(found->keyFrame, lastKey);
            EXPECT_TRUE(index.Find(kIndexSid, found->keyFrame)->isKey);
            if (made.hasDisplayOrder) {
                EXPECT_EQ(found->displayed, packet.pts);
                EXPECT_THAT(index.StoredAt(kIndexSid, packet.pts), testing::Optional(unit));
                delay = std::max(delay, unit - packet.pts);
            }
            EXPECT_THAT(index.UnitAtOffset(kIndexSid, found->streamOffset + 1), testing::Optional(unit));
            ++unit;
            element = 1;
        }
        EXPECT_EQ(index.ReorderDelay(kIndexSid), delay);
        EXPECT_EQ(index.CoveredUnits(kIndexSid), made.isConstant ? std::nullopt : std::optional{unit});
        EXPECT_THAT(sink.lines, testing::Each(testing::StartsWith("info")));
    }
}

INSTANTIATE_TEST_SUITE_P(Written, IndexRealFiles, testing::ValuesIn(kMade), [](const auto& made) {
    std::string name = made.param.name;
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
});

} // namespace
