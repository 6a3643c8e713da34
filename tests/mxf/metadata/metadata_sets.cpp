#include "mxf/metadata/HeaderSets.h"
#include "mxf/metadata/MetadataSet.h"
#include "mxf/metadata/ObjectList.h"
#include "mxf/metadata/PrimerPack.h"
#include "mxf/metadata/SetTables.h"
#include "tests/support/MxfSets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

/// A set key with this coding in byte 6.
SUl KeyWithCoding(std::uint8_t coding)
{
    SUl key = Label("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00");
    key.bytes[5] = coding;
    return key;
}

std::unique_ptr<CMetadataSet> Import(const SUl& key, const Bytes& value)
{
    const Bytes bytes = Klv(key, value);
    CKlv klv;
    EXPECT_EQ(klv.View(bytes), kSuccess);
    auto set = std::make_unique<CMetadataSet>();
    EXPECT_EQ(set->ImportFrom(&klv), kSuccess);
    return set;
}

Bytes Value(const CMetadataSet& set, std::uint16_t tag)
{
    const auto value = set.Value(tag);
    return {value.begin(), value.end()};
}

TEST(MetadataSet, ReadsItemsInTheCodingOfByteSix)
{
    struct Case {
        const char* name;
        std::uint8_t coding;
        const char* value;
        Bytes expected; ///< of tag 3B05
    };
    const Case cases[] = {
        {"2-byte length", 0x53, "3B05 0002 0103", {1, 3}},
        {"any other coding is read with 2-byte lengths", 0x33, "3B05 0002 0103", {1, 3}},
        {"4-byte length", 0x73, "3B05 00000002 0103", {1, 3}},
        {"BER short form", 0x13, "3B05 02 0103", {1, 3}},
        {"BER long form", 0x13, "3B05 83 000002 0103", {1, 3}},
        {"BER long form of 15 bytes", 0x13, "3B05 8F 000000000000000000000000000002 0103", {1, 3}},
        {"BER field of 17 bytes, one of them the number",
         0x13,
         "3B05 91 02 AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA 0103",
         {1, 3}},
        {"the last of two items with a tag counts", 0x53, "3B05 0002 FFFF 3B05 0002 0103", {1, 3}},
        {"an empty item before it", 0x53, "3B09 0000 3B05 0002 0103", {1, 3}},
        {"four bytes after the last item", 0x53, "3B05 0002 0103 3B09 0000", {1, 3}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Value(*Import(KeyWithCoding(c.coding), Hex(c.value)), 0x3B05), c.expected);
    }
}

