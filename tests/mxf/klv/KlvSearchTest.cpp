#include "mxf/klv/KlvSearch.h"

#include "tests/support/MxfBuilder.h"
#include "tests/support/RecordingSnitcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using zanfcp::test::RecordingSnitcher;

TEST(KlvSearch, SkipsToTheNextThreeBytesOfAKeyAndReportsTheRange)
{
    struct Case {
        const char* name;
        std::size_t size;
        std::size_t keyAt; ///< where 06 0E 2B stands
        std::int64_t from;
        std::int64_t to;
        std::vector<std::string> lines;
    };
    const Case cases[] = {
        {"behind rubbish", 64, 32, 5, 32, {"warning: Non-KLV data at offsets 0x5...0x20"}},
        {"from the start", 64, 32, 0, 32, {"warning: Non-KLV data at offsets (nil)...0x20"}},
        {"there already", 64, 32, 32, 32, {}},
        {"behind the last one", 64, 32, 33, 59, {"warning: Non-KLV data at offsets 0x21...0x3b"}},
        {"last place that is looked at", 64, 58, 0, 58, {"warning: Non-KLV data at offsets (nil)...0x3a"}},
        {"too near the end", 64, 60, 0, 59, {"warning: Non-KLV data at offsets (nil)...0x3b"}},
        {"in the tail already", 64, 32, 61, 61, {}},
        {"shorter than the tail", 4, 0, 0, 0, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Bytes buffer(c.size, 0x06);
        buffer[c.keyAt + 1] = 0x0E;
        buffer[c.keyAt + 2] = 0x2B;
        RecordingSnitcher sink;
        std::int64_t position = c.from;
        SkipNonKlvData(buffer.data(), static_cast<std::int64_t>(buffer.size()), position, CLoggerT<CSnitcher>{&sink});
        EXPECT_EQ(position, c.to);
        EXPECT_EQ(sink.lines, c.lines);
    }
}

TEST(KlvSearch, ThreeBytesWithoutTheFourthAreNoKey)
{
    Bytes buffer;
    for (int i = 0; i < 10; ++i)
        putBytes(buffer, {0x06, 0x0E, 0x2B, 0x35});
    putBytes(buffer, kPictureKey);
    std::int64_t position = 0;
    EXPECT_TRUE(SkipToKey(buffer, position, {}));
    EXPECT_EQ(position, 40);
    buffer.resize(40);
    position = 0;
    EXPECT_FALSE(SkipToKey(buffer, position, {}));
}

TEST(KlvSearch, WalkStepsOverKlvsAndRubbishAndResumesWhereItStopped)
{
    MxfBuilder b{Bytes(100, 0x06)};
    b.fill(50).essence(30);
    putBytes(b.bytes, Bytes(21, 0xFF));
    putBytes(b.bytes, kPictureKey); // a key with an impossible length
    putBytes(b.bytes, Bytes(40, 0xFF));
    const auto expected = static_cast<std::int64_t>(b.bytes.size());
    b.partition({});
    for (std::size_t size = 0; size <= b.bytes.size(); ++size) { // however much of it is there at first
        std::int64_t position = 0;
        const auto first = WalkToPartitionPack(std::span{b.bytes}.first(size), position, {});
        EXPECT_EQ(first.value_or(expected), expected) << size;
        EXPECT_EQ(WalkToPartitionPack(b.bytes, position, {}), expected) << size;
    }
}

TEST(KlvSearch, SearchFindsAPartitionPackInsideAnythingElse)
{
    MxfBuilder b;
    b.essence(30).klv(kRipKey, Bytes(5)).klv(kPrimerKey, Bytes(5));
    EXPECT_EQ(SearchPartitionPack(b.bytes), std::nullopt);
    const auto expected = static_cast<std::int64_t>(b.bytes.size());
    b.partition({.kind = 4});
    EXPECT_EQ(SearchPartitionPack(b.bytes), expected);
    EXPECT_EQ(SearchPartitionPack(std::span{b.bytes}.first(static_cast<std::size_t>(expected) + 15)), std::nullopt);
    EXPECT_EQ(SearchPartitionPack({}), std::nullopt);
}

} // namespace
