#include "platform/PELValue.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace zanfcp {
namespace {

TEST(Value, ReadsAsEveryType)
{
    struct Case {
        const char* name;
        PELValue value;
        bool truth;
        NSInteger integer;
        const char* text;
    };
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr NSInteger kLeast = std::numeric_limits<NSInteger>::min();
    const Case cases[] = {
        {"true", true, true, 1, "1"},
        {"false", false, false, 0, "0"},
        {"negative", -3, true, -3, "-3"},
        {"least", kLeast, true, kLeast, "-9223372036854775808"},
        {"fraction", 0.25, true, 0, "0.25"},
        {"negative fraction", -2.75, true, -2, "-2.75"},
        {"shortest form", 0.1, true, 0, "0.1"},
        {"huge", 1e300, true, NSIntegerMax, "1e+300"},
        {"2^63", 9223372036854775808.0, true, NSIntegerMax, "9223372036854775808"},
        {"negative huge", -1e300, true, kLeast, "-1e+300"},
        {"not a number", kNaN, false, 0, "nan"},
        {"empty text", "", false, 0, ""},
        {"YES", "YES", true, 0, "YES"},
        {"true as text", "true", true, 0, "true"},
        {"no", "no", false, 0, "no"},
        {"zeros", "000", false, 0, "000"},
        {"blanks, sign and zeros", " \t-007x", true, -7, " \t-007x"},
        {"digits with rest", "12abc", true, 12, "12abc"},
        {"plus", "+12", true, 12, "+12"},
        {"two signs", "+-12", false, 0, "+-12"},
        {"only a sign", "-", false, 0, "-"},
        {"past 64 bits", "99999999999999999999", true, NSIntegerMax, "99999999999999999999"},
        {"below 64 bits", "-99999999999999999999", true, kLeast, "-99999999999999999999"},
        {"colour", PELColor{.red = 1}, false, 0, ""},
        {"list", PELArray{1, 2}, false, 0, ""},
        {"dictionary", PELDictionary{{"a", 1}}, false, 0, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.value.boolValue(), c.truth);
        EXPECT_EQ(c.value.integerValue(), c.integer);
        EXPECT_EQ(c.value.stringValue(), c.text);
    }
}

TEST(Value, LiteralTextsDoNotTurnIntoBooleans)
{
    EXPECT_NE(PELValue{"false"}.as<std::string>(), nullptr);
    EXPECT_FALSE(PELValue{"1"}.isNumber());
    EXPECT_NE(PELValue{1}, PELValue{true});
    EXPECT_NE(PELValue{1}, PELValue{1.0});
}

TEST(Dictionary, KeepsTheOrderInWhichKeysWereFirstSet)
{
    PELDictionary options{{"b", 1}, {"a", 2}, {"c", 3}, {"b", 4}};
    options.set("a", "new");
    options.remove("c");
    options.set("c", 5);
    std::string keys;
    for (const auto& [key, value] : options)
        keys += key + "=" + value.stringValue() + " ";
    EXPECT_EQ(keys, "b=4 a=new c=5 ");
}

TEST(Dictionary, ReadsNothingOfAbsentKeysAndOtherTypes)
{
    const PELDictionary options{
        {"text", "x"}, {"list", PELArray{1}}, {"inner", PELDictionary{{"k", true}}}, {"color", PELColor{.blue = 1}}};
    ASSERT_NE(options.arrayFor("list"), nullptr);
    ASSERT_NE(options.dictionaryFor("inner"), nullptr);
    ASSERT_NE(options.colorFor("color"), nullptr);
    EXPECT_TRUE(options.dictionaryFor("inner")->boolFor("k"));
    EXPECT_EQ(options.stringFor("text"), "x");
    for (const char* key : {"absent", "color"}) {
        EXPECT_EQ(options.stringFor(key), std::nullopt) << key;
        EXPECT_EQ(options.arrayFor(key), nullptr) << key;
        EXPECT_EQ(options.dictionaryFor(key), nullptr) << key;
        EXPECT_FALSE(options.boolFor(key)) << key;
        EXPECT_EQ(options.integerFor(key), 0) << key;
    }
    EXPECT_EQ(options.colorFor("text"), nullptr);
}

} // namespace
} // namespace zanfcp
