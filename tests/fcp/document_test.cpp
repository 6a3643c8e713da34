#include "fcp/ProjectDocument.h"

#include <gtest/gtest.h>

namespace zanfcp {
namespace {

std::string joined(std::string_view project, std::string_view added)
{
    const auto layout = layOutProject(project);
    const auto addedLayout = layOutProject(added);
    if (!layout || !addedLayout) return "not read";
    const auto result = appendToProject(project, *layout, added, *addedLayout);
    return result ? *result : "refused";
}

TEST(ProjectDocument, ContentGoesBehindWhatIsThere)
{
    const std::string added = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE xmeml>\n<xmeml version=\"5\">"
                              "<importoptions><x/></importoptions><bin/><importoptions/><clip>&lt;</clip></xmeml>\n";
    const std::string content = "<bin/><clip>&lt;</clip>";
    struct Case {
        const char* name;
        std::string before;
        std::string after;
    };
    const Case cases[] = {
        {"plain", "<xmeml version=\"5\"><project/>", "</xmeml>"},
        {"blanks in the tags", "<xmeml version='5' \n>", "</xmeml \n>\n"},
        {"end tag again in a comment", "<xmeml version=\"5\"><!--</xmeml>-->", "</xmeml><!--</xmeml>-->"},
        {"end tag in CDATA", "<xmeml version=\"5\"><![CDATA[</xmeml>]]>", "</xmeml>"},
        {"own import options stay", "<xmeml version=\"5\"><importoptions/>", "</xmeml>"},
        {"byte order mark", "\xEF\xBB\xBF<?xml version=\"1.0\"?><xmeml version=\"5\">\xC3\xA4", "</xmeml>"},
        {"tag sign in an attribute", "<xmeml version=\"5\" note=\"a>b\">", "</xmeml>"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(joined(c.before + c.after, added), c.before + content + c.after) << c.name;
    EXPECT_EQ(joined("<xmeml version=\"5\"/><!--e-->", added), "<xmeml version=\"5\">" + content + "</xmeml><!--e-->");
    EXPECT_EQ(joined(added, "<xmeml version=\"5\" />"), added);
    EXPECT_EQ(joined(added, "<xmeml version=\"5\" xmlns:a=\"b\"><a:c/></xmeml>"), "refused");
}

TEST(ProjectDocument, IdsThatBothDocumentsUseAreMadeDifferent)
{
    const auto content = [](std::string_view project, std::string_view added) {
        const std::string before = "<xmeml version=\"5\">" + std::string(project);
        const std::string whole =
            joined(before + "</xmeml>", "<xmeml version=\"5\">" + std::string(added) + "</xmeml>");
        return whole.substr(before.size(), whole.size() - before.size() - std::string_view("</xmeml>").size());
    };
    struct Case {
        const char* project;
        const char* added;
        const char* expected;
    };
    const Case cases[] = {
        {"<clip id='a'/>", "<clip id='b'><file id='c'/></clip>", "<clip id='b'><file id='c'/></clip>"},
        {"<file id='a'/>", "<file id='a'><name>a</name></file><file id=\"a\"/>",
         "<file id='a (2)'><name>a</name></file><file id=\"a (2)\"/>"},
        {"<file id='a'/><clip id='a (2)'/>", "<clip id='a'/><clip id='a (3)'/>",
         "<clip id='a (4)'/><clip id='a (3)'/>"},
        {"<clip id='a'/>", "<masterclipid>a</masterclipid><linkclipref >a</linkclipref>",
         "<masterclipid>a</masterclipid><linkclipref >a</linkclipref>"}, // it refers to what is not its own
        {"<clip id='a'/>", "<clip id='a'/><masterclipid>a</masterclipid><linkclipref >a</linkclipref><linkclipref/>",
         "<clip id='a (2)'/><masterclipid>a (2)</masterclipid><linkclipref >a (2)</linkclipref><linkclipref/>"},
        {"<clip id='a&amp;b'/>", "<clip frame='>' id = 'a&#x26;b'/><clip id='a&#38;b&#xE4;'/>",
         "<clip frame='>' id = 'a&#x26;b (2)'/><clip id='a&#38;b&#xE4;'/>"},
        {"<clip id='a'/>", "<!--<clip id='a'/>--><![CDATA[<clip id='a'/>]]><?x id='a'?><clip uid='a'/>",
         "<!--<clip id='a'/>--><![CDATA[<clip id='a'/>]]><?x id='a'?><clip uid='a'/>"},
        {"<!--<clip id='a'/>-->", "<clip id='a'/>", "<clip id='a'/>"},
        {"<clip id='a'/>", "<clip id='b'/><clip id='a'/><clip id='b'/><clip id='a'/>",
         "<clip id='b'/><clip id='a (2)'/><clip id='b'/><clip id='a (2)'/>"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(content(c.project, c.added), c.expected) << c.added;
}

TEST(ProjectDocument, DeclarationsOfTheProjectDoNotHideItsIds)
{
    const std::string project = "<!DOCTYPE xmeml [<!-- don't -->]><xmeml version=\"5\"><clip id='a'/>";
    EXPECT_EQ(joined(project + "</xmeml>", "<xmeml version=\"5\"><file id='a'/></xmeml>"),
              project + "<file id='a (2)'/></xmeml>");
}

TEST(ProjectDocument, LayoutOfLongDocumentsIsExact)
{
    std::string text = "<xmeml version=\"5\">"; // long enough for many chunks, with tags across their borders
    for (int i = 0; text.size() < 1'000'000; ++i)
        text += "<clip id=\"" + std::to_string(i) + "\"><name>\xC3\xA4</name></clip>\n";
    const std::size_t end = text.size();
    const auto layout = layOutProject(text + "</xmeml>");
    ASSERT_TRUE(layout) << layout.error().text();
    EXPECT_EQ(layout->contentBegin, 19U);
    EXPECT_EQ(layout->contentEnd, end);
}

TEST(ProjectDocument, RefusesWhatIsNoProject)
{
    const std::string valid = "<xmeml version=\"5\"/>";
    ASSERT_TRUE(layOutProject(valid));
    std::string deep = "<xmeml version=\"5\">";
    for (int i = 0; i < 300; ++i)
        deep += "<bin>";
    for (int i = 0; i < 300; ++i)
        deep += "</bin>";
    std::string bomb = "<!DOCTYPE xmeml [<!ENTITY a \"ha\">";
    for (char c = 'b'; c < 'z'; ++c)
        bomb += std::string("<!ENTITY ") + c + " \"&" + char(c - 1) + ";&" + char(c - 1) + ";\">";
    struct Case {
        const char* name;
        std::string text;
        Fault expected;
    };
    const Case cases[] = {
        {"empty", "", Fault::malformed},
        {"no XML", "hello", Fault::malformed},
        {"blanks alone", " \n", Fault::malformed},
        {"cut short", "<xmeml version=\"5\"><bin>", Fault::malformed},
        {"tags crossed", "<xmeml version=\"5\"><a><b></a></b></xmeml>", Fault::malformed},
        {"two roots", valid + valid, Fault::malformed},
        {"text behind the root", valid + "x", Fault::malformed},
        {"other root", "<fcpxml version=\"5\"/>", Fault::malformed},
        {"prefixed root", "<a:xmeml xmlns:a=\"b\" version=\"5\"/>", Fault::malformed},
        {"no version", "<xmeml/>", Fault::unsupported},
        {"version 4", "<xmeml version=\"4\"/>", Fault::unsupported},
        {"Latin-1", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + valid, Fault::malformed},
        {"ASCII, which could not take others' letters", "<?xml version=\"1.0\" encoding=\"US-ASCII\"?>" + valid,
         Fault::malformed},
        {"UTF-7, whose bytes cannot be converted", "<?xml version=\"1.0\" encoding=\"UTF-7\"?><xmeml\x7F>",
         Fault::malformed},
        {"UTF-7 by single quotes and blanks", "<?xml version='1.0' encoding = 'utf-7' ?>" + valid, Fault::malformed},
        {"UTF-16", std::string("<\0x\0m\0e\0m\0l\0/\0>\0", 16), Fault::malformed},
        {"wrong UTF-8", "<xmeml version=\"5\">\xC3(</xmeml>", Fault::malformed},
        {"NUL", std::string("<xmeml version=\"5\">\0</xmeml>", 28), Fault::malformed},
        {"too deep", deep + "</xmeml>", Fault::limit},
        {"entity bomb", bomb + "]><xmeml version=\"5\">&y;</xmeml>", Fault::unsupported},
        {"external entity",
         "<!DOCTYPE xmeml [<!ENTITY e SYSTEM \"file:///etc/passwd\">]><xmeml version=\"5\">&e;</xmeml>",
         Fault::unsupported},
        {"parameter entity", "<!DOCTYPE xmeml [<!ENTITY % e SYSTEM \"http://127.0.0.1:1/\"> %e;]>" + valid,
         Fault::unsupported},
        {"unknown entity", "<xmeml version=\"5\">&e;</xmeml>", Fault::malformed},
    };
    for (const Case& c : cases) {
        const auto layout = layOutProject(c.text);
        ASSERT_FALSE(layout) << c.name;
        EXPECT_EQ(layout.error().fault, c.expected) << c.name << ": " << layout.error().text();
    }
    for (const char* cut : {"<xmeml version=\"5\">", "<xmeml version=\"5\"><bin/>\xC3"})
        EXPECT_EQ(layOutProject(cut).error().what, "line 1: the document ends before its root element does") << cut;
    EXPECT_FALSE(layOutProject("<!DOCTYPE xmeml SYSTEM \"http://127.0.0.1:1/x.dtd\"><xmeml version=\"5\">&e;</xmeml>"));
    EXPECT_TRUE(layOutProject("<!DOCTYPE xmeml SYSTEM \"http://127.0.0.1:1/x.dtd\">" + valid)) << "it is not fetched";
    EXPECT_TRUE(layOutProject("<?xml version='1.0' encoding = 'utf-8' standalone='yes'?>" + valid));
}

} // namespace
} // namespace zanfcp
