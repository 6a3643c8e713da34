#include "mxf/labels/UlDict.h"

#include "mxf/labels/OwnLabels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace TamrelMxf;

struct Row {
    SUl ul;
    std::string name;
    std::string kind;
    int attributes;
};

/// "06.0E.2B.34…" as bytes.
SUl parseUl(std::string_view text)
{
    SUl ul;
    for (std::size_t i = 0; i < SUl::kSize; ++i)
        ul.bytes[i] = static_cast<std::uint8_t>(std::stoi(std::string(text.substr(3 * i, 2)), nullptr, 16));
    return ul;
}

const std::vector<Row>& rows()
{
    static const std::vector<Row> all = [] {
        std::vector<Row> read;
        std::ifstream in{LABELS_TSV};
        std::string line;
        std::getline(in, line); // the column names
        while (std::getline(in, line)) {
            std::istringstream fields{line};
            std::string index, ul, name, kind, attributes;
            for (std::string* field : {&index, &ul, &name, &kind, &attributes})
                std::getline(fields, *field, '\t');
            read.push_back({parseUl(ul), name, kind, std::stoi(attributes)});
        }
        return read;
    }();
    return all;
}

TEST(UlDict, TableHoldsEveryRowOfTheDataInOrder)
{
    const std::map<std::string, EUlKind> kinds{{"node", EUlKind::node},
                                               {"label", EUlKind::label},
                                               {"pack", EUlKind::pack},
                                               {"set", EUlKind::set},
                                               {"own", EUlKind::own}};
    ASSERT_EQ(rows().size(), 2674u);
    ASSERT_EQ(CMxfUlDict::Entries().size(), rows().size());
    for (std::size_t i = 0; i < rows().size(); ++i) {
        const SUlEntry& entry = CMxfUlDict::Entries()[i];
        EXPECT_EQ(entry.key, rows()[i].ul.Item()) << i;
        EXPECT_EQ(entry.name, rows()[i].name) << i;
        EXPECT_EQ(entry.kind, kinds.at(rows()[i].kind)) << i;
        EXPECT_EQ(entry.attributes, rows()[i].attributes) << i;
    }
}

TEST(UlDict, LaterOfTwoRowsWithTheSameLastBytesIsFound)
{
    CMxfUlDict dict;
    ASSERT_EQ(dict.Init(), 0);
    std::map<std::uint64_t, std::size_t> last;
    for (std::size_t i = 0; i < rows().size(); ++i)
        last[rows()[i].ul.Item()] = i;
    EXPECT_EQ(last.size(), rows().size() - 8);
    for (const Row& row : rows())
        EXPECT_EQ(dict.Find(row.ul), &CMxfUlDict::Entries()[last.at(row.ul.Item())]) << row.name;
}

TEST(UlDict, FirstEightBytesAreNotCompared)
{
    CMxfUlDict dict;
    dict.Init();
    SUl label = parseUl("06.0E.2B.34.04.01.01.0D.0D.01.03.01.02.22.01.00");
    label.bytes[7] = 0x7F;
    label.bytes[0] = 0;
    ASSERT_NE(dict.Find(label), nullptr);
    EXPECT_EQ(dict.Find(label)->name, "ARRIRAW Frame-Wrapped Packed Essence Container");
}

TEST(UlDict, UnknownLabelIsNothing)
{
    CMxfUlDict dict;
    EXPECT_EQ(dict.Find(OwnLabels::kFrameCaptureSet), nullptr) << "before Init";
    dict.Init();
    for (const std::uint64_t key : {std::uint64_t{1}, std::uint64_t{0x0D01030102220101}, ~std::uint64_t{0}})
        EXPECT_EQ(dict.Find(key), nullptr) << key;
}

TEST(UlDict, OwnLabelsEqualTheRowsOfTheirNames)
{
    const std::pair<const char*, SUl> own[] = {
        {"ARRIRAW Frame-Wrapped Packed Essence Container", OwnLabels::kArriRawFramePackedContainer},
        {"ARRIRAW Frame-Wrapped HDE-Encoded Essence Container", OwnLabels::kArriRawHighDensityContainer},
        {"ARRIRAW 12-bit Coding", OwnLabels::kArriRaw12BitCoding},
        {"ARRIRAW 12-bit Reverse Coding", OwnLabels::kArriRaw12BitReverseCoding},
        {"ARRIRAW 13-bit Coding", OwnLabels::kArriRaw13BitCoding},
        {"ARRIRAW 12-bit High Density Coding", OwnLabels::kArriRaw12BitHighDensityCoding},
        {"ARRIRAW 13-bit High Density Coding", OwnLabels::kArriRaw13BitHighDensityCoding},
        {"RDD-54 PictureEssenceProcessingSubDescriptor", OwnLabels::kPictureEssenceProcessingSubDescriptor},
        {"RDD-55 TextureProcessingSubDescripto", OwnLabels::kTextureProcessingSubDescriptor},
        {"RDD-55 Texture Gen1 Processing SubDescripor", OwnLabels::kTextureGen1ProcessingSubDescriptor},
        {"RDD-55 Texture Gen2 Processing SubDescriptor", OwnLabels::kTextureGen2ProcessingSubDescriptor},
        {"RDD-55 Sensor Dimensions", OwnLabels::kSensorDimensions},
        {"RDD-55 Rectangle Set", OwnLabels::kRectangleSet},
        {"RDD-55 Sensor Characteristics", OwnLabels::kSensorCharacteristics},
        {"RDD-55 Color Encoding Set", OwnLabels::kColorEncodingSet},
        {"RDD-55 3D LUT", OwnLabels::kLookUpTable3D},
        {"RDD-55 Color Processing Set", OwnLabels::kColorProcessingSet},
        {"RDD-55 Clip SubDescriptor", OwnLabels::kClipSubDescriptor},
        {"RDD-55 Camera Position And Orientation Set", OwnLabels::kCameraPositionAndOrientationSet},
        {"RDD-55 Lens Configuration", OwnLabels::kLensConfiguration},
        {"RDD-55 Frame Capture Set", OwnLabels::kFrameCaptureSet},
    };
    const std::size_t first = rows().size() - std::size(own);
    for (std::size_t i = 0; i < std::size(own); ++i) {
        EXPECT_EQ(rows()[first + i].name, own[i].first);
        EXPECT_EQ(rows()[first + i].ul, own[i].second) << own[i].first;
    }
}

} // namespace
