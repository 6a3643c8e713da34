#include "xml/PELElement.h"

#include "tests/support/LogCapture.h"
#include "xml/PELRootElement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>
#include <utility>
#include <vector>

namespace zanfcp::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

std::vector<std::string> keysOf(const PELElement& element)
{
    std::vector<std::string> keys;
    if (const PELElements* const children = element.children())
        for (const auto& child : *children)
            keys.push_back(child->key());
    return keys;
}

std::shared_ptr<PELElement> leaf(std::string_view key, std::string_view text)
{
    return PELElement::elementWithKeyStringValue(key, text);
}

TEST(Element, KindIsDecidedByTheFirstValue)
{
    struct Case {
        const char* name;
        std::shared_ptr<PELElement> element;
        bool container;
    };
    const Case cases[] = {
        {"no value", PELElement::elementWithKey("bin"), true},
        {"no value, with an identifier", PELElement::elementWithKeyIdentifier("clip", "A"), true},
        {"an absent text", PELElement::elementWithKeyStringValue("name", std::nullopt), true},
        {"an empty text", leaf("name", ""), false},
        {"a text", PELElement::elementWithKey("name", std::string("A001"), ""), false},
        {"an empty list", PELElement::elementWithKeyChildren("bin", {}), true},
        {"a list", PELElement::elementWithKeyChildren("bin", {leaf("name", "A")}, "B"), true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.element->canHaveChildren(), c.container);
        c.element->setValue(std::string("later"));
        EXPECT_EQ(c.element->canHaveChildren(), c.container);
        c.element->setValue(PELElements{leaf("name", "A")});
        EXPECT_EQ(c.element->canHaveChildren(), c.container);
        EXPECT_EQ(c.element->children() != nullptr, c.container);
        c.element->setValue(std::monostate{});
        EXPECT_EQ(c.element->canHaveChildren(), c.container);
        EXPECT_EQ(c.element->children(), nullptr);
        EXPECT_EQ(c.element->addChild(leaf("in", "1")) != nullptr, c.container);
    }
}

TEST(Element, ListIsCopiedNotSharedWithTheCaller)
{
    PELElements list{leaf("name", "A")};
    const auto bin = PELElement::elementWithKeyChildren("bin", list);
    list.push_back(leaf("name", "B"));
    EXPECT_EQ(bin->children()->size(), 1u);
    bin->setValue(list);
    list.clear();
    EXPECT_EQ(bin->children()->size(), 2u);
}

TEST(Element, AbsentEntriesOfAListAreDropped)
{
    const LogCapture log;
    const auto bin = PELElement::elementWithKeyChildren("bin", {nullptr, leaf("name", "A"), nullptr});
    EXPECT_THAT(keysOf(*bin), ElementsAre("name"));
    bin->setValue(PELElements{nullptr});
    EXPECT_THAT(keysOf(*bin), IsEmpty());
    EXPECT_EQ(bin->childNamed("name"), nullptr);
    EXPECT_EQ(log.errors(), std::vector<std::string>(3, "PELElement: Child is nil"));
}

TEST(Element, NamesOutsideTheFormatLiveAndCopyLikeOthers)
{
    const std::string longName(100, 'n');
    const auto element = PELElement::elementWithKey(longName);
    EXPECT_EQ(element->key(), longName);
    EXPECT_EQ(element->copy()->key(), longName);
    element->setKey(element->key()); // a view of what it replaces
    EXPECT_EQ(element->key(), longName);
    element->setKey("bin");
    EXPECT_EQ(element->key(), "bin");
    element->setKey("");
    EXPECT_EQ(element->key(), "");
    element->setIdentifier("A");
    element->setIdentifier(element->identifier());
    EXPECT_EQ(element->identifier(), "A");
}

TEST(Element, RefusedChildIsLoggedAndLeavesTheTree)
{
    const LogCapture log;
    const auto name = leaf("name", "A001");
    EXPECT_EQ(PELElement::elementWithKey("bin")->addChild(nullptr), nullptr);
    EXPECT_EQ(name->addChild(leaf("in", "7")), nullptr);
    EXPECT_EQ(name->stringValue(), "A001");
    ASSERT_EQ(log.errors().size(), 2u);
    EXPECT_EQ(log.errors()[0], "PELElement: Child is nil");
    EXPECT_THAT(log.errors()[1], MatchesRegex("PELElement: Cannot add child: <PELElement: 0x[0-9a-f]+> "
                                              "key: \"in\" value: \"7\" identifier: \"\\(null\\)\""));
}

