#include "tests/support/ElementLookup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace zanfcp::test {
namespace {

constexpr char kNothing[] = "<nothing>";

/// `part` is "key" or "key[n]".
std::shared_ptr<PELElement> child(const std::shared_ptr<PELElement>& element, std::string_view part)
{
    const std::size_t bracket = part.find('[');
    const std::string_view key = part.substr(0, bracket);
    long left = bracket == std::string_view::npos ? 1 : std::atol(std::string(part.substr(bracket + 1)).c_str());
    if (const PELElements* children = element->children())
        for (const auto& one : *children)
            if (one->key() == key && --left == 0) return one;
    return nullptr;
}

} // namespace

std::shared_ptr<PELElement> at(const std::shared_ptr<PELElement>& element, std::string_view path)
{
    if (!element || path.empty()) return element;
    const std::size_t slash = path.find('/');
    const auto found = child(element, path.substr(0, slash));
    return slash == std::string_view::npos ? found : at(found, path.substr(slash + 1));
}

std::string textAt(const std::shared_ptr<PELElement>& element, std::string_view path)
{
    const auto found = at(element, path);
    return found ? std::string(found->stringValue()) : kNothing;
}

std::string idAt(const std::shared_ptr<PELElement>& element, std::string_view path)
{
    const auto found = at(element, path);
    return found ? found->identifier() : kNothing;
}

Strings outline(const std::shared_ptr<PELElement>& element)
{
    Strings found;
    const PELElements* children = element ? element->children() : nullptr;
    if (children == nullptr) return found;
    for (const auto& one : *children) {
        std::string line = one->key();
        if (!one->identifier().empty()) line += "#" + one->identifier();
        if (!one->canHaveChildren()) line += "=" + std::string(one->stringValue());
        found.push_back(line);
    }
    return found;
}

Strings outlineAt(const std::shared_ptr<PELElement>& element, std::string_view path)
{
    return outline(at(element, path));
}

Strings keysAt(const std::shared_ptr<PELElement>& element, std::string_view path)
{
    Strings keys = outlineAt(element, path);
    for (std::string& key : keys)
        key.resize(std::min({key.size(), key.find('='), key.find('#')}));
    return keys;
}

void expectValid(const PELRootElement& root)
{
    ValidationError error;
    EXPECT_TRUE(root.validateAndReturnError(&error))
        << error.localizedDescription << error.userInfo["stdErr"] << error.userInfo["stdOut"] << root.XMLDescription();
}

void expectValid(const PELElements& elements, std::string_view path)
{
    const auto root = std::make_shared<PELRootElement>();
    std::shared_ptr<PELElement> parent = root;
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        parent = parent->addChild(PELElement::elementWithKey(path.substr(0, slash)));
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
    }
    EXPECT_TRUE(parent->addChildren(elements));
    expectValid(*root);
}

} // namespace zanfcp::test
