#include "mxf/klv/RandomIndexPack.h"

#include "mxf/Limits.h"
#include "tests/support/MemorySource.h"
#include "tests/support/MxfBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using testing::ElementsAre;
using zanfcp::test::MemorySource;

using Entries = std::vector<std::pair<std::uint32_t, std::uint64_t>>;

Bytes ripBytes(const Entries& entries)
{
    MxfBuilder builder;
    builder.partitions = entries;
    return builder.randomIndexPack().bytes;
}

std::vector<std::int64_t> placesOf(const CRandomIndexPack& rip, std::uint32_t bodySID)
{
    std::vector<std::int64_t> places;
    for (const SPartitionDesc& desc : rip.PartitionsOf(bodySID))
        places.push_back(desc.offset);
    return places;
}

class RandomIndexPack : public testing::Test {
protected:
    void SetUp() override { dict.Init(); }

    int import(CRandomIndexPack& rip, const Bytes& bytes, bool list = true)
    {
        CKlv klv;
        EXPECT_EQ(klv.View(bytes), kSuccess);
        return rip.ImportFromEx(&klv, list);
    }

    CMxfUlDict dict;
    MemorySource source;
};

TEST_F(RandomIndexPack, EntriesAreSortedByPlaceAndGroupedByBodySID)
{
    const Entries entries{{0, 0}, {1, 9000}, {2, 700}, {1, 500}, {1, 500}, {0, 20000}};
    for (const bool list : {true, false}) {
        CRandomIndexPack rip{&source, dict, 0};
        ASSERT_EQ(import(rip, ripBytes(entries), list), kSuccess);
        EXPECT_EQ(rip.EntryCount(), 6u);
        EXPECT_THAT(rip.Offsets(), ElementsAre(0, 500, 700, 9000, 20000));
        if (list) {
            EXPECT_THAT(placesOf(rip, 1), ElementsAre(500, 500, 9000));
            EXPECT_THAT(placesOf(rip, 0), ElementsAre(0, 20000));
        } else {
            EXPECT_TRUE(rip.PartitionsOf(1).empty());
        }
        EXPECT_TRUE(rip.PartitionsOf(77).empty());
        ASSERT_EQ(import(rip, ripBytes({{3, 4}})), kSuccess);
        EXPECT_THAT(rip.Offsets(), ElementsAre(4)) << "a second import replaces the first";
        EXPECT_TRUE(rip.PartitionsOf(1).empty());
    }
}

