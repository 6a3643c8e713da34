#include "tests/cli/Program.h"
#include "tests/mxf/demuxer/DemuxerFile.h"
#include "tests/support/Ffmpeg.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace zanfcp::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using namespace TamrelMxf::test;

struct Line {
    std::int64_t offset = 0;
    std::int64_t length = 0;
    std::string key;
    std::string name;
};

/// The lines of KLVs and ranges, without what stands below them.
std::vector<Line> linesOf(const std::string& dump)
{
    std::vector<Line> lines;
    std::istringstream stream{dump};
    for (std::string text; std::getline(stream, text);) {
        std::istringstream fields{text};
        Line line;
        constexpr std::size_t kDetails = 28;
        if (text.find_first_not_of(' ') >= kDetails || !(fields >> line.offset >> line.length >> line.key)) continue;
        std::getline(fields >> std::ws, line.name);
        lines.push_back(line);
    }
    return lines;
}

std::string write(const TempFolder& folder, const test::Bytes& bytes)
{
    return folder.write("built.mxf", std::string(bytes.begin(), bytes.end()));
}

TEST(MxfDump, ListsEveryByteOfARealFileOnce)
{
    const TempFolder folder;
    const std::string path = folder.file("a.mxf");
    runFfmpeg({"-f", "lavfi", "-i", "testsrc2=d=1:s=320x240:r=25", "-f", "lavfi", "-i", "sine=r=48000:d=1", "-c:v",
               "mpeg2video", "-c:a", "pcm_s16le", path});
    const Outcome dump = zanfcp({"mxf", "dump", path});
    EXPECT_EQ(dump.status, 0);
    EXPECT_EQ(dump.err, "");
    std::int64_t end = 0;
    std::ptrdiff_t pictures = 0;
    for (const Line& line : linesOf(dump.out)) {
        EXPECT_EQ(line.offset, end) << line.name;
        EXPECT_THAT(line.name, Not(HasSubstr("unknown")));
        const bool isLong = line.length >= 128;
        // ffmpeg writes lengths in one, four or nine bytes.
        const std::string bytes = readFile(path).substr(static_cast<std::size_t>(line.offset) + 16, 1);
        const auto first = static_cast<unsigned char>(bytes[0]);
        EXPECT_TRUE(first >= 0x80 || !isLong);
        end = line.offset + 17 + (first < 0x80 ? 0 : first & 0x7F) + line.length;
        pictures += line.name == "Frame-wrapped MPEG Picture Element, track 15010500" ? 1 : 0;
    }
    EXPECT_EQ(end, static_cast<std::int64_t>(std::filesystem::file_size(path)));
    EXPECT_EQ(pictures, 25);
    for (const char* shown :
         {"Partition Pack: header, closed complete", "Partition Pack: footer, closed complete", "Primer Pack",
          "OperationalPattern  OP1a", "CompanyName (3C01)", "FFmpeg", "EditRate (4B01)", "25/1", "IndexTableSegment",
          "IndexEntryArray (3F0A)", "25 entries of 15 bytes, stream offsets 0 to ", "Random Index Pack"})
        EXPECT_THAT(dump.out, HasSubstr(shown));
}

/// A run-in, a header, rubbish between two essence elements, a set that nobody knows, footer, random index pack.
MxfBuilder brokenFile()
{
    MxfBuilder file{test::Bytes(70, 'x')};
    file.partition({.bodySID = 1, .metadata = StandardFile{}.Bytes()}).essence(1000);
    putBytes(file.bytes, test::Bytes(33, 'r'));
    file.essence(500).klv(ulOf(0x060E2B3402530101, 0x0E77777777777700),
                          {0x99, 0x99, 0x00, 0x01, 0xAB, 0x12, 0x34, 0x00});
    file.partition({.kind = 4}).stateFooter().randomIndexPack();
    return file;
}