TEST(MetadataSet, KeepsTheItemsBeforeABrokenOne)
{
    struct Case {
        const char* name;
        std::uint8_t coding;
        const char* broken;
    };
    const Case cases[] = {
        {"value cut", 0x53, "3B09 0003 0102"},
        {"length cut", 0x73, "3B09 000000"},
        {"4-byte length beyond everything", 0x73, "3B09 FFFFFFFF 01"},
        {"indefinite BER length", 0x13, "3B09 80 01020304"},
        {"BER length cut", 0x13, "3B09 84 0000"},
        {"BER length above 64 bits", 0x13, "3B09 8A FFFFFFFFFFFFFFFFFFFF 01"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const char* good = c.coding == 0x53 ? "3B05 0001 07" : c.coding == 0x73 ? "3B05 00000001 07" : "3B05 01 07";
        const auto set = Import(KeyWithCoding(c.coding), Join(Hex(good), Hex(c.broken)));
        EXPECT_EQ(set->ItemCount(), 1U);
        EXPECT_EQ(Value(*set, 0x3B05), Bytes{7});
    }
}

TEST(MetadataSet, ReportsMissingInput)
{
    CMetadataSet set;
    EXPECT_EQ(set.ImportFrom(nullptr), -2);
    CKlv empty;
    EXPECT_EQ(set.ImportFrom(&empty), -3);
    CMetadataItem item;
    EXPECT_EQ(item.ImportFrom({}, 0x53), -2);
    const Bytes indefinite = Hex("3B09 80 01020304");
    EXPECT_EQ(item.ImportFrom(indefinite, 0x13), -11);
}

TEST(MetadataSet, TagsComeInAnyOrderAndTheLaterOfTwoStays)
{
    const auto set = Import(KeyWithCoding(0x53), Hex("4B01 0001 01 3C0A 0001 02 4B01 0001 03 0202 0001 04"));
    std::vector<int> tags;
    for (const auto& [tag, item] : set->Items())
        tags.push_back(tag);
    EXPECT_EQ(tags, (std::vector<int>{0x0202, 0x3C0A, 0x4B01}));
    EXPECT_EQ(Value(*set, 0x4B01), Bytes{3});

    // A million empty items with descending tags take neither time nor memory for more than there are tags.
    Bytes many;
    for (std::uint32_t i = 0; i < 1'000'000; ++i)
        for (const std::uint32_t byte : {(~i >> 8) & 0xFF, ~i & 0xFF, 0U, 0U})
            many.push_back(static_cast<std::uint8_t>(byte));
    EXPECT_EQ(Import(KeyWithCoding(0x53), many)->ItemCount(), 65'536U);
}

TEST(MetadataSet, FourBytesAreASetWithoutItems)
{
    const auto set = Import(KeyWithCoding(0x53), Hex("3B05 0000"));
    EXPECT_EQ(set->ItemCount(), 0U);
    EXPECT_EQ(set->Type(), 0x012F);
}

TEST(MetadataSet, IndexEntryArrayIsAsLongAsItsEntries)
{
    const SUl key = Label("06.0E.2B.34.02.53.01.01.0D.01.02.01.01.10.01.00");
    // The entries look like items with the tag of the array, so that reading on into them would replace it.
    Bytes array = Join(BigEndian(1000, 4), BigEndian(11, 4));
    for (int i = 0; i < 1000; ++i)
        array = Join(array, Hex("3F0A 0005 3F0A 0001 3F0A 3F"));
    for (const unsigned stated : {0U, 100U, 11000U}) {
        SCOPED_TRACE(stated);
        const auto set = Import(key, Join(Hex("3F06 0004 00000081 3F0A"), BigEndian(stated, 2), array));
        EXPECT_EQ(set->Value(0x3F0A).size(), 11008U);
        EXPECT_EQ(set->ItemCount(), 2U);
        EXPECT_EQ(set->Find(0x3F0A)->TotalSize(), 4 + stated);
    }
    // An entry count that the segment does not hold changes nothing.
    const auto lying =
        Import(key, Join(Hex("3F0A 0010 FFFFFFFF FFFFFFFF 0102030405060708"), Hex("3F06 0004 00000081")));
    EXPECT_EQ(lying->Value(0x3F0A).size(), 16U);
    EXPECT_EQ(lying->Value(0x3F06).size(), 4U);
}

TEST(MetadataArray, ReplacesTheFirstSetWithTheUid)
{
    CMetadataArray sets;
    auto fresh = Import(KeyWithCoding(0x53), Join(Hex("3C0A 0010"), Uid(2).bytes, Hex("3B05 0001 09")));
    EXPECT_EQ(sets.RepaceByUID(Uid(2), fresh), -1);
    ASSERT_NE(fresh, nullptr);

    for (const std::uint32_t number : {1U, 2U, 2U})
        sets.Append(Import(KeyWithCoding(0x53), Join(Hex("3C0A 0010"), Uid(number).bytes)));
    EXPECT_EQ(sets.RepaceByUID(Uid(3), fresh), -1);
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(sets.RepaceByUID(Uid(2), fresh), 1);
    EXPECT_EQ(fresh, nullptr);
    EXPECT_EQ(Value(sets[1], 0x3B05), Bytes{9});
    EXPECT_EQ(sets[2].ItemCount(), 1U);
}

class Primer : public testing::Test {
protected:
    int Load(const char* key, const Bytes& value)
    {
        const Bytes bytes = Klv(Label(key), value);
        CKlv klv;
        EXPECT_EQ(klv.View(bytes), kSuccess);
        return primer.ImportFrom(&klv);
    }
    static constexpr const char* kKey = "06.0E.2B.34.02.05.01.01.0D.01.02.01.01.05.01.00";
    CPrimerPack primer;
};

TEST_F(Primer, KnowsDynamicTagsOnly)
{
    const Bytes mark = Hex("06.0E.2B.34.01.01.01.0A.07.02.01.03.01.0E.00.00");
    const Bytes uid = Hex("06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00");
    ASSERT_EQ(Load(kKey, Batch({Join(Hex("8001"), mark), Join(Hex("3C0A"), uid), Join(Hex("FFFE"), mark)})), 0);
    EXPECT_EQ(primer.EntryCount(), 3U);
    EXPECT_EQ(primer.EntrySize(), 18U);
    EXPECT_EQ(primer.DynamicTagCount(), 1U);
    // The later tag counts, and the version and category of the label do not.
    EXPECT_EQ(primer.TagOf(Label("00.00.00.00.00.00.00.00.07.02.01.03.01.0E.00.00")), 0xFFFE);
    EXPECT_EQ(primer.TagOf(SUl::From(uid.data())), std::nullopt);
    EXPECT_EQ(primer.LabelOf(0x3C0A), SUl::From(uid.data()));
    EXPECT_EQ(primer.LabelOf(0x8002), std::nullopt);
}

TEST_F(Primer, ReadsAsManyEntriesAsThereAre)
{
    const Bytes entry = Join(Hex("8001"), Hex("06.0E.2B.34.01.01.01.0A.07.02.01.03.01.0E.00.00"));
    ASSERT_EQ(Load(kKey, Join(Hex("FFFFFFFF 00000012"), entry, Hex("8002 060E"))), 0);
    EXPECT_EQ(primer.DynamicTagCount(), 1U);
    ASSERT_EQ(Load(kKey, Hex("0000")), 0);
    EXPECT_EQ(primer.DynamicTagCount(), 0U);
}

TEST_F(Primer, RejectsAForeignKey)
{
    ASSERT_EQ(Load(kKey, Batch({Join(Hex("8001"), Hex("06.0E.2B.34.01.01.01.0A.07.02.01.03.01.0E.00.00"))})), 0);
    EXPECT_EQ(Load("06.0E.2B.34.02.53.01.01.0D.01.02.01.01.05.01.00", Hex("0000000000000012")), -3);
    EXPECT_EQ(primer.DynamicTagCount(), 0U);
    EXPECT_EQ(Load(kKey, {}), -3);
    EXPECT_EQ(primer.ImportFrom(nullptr), -2);
}

TEST(ObjectList, MakesOneObjectForEachReference)
{
    struct SObject {
        SUUID instanceUid;
        int other = 0;
    };
    CObjectList<SObject, 0x4403> list;
    EXPECT_EQ(list.Import({}, true), -2);
    ASSERT_EQ(list.Import(Refs({1, 2}), false), 0);
    ASSERT_EQ(list.Import(Refs({3}), false), 0);
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[2].instanceUid, Uid(3));
    ASSERT_EQ(list.Import(Refs({4}), true), 0);
    ASSERT_EQ(list.size(), 1U);

    Bytes lying = Refs({5, 6});
    lying[0] = 0xFF; // more than there are
    lying.pop_back();
    ASSERT_EQ(list.Import(lying, true), 0);
    EXPECT_EQ(list.size(), 1U);
    ASSERT_EQ(list.Import(Hex("00000002"), true), 0);
    EXPECT_TRUE(list.empty());
}

TEST(HeaderSets, StepsOverWhatIsNoSet)
{
    MxfHeader header;
    header.Add(MxfSet("Preface", 1).Dynamic("06.0E.2B.34.01.01.01.0E.04.04.05.03.00.00.00.00", {1}))
        .Raw(Klv(Label("06.0E.2B.34.01.01.01.02.03.01.02.10.01.00.00.00"), Bytes(300)))
        .Raw(Hex("00 00 06 0E 2B 00 11"))
        .Raw(Klv(Label("06.0E.2B.34.02.53.01.01.0F.0F.0F.0F.00.00.00.00"), Hex("3C0A 0001 01")))
        .Add(MxfSet("ContentStorage", 2));
    const SHeaderSets read = ReadHeaderSets(header.All());
    EXPECT_TRUE(read.hasPrimer);
    EXPECT_FALSE(read.isCut);
    EXPECT_EQ(read.skippedBytes, 7U);
    ASSERT_EQ(read.sets.Size(), 3U);
    EXPECT_EQ(read.sets[0].Type(), 0x012F);
    EXPECT_EQ(read.sets[2].InstanceUid(), Uid(2));
    EXPECT_EQ(read.primer.TagOf(0x0404050300000000), 0xFFFF);
}

TEST(HeaderSets, KeepsWhatStandsBeforeACut)
{
    MxfHeader header;
    header.Add(MxfSet("Preface", 1)).Add(MxfSet("ContentStorage", 2));
    const Bytes whole = header.All();
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const SHeaderSets read = ReadHeaderSets(std::span(whole).first(size));
        const bool atEdge = size == 0 || size == 28 || size == 68 || size == whole.size();
        EXPECT_EQ(read.isCut, !atEdge) << size;
        EXPECT_EQ(read.sets.Size(), size < 68 ? 0U : size < whole.size() ? 1U : 2U) << size;
    }
}

