#include "xml/PELArchive.h"

#include "tests/support/LogCapture.h"
#include "xml/PELRootElement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zanfcp::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// A class of elements as a layer above would add it.
struct Tape : PELElement {
    using PELElement::PELElement;
    const char* className() const override { return "Tape"; }
};

std::shared_ptr<PELElement> leaf(std::string_view key, std::string_view text)
{
    return PELElement::elementWithKeyStringValue(key, text);
}

std::string archived(const PELElement& element)
{
    const Result<std::string> bytes = archiveElement(element);
    EXPECT_TRUE(bytes) << bytes.error().text();
    return bytes ? *bytes : "";
}

/// Every class, key, text and identifier, in order.
std::string outline(const PELElement& element, int depth = 0)
{
    std::string text = std::string(static_cast<std::size_t>(depth), ' ') + element.className() + "|" + element.key() +
                       "|" + std::string(element.stringValue()) + "|" + element.identifier() + "|" +
                       std::to_string(element.canHaveChildren()) + std::to_string(element.value().index()) + "\n";
    if (const PELElements* const children = element.children())
        for (const auto& child : *children)
            text += outline(*child, depth + 1);
    return text;
}

TEST(Archive, WholeTreeComesBack)
{
    const auto root = std::make_shared<PELRootElement>();
    const auto bin = PELElement::elementWithKeyIdentifier("bin", "B \xFF\0 1"s);
    root->addChild(bin);
    const auto tape = std::make_shared<Tape>("file", PELElements{leaf("name", "Ü & <\0>"s)}, "F");
    bin->addChildren({leaf("name", ""), PELElement::elementWithKey("nothing yet"),
                      PELElement::elementWithKeyChildren("rate", {}), tape, leaf("", "no key"), tape});

    const LogCapture log;
    const PELArchiveClass classes[] = {PELArchiveClass::of<Tape>("Tape")};
    const auto back = unarchiveElement(archived(*root), classes);
    ASSERT_TRUE(back) << back.error().text();
    EXPECT_EQ(outline(**back), outline(*root));
    EXPECT_NE(std::dynamic_pointer_cast<PELRootElement>(*back), nullptr);
    EXPECT_THAT(log.lines(), IsEmpty());

    // What hung under several parents still does.
    const PELElements& children = *(*back)->childNamed("bin")->children();
    EXPECT_EQ(children[3], children[5]);
    EXPECT_NE(std::dynamic_pointer_cast<Tape>(children[3]), nullptr);
}

TEST(Archive, UnknownClassIsReadAsAPlainElementAndNamedOnce)
{
    const auto bin = PELElement::elementWithKeyChildren(
        "bin", {std::make_shared<Tape>("a", "1"s, ""), std::make_shared<Tape>("b", "2"s, "")});
    const LogCapture log;
    const auto back = unarchiveElement(archived(*bin));
    ASSERT_TRUE(back);
    EXPECT_EQ((*back)->XMLString(), bin->XMLString());
    EXPECT_THAT(log.texts(LogLevel::normal),
                ElementsAre("PELElement: Archive holds an unknown class, read as PELElement: Tape"));
}

TEST(Archive, KindComesFromTheValueThatIsRead)
{
    const auto container = PELElement::elementWithKey("bin");
    container->setValue("text"s);
    const auto emptied = leaf("name", "text");
    emptied->setValue({});
    EXPECT_FALSE((*unarchiveElement(archived(*container)))->canHaveChildren());
    EXPECT_TRUE((*unarchiveElement(archived(*emptied)))->canHaveChildren());
}

TEST(Archive, FormIsFixed)
{
    EXPECT_EQ(archived(*PELElement::elementWithKeyChildren("bin", {leaf("in", "7")})),
              "PELA\0\0\0\1"
              "\0\0\0\3\0\0\0\12PELElement\0\0\0\3key\0\0\0\5value"
              "\0\0\0\2"
              "\0\0\0\0\0\0\0\2\0\0\0\1\1\0\0\0\3bin\0\0\0\2\2\0\0\0\1\0\0\0\1"
              "\0\0\0\0\0\0\0\2\0\0\0\1\1\0\0\0\2in\0\0\0\2\1\0\0\0\1"
              "7"s);
}

