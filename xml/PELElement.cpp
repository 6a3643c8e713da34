#include "xml/PELElement.h"

#include "platform/Format.h"
#include "platform/Log.h"
#include "xml/ElementPath.h"
#include "xml/PELCoder.h"

#include <typeinfo>
#include <utility>

namespace zanfcp {

namespace {

/// A list without its null entries: the children of an element are never null.
PELElementValue withoutNulls(PELElementValue value)
{
    if (auto* list = std::get_if<PELElements>(&value))
        for (std::size_t dropped = std::erase(*list, nullptr); dropped > 0; --dropped)
            ZAN_LOG_ERROR("PELElement: Child is nil");
    return value;
}

std::string textOf(const PELElementValue& value)
{
    const std::string* const text = std::get_if<std::string>(&value);
    return text == nullptr ? std::string() : *text;
}

/// An empty text stands for an absent one.
PELElementValue textOrAbsent(const std::string& text)
{
    return text.empty() ? PELElementValue{} : PELElementValue{text};
}

constexpr std::string_view kArchiveKey = "key";
constexpr std::string_view kArchiveValue = "value";
constexpr std::string_view kArchiveIdentifier = "identifier";

/// Counts the copies under way on this thread that were begun by a class of its own inside another's.
class Nesting {
public:
    Nesting() { ++count(); }
    ~Nesting() { --count(); }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    bool tooDeep() const { return count() > kMost; }

private:
    static constexpr int kMost = 256;
    static int& count()
    {
        static thread_local int counted = 0;
        return counted;
    }
};

constexpr std::size_t kFirstChildren = 4; ///< most containers have a name, a duration and a rate at the least

} // namespace

PELElement::PELElement(std::string_view key, PELElementValue value, std::string_view identifier)
    : key_{key}, value_{withoutNulls(std::move(value))}, canHaveChildren_{!std::holds_alternative<std::string>(value_)}
{
    setIdentifier(identifier);
}

PELElement::PELElement(PELCoder& coder)
    : PELElement(textOf(coder.decode(kArchiveKey)), coder.decode(kArchiveValue),
                 textOf(coder.decode(kArchiveIdentifier)))
{}

void PELElement::encodeWithCoder(PELCoder& coder) const
{
    coder.encode(textOrAbsent(key()), kArchiveKey);
    coder.encode(value_, kArchiveValue);
    coder.encode(textOrAbsent(identifier()), kArchiveIdentifier);
}

PELElement::~PELElement()
{
    auto* const list = std::get_if<PELElements>(&value_);
    if (list == nullptr || list->empty()) return;

    // Children mostly die inside their parent's destructor, which is the fastest way. Below a depth that no document
    // reaches they first give up their own children, level by level, so that no tree is too deep for the stack.
    constexpr int kMostFrames = 64;
    static thread_local int frames = 0;
    if (frames < kMostFrames) {
        ++frames;
        list->clear();
        --frames;
        return;
    }
    std::vector<PELElements> dying;
    dying.push_back(std::move(*list));
    while (!dying.empty()) {
        const PELElements children = std::move(dying.back());
        dying.pop_back();
        for (const auto& child : children) {
            auto* const below = std::get_if<PELElements>(&child->value_);
            if (below != nullptr && !below->empty() && child.use_count() == 1) dying.push_back(std::move(*below));
        }
    }
}

const std::string& PELElement::identifier() const
{
    static const std::string none;
    return identifier_ ? *identifier_ : none;
}

void PELElement::setIdentifier(std::string_view identifier)
{
    identifier_ = identifier.empty() ? nullptr : std::make_unique<std::string>(identifier);
}

void PELElement::setValue(PELElementValue value)
{
    value_ = withoutNulls(std::move(value));
}

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
    auto* list = std::get_if<PELElements>(&value_);
    if (list == nullptr) {
        list = &value_.emplace<PELElements>();
        list->reserve(kFirstChildren);
    }
    return list->emplace_back(std::move(child));
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
    if (name.empty()) return weak_from_this().lock();
    if (const PELElements* list = children())
        for (const auto& child : *list)
            if (child->key() == name) return child;
    return nullptr;
}