TEST(Element, LeafTakesNoChildrenByKeyAndSaysNothing)
{
    const LogCapture log;
    const auto name = leaf("name", "A001");
    EXPECT_EQ(name->addChildWithKey("in", std::string("7")), nullptr);
    EXPECT_EQ(name->addChildWithKeyIdentifier("clip", "A"), nullptr);
    EXPECT_EQ(name->childNamed(""), nullptr);
    EXPECT_EQ(name->childAtPath(""), nullptr);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(Element, FailureDoesNotStopTheRestOfAList)
{
    const LogCapture log;
    const auto bin = PELElement::elementWithKey("bin");
    EXPECT_TRUE(bin->addChildren({}));
    EXPECT_FALSE(bin->addChildren({leaf("a", ""), nullptr, leaf("b", "")}));
    EXPECT_THAT(keysOf(*bin), ElementsAre("a", "b"));
    EXPECT_TRUE(bin->addChildrenWithKeys({}, {}));
    EXPECT_TRUE(bin->addChildrenWithKeys({"c", "d"}, {std::string("text"), std::monostate{}}));
    EXPECT_THAT(keysOf(*bin), ElementsAre("a", "b", "c", "d"));
    EXPECT_FALSE(bin->childNamed("c")->canHaveChildren());
    EXPECT_TRUE(bin->childNamed("d")->canHaveChildren());
}

TEST(Element, ChildrenMadeByKeyAreOfTheReceiversClass)
{
    const auto root = std::make_shared<PELRootElement>();
    EXPECT_NE(std::dynamic_pointer_cast<PELRootElement>(root->addChildWithKey("bin", {})), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<PELRootElement>(root->addChildWithKeyIdentifier("clip", "A")), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<PELRootElement>(root->copy()), nullptr);
    const auto plain = root->addChildWithKeyAtPath("children", "/bin");
    EXPECT_EQ(std::dynamic_pointer_cast<PELRootElement>(plain), nullptr);
    EXPECT_EQ(root->childAtPath("bin/children"), plain);
}

TEST(Element, PathFindsWhatItNames)
{
    const auto root = std::make_shared<PELRootElement>();
    const auto project = root->addChildWithKey("project", {});
    const auto children = project->addChildWithKey("children", {});
    const auto first = children->addChildWithKeyIdentifier("clip", "first");
    children->addChildWithKeyIdentifier("clip", "second");
    project->addChild(leaf("name", "Show"));

    struct Case {
        std::optional<std::string_view> path;
        std::shared_ptr<PELElement> found;
    };
    const Case cases[] = {
        {"", root},
        {"/", root},
        {"//", root},
        {"project", project},
        {"/project", project},
        {"project/", project},
        {"/project/children", children},
        {"project//children/", children},
        {"project/children/clip", first},
        {"Project", nullptr},
        {"children", nullptr},
        {"project/bin/clip", nullptr},
        {"project/name/", nullptr}, // a leaf has nothing at any path, not even itself
        {std::nullopt, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path.value_or("none"));
        EXPECT_EQ(root->childAtPath(c.path), c.found);
    }
    EXPECT_EQ(project->childNamed("name")->stringValue(), "Show");
    EXPECT_EQ(root->childNamed("project/children"), nullptr);
}

TEST(Element, ElementThatNothingOwnsStillFindsItsChildren)
{
    PELRootElement root;
    const auto bin = root.addChildWithKey("bin", {});
    EXPECT_EQ(root.childAtPath("/bin"), bin);
    EXPECT_EQ(root.childAtPath("/"), nullptr); // itself, which nobody can share
    EXPECT_EQ(root.childNamed(""), nullptr);
}

TEST(Element, ChildAtPathIsReturnedEvenWhereItWasRefused)
{
    const LogCapture log;
    const auto bin = PELElement::elementWithKey("bin");
    bin->addChild(leaf("name", "A"));
    const auto child = leaf("in", "1");
    EXPECT_EQ(bin->addChildAtPath(child, "name"), child);
    EXPECT_EQ(log.errors().size(), 1u);
    EXPECT_EQ(bin->addChildAtPath(child, "nowhere"), nullptr);
    EXPECT_FALSE(bin->addChildrenAtPath({child}, "nowhere"));
    EXPECT_FALSE(bin->addChildrenAtPath({child}, "name"));
    EXPECT_EQ(bin->addChildWithKeyAtPath("in", "name"), nullptr);
    EXPECT_TRUE(bin->addChildrenAtPath({child, child}, "/"));
    EXPECT_THAT(keysOf(*bin), ElementsAre("name", "in", "in"));
}

TEST(Element, IdentifierIsFoundOnContainersInDocumentOrder)
{
    const auto root = PELElement::elementWithKeyIdentifier("xmeml", "top");
    const auto bin = root->addChildWithKey("bin", {});
    bin->addChild(PELElement::elementWithKeyStringValue("name", "on a leaf", "L"));
    const auto deep = bin->addChildWithKey("children", {})->addChildWithKeyIdentifier("clip", "C");
    root->addChildWithKeyIdentifier("clip", "C");

    EXPECT_EQ(root->childWithID("top"), root);
    EXPECT_EQ(root->childWithID("C"), deep);
    EXPECT_EQ(root->childWithID("L"), nullptr);
    EXPECT_EQ(root->childWithID(""), nullptr);
    EXPECT_EQ(root->childWithID(std::nullopt), nullptr);
    EXPECT_EQ(bin->childNamed("name")->childWithID("L"), nullptr);
}

TEST(Element, CopySharesNothingButEqualsItsSource)
{
    const auto bin = PELElement::elementWithKeyIdentifier("bin", "B");
    bin->addChild(leaf("name", "A"));
    const auto shared = bin->addChildWithKey("children", {})->addChildWithKeyIdentifier("clip", "C");
    bin->addChild(shared);
    shared->addChild(leaf("duration", "25"));

    const auto copy = bin->copy();
    EXPECT_EQ(copy->XMLDescription(), bin->XMLDescription());
    EXPECT_NE(copy->childNamed("clip"), shared);
    EXPECT_NE(copy->childNamed("clip"), copy->childAtPath("children/clip"));
    copy->childAtPath("clip/duration")->setValue(std::string("1"));
    copy->childNamed("children")->addChild(leaf("name", "new"));
    EXPECT_EQ(shared->childNamed("duration")->stringValue(), "25");
    EXPECT_THAT(keysOf(*bin->childNamed("children")), ElementsAre("clip"));

    const auto empty = PELElement::elementWithKey("bin")->copy();
    ASSERT_NE(empty->children(), nullptr);
    EXPECT_THAT(*empty->children(), IsEmpty());
    EXPECT_FALSE(leaf("name", "")->copy()->canHaveChildren());
}

TEST(Element, ClassThatCopiesItselfIsAskedTo)
{
    struct Reference : PELElement {
        using PELElement::PELElement;
        std::shared_ptr<PELElement> copy() const override
        {
            return PELElement::elementWithKeyIdentifier(key(), identifier());
        }
    };
    const auto clip = PELElement::elementWithKey("clip");
    clip->addChild(std::make_shared<Reference>("file", PELElements{leaf("name", "A")}, "F"));
    EXPECT_EQ(clip->copy()->XMLString(), "<clip><file id=\"F\"/></clip>");
}

TEST(Element, DescriptionCountsChildren)
{
    const auto bin = PELElement::elementWithKeyIdentifier("bin", "B");
    bin->addChildren({leaf("name", "A"), leaf("name", "B")});
    EXPECT_THAT(bin->description(),
                MatchesRegex("<PELElement: 0x[0-9a-f]+> key: \"bin\" value: \"2 children\" identifier: \"B\""));
    EXPECT_THAT(PELRootElement().description(), HasSubstr("<PELRootElement: 0x"));
}

/// A chain of containers, `levels` deep below the top.
std::shared_ptr<PELElement> chain(std::size_t levels)
{
    auto inner = PELElement::elementWithKeyChildren("bin", {});
    for (std::size_t i = 0; i < levels; ++i)
        inner = PELElement::elementWithKeyChildren("bin", {std::move(inner)});
    return inner;
}

TEST(Element, DeepTreeDiesWithoutTheStack)
{
    chain(500'000);
    // What another tree still holds stays whole.
    auto top = chain(10);
    const auto kept = top->childAtPath("bin/bin");
    top.reset();
    EXPECT_NE(kept->childAtPath("bin/bin/bin/bin/bin/bin/bin/bin"), nullptr);
}

TEST(Element, TooDeepTreeIsCutWithAnErrorLine)
{
    const auto fits = chain(kMaxElementDepth), tooDeep = chain(kMaxElementDepth + 1);
    const LogCapture log;
    const std::string text = fits->XMLString();
    EXPECT_EQ(text.size(), kMaxElementDepth * std::string("<bin></bin>").size() + std::string("<bin/>").size());
    EXPECT_TRUE(fits->copy()->XMLString() == text);
    EXPECT_THAT(log.errors(), IsEmpty());
    EXPECT_TRUE(tooDeep->copy()->XMLString() == text);
    EXPECT_EQ(log.errors().size(), 1u);
    EXPECT_TRUE(tooDeep->XMLString() == text);
    ASSERT_EQ(log.errors().size(), 2u);
    EXPECT_THAT(log.errors()[1], HasSubstr("nested deeper than 2048 levels"));
    EXPECT_LT(log.errors()[1].size(), 1000u);
}

TEST(Element, DeepTreeOfAnotherClassIsCutWhereItCopiesItself)
{
    std::shared_ptr<PELElement> top = std::make_shared<PELRootElement>("bin", PELElements{}, "");
    for (int i = 0; i < 100'000; ++i)
        top = std::make_shared<PELRootElement>("bin", PELElements{std::move(top)}, "");
    const LogCapture log;
    EXPECT_NE(top->copy(), nullptr);
    EXPECT_EQ(log.errors().size(), 1u);
    EXPECT_NE(top->copy(), nullptr); // the count starts anew
}

TEST(Element, ElementInsideItselfIsLeftOut)
{
    const LogCapture log;
    const auto bin = PELElement::elementWithKey("bin");
    const auto clip = bin->addChildWithKey("clip", {});
    clip->addChild(leaf("name", "A"));
    clip->addChildren({bin, bin});
    EXPECT_EQ(bin->XMLString(), "<bin><clip><name>A</name></clip></bin>");
    EXPECT_EQ(bin->copy()->XMLString(), "<bin><clip><name>A</name></clip></bin>");
    EXPECT_EQ(bin->childWithID("none"), nullptr);
    ASSERT_EQ(log.errors().size(), 6u);
    EXPECT_EQ(log.errors()[0], "PELElement: Left out, it lies inside itself: /bin/clip/bin");
    clip->setValue({}); // or the two would hold each other for ever
}

// Elements share blocks of memory: what others give back, on whatever thread, must not touch those that stay.
TEST(Element, StaysWholeWhenNeighboursDieOnOtherThreads)
{
    constexpr std::size_t kThreads = 4, kElements = 5'000;
    std::vector<PELElements> made(kThreads);
    const auto onEachThread = [](auto work) {
        std::vector<std::thread> threads;
        for (std::size_t thread = 0; thread < kThreads; ++thread)
            threads.emplace_back(work, thread);
        for (std::thread& thread : threads)
            thread.join();
    };
    const auto name = [](std::size_t thread, std::size_t i) {
        return std::to_string(thread) + "." + std::to_string(i);
    };
    for (std::size_t round = 0; round < 3; ++round) {
        onEachThread([&](std::size_t thread) {
            for (std::size_t i = 0; i < kElements; ++i) {
                PELElement::elementWithKey("gone at once");
                made[thread].push_back(leaf("name", name(thread, i)));
            }
        });
        onEachThread([&](std::size_t thread) { // a neighbour's, all but every seventh one
            PELElements& neighbours = made[(thread + 1) % kThreads];
            for (std::size_t i = 0; i < neighbours.size(); ++i)
                if (i % 7 != round) neighbours[i].reset();
        });
        for (std::size_t thread = 0; thread < kThreads; ++thread) {
            for (std::size_t i = round; i < kElements; i += 7)
                ASSERT_EQ(made[thread][i]->stringValue(), name(thread, i));
            made[thread].clear();
        }
    }
}

} // namespace
} // namespace zanfcp::test