/// Archives by hand: each element is a key-less PELElement with the given children.
std::string graph(const std::vector<std::vector<std::uint32_t>>& elements)
{
    const auto number = [](std::size_t value) {
        std::string bytes;
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes += static_cast<char>(value >> shift);
        return bytes;
    };
    std::string bytes =
        "PELA" + number(1) + number(2) + number(10) + "PELElement" + number(5) + "value" + number(elements.size());
    for (const auto& children : elements) {
        bytes += number(0) + number(1) + number(1) + '\2' + number(children.size());
        for (const std::uint32_t child : children)
            bytes += number(child);
    }
    return bytes;
}

std::string changedAt(std::string bytes, std::size_t at, int value)
{
    bytes[at] = static_cast<char>(value);
    return bytes;
}

TEST(Archive, HostileShapesAreRefused)
{
    ASSERT_TRUE(unarchiveElement(graph({{1, 2}, {2}, {}}))); // so each case below has one fault
    std::vector<std::vector<std::uint32_t>> doubling, chain;
    for (std::uint32_t i = 1; i <= 64; ++i)
        doubling.push_back({i, i});
    doubling.emplace_back();
    for (std::uint32_t i = 1; i <= kMaxElementDepth + 1; ++i)
        chain.push_back({i});
    chain.emplace_back();
    ASSERT_TRUE(unarchiveElement(graph(chain)));
    auto longChain = chain;
    longChain.back().push_back(static_cast<std::uint32_t>(longChain.size()));
    longChain.emplace_back();

    struct Case {
        const char* name;
        std::string bytes;
        Fault fault;
    };
    const Case cases[] = {
        {"the top inside itself", graph({{0}}), Fault::malformed},
        {"two inside each other", graph({{1}, {2}, {1}}), Fault::malformed},
        {"the top below another", graph({{1}, {0}}), Fault::malformed},
        {"an element in no tree", graph({{}, {}}), Fault::malformed},
        {"a child that is not there", graph({{1}}), Fault::malformed},
        {"no elements", graph({}), Fault::malformed},
        {"bytes left over", graph({{}}) + "x", Fault::malformed},
        {"another version", changedAt(graph({{}}), 7, 2), Fault::unsupported},
        {"not an archive", "<xmeml/>", Fault::malformed},
        {"nothing", "", Fault::malformed},
        {"a tree without end", graph(doubling), Fault::limit},
        {"too deep", graph(longChain), Fault::limit},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto result = unarchiveElement(c.bytes);
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().fault, c.fault);
    }
}

TEST(Archive, NoPrefixAndNoChangedByteDoesHarm)
{
    const auto bin = PELElement::elementWithKeyIdentifier("bin", "B");
    bin->addChildren({leaf("name", "A"), PELElement::elementWithKeyChildren("clip", {leaf("in", "1")})});
    const std::string whole = archived(*bin);
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(unarchiveElement(whole.substr(0, size))) << size;
    const LogCapture log; // names that are changed become unknown classes
    std::size_t refused = 0;
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const int value : {0x00, 0xFF, whole[at] + 1, whole[at] - 1, whole[at] ^ 0x80}) {
            const auto result = unarchiveElement(changedAt(whole, at, value));
            if (result)
                (*result)->XMLString();
            else
                ++refused;
        }
    EXPECT_GT(refused, whole.size());
}

TEST(Archive, TreeThatCannotComeBackIsNotArchived)
{
    const auto bin = PELElement::elementWithKey("bin");
    const auto clip = bin->addChildWithKey("clip", {});
    clip->addChild(bin);
    const auto inside = archiveElement(*bin);
    ASSERT_FALSE(inside);
    EXPECT_EQ(inside.error().fault, Fault::malformed);
    clip->setValue({});

    auto deep = PELElement::elementWithKey("bin");
    for (std::size_t i = 0; i < 100'000; ++i)
        deep = PELElement::elementWithKeyChildren("bin", {std::move(deep)});
    const auto tooDeep = archiveElement(*deep);
    ASSERT_FALSE(tooDeep);
    EXPECT_EQ(tooDeep.error().fault, Fault::limit);
}

} // namespace
} // namespace zanfcp::test
