#include "mxf/io/BufferedFileSource.h"
#include "mxf/klv/Keys.h"
#include "mxf/klv/KlvSearch.h"
#include "mxf/klv/PartitionReading.h"
#include "mxf/klv/PartitionScanner.h"
#include "tests/support/FakeClock.h"
#include "tests/support/MemorySource.h"
#include "tests/support/RecordingSnitcher.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace zanfcp::test;

/// Files of an independent writer, made once for all tests below.
struct Made {
    const char* name;
    const char* arguments; ///< of ffmpeg, up to the output
    bool isPiped;          ///< written without going back, so the header stays open and names no footer
    EPartitionStatus headerStatus;
    std::uint64_t pattern;             ///< last 8 bytes of the operational pattern
    std::vector<EPartitionKind> kinds; ///< of the partitions, in file order
    std::uint8_t firstItem;            ///< item type of the first essence element
    std::uint32_t essenceContainers;   ///< in the header partition pack
    std::size_t essencePartition;      ///< index of the partition with BodySID 1
};

void PrintTo(const Made& made, std::ostream* out)
{
    *out << made.name;
}

using enum EPartitionKind;

#define PICTURE "-f lavfi -i testsrc2=s=320x240:r=25:d=1 "
#define SOUND "-f lavfi -i sine=r=48000:d=1 "

const Made kMade[] = {
    {"frame wrapped, seekable",
     PICTURE SOUND "-c:v mpeg2video -c:a pcm_s16le -f mxf",
     false,
     EPartitionStatus::closedComplete,
     0x0D01020101010900,
     {header, body, footer},
     0x04,
     3,
     1},
    {"frame wrapped, one track",
     PICTURE "-c:v mpeg2video -f mxf",
     false,
     EPartitionStatus::closedComplete,
     0x0D01020101010900,
     {header, body, footer},
     0x04,
     1,
     1},
    {"frame wrapped, piped",
     PICTURE "-c:v mpeg2video -f mxf",
     true,
     EPartitionStatus::openIncomplete,
     0x0D01020101010900,
     {header, body, footer},
     0x04,
     1,
     1},
    {"clip wrapped atom",
     "-f lavfi -i testsrc2=s=1920x1080:r=25:d=0.2 -c:v dnxhd -b:v 120M -pix_fmt yuv422p -f mxf_opatom",
     false,
     EPartitionStatus::closedComplete,
     0x0D01020110030000,
     {header, body, footer},
     0x15,
     1,
     1},
    {"fixed edit units, essence in the header partition",
     "-f lavfi -i testsrc2=s=720x608:r=25:d=0.4 " SOUND "-t 0.4 -c:v mpeg2video -pix_fmt yuv422p -b:v 30M "
     "-minrate 30M -maxrate 30M -bufsize 1200k -rc_init_occupancy 1200k -intra_vlc 1 -qmax 12 "
     "-flags +ildct+low_delay -g 0 -c:a pcm_s16le -ac 2 -f mxf_d10",
     false,
     EPartitionStatus::closedComplete,
     0x0D01020101010900,
     {header, footer},
     0x04,
     1,
     0},
};

class RealFiles : public testing::TestWithParam<Made> {
protected:
    static const std::string& path()
    {
        static std::map<std::string, std::string> made;
        static const TempFolder folder;
        std::string& file = made[GetParam().name];
        if (!file.empty()) return file;
        file = folder.file(std::to_string(made.size()) + ".mxf");
        const std::string output = GetParam().isPiped ? " pipe:1 | cat >" : " ";
        const std::string command =
            std::string("ffmpeg -nostdin -v error -y ") + GetParam().arguments + output + "'" + file + "'";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        return file;
    }

    void SetUp() override
    {
        dict.Init();
        content = readFile(path());
        ASSERT_FALSE(content.empty());
    }

    std::span<const std::uint8_t> bytes() const
    {
        return {reinterpret_cast<const std::uint8_t*>(content.data()), content.size()};
    }

    /// Where partition packs stand, found by their bytes alone.
    std::vector<std::uint64_t> partitionsByBytes() const
    {
        std::vector<std::uint64_t> places;
        std::uint64_t from = 0;
        while (const auto found = SearchPartitionPack(bytes().subspan(from))) {
            places.push_back(from + static_cast<std::uint64_t>(*found));
            from = places.back() + 1;
        }
        return places;
    }