TEST_F(RandomIndexPack, RunInIsTakenOffAndWhatLiesBeforeItSkipped)
{
    struct Case {
        std::int64_t correction;
        std::vector<std::uint64_t> places;
    };
    const std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    const Entries entries{{1, 0}, {1, 99}, {1, 100}, {1, most}, {1, most + 1}, {1, ~std::uint64_t{0}}};
    const Case cases[] = {
        {0, {0, 99, 100, most}},
        {100, {0, most - 100}},
        {-100, {100, 199, 200}}, // the usual run-in: offsets count from behind it
        {std::numeric_limits<std::int64_t>::min(), {}},
        {std::numeric_limits<std::int64_t>::max(), {0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.correction);
        CRandomIndexPack rip{&source, dict, c.correction};
        ASSERT_EQ(import(rip, ripBytes(entries)), kSuccess);
        EXPECT_EQ(rip.EntryCount(), 6u);
        EXPECT_THAT(rip.Offsets(), testing::ElementsAreArray(c.places));
    }
}

TEST_F(RandomIndexPack, RefusesWhatIsNoPack)
{
    CRandomIndexPack rip{&source, dict, 0};
    EXPECT_EQ(rip.ImportFromEx(nullptr, true), kNullArgument);
    EXPECT_EQ(import(rip, klvBytes(kPictureKey, 28)), kOutOfRange);
    EXPECT_EQ(import(rip, klvBytes(kRipKey, 0)), kOutOfRange);
    EXPECT_EQ(import(rip, klvBytes(kRipKey, 4)), kSuccess) << "no entries";
    EXPECT_EQ(import(rip, klvBytes(kRipKey, 12 * kMaxPartitions + 4)), kSuccess);
    EXPECT_EQ(import(rip, klvBytes(kRipKey, 12 * (kMaxPartitions + 1) + 4)), kOutOfRange);
    EXPECT_EQ(rip.ImportPartition(nullptr, 0), kNullArgument);
    EXPECT_EQ(rip.ImportPartition(std::make_unique<CPartitionPack>().get(), -1), kOutOfRange);
}

TEST_F(RandomIndexPack, IsFoundOnlyAtTheStatedPlaceFromTheEnd)
{
    MxfBuilder builder;
    builder.partition({}).essence(100).partition({.kind = 4}).randomIndexPack();
    struct Case {
        const char* name;
        void (*edit)(Bytes&);
        bool found;
    };
    const Case cases[] = {
        {"untouched", [](Bytes&) {}, true},
        {"another version in byte 8", [](Bytes& b) { b[b.size() - 48 + 7] = 0x0F; }, true},
        {"length larger than the file", [](Bytes& b) { b[b.size() - 4] = 0x7F; }, false},
        {"length of all ones", [](Bytes& b) { std::fill(b.end() - 4, b.end(), std::uint8_t{0xFF}); }, false},
        {"length of nothing", [](Bytes& b) { std::fill(b.end() - 4, b.end(), std::uint8_t{0}); }, false},
        {"length one too small", [](Bytes& b) { --b.back(); }, false},
        {"value reaches past the end", [](Bytes& b) { b[b.size() - 48 + 19] = 0x7F; }, false},
        {"last byte cut", [](Bytes& b) { b.pop_back(); }, false},
        {"one byte behind it", [](Bytes& b) { b.push_back(0); }, false},
        {"no entry",
         [](Bytes& b) {
             b.erase(b.end() - 48, b.end());
             putBytes(b, MxfBuilder{}.klv(kRipKey, {0, 0, 0, 24}).bytes);
         },
         false},
        {"file below 64 bytes", [](Bytes& b) { b.erase(b.begin(), b.end() - 48); }, false},
        {"empty", [](Bytes& b) { b.clear(); }, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        source.bytes = builder.bytes;
        c.edit(source.bytes);
        const auto rip = CRandomIndexPack::LoadFromEnd(source, dict, 0, true);
        EXPECT_EQ(rip != nullptr, c.found);
        EXPECT_EQ(rip ? rip->EntryCount() : 2u, 2u);
    }
}

/// Three body partitions of BodySID 1 with 300, 200 and 100 bytes of essence, one of BodySID 2 among them.
MxfBuilder fourBodies()
{
    MxfBuilder b{Bytes(37, 0x55)};
    const Bytes metadata = klvBytes(kPrimerKey, 30);
    b.partition({.metadata = metadata, .fill = 40});
    b.partition({.kind = 3, .bodySID = 1, .fill = 60}).essence(280);
    b.partition({.kind = 3, .bodySID = 2, .index = klvBytes(kIndexKey, 50)}).essence(480);
    b.partition({.kind = 3, .bodySID = 1, .bodyOffset = 300, .metadata = metadata}).fill(33).essence(180);
    b.partition({.kind = 3, .bodySID = 1, .bodyOffset = 500}).klv(kIndexKey, Bytes(10)).essence(80);
    return b.partition({.kind = 4}).randomIndexPack();
}

TEST_F(RandomIndexPack, TranslatesEssenceOffsetsAcrossPartitions)
{
    const MxfBuilder b = fourBodies();
    source.bytes = b.bytes;
    const auto rip = CRandomIndexPack::LoadFromEnd(source, dict, -37, true);
    ASSERT_NE(rip, nullptr);
    constexpr std::int64_t kPack = 20 + 88;
    const std::int64_t starts[] = {b.positionOf(1) + kPack + 60, b.positionOf(2) + kPack + 70,
                                   b.positionOf(3) + kPack + 50 + 33, b.positionOf(4) + kPack + 30};
    for (const std::int64_t start : starts)
        ASSERT_EQ(Bytes(source.bytes.begin() + start, source.bytes.begin() + start + 16), kPictureKey);

    struct Case {
        std::int64_t offset;
        std::uint32_t bodySID;
        std::int64_t position;
    };
    const Case cases[] = {
        {0, 1, starts[0]},
        {299, 1, starts[0] + 299},
        {300, 1, starts[2]},
        {499, 1, starts[2] + 199},
        {500, 1, starts[3]},
        {599, 1, starts[3] + 99},
        {600, 1, -1},
        {0, 2, starts[1]},
        {499, 2, starts[1] + 499},
        {500, 2, -1},
        {-1, 1, -1},
        {0, 3, -1},
        {std::numeric_limits<std::int64_t>::max(), 1, -1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(rip->TranslateOffset(c.offset, c.bodySID), c.position) << c.offset << " of " << c.bodySID;
}

TEST_F(RandomIndexPack, UnreadablePartitionDoesNotHideItsNeighbours)
{
    const MxfBuilder b = fourBodies();
    source.bytes = b.bytes;
    const auto rip = CRandomIndexPack::LoadFromEnd(source, dict, -37, true);
    ASSERT_NE(rip, nullptr);
    source.bytes[static_cast<std::size_t>(b.positionOf(3))] = 0; // the middle one of BodySID 1
    EXPECT_NE(rip->TranslateOffset(100, 1), -1);
    EXPECT_EQ(rip->TranslateOffset(350, 1), -1);
    EXPECT_NE(rip->TranslateOffset(550, 1), -1);
}

TEST_F(RandomIndexPack, ImportedPartitionJoinsTheListAtItsPlace)
{
    CRandomIndexPack rip{&source, dict, 0};
    ASSERT_EQ(import(rip, ripBytes({{1, 100}, {1, 300}})), kSuccess);
    CPartitionPack pack;
    pack.bodySID = 1;
    pack.bodyOffset = 42;
    EXPECT_EQ(rip.ImportPartition(&pack, 200), kSuccess);
    EXPECT_EQ(rip.ImportPartition(&pack, 200), kSuccess) << "twice is once";
    EXPECT_EQ(rip.ImportPartition(&pack, 300), kSuccess);
    EXPECT_THAT(rip.Offsets(), ElementsAre(100, 200, 300));
    EXPECT_THAT(placesOf(rip, 1), ElementsAre(100, 200, 300));
    EXPECT_EQ(rip.PartitionsOf(1)[1].bodyOffset, 42u);
    EXPECT_EQ(rip.PartitionsOf(1)[0].state, SPartitionDesc::EState::unread);
    EXPECT_EQ(rip.PartitionsOf(1)[2].state, SPartitionDesc::EState::read);
}

} // namespace
