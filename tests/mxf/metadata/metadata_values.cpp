#include "mxf/metadata/HeaderSets.h"
#include "mxf/metadata/ValueText.h"
#include "mxf/metadata/Values.h"
#include "tests/support/MxfSets.h"

#include <gtest/gtest.h>

using namespace TamrelMxf;
using namespace TamrelMxf::test;

namespace {

TEST(Values, NumbersKeepToTheirRange)
{
    using Values::Number;
    EXPECT_EQ(Number<std::uint32_t>(Hex("0102")), 0x0102U);
    EXPECT_EQ(Number<std::uint32_t>(Hex("0000000001020304")), 0x01020304U);
    EXPECT_EQ(Number<std::uint32_t>(Hex("0100000000")), std::nullopt);
    EXPECT_EQ(Number<std::uint8_t>(Hex("0100")), std::nullopt);
    EXPECT_EQ(Number<std::int64_t>(Hex("FFFFFFFF")), -1);
    EXPECT_EQ(Number<std::int64_t>(Hex("8000000000000000")), INT64_MIN);
    EXPECT_EQ(Number<std::int8_t>(Hex("FF7F")), std::nullopt);
    EXPECT_EQ(Number<std::uint64_t>(Hex("")), std::nullopt);
    EXPECT_EQ(Number<std::uint64_t>(Hex("000000000000000001")), std::nullopt);
    EXPECT_EQ(Values::Rational(Hex("00007530 000003")), std::nullopt);
}

TEST(Values, ListsHoldNoMoreThanTheirBytes)
{
    EXPECT_EQ(Values::Numbers<std::int32_t>(Hex("00000002 00000004 00000015 FFFFFFFE")), (std::vector{21, -2}));
    EXPECT_EQ(Values::Numbers<std::int32_t>(Hex("FFFFFFFF 00000004 00000015 0000")), (std::vector{21}));
    EXPECT_TRUE(Values::Numbers<std::int32_t>(Hex("FFFFFFFF 00000000 00000015")).empty());
    EXPECT_TRUE(Values::Labels(Hex("00000002 00000004 00000015 00000248")).empty());
    EXPECT_TRUE(Values::Numbers<std::int32_t>(Hex("000000")).empty());
}

TEST(Values, TextsBecomeUtf8)
{
    struct Case {
        const char* input;
        const char* expected;
    };
    const Case cases[] = {
        {"0041 0042", "AB"},         {"0041 0000 0042", "A"},  {"00E9 20AC", "\u00E9\u20AC"},
        {"D83C DFAC", "\U0001F3AC"}, {"D83C 0041", "\uFFFDA"}, {"DFAC", "\uFFFD"},
        {"D83C", "\uFFFD"},          {"0041 00", "A"},         {"", ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Values::Utf16(Hex(c.input)), c.expected) << c.input;
    EXPECT_EQ(Values::Utf8(Hex("41 C3A9 FF 42 00 43")), "A\u00E9\uFFFDB");
    // Overlong, surrogate, beyond Unicode, cut: each byte is replaced.
    std::string replaced;
    for (int i = 0; i < 10; ++i)
        replaced += "\uFFFD";
    EXPECT_EQ(Values::Utf8(Hex("C080 EDA080 F4908080 C3")), replaced);
}

TEST(Values, IndirectValuesOfBothByteOrders)
{
    struct Case {
        const char* name;
        const char* input;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {"text", "42 01100200 0000 0000 060E2B3401040101 0041 0042 0000", "AB"},
        {"text, little-endian", "4C 00021001 0000 0000 060E2B3401040101 4100 4200", "AB"},
        {"negative number", "42 01010700 0000 0000 060E2B3401040101 FFFFFFFE", "-2"},
        {"number, little-endian", "4C 00030101 0000 0000 060E2B3401040101 02010000", "258"},
        {"rational, little-endian", "4C 00010103 0000 0000 060E2B3401040101 30750000 E9030000", "30000/1001"},
        {"boolean", "42 01040100 0000 0000 060E2B3401040101 01", "true"},
        {"another type", "42 01010900 0000 0000 060E2B3401040101 01", std::nullopt},
        {"no byte order", "43 01010700 0000 0000 060E2B3401040101 00000001", std::nullopt},
        {"cut", "42 01010700 0000", std::nullopt},
        {"no value", "42 01010700 0000 0000 060E2B3401040101", std::nullopt},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Values::IndirectText(Hex(c.input)), c.expected) << c.name;
}

TEST(ValueText, ShowsEveryTypeInWords)
{
    struct Case {
        const char* set;
        const char* label; ///< of the property
        const char* value;
        const char* expected;
    };
    const Case cases[] = {
        {"Preface", "06.0E.2B.34.01.01.01.02.03.01.02.01.05.00.00.00", "0103", "1.3"},
        {"Preface", "06.0E.2B.34.01.01.01.02.07.02.01.10.02.04.00.00", "07EA 03 01 0C 22 38 1E",
         "2026-03-01 12:34:56.120"},
        {"Preface", "06.0E.2B.34.01.01.01.02.07.02.01.10.02.04.00.00", "0000000000000000", "unknown"},
        {"Preface", "06.0E.2B.34.01.01.01.02.07.02.01.10.02.04.00.00", "07EA 03", "<07 EA 03>"},
        {"Preface", "06.0E.2B.34.01.01.01.05.01.02.02.03.00.00.00.00", "060E2B34040101010D01020101010900",
         "named (06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00)"},
        {"StructuralComponent", "06.0E.2B.34.01.01.01.02.04.07.01.00.00.00.00.00", "807D006008143E6F6F3C8CE16CEF11D2",
         "6f3c8ce1-6cef-11d2-807d-006008143e6f"},
        {"StructuralComponent", "06.0E.2B.34.01.01.01.02.07.02.02.01.01.03.00.00", "FFFFFFFFFFFFFFFF", "unknown"},
        {"StructuralComponent", "06.0E.2B.34.01.01.01.02.07.02.02.01.01.03.00.00", "0000000000000019", "25"},
        {"Identification", "06.0E.2B.34.01.01.01.02.05.20.07.01.02.01.00.00", "0041001B005B", "A\uFFFD["},
        {"Identification", "06.0E.2B.34.01.01.01.02.05.20.07.01.04.00.00.00", "0001000200030004 0001",
         "1.2.3.4 (released)"},
        {"TimelineTrack", "06.0E.2B.34.01.01.01.02.05.30.04.05.00.00.00.00", "00007530 000003E9", "30000/1001"},
        {"TimecodeComponent", "06.0E.2B.34.01.01.01.01.04.04.01.01.05.00.00.00", "01", "true"},
        {"GenericPictureEssenceDescriptor", "06.0E.2B.34.01.01.01.02.04.01.03.02.05.00.00.00",
         "00000002 00000004 00000015 00000248", "[21, 584]"},
        {"GenericPictureEssenceDescriptor", "06.0E.2B.34.01.01.01.02.04.01.03.02.05.00.00.00", "00000000 00000004",
         "[]"},
        {"GenericPictureEssenceDescriptor", "06.0E.2B.34.01.01.01.0E.04.20.04.01.01.02.00.00", "3D13 4042",
         "0.3127, 0.329"},
        {"GenericPictureEssenceDescriptor", "06.0E.2B.34.01.01.01.0E.04.20.04.01.01.01.00.00",
         "8A48 3908 2134 9BAA 1996 08FC", "[0.708, 0.292, 0.17, 0.797, 0.131, 0.046]"},
        {"RGBAPictureEssenceDescriptor", "06.0E.2B.34.01.01.01.02.04.01.05.03.06.00.00.00", "520A 470A 42FD 0000 0000",
         "R10 G10 Bhalf"},
        {"ContentStorage", "06.0E.2B.34.01.01.01.02.06.01.01.04.05.01.00.00",
         "00000001 00000010 A1A2A3A4B1B2C1C2D1D2D3D400000007", "[a1a2a3a4-b1b2-c1c2-d1d2-d3d400000007]"},
        {"GenericPackage", "06.0E.2B.34.01.01.01.01.01.01.15.10.00.00.00.00",
         "060A2B340101010501010D2013000000 00010203040506070809000000000007",
         "060A2B340101010501010D2013000000.00010203040506070809000000000007"},
        {"GenericSoundEssenceDescriptor", "06.0E.2B.34.01.01.01.01.04.02.01.01.03.00.00.00", "F8", "-8"},
        {"TypeDefinitionEnumeration", "06.0E.2B.34.01.01.01.02.03.01.02.03.04.00.00.00", "0041 0000 0042 0043 0000",
         "[A, BC]"},
        {"DeviceParameters", "06.0E.2B.34.01.01.01.02.01.01.20.05.00.00.00.00", "0102030405 06", "[1, 2, 3, 4, 5, 6]"},
        {"EdgeCode", "06.0E.2B.34.01.01.01.02.01.03.02.01.02.00.00.00", "0102", "<01 02>"},
    };
    const SValueStyle style{.labelName = [](const SUl&) { return std::string_view{"named"}; }};
    for (const Case& c : cases) {
        const SPropertyDef* property = FindProperty(FindSet(c.set), Label(c.label));
        ASSERT_NE(property, nullptr) << c.label;
        EXPECT_EQ(ValueText(property, Hex(c.value), style), c.expected) << c.set << "." << property->name.View();
    }
}

TEST(ValueText, FloatsOfLensesAndPixels)
{
    const auto text = [](EValue kind, const char* value) {
        const SPropertyDef property{.name = "", .label = {}, .value = kind};
        return ValueText(&property, Hex(value));
    };
    EXPECT_EQ(text(EValue::float16, "3C00"), "1");
    EXPECT_EQ(text(EValue::float16, "C500"), "-5");
    EXPECT_EQ(text(EValue::float16, "0001"), "5.960464e-08");
    EXPECT_EQ(text(EValue::float32, "3FC00000"), "1.5");
    EXPECT_EQ(text(EValue::lensFloat, "D032"), "0.05"); // 50 * 10^-3
    EXPECT_EQ(text(EValue::lensFloat, "2FFF"), "-100");
}

TEST(ValueText, LongValuesAreCutAndCounted)
{
    const SValueStyle style{.mostEntries = 2, .mostBytes = 3, .mostLetters = 4};
    const SPropertyDef* lines = FindProperty(nullptr, std::uint16_t{0x320D});
    EXPECT_EQ(ValueText(lines, Hex("00000003 00000004 00000001 00000002 00000003"), style), "[1, 2, ... 3 entries]");
    EXPECT_EQ(ValueText(nullptr, Hex("0102030405"), style), "<01 02 03 ... 5 bytes>");
    const SPropertyDef* name = FindProperty(nullptr, std::uint16_t{0x4402});
    EXPECT_EQ(ValueText(name, Utf16(u"ABC\u20ACDEF"), style), "ABC\u20AC...");
    const SPropertyDef run{.name = "", .label = {}, .value = EValue::uint8, .shape = EShape::run};
    EXPECT_EQ(ValueText(&run, Hex("0102030405"), style), "[1, 2, ... 3 more bytes]");
}

TEST(ValueText, DynamicTagsAreNamedByThePrimer)
{
    MxfHeader header;
    header.Add(MxfSet("MPEGVideoDescriptor", 1)
                   .Dynamic("06.0E.2B.34.01.01.01.05.04.01.06.02.01.0B.00.00", BigEndian(50'000'000, 4)));
    const SHeaderSets read = ReadHeaderSets(header.All());
    ASSERT_EQ(read.sets.Size(), 1U);
    const SSetDef* set = FindSet(read.sets[0].Key());
    const SPropertyDef* property = PropertyOf(set, 0xFFFF, &read.primer);
    ASSERT_NE(property, nullptr);
    EXPECT_EQ(property->name, "BitRate");
    EXPECT_EQ(PropertyOf(set, 0xFFFF, nullptr), nullptr);
    EXPECT_EQ(PropertyOf(set, 0x3203, nullptr)->name, "StoredWidth");
}

} // namespace