TEST(SetTables, FindSetsByKeyAndName)
{
    struct Case {
        const char* key;
        const char* name;
    };
    const Case cases[] = {
        {"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00", "Preface"},
        {"06.0E.2B.34.02.13.01.04.0D.01.01.01.01.01.2F.00", "Preface"}, // coding and version do not matter
        {"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.28.00", "CDCIPictureEssenceDescriptor"},
        {"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.81.01", "HEVCSubDescriptor"},
        {"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.81.02", "JPEGXSSubDescriptor"},
        {"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.05.01.00", "PrimerPack"},
        {"06.0E.2B.34.02.53.01.01.0E.17.01.01.01.00.00.00", "ARRIRAWPictureEssenceProcessingSubDescriptor"},
    };
    for (const Case& c : cases) {
        const SSetDef* set = FindSet(Label(c.key));
        ASSERT_NE(set, nullptr) << c.name;
        EXPECT_EQ(set->name, c.name);
        EXPECT_EQ(FindSet(c.name), set);
    }
    EXPECT_EQ(FindSet(Label("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.FF.00")), nullptr);
    EXPECT_EQ(FindSet("Nothing"), nullptr);
}

TEST(SetTables, EveryRowIsFoundAndEveryParentChainEnds)
{
    for (const SSetDef& set : AllSets()) {
        EXPECT_EQ(FindSet(set.key.Label()), &set) << set.name.View();
        int depth = 0;
        for (const SSetDef* parent = &set; parent != nullptr; parent = parent->Parent())
            ASSERT_LT(++depth, 12) << set.name.View();
        for (const SPropertyDef& property : set.Properties()) {
            EXPECT_EQ(FindProperty(&set, property.label.Label()), &property)
                << set.name.View() << "." << property.name.View();
            if (property.place != EPlace::localTag) continue;
            EXPECT_EQ(FindProperty(&set, property.tag), &property) << set.name.View() << "." << property.name.View();
        }
    }
}

