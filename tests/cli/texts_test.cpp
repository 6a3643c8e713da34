#include "cli/Text.h"
#include "cli/ValidatorMessages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zanfcp::cli {
namespace {

TEST(Printable, NothingReachesTheTerminalThatCouldSteerIt)
{
    struct Case {
        const char* name;
        std::string text;
        std::string expected;
    };
    const Case cases[] = {
        {"plain", "CAM A.mov", "CAM A.mov"},
        {"composed and decomposed", "\u00E4 a\u0308", "\u00E4 a\u0308"},
        {"emoji", "\U0001F3AC", "\U0001F3AC"},
        {"escape sequence", "\x1B[2Jx", "\\x1B[2Jx"},
        {"line end and tab", "a\nb\tc", "a\\x0Ab\\x09c"},
        {"delete", "\x7F", "\\x7F"},
        {"control of the upper half", "\u009B", "\\xC2\\x9B"},
        {"reversed order", "\u202Egpj.mov", "\\u{202E}gpj.mov"},
        {"line separator", "\u2028", "\\u{2028}"},
        {"lone byte", "a\xFFz", "a\\xFFz"},
        {"cut short", "a\xE2\x82", "a\\xE2\\x82"},
        {"overlong", "\xC0\x80", "\\xC0\\x80"},
        {"surrogate", "\xED\xA0\x80", "\\xED\\xA0\\x80"},
        {"beyond Unicode", "\xF4\x90\x80\x80", "\\xF4\\x90\\x80\\x80"},
        {"NUL", std::string("a\0b", 3), "a\\x00b"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(printable(c.text), c.expected) << c.name;
}

TEST(DisplayWidth, CountsColumnsNotBytes)
{
    struct Case {
        const char* text;
        std::size_t columns;
    };
    const Case cases[] = {
        {"", 0}, {"abc", 3}, {"\u00E4", 1}, {"a\u0308", 1}, {"\u6620\u753B", 4}, {"\U0001F3AC", 2}, {"\u0416", 1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(displayWidth(c.text), c.columns) << c.text;
}

TEST(Table, ColumnsLineUpWhateverTheNamesAre)
{
    Table table{{"FILE", "EMPTY", "RATE"}};
    table.addRow({"a\u0308.mov", "", "25"});
    table.addRow({"\u6620\u753B.mov", "", "29.97 DF"});
    table.addRow({"x\ny", "", ""});
    EXPECT_EQ(table.text(), "FILE      RATE\n"
                            "a\u0308.mov     25\n"
                            "\u6620\u753B.mov  29.97 DF\n"
                            "x\\x0Ay\n");
}

TEST(ValidatorMessages, NameTheFileAndStayShort)
{
    EXPECT_EQ(validatorMessages("-:12: element a: bad\nDocument - does not validate against X.dtd\n", "show.xml"),
              "show.xml:12: element a: bad\nDocument show.xml does not validate against X.dtd\n");
    EXPECT_EQ(validatorMessages("a\x1B[0m", "f"), "a\\x1B[0m\n");
    EXPECT_LT(validatorMessages(std::string(1'000'000, 'x'), "f").size(), 1000U);
    const std::string many = validatorMessages(std::string(1'000'000, '\n'), "f");
    EXPECT_LT(many.size(), 100U);
    EXPECT_EQ(validatorMessages("", "f"), "");
}

} // namespace
} // namespace zanfcp::cli