std::shared_ptr<PELElement> PELElement::childAtPath(std::optional<std::string_view> path)
{
    if (!path || !canHaveChildren_) return nullptr;
    std::shared_ptr<PELElement> found = weak_from_this().lock();
    PELElement* at = this;
    for (std::string_view rest = *path;;) {
        const std::size_t slash = rest.find('/');
        const std::string_view name = rest.substr(0, slash);
        if (!at->canHaveChildren_) return nullptr;
        if (!name.empty()) { // an empty name is the element itself
            found = at->childNamed(name);
            if (!found) return nullptr;
            at = found.get();
        }
        if (slash == std::string_view::npos) return found;
        rest.remove_prefix(slash + 1);
    }
}

std::shared_ptr<PELElement> PELElement::childWithID(std::optional<std::string_view> identifier)
{
    if (!identifier || identifier->empty() || !canHaveChildren_) return nullptr;
    if (this->identifier() == *identifier) return weak_from_this().lock();
    ElementPath path{*this};
    while (!path.empty()) {
        const std::shared_ptr<PELElement>* const child = path.nextChild();
        if (child == nullptr) {
            path.ascend();
        } else if ((*child)->canHaveChildren_) {
            if ((*child)->identifier() == *identifier) return *child;
            path.descend(**child);
        }
    }
    return nullptr;
}

std::shared_ptr<PELElement> PELElement::copy() const
{
    if (!canHaveChildren_) return makeSameClass(key(), value_, identifier());
    const Nesting nesting;
    if (nesting.tooDeep()) {
        ZAN_LOG_ERROR("PELElement: Left out of a copy, nested too deep: %s", key().c_str());
        return nullptr;
    }

    ElementPath path{*this};
    std::vector<PELElements> copies(1); // of the children met so far, one list per level of the path
    while (true) {
        if (const std::shared_ptr<PELElement>* const child = path.nextChild()) {
            const PELElement& element = **child;
            // Classes of their own copy themselves; only plain containers are walked through here.
            if (typeid(element) != typeid(PELElement) || element.children() == nullptr) {
                if (auto copied = element.copy()) copies.back().push_back(std::move(copied));
            } else if (path.descend(element)) {
                copies.emplace_back().reserve(element.children()->size());
            }
            continue;
        }
        const PELElement& done = path.element();
        auto copied = done.makeSameClass(done.key(), std::move(copies.back()), done.identifier());
        if (std::holds_alternative<std::string>(done.value_)) copied->value_ = done.value_;
        copies.pop_back();
        path.ascend();
        if (path.empty()) return copied;
        copies.back().push_back(std::move(copied));
    }
}

std::string PELElement::description() const
{
    const PELElements* list = std::get_if<PELElements>(&value_);
    const auto orNull = [](std::string_view text) { return std::string(text.empty() ? "(null)" : text); };
    const bool isAbsent = std::holds_alternative<std::monostate>(value());
    const std::string shown = list != nullptr ? format("%lu children", list->size())
                              : isAbsent      ? "(null)"
                                              : std::string(stringValue());
    return format("<%s: %p>", className(), static_cast<const void*>(this)) + " key: \"" + orNull(key()) +
           "\" value: \"" + shown + "\" identifier: \"" + orNull(identifier()) + "\"";
}

bool PELElement::writeXML(const XMLSink& sink, XMLFormat format) const
{
    return writeXMLElement(*this, format, sink);
}

std::string PELElement::XMLDescription() const
{
    return xmlText(*this, XMLFormat::pretty);
}

std::string PELElement::XMLString() const
{
    return xmlText(*this, XMLFormat::plain);
}

XMLElementNode PELElement::XMLRepresentation() const
{
    return makeXMLElement(*this);
}

std::shared_ptr<PELElement> PELElement::makeSameClass(std::string_view key, PELElementValue value,
                                                      std::string_view identifier) const
{
    return makeElement<PELElement>(key, std::move(value), identifier);
}

} // namespace zanfcp