TEST(SetTables, PropertiesAreThoseOfTheNearestClass)
{
    const SSetDef* mpeg = FindSet("MPEGVideoDescriptor");
    ASSERT_NE(mpeg, nullptr);
    EXPECT_TRUE(mpeg->Is(*FindSet("GenericDescriptor")));
    EXPECT_FALSE(mpeg->Is(*FindSet("RGBAPictureEssenceDescriptor")));
    // BodySID has the same tag in two classes that are not related.
    EXPECT_EQ(FindProperty(FindSet("IndexTableSegment"), 0x3F07)->set,
              static_cast<std::size_t>(FindSet("IndexTableSegment") - AllSets().data()));
    EXPECT_EQ(FindProperty(FindSet("EssenceContainerData"), 0x3F07)->set,
              static_cast<std::size_t>(FindSet("EssenceContainerData") - AllSets().data()));
    // StoredWidth of a class two levels up, and of a class nobody knows.
    EXPECT_EQ(FindProperty(mpeg, 0x3203)->name, "StoredWidth");
    EXPECT_EQ(FindProperty(nullptr, 0x3203)->name, "StoredWidth");
    EXPECT_EQ(FindProperty(mpeg, std::uint16_t{0x7777}), nullptr);
    const SPropertyDef* tracks = FindProperty(FindSet("SourcePackage"), 0x4403);
    ASSERT_NE(tracks, nullptr);
    EXPECT_EQ(tracks->value, EValue::strongRef);
    EXPECT_EQ(tracks->shape, EShape::list);
    EXPECT_EQ(tracks->Target(), FindSet("GenericTrack"));
}

} // namespace