TEST(MxfDump, ShowsRunInRubbishAndUnknownSetsAsWhatTheyAre)
{
    const TempFolder folder;
    const MxfBuilder file = brokenFile();
    const Outcome dump = zanfcp({"mxf", "dump", write(folder, file.bytes)});
    EXPECT_EQ(dump.status, 0);
    EXPECT_THAT(dump.err, HasSubstr("33 bytes belong to no KLV"));
    const std::vector<Line> lines = linesOf(dump.out);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0].name, "run-in");
    EXPECT_EQ(lines[0].length, 70);
    EXPECT_EQ(lines[1].offset, 70);
    const auto rubbish = std::ranges::find(lines, "no KLV", &Line::name);
    ASSERT_NE(rubbish, lines.end());
    EXPECT_EQ(rubbish->length, 33);
    EXPECT_EQ((rubbish + 1)->offset, rubbish->offset + 33);
    EXPECT_THAT(dump.out, HasSubstr("unknown set"));
    EXPECT_THAT(dump.out, HasSubstr("unknown (9999)  <AB>"));
    EXPECT_THAT(dump.out, HasSubstr("bytes that are no whole item"));
    EXPECT_EQ(lines.back().name, "Random Index Pack");
}

TEST(MxfDump, ACutFileIsShownAsFarAsItGoesAndFails)
{
    const TempFolder folder;
    const MxfBuilder file = brokenFile();
    const auto footer = static_cast<std::size_t>(file.positionOf(1));
    struct Case {
        const char* name;
        std::size_t size;
        const char* message;
        std::size_t lines; ///< of KLVs and ranges that are shown, from the end of the essence on
    };
    const std::vector<Line> whole = linesOf(zanfcp({"mxf", "dump", write(folder, file.bytes)}).out);
    const auto before = static_cast<std::size_t>(std::ranges::count_if(
        whole, [&](const Line& line) { return line.offset < static_cast<std::int64_t>(footer); }));
    const Case cases[] = {
        {"inside a key", footer + 7, "ends inside the key or length", 1},
        {"inside a length", footer + 18, "ends inside the key or length", 1},
        {"inside a value", footer + 60, "the file ends after 60 of them", 1},
        {"between two KLVs", footer, nullptr, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        test::Bytes bytes = file.bytes;
        bytes.resize(c.size);
        const Outcome dump = zanfcp({"mxf", "dump", write(folder, bytes)});
        EXPECT_EQ(dump.status, c.message == nullptr ? 0 : 1);
        EXPECT_THAT(dump.err, HasSubstr(c.message == nullptr ? "without footer partition" : c.message));
        EXPECT_EQ(linesOf(dump.out).size(), before + c.lines);
    }
    const Outcome text = zanfcp({"mxf", "dump", folder.write("text.mxf", "no container at all")});
    EXPECT_EQ(text.status, 1);
    EXPECT_EQ(text.out, "");
    EXPECT_THAT(text.err, HasSubstr("is no MXF file"));
}

TEST(MxfDump, StepsOverEssenceOfAnyLength)
{
    const TempFolder folder;
    constexpr std::uint64_t kEssence = std::uint64_t{64} << 30;
    MxfBuilder head;
    head.partition({.bodySID = 1, .metadata = StandardFile{}.Bytes()});
    putBytes(head.bytes, kPictureKey);
    head.bytes.push_back(0x88);
    putNumber(head.bytes, kEssence, 8);
    MxfBuilder tail;
    tail.fill(100);
    const std::string path = write(folder, head.bytes);
    std::filesystem::resize_file(path, head.bytes.size() + kEssence); // a hole: reading it would take its time
    const Outcome dump =
        shell("printf '" +
              [&] {
                  std::string digits;
                  for (const std::uint8_t byte : tail.bytes) {
                      constexpr char kOctal[] = "01234567";
                      digits += std::string("\\") + kOctal[byte >> 6] + kOctal[byte >> 3 & 7] + kOctal[byte & 7];
                  }
                  return digits;
              }() +
              "' >>'" + path + "' && ulimit -t 5 && $ZANFCP mxf dump '" + path + "'");
    EXPECT_EQ(dump.status, 0) << dump.err;
    const std::vector<Line> lines = linesOf(dump.out);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines.back().name, "Fill");
    EXPECT_EQ(lines.back().offset, static_cast<std::int64_t>(head.bytes.size() + kEssence));
    EXPECT_EQ(lines[lines.size() - 2].length, static_cast<std::int64_t>(kEssence));
}

} // namespace
} // namespace zanfcp::test
