#pragma once

#include "ElementMemory.h"

#include <memory>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

namespace zanfcp {

class PELElement;

/// The class factories of an element class. Each returns a new node of the class `Self` on which it is called:
/// PELElement::elementWithKey("bin") makes a PELElement, PELFileElement::elementWithKey("file") a PELFileElement.
template <typename Self> class PELElementFactories {
    using List = std::vector<std::shared_ptr<PELElement>>;

public:
    /// `value` is a text, a list of children, or std::monostate for none. A list or none makes a container.
    template <typename Value>
    static std::shared_ptr<Self> elementWithKey(std::string_view key, Value&& value, std::string_view identifier)
    {
        return makeElement<Self>(key, std::forward<Value>(value), identifier);
    }
    /// An empty container.
    static std::shared_ptr<Self> elementWithKey(std::string_view key)
    {
        return makeElement<Self>(key, std::monostate{}, std::string_view{});
    }
    /// An empty container with an identifier.
    static std::shared_ptr<Self> elementWithKeyIdentifier(std::string_view key, std::string_view identifier)
    {
        return makeElement<Self>(key, std::monostate{}, identifier);
    }
    /// A leaf; a container when the text is absent.
    static std::shared_ptr<Self> elementWithKeyStringValue(std::string_view key, std::optional<std::string_view> text,
                                                           std::string_view identifier = {})
    {
        if (!text) return elementWithKeyIdentifier(key, identifier);
        return makeElement<Self>(key, std::string(*text), identifier);
    }
    /// A container with children.
    static std::shared_ptr<Self> elementWithKeyChildren(std::string_view key, List children,
                                                        std::string_view identifier = {})
    {
        return makeElement<Self>(key, std::move(children), identifier);
    }
};

} // namespace zanfcp
