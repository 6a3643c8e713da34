#include "xml/XMLWriter.h"

#include "tests/support/LogCapture.h"
#include "tests/support/XmlComparison.h"
#include "xml/PELRootElement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <random>

namespace zanfcp::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

#define FFFD "\xEF\xBF\xBD"

std::shared_ptr<PELElement> leaf(std::string_view key, std::string_view text)
{
    return PELElement::elementWithKeyStringValue(key, text);
}

TEST(XmlWriter, TextIsEscapedOnlyWhereXmlNeedsIt)
{
    struct Case {
        std::string text;
        const char* content;
        const char* attribute;
    };
    const Case cases[] = {
        {"A & B <c> \"d\" 'e'", "A &amp; B &lt;c&gt; \"d\" 'e'", "A &amp; B &lt;c&gt; &quot;d&quot; 'e'"},
        {"]]>", "]]&gt;", "]]&gt;"},
        {"&amp;", "&amp;amp;", "&amp;amp;"},
        {"a\tb\nc\rd\r\n", "a\tb\nc&#13;d&#13;\n", "a&#9;b&#10;c&#13;d&#13;&#10;"},
        {"  two  blanks  ", "  two  blanks  ", "  two  blanks  "},
        {"12345678&1234567<12345678", "12345678&amp;1234567&lt;12345678", "12345678&amp;1234567&lt;12345678"},
        {"\x7F", "\x7F", "\x7F"},
        {"Käse 日本 🎬 e\xCC\x81", "Käse 日本 🎬 e\xCC\x81", "Käse 日本 🎬 e\xCC\x81"},
        {"\xED\x9F\xBF \xEE\x80\x80 \xEF\xBF\xBD \xF4\x8F\xBF\xBF",
         "\xED\x9F\xBF \xEE\x80\x80 \xEF\xBF\xBD \xF4\x8F\xBF\xBF",
         "\xED\x9F\xBF \xEE\x80\x80 \xEF\xBF\xBD \xF4\x8F\xBF\xBF"},
    };
    const LogCapture log;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const auto element = PELElement::elementWithKeyStringValue("name", c.text, c.text);
        EXPECT_EQ(element->XMLString(), "<name id=\""s + c.attribute + "\">" + c.content + "</name>");
        expectSameXml(*element);
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(XmlWriter, CharacterThatXmlCannotHoldIsReplacedAndNamed)
{
    struct Case {
        const char* name;
        std::string text;
        const char* written;
        int replaced;
    };
    const Case cases[] = {
        {"control characters", "a\x01\x1F\x0B"s, "a" FFFD FFFD FFFD, 3},
        {"NUL", "a\0b"s, "a" FFFD "b", 1},
        {"U+FFFE and U+FFFF", "\xEF\xBF\xBE\xEF\xBF\xBF", FFFD FFFD, 2},
        {"a continuation alone",
         "a\x80"
         "b",
         "a" FFFD "b", 1},
        {"a lead byte alone", "caf\xE9 bar", "caf" FFFD " bar", 1},
        {"a sequence cut short by a letter", "\xE2\x82z", FFFD "z", 1},
        {"a sequence cut short by the end", "\xF0\x9F\x8E", FFFD, 1},
        {"overlong slash", "\xC0\xAF", FFFD FFFD, 2},
        {"overlong in three bytes", "\xE0\x80\xAF", FFFD FFFD FFFD, 3},
        {"a surrogate", "\xED\xA0\x80", FFFD FFFD FFFD, 3},
        {"beyond U+10FFFF", "\xF4\x90\x80\x80", FFFD FFFD FFFD FFFD, 4},
        {"no lead byte at all", "\xFF\xFE", FFFD FFFD, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const LogCapture log;
        const auto clip = PELElement::elementWithKeyIdentifier("clip", c.text);
        clip->addChild(leaf("name", c.text));
        EXPECT_EQ(clip->XMLString(), "<clip id=\""s + c.written + "\"><name>" + c.written + "</name></clip>");
        const std::string line =
            "PELElement: Replaced " + std::to_string(c.replaced) + " characters that XML cannot hold in /clip";
        EXPECT_THAT(log.texts(LogLevel::normal), ElementsAre(line, line + "/name"));
        clip->XMLRepresentation();
        EXPECT_THAT(log.texts(LogLevel::normal), ElementsAre(line, line + "/name", line, line + "/name"));
        expectSameXml(*clip);
    }
}

TEST(XmlWriter, ElementWithoutAProperNameIsLeftOut)
{
    const LogCapture log;
    const auto options = PELElement::elementWithKey("importoptions");
    const char* const improper[] = {"two words", "1st", "-a",   ".a",      "a<b",   "a&b",
                                    "a/b",       "a:b", "a\nb", "caf\xE9", "a\x01", "\xC3\x97"};
    for (const char* const key : improper)
        options->addChild(leaf(key, "x"));
    options->addChild(leaf("", "x")); // without a key: left out in silence
    EXPECT_EQ(options->XMLDescription(), "<importoptions/>");
    EXPECT_EQ(log.errors().size(), std::size(improper));
    EXPECT_EQ(log.errors()[0], "PELElement: Left out, not an XML name: /importoptions/two words");
    EXPECT_EQ(log.errors()[8], "PELElement: Left out, not an XML name: /importoptions/a" FFFD "b");
    expectSameXml(*options);

    for (const std::string& key : {"_a"s, "a-1.b"s, "Zürich"s, "日本"s, std::string(70, 'k')}) {
        options->addChild(leaf(key, "x"));
        EXPECT_EQ(options->children()->back()->XMLString(), "<"s + key + ">x</" + key + ">");
    }
    expectSameXml(*options);

    EXPECT_EQ(leaf("a b", "x")->XMLDescription(), "");
    EXPECT_FALSE(leaf("a b", "x")->XMLRepresentation());
    EXPECT_EQ(PELElement().XMLDescription(), "");
    EXPECT_FALSE(PELElement().XMLRepresentation());
}

TEST(XmlWriter, EveryKindOfContentIsLaidOutLikeItsNodes)
{
    const LogCapture log;
    const auto textOnContainer = PELElement::elementWithKey("bin");
    textOnContainer->setValue(std::string("text"));
    const auto childrenOnLeaf = leaf("name", "gone");
    childrenOnLeaf->setValue(PELElements{leaf("in", "1")});
    const auto bin = PELElement::elementWithKeyIdentifier("bin", "B");
    bin->addChildren({leaf("name", ""), PELElement::elementWithKey("children"), textOnContainer, childrenOnLeaf,
                      PELElement::elementWithKeyChildren("rate", {leaf("ntsc", "TRUE"), leaf("timebase", "30")}),
                      PELElement::elementWithKeyChildren("media", {leaf("", "nothing to write")}),
                      PELElement::elementWithKeyIdentifier("file", "F"), leaf("name", " \n ")});
    EXPECT_EQ(bin->XMLDescription(), R"(<bin id="B">
  <name/>
  <children/>
  <bin>text</bin>
  <name/>
  <rate>
    <ntsc>TRUE</ntsc>
    <timebase>30</timebase>
  </rate>
  <media/>
  <file id="F"/>
  <name> 
 </name>
</bin>)");
    EXPECT_EQ(bin->XMLString(), "<bin id=\"B\"><name/><children/><bin>text</bin><name/><rate><ntsc>TRUE</ntsc>"
                                "<timebase>30</timebase></rate><media/><file id=\"F\"/><name> \n </name></bin>");
    expectSameXml(*bin);
    EXPECT_EQ(textOnContainer->copy()->XMLString(), "<bin>text</bin>");
}

TEST(XmlWriter, IndentationStopsWhereThatOfLibxml2Does)
{
    auto inner = leaf("name", "x");
    for (int level = 0; level < 40; ++level)
        inner = PELElement::elementWithKeyChildren("bin", {inner, leaf("in", "1")});
    expectSameXml(*inner);
}

/// Trees of all shapes with texts of all bytes; the same ones every time.
class RandomTrees {
public:
    std::shared_ptr<PELElement> tree(int depth)
    {
        static constexpr std::string_view keys[] = {"clip", "name", "rate", "samplecharacteristics",
                                                    "",     "a b",  "x-1",  "é"};
        const auto key = keys[below(depth > 0 ? 20 : 4) % std::size(keys) % (below(8) == 0 ? std::size(keys) : 4)];
        const std::string identifier = below(4) == 0 ? text() : ""s;
        if (depth == 0 || below(3) == 0) return PELElement::elementWithKeyStringValue(key, text(), identifier);
        const auto element = PELElement::elementWithKeyIdentifier(key, identifier);
        for (std::size_t count = below(6); count > 0; --count)
            element->addChild(tree(depth - 1));
        return element;
    }

private:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    std::string text()
    {
        static const std::string pieces[] = {"25",
                                             "clip name",
                                             "&",
                                             "<",
                                             ">",
                                             "\"",
                                             "\r",
                                             "\n",
                                             "\t",
                                             "ü",
                                             "🎬",
                                             "\xEF\xBF\xBE",
                                             "\xFF",
                                             "\xE2\x82",
                                             "\x02",
                                             "]]>",
                                             "ABCDEFGHIJKLMNOP",
                                             std::string(1, '\0')};
        std::string made;
        for (std::size_t count = below(12); count > 0; --count)
            made += pieces[below(below(3) == 0 ? std::size(pieces) : 3)];
        if (below(60) == 0) made.append(4090 + below(10), 'x').append("<&é").append(below(9000), '&');
        if (below(400) == 0) made.append(200'000, 'y');
        return made;
    }

    std::mt19937 random_{20090709};
};

TEST(XmlWriter, RandomTreesPrintLikeTheirNodes)
{
    const LogCapture log;
    RandomTrees random;
    std::size_t written = 0;
    for (int i = 0; i < 300; ++i) {
        const auto root = std::make_shared<PELRootElement>();
        for (int child = 0; child < 4; ++child)
            root->addChild(random.tree(i % 7));
        ASSERT_NO_FATAL_FAILURE(expectSameXml(*root));
        ASSERT_NO_FATAL_FAILURE(expectSameXml(*root->children()->front()));
        ASSERT_EQ(root->copy()->XMLString(), root->XMLString());
        written += root->XMLString().size();
    }
    EXPECT_GT(written, 1'000'000u);
}

TEST(XmlWriter, SinkThatStopsIsNotCalledAgain)
{
    const auto bin = PELElement::elementWithKey("bin");
    for (int i = 0; i < 50'000; ++i)
        bin->addChild(leaf("name", "A001_C002"));
    const std::string whole = bin->XMLDescription();

    std::string taken;
    std::size_t blocks = 0, longest = 0;
    EXPECT_TRUE(bin->writeXML([&](std::string_view block) {
        taken += block;
        longest = std::max(longest, block.size());
        return ++blocks > 0;
    }));
    EXPECT_EQ(taken, whole);
    EXPECT_LE(longest, 65536u);
    ASSERT_GT(blocks, 10u);

    for (const std::size_t last : {std::size_t{1}, std::size_t{3}, blocks}) {
        std::size_t calls = 0;
        EXPECT_FALSE(bin->writeXML([&](std::string_view) { return ++calls < last; }));
        EXPECT_EQ(calls, last);
    }
}

TEST(XmlNodes, CanBeTakenIntoAnotherDocument)
{
    const auto clip = PELElement::elementWithKeyIdentifier("clip", "é");
    clip->addChild(leaf("name", "A & B"));
    const XMLElementNode nodes = clip->XMLRepresentation();
    ASSERT_EQ(nodes.get()->doc, nodes.document());
    const XMLDocument other{xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"))};
    xmlDocSetRootElement(other.get(), xmlDocCopyNode(nodes.get(), other.get(), 1));
    EXPECT_EQ(reinterpret_cast<const char*>(xmlDocGetRootElement(other.get())->children->children->content), "A & B"s);
}

} // namespace
} // namespace zanfcp::test
