#include "tests/cli/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zanfcp::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::string document(const std::string& content, const std::string& subset = "")
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><!DOCTYPE xmeml" + subset + "><xmeml version=\"5\">" + content +
           "</xmeml>";
}

TEST(Validate, OneLineAFileAndTheFaultsOnStandardError)
{
    const TempFolder folder;
    const std::string good = folder.write("good.xml", document("<bin><name>A</name></bin>"));
    const std::string bad = folder.write("bad.xml", document("\n<bin><nam>A</nam></bin>"));
    const Outcome outcome = zanfcp({"validate", good, bad});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, good + ": valid\n" + bad + ": not valid\n");
    EXPECT_THAT(outcome.err, HasSubstr(bad + ":2: element bin: validity error"));
    EXPECT_THAT(outcome.err, Not(HasSubstr("good.xml")));
    EXPECT_EQ(zanfcp({"validate", good}).status, 0);
}

TEST(Validate, NothingButAReadableValidDocumentIsDone)
{
    const TempFolder folder;
    std::string bomb = " [<!ENTITY a \"aaaaaaaaaa\">";
    for (char c = 'b'; c <= 'k'; ++c) {
        const std::string before = std::string("&") + static_cast<char>(c - 1) + ";";
        bomb += std::string("<!ENTITY ") + c + " \"";
        for (int i = 0; i < 10; ++i)
            bomb += before;
        bomb += "\">";
    }
    bomb += "]";
    const std::string cases[] = {
        folder.file("none.xml"),
        folder.path().string(),
        folder.write("empty.xml", ""),
        folder.write("text.xml", "hello"),
        folder.write("cut.xml", document("<bin>").substr(0, 80)),
        folder.write("other.xml", "<?xml version=\"1.0\"?><html/>"),
        folder.write("latin.xml", document("<bin><name>\xE4</name></bin>")),
        folder.write("bomb.xml", document("<bin><name>&k;</name></bin>", bomb)),
    };
    for (const std::string& path : cases) {
        SCOPED_TRACE(path);
        const Outcome outcome = zanfcp({"validate", path});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr(path));
        EXPECT_THAT(outcome.out, Not(HasSubstr(": valid")));
    }
}

TEST(Validate, ToolThatCannotBeRunIsNoVerdict)
{
    const TempFolder folder;
    const std::string good = folder.write("good.xml", document("<bin><name>A</name></bin>"));
    folder.write("libxml2.so.2", "no library"); // the loader takes it, and gives up
    const std::string loader = "LD_LIBRARY_PATH='" + folder.path().string() + "' ";
    const Outcome broken = shell(loader + "$ZANFCP validate '" + good + "'");
    EXPECT_EQ(broken.status, 3);
    EXPECT_EQ(broken.out, good + ": not checked\n");
    EXPECT_THAT(broken.err, HasSubstr(good + ": the validator ended with 127"));
    const Outcome built = shell(loader + "$ZANFCP build --validate '" + sample("CAM_A.mov") + "'");
    EXPECT_EQ(built.status, 1);
    EXPECT_THAT(built.err, HasSubstr("the project could not be checked"));
}

TEST(Validate, DefinitionIsFoundWhateverNameTheProgramIsCalledBy)
{
    const TempFolder folder;
    const std::string good = folder.write("good.xml", document("<bin><name>A</name></bin>"));
    for (const char* name : {"zanfcp", "/nowhere/zanfcp"}) {
        const Outcome outcome = shell("exec -a " + std::string(name) + " $ZANFCP validate '" + good + "'", "/bin/bash");
        EXPECT_EQ(outcome.out, good + ": valid\n") << name << ": " << outcome.err;
    }
}

} // namespace
} // namespace zanfcp::test
