#include "xml/PELElement.h"

#include "platform/Format.h"
#include "platform/Log.h"

#include <utility>

namespace zanfcp {

PELElement::PELElement(std::string_view key, PELElementValue value, std::string_view identifier)
    : key_{key}, value_{std::move(value)}, identifier_{identifier}, canHaveChildren_{
                                                                        !std::holds_alternative<std::string>(value_)}
{}

PELElement::~PELElement() = default;

std::string_view PELElement::stringValue() const
{
    const std::string* text = std::get_if<std::string>(&value_);
    return text == nullptr ? std::string_view{} : std::string_view{*text};
}

const PELElements* PELElement::children() const
{
    return canHaveChildren_ ? std::get_if<PELElements>(&value_) : nullptr;
}

std::shared_ptr<PELElement> PELElement::addChild(std::shared_ptr<PELElement> child)
{
    if (!child) {
        ZAN_LOG_ERROR("PELElement: Child is nil");
        return nullptr;
    }
    if (!canHaveChildren_) {
        ZAN_LOG_ERROR("PELElement: Cannot add child: %s", child->description().c_str());
        return nullptr;
    }
    if (!std::holds_alternative<PELElements>(value_)) value_ = PELElements{};
    return std::get<PELElements>(value_).emplace_back(std::move(child));
}

bool PELElement::addChildren(const PELElements& children)
{
    bool all = true;
    for (const auto& child : children)
        all = addChild(child) != nullptr && all;
    return all;
}

bool PELElement::addChildrenWithKeys(const std::vector<std::string>& keys, const std::vector<PELElementValue>& values)
{
    bool all = true;
    for (std::size_t i = 0; i < keys.size(); ++i)
        all = addChild(makeSameClass(keys[i], i < values.size() ? values[i] : PELElementValue{}, {})) != nullptr && all;
    return all;
}

std::shared_ptr<PELElement> PELElement::addChildWithKey(std::string_view key, PELElementValue value)
{
    return canHaveChildren_ ? addChild(makeSameClass(key, std::move(value), {})) : nullptr;
}

std::shared_ptr<PELElement> PELElement::addChildWithKeyIdentifier(std::string_view key, std::string_view identifier)
{
    return canHaveChildren_ ? addChild(makeSameClass(key, {}, identifier)) : nullptr;
}

std::shared_ptr<PELElement> PELElement::addChildAtPath(std::shared_ptr<PELElement> child,
                                                       std::optional<std::string_view> path)
{
    const auto target = childAtPath(path);
    if (!target) return nullptr;
    target->addChild(child); // a refusal is logged there, and is not this caller's business
    return child;
}

bool PELElement::addChildrenAtPath(const PELElements& children, std::optional<std::string_view> path)
{
    const auto target = childAtPath(path);
    return target && target->addChildren(children);
}

std::shared_ptr<PELElement> PELElement::addChildWithKeyAtPath(std::string_view key,
                                                              std::optional<std::string_view> path)
{
    const auto target = childAtPath(path);
    return target ? target->addChild(PELElement::elementWithKey(key)) : nullptr;
}

std::shared_ptr<PELElement> PELElement::childNamed(std::string_view name)
{
    if (!canHaveChildren_) return nullptr;
    if (name.empty()) return shared_from_this();
    if (const PELElements* list = children())
        for (const auto& child : *list)
            if (child->key_ == name) return child;
    return nullptr;
}

std::shared_ptr<PELElement> PELElement::childAtPath(std::optional<std::string_view> path)
{
    if (!path || !canHaveChildren_) return nullptr;
    const std::size_t slash = path->find('/');
    if (slash == std::string_view::npos) return childNamed(*path);
    const auto child = childNamed(path->substr(0, slash));
    return child ? child->childAtPath(path->substr(slash + 1)) : nullptr;
}

std::shared_ptr<PELElement> PELElement::childWithID(std::optional<std::string_view> identifier)
{
    if (!identifier || !canHaveChildren_) return nullptr;
    if (identifier_ == *identifier) return shared_from_this();
    if (const PELElements* list = children())
        for (const auto& child : *list)
            if (auto found = child->childWithID(identifier)) return found;
    return nullptr;
}

std::shared_ptr<PELElement> PELElement::copy() const
{
    const PELElements* list = children();
    if (list == nullptr) return makeSameClass(key_, canHaveChildren_ ? PELElements{} : value_, identifier_);
    PELElements copies;
    copies.reserve(list->size());
    for (const auto& child : *list)
        copies.push_back(child->copy());
    return makeSameClass(key_, std::move(copies), identifier_);
}

std::string PELElement::description() const
{
    const PELElements* list = std::get_if<PELElements>(&value_);
    const std::string shown = list == nullptr ? std::string(stringValue()) : format("%lu children", list->size());
    return format("<%s: %p> key: \"%s\" value: \"%s\" identifier: \"%s\"", className(), static_cast<const void*>(this),
                  key_.c_str(), shown.c_str(), identifier_.c_str());
}

std::shared_ptr<PELElement> PELElement::makeSameClass(std::string_view key, PELElementValue value,
                                                      std::string_view identifier) const
{
    return std::make_shared<PELElement>(key, std::move(value), identifier);
}

} // namespace zanfcp