    void attach(CMediaSource* source)
    {
        reader.Attach(source, 0, CLoggerT<CSnitcher>{&sink});
        scanner.Reset(CLoggerT<CSnitcher>{&sink}, nullptr, true);
    }

    CMxfUlDict dict;
    std::string content;
    RecordingSnitcher sink;
    FakeClock clock;
    CSourceReader reader{clock};
    CPartitionScanner scanner{reader, dict};
};

TEST_P(RealFiles, PartitionsAreThoseOfTheWriter)
{
    const Made& made = GetParam();
    const auto source = CBufferedFileSource2::Create(path().c_str(), 0);
    ASSERT_NE(source, nullptr);
    attach(source.get());
    ASSERT_EQ(scanner.FindPartitionWithMetadata(), kSuccess);

    const CPartitionPack& headerPack = *scanner.HeaderPartition();
    EXPECT_EQ(headerPack.kind, header);
    EXPECT_EQ(headerPack.status, made.headerStatus);
    EXPECT_EQ(headerPack.operationalPattern.Item(), made.pattern);
    EXPECT_EQ(headerPack.kagSize, 512u);
    EXPECT_EQ(headerPack.essenceContainers.size(), made.essenceContainers);
    EXPECT_EQ(headerPack.footerPartition == 0, made.isPiped);
    EXPECT_EQ(scanner.RunInCorrection(), 0);

    CKlv primer;
    ASSERT_EQ(primer.View(scanner.Metadata()), kSuccess);
    EXPECT_EQ(primer.Key(), Keys::kPrimerPack);
    EXPECT_EQ(scanner.Metadata().size(), headerPack.extent.headerByteCount);

    EXPECT_TRUE(scanner.IsMxfComplete());
    ASSERT_NE(scanner.RandomIndexPack(), nullptr);
    ASSERT_NE(scanner.FooterPartition(), nullptr);
    const std::vector<std::uint64_t> places = partitionsByBytes();
    EXPECT_THAT(scanner.RandomIndexPack()->Offsets(), testing::ElementsAreArray(places));
    EXPECT_EQ(scanner.FooterPartition()->extent.position, static_cast<std::int64_t>(places.back()));
    EXPECT_THAT(sink.lines,
                testing::ElementsAre("info: random index pack found, " + std::to_string(places.size()) + " entries"));

    std::vector<EPartitionKind> kinds;
    for (const std::uint64_t place : places) {
        const auto pack = ReadPartitionPackAt(*source, dict, static_cast<std::int64_t>(place));
        ASSERT_NE(pack, nullptr);
        kinds.push_back(pack->kind);
        EXPECT_EQ(pack->thisPartition, place);
    }
    EXPECT_EQ(kinds, made.kinds);

    const std::int64_t essence = scanner.RandomIndexPack()->TranslateOffset(0, 1);
    ASSERT_GT(essence, static_cast<std::int64_t>(places[made.essencePartition]));
    const SUl key = SUl::From(bytes().data() + essence);
    EXPECT_EQ(key.Item() >> 32, 0x0D010301u) << "an essence element";
    EXPECT_EQ(key.bytes[12], made.firstItem);
}

TEST_P(RealFiles, MayBeCutAnywhere)
{
    MemorySource source;
    const std::uint64_t footerAt = partitionsByBytes().back();
    SKlvHeader footerPack;
    ASSERT_EQ(footerPack.Parse(bytes().subspan(footerAt)), kSuccess);
    const std::uint64_t footerEnd = footerAt + static_cast<std::uint64_t>(footerPack.TotalSize());
    for (std::size_t size = 0; size < content.size(); size += size < 8192 ? 97 : content.size() / 50) {
        SCOPED_TRACE(size);
        source.bytes.assign(bytes().begin(), bytes().begin() + static_cast<std::ptrdiff_t>(size));
        source.place = 0;
        attach(&source);
        EXPECT_EQ(scanner.FindPartitionWithMetadata(), size < 128 ? kFailed : size < 160 ? kCutShort : kSuccess);
        EXPECT_EQ(scanner.IsMxfComplete(), size >= footerEnd && !GetParam().isPiped);
        EXPECT_LE(scanner.MetadataPosition() + static_cast<std::int64_t>(scanner.Metadata().size()),
                  static_cast<std::int64_t>(size));
    }
}

INSTANTIATE_TEST_SUITE_P(Written, RealFiles, testing::ValuesIn(kMade), [](const auto& made) {
    std::string name = made.param.name;
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
});

} // namespace
