#include "xml/PELRootElement.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"
#include "tests/support/XmlComparison.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <set>
#include <unistd.h>

namespace zanfcp::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

std::shared_ptr<PELElement> leaf(std::string_view key, std::string_view text)
{
    return PELElement::elementWithKeyStringValue(key, text);
}

/// Puts the paths of a validation back to the defaults.
struct Root : testing::Test {
    ~Root() override
    {
        PELRootElement::setDTDPath(std::nullopt);
        PELRootElement::setXmllintPath(std::nullopt);
    }
    /// A program that does what `script` says.
    std::string tool(const std::string& script)
    {
        const std::string path = folder.write("tool", "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    TempFolder folder;
    std::shared_ptr<PELRootElement> root = std::make_shared<PELRootElement>();
    ValidationError error{.domain = "untouched", .code = -7, .localizedDescription = {}, .userInfo = {}};
};

TEST_F(Root, EmptyDocumentCarriesItsVersion)
{
    EXPECT_EQ(root->key(), "");
    EXPECT_EQ(root->children(), nullptr);
    EXPECT_TRUE(root->canHaveChildren());
    const std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE xmeml>\n<xmeml version=\"5\"/>\n";
    EXPECT_EQ(root->XMLDescription(), text);
    EXPECT_EQ(root->XMLString(), text);
    expectSameXml(*root);
    EXPECT_EQ(root->XMLRepresentation()->standalone, -2) << "libxml2: declared, and nothing said of standalone";
}

TEST_F(Root, ChildrenStandInsideTheSkeletonWhateverTheRootsKey)
{
    root->addChildWithKey("bin", {})->addChild(leaf("name", "Rushes"));
    root->addChild(leaf("", "never written"));
    root->setKey("bin");
    EXPECT_EQ(root->XMLDescription(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE xmeml>\n"
                                      "<xmeml version=\"5\">\n  <bin>\n    <name>Rushes</name>\n  </bin>\n</xmeml>\n");
    EXPECT_EQ(root->XMLString(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE xmeml>\n"
                                 "<xmeml version=\"5\"><bin><name>Rushes</name></bin></xmeml>\n");
    expectSameXml(*root);
}

TEST_F(Root, BadCharacterIsPlacedFromTheRoot)
{
    const LogCapture log;
    root->addChildWithKey("bin", {})->addChild(leaf("name", "\x01"));
    root->XMLString();
    EXPECT_THAT(log.texts(LogLevel::normal),
                testing::ElementsAre("PELElement: Replaced 1 characters that XML cannot hold in /xmeml/bin/name"));
}

TEST_F(Root, ValidDocumentLeavesTheErrorUntouched)
{
    root->addChildWithKey("bin", {})->addChild(leaf("name", "Rushes é 🎬"));
    EXPECT_TRUE(root->validateAndReturnError(&error)) << error.userInfo["stdErr"];
    EXPECT_EQ(error.domain, "untouched");
    EXPECT_EQ(error.code, -7);
    EXPECT_TRUE(root->validateAndReturnError(nullptr));
}

TEST_F(Root, DefinitionIsFoundWhateverTheNameOfItsFolder)
{
    const std::string definition = PELRootElement::dtdPath();
    for (const char* name : {"plain", "two words", "\xC3\xA9t\xC3\xA9", "100%", "a%20b", "[x]", "a;b"}) {
        SCOPED_TRACE(name);
        std::filesystem::create_directory(folder.file(name));
        const std::string copy = folder.file(std::string(name) + "/FCPXMLv5.dtd");
        std::filesystem::copy_file(definition, copy);
        PELRootElement::setDTDPath(copy);
        EXPECT_TRUE(root->validateAndReturnError(&error)) << error.userInfo["stdErr"];
    }
}

TEST_F(Root, MisplacedElementIsReportedByTheTool)
{
    root->addChild(leaf("clipitem", "misplaced"));
    EXPECT_FALSE(root->validateAndReturnError(&error));
    EXPECT_EQ(error.domain, "xmllint");
    EXPECT_NE(error.code, 0);
    EXPECT_THAT(error.userInfo["stdErr"], HasSubstr("clipitem"));
    EXPECT_EQ(error.userInfo.count("stdOut"), 1u);
    EXPECT_FALSE(root->validateAndReturnError(nullptr));
}

TEST_F(Root, WithoutADefinitionNoToolIsStarted)
{
    const std::string trace = folder.file("started");
    PELRootElement::setXmllintPath(tool("touch '" + trace + "'"));
    for (const std::string& path : {std::string(), folder.file("none.dtd"), folder.path().string()}) {
        SCOPED_TRACE(path);
        PELRootElement::setDTDPath(path);
        error = {};
        EXPECT_FALSE(root->validateAndReturnError(&error));
        EXPECT_EQ(error.domain, kGeneralErrorDomain);
        EXPECT_EQ(error.code, 1);
        EXPECT_EQ(error.localizedDescription, "The DTD to validate against was not found");
        EXPECT_THAT(error.userInfo, IsEmpty());
        EXPECT_FALSE(root->validateAndReturnError(nullptr));
    }
    EXPECT_FALSE(std::filesystem::exists(trace));
}

TEST_F(Root, OnlySilenceCountsNotTheStatus)
{
    struct Case {
        const char* script;
        bool valid;
        NSInteger code;
        std::map<std::string, std::string> info;
    };
    const Case cases[] = {
        {"exit 3", true, 0, {}},
        {"echo told", false, 0, {{"stdErr", ""}, {"stdOut", "told\n"}}},
        {"echo told >&2; exit 4", false, 4, {{"stdErr", "told\n"}, {"stdOut", ""}}},
        {R"(printf 'bad \351' >&2; echo out; exit 1)", false, 1, {{"stdOut", "out\n"}}},
        {R"(echo err >&2; printf '\300\257')", false, 0, {{"stdErr", "err\n"}}},
        {R"sh([ "$#:$1:$2:$4" = 4:--noout:--dtdvalid:- ] && [ -f "$3" ] || echo "$@")sh", true, 0, {}},
        {R"sh([ "$(wc -c)" -eq 77 ] || echo wrong length)sh", true, 0, {}}, // plain text, whole
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.script);
        PELRootElement::setXmllintPath(tool(c.script));
        error = {};
        EXPECT_EQ(root->validateAndReturnError(&error), c.valid);
        EXPECT_EQ(error.code, c.code);
        EXPECT_EQ(error.domain, c.valid ? "" : "xmllint");
        EXPECT_EQ(error.userInfo, c.info);
    }
}

TEST_F(Root, ToolThatCannotBeStartedIsAFailureOfItsDomain)
{
    PELRootElement::setXmllintPath(folder.file("no-such-tool"));
    EXPECT_FALSE(root->validateAndReturnError(&error));
    EXPECT_EQ(error.domain, "xmllint");
    EXPECT_NE(error.code, 0);
    EXPECT_THAT(error.localizedDescription, HasSubstr("no-such-tool"));
}

/// Reads the definition with libxml2.
struct Definition : Root {
    ~Definition() override { xmlFreeDtd(dtd); }

    const xmlElement* declaration(const std::string& name) const
    {
        return xmlGetDtdElementDesc(dtd, reinterpret_cast<const xmlChar*>(name.c_str()));
    }
    xmlDtd* dtd = xmlParseDTD(nullptr, reinterpret_cast<const xmlChar*>(PELRootElement::dtdPath().c_str()));
};

/// The names in a content model, in its order.
void namesIn(const xmlElementContent* content, std::vector<std::string>& names)
{
    for (; content != nullptr; content = content->c2) {
        if (content->type == XML_ELEMENT_CONTENT_ELEMENT)
            names.emplace_back(reinterpret_cast<const char*>(content->name));
        namesIn(content->c1, names);
    }
}

TEST_F(Definition, DocumentWithEveryElementIsValid)
{
    ASSERT_NE(dtd, nullptr);
    std::set<std::string> seen{"xmeml"};
    // Every parent is opened up where it is first met, and holds each of its children once.
    std::vector<std::pair<std::string, std::shared_ptr<PELElement>>> open{{"xmeml", root}};
    while (!open.empty()) {
        const auto [name, element] = open.back();
        open.pop_back();
        ASSERT_NE(declaration(name), nullptr) << name;
        std::vector<std::string> children;
        namesIn(declaration(name)->content, children);
        for (const std::string& child : children) {
            auto made = PELElement::elementWithKey(child);
            if (seen.insert(child).second)
                open.emplace_back(child, made);
            else if (child == "reel")
                made->addChild(leaf("name", "A001")); // the two strict ones
            else if (child == "channel")
                made->addChild(leaf("index", "1"));
            element->addChild(made);
        }
        if (children.empty()) element->setValue(std::string("text"));
        if (xmlGetDtdAttrDesc(dtd, reinterpret_cast<const xmlChar*>(name.c_str()),
                              reinterpret_cast<const xmlChar*>("id")) != nullptr)
            element->setIdentifier("an id");
    }
    EXPECT_EQ(seen.size(), 210u);
    EXPECT_TRUE(root->validateAndReturnError(&error)) << error.userInfo["stdErr"];
    expectSameXml(*root);
    for (const std::string& name : seen)
        EXPECT_TRUE(PELElement::elementWithKey(name)->elementName().entry().shared) << name;
}

TEST_F(Definition, PlacesOfElementsAreThoseOfTheFormat)
{
    struct Case {
        const char* parent;
        const char* child;
        bool allowed;
    };
    const Case cases[] = {
        {"xmeml", "sequence", true},
        {"xmeml", "importoptions", true},
        {"xmeml", "clipitem", false},
        {"project", "name", true},
        {"project", "labels", false},
        {"bin", "labels", true},
        {"clip", "masterclipid", true},
        {"clip", "media", true},
        {"clip", "multiclip", false},
        {"clip", "mediadelay", false},
        {"clip", "fielddominance", false},
        {"sequence", "fielddominance", true},
        {"sequence", "enabled", false},
        {"clipitem", "mediadelay", true},
        {"clipitem", "multiclip", true},
        {"clipitem", "media", false},
        {"clipitem", "uuid", false},
        {"clipitem", "itemhistory", true},
        {"audio", "channelcount", true},
        {"video", "samplecharacteristics", true},
        {"angle", "clip", true},
        {"angle", "mediadelay", false},
        {"transitionitem", "duration", false},
        {"transitionitem", "alignment", true},
        {"marker", "color", true},
        {"color", "alpha", true},
        {"marker", "marker", false},
        {"link", "groupindex", true},
        {"data", "UUID", true},
        {"data", "uuid", false},
        {"file", "mediaSource", true},
        {"file", "mediasource", false},
        {"importoptions", "name", false},
        {"importoptions", "defsequencepresetname", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.parent) + " > " + c.child);
        ASSERT_NE(declaration(c.parent), nullptr);
        std::vector<std::string> names;
        namesIn(declaration(c.parent)->content, names);
        EXPECT_EQ(std::count(names.begin(), names.end(), c.child), c.allowed ? 1 : 0);
    }
    for (const char* const strict : {"channel", "reel"})
        EXPECT_EQ(declaration(strict)->content->ocur, XML_ELEMENT_CONTENT_ONCE) << strict;
}

} // namespace
} // namespace zanfcp::test
