#include "mxf/klv/PartitionPack.h"

#include "tests/support/MxfBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;

const Bytes kWaveLabel = ulOf(0x060E2B3404010101, 0x0D01030102060100);
const Bytes kUnknownLabel = ulOf(0x060E2B3404010101, 0x0D010301027E7E7E);

class PartitionPack : public testing::Test {
protected:
    void SetUp() override { dict.Init(); }

    /// A pack whose number fields are all different.
    static Bytes packBytes(const std::vector<Bytes>& containers, std::uint32_t stated, std::uint32_t itemSize = 16)
    {
        Bytes value;
        putNumber(value, 0x0102, 2);
        putNumber(value, 0x0304, 2);
        putNumber(value, 0x05060708, 4);
        for (std::uint64_t field = 0x11; field <= 0x15; ++field)
            putNumber(value, field << 40 | field, 8);
        putNumber(value, 0x21222324, 4);
        putNumber(value, std::uint64_t{0x31} << 40, 8);
        putNumber(value, 0x41424344, 4);
        putBytes(value, ulOf(0x060E2B3404010102, 0x0D01020110030000));
        putNumber(value, stated, 4);
        putNumber(value, itemSize, 4);
        for (const Bytes& label : containers) {
            putBytes(value, label);
            value.resize(value.size() + itemSize - std::min<std::uint32_t>(itemSize, 16));
        }
        return MxfBuilder{}.klv(ulOf(0x060E2B3402050101, 0x0D01020101030200), value).bytes;
    }

    int import(const Bytes& bytes)
    {
        CKlv klv;
        EXPECT_EQ(klv.View(bytes), kSuccess);
        return pack.ImportFrom(&klv, dict, 77);
    }

    CMxfUlDict dict;
    CPartitionPack pack;
};

TEST_F(PartitionPack, EveryFieldComesFromItsPlace)
{
    ASSERT_EQ(import(packBytes({kWaveLabel}, 1)), kSuccess);
    EXPECT_EQ(pack.kind, EPartitionKind::body);
    EXPECT_EQ(pack.status, EPartitionStatus::closedIncomplete);
    EXPECT_EQ(pack.majorVersion, 0x0102);
    EXPECT_EQ(pack.minorVersion, 0x0304);
    EXPECT_EQ(pack.kagSize, 0x05060708u);
    EXPECT_EQ(pack.thisPartition, 0x110000000011u);
    EXPECT_EQ(pack.previousPartition, 0x120000000012u);
    EXPECT_EQ(pack.footerPartition, 0x130000000013u);
    EXPECT_EQ(pack.extent.headerByteCount, 0x140000000014u);
    EXPECT_EQ(pack.extent.indexByteCount, 0x150000000015u);
    EXPECT_EQ(pack.indexSID, 0x21222324u);
    EXPECT_EQ(pack.bodyOffset, 0x310000000000u);
    EXPECT_EQ(pack.bodySID, 0x41424344u);
    EXPECT_EQ(pack.operationalPattern.Item(), 0x0D01020110030000u);
    EXPECT_EQ(pack.extent.position, 77);
    EXPECT_EQ(pack.extent.packSize, 20 + 88 + 16);
}

TEST_F(PartitionPack, ContainersAreNamedApartFromTheGenericOne)
{
    const Bytes genericAsRegistered = ulOf(0x060E2B3401010103, 0x0D010301027F0100);
    const Bytes genericAsWritten = ulOf(0x060E2B3404010103, 0x0D010301027F0100);
    ASSERT_EQ(import(packBytes({kWaveLabel, genericAsRegistered, kUnknownLabel, genericAsWritten}, 4)), kSuccess);
    ASSERT_EQ(pack.essenceContainers.size(), 4u);
    EXPECT_EQ(pack.essenceContainers[0].label, SUl::From(kWaveLabel.data()));
    ASSERT_NE(pack.essenceContainers[0].entry, nullptr);
    EXPECT_EQ(pack.essenceContainers[0].entry, dict.Find(0x0D01030102060100));
    for (const std::size_t i : {1u, 2u, 3u})
        EXPECT_EQ(pack.essenceContainers[i].entry, nullptr) << i;
}

TEST_F(PartitionPack, FalseContainerListsGiveWhatIsWhole)
{
    const Bytes two = packBytes({kWaveLabel, kUnknownLabel}, 2);
    EXPECT_EQ(import(packBytes({kWaveLabel, kUnknownLabel}, 0xFFFFFFFF)), kSuccess);
    EXPECT_EQ(pack.essenceContainers.size(), 2u);
    EXPECT_EQ(import(packBytes({kWaveLabel, kUnknownLabel}, 1)), kSuccess);
    EXPECT_EQ(pack.essenceContainers.size(), 1u);
    EXPECT_EQ(import(packBytes({kWaveLabel, kUnknownLabel}, 2, 24)), kSuccess) << "longer items";
    EXPECT_EQ(pack.essenceContainers.size(), 2u);
    EXPECT_EQ(pack.essenceContainers[1].label, SUl::From(kUnknownLabel.data()));
    EXPECT_EQ(import(packBytes({}, 2, 0)), kSuccess) << "items of no size";
    EXPECT_TRUE(pack.essenceContainers.empty());
}

TEST_F(PartitionPack, RefusalsLeaveThePackAsItWas)
{
    const Bytes valid = packBytes({kWaveLabel}, 1);
    ASSERT_EQ(import(valid), kSuccess);
    EXPECT_EQ(pack.ImportFrom(nullptr, dict, 0), kNullArgument);

    const auto withKey = [&](std::size_t byte, std::uint8_t to) {
        Bytes edited = valid;
        edited[byte - 1] = to;
        return edited;
    };
    struct Case {
        const char* name;
        Bytes bytes;
        int status;
    };
    const Bytes key(valid.begin(), valid.begin() + 16);
    const Bytes fixed(valid.begin() + 20, valid.begin() + 20 + 80);
    const Case cases[] = {
        {"byte 5 of another registry", withKey(5, 0x01), kOutOfRange},
        {"primer pack", withKey(14, 0x05), kOutOfRange},
        {"random index pack", withKey(14, 0x11), kOutOfRange},
        {"byte 13", withKey(13, 0x02), kOutOfRange},
        {"another version in byte 8 is no fault", withKey(8, 0x7F), kSuccess},
        {"no value", MxfBuilder{}.klv(key, {}).bytes, kOutOfRange},
        {"one byte short of the fixed fields", MxfBuilder{}.klv(key, Bytes(fixed.begin(), fixed.end() - 1)).bytes,
         kCutShort},
        {"fixed fields alone", MxfBuilder{}.klv(key, fixed).bytes, kSuccess},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_EQ(import(valid), kSuccess);
        EXPECT_EQ(import(c.bytes), c.status);
        EXPECT_EQ(pack.bodySID, 0x41424344u);
        CKlv klv;
        ASSERT_EQ(klv.View(c.bytes), kSuccess);
        EXPECT_EQ(CPartitionPack::CreateFrom(&klv, dict, 0) != nullptr, c.status == kSuccess);
    }
}

} // namespace
