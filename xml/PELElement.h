#pragma once

#include "PELElementFactories.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zanfcp {

class PELElement;

/// Children in document order. A child may hang under several parents.
using PELElements = std::vector<std::shared_ptr<PELElement>>;

/// What an element holds: nothing yet, a text, or children.
using PELElementValue = std::variant<std::monostate, std::string, PELElements>;

/// One node of a document: a leaf with a text, or a container of child nodes. The only attribute is `id`.
/// Whether it can have children is decided when it is made and never changes. Made by its class factories
/// (see PELElementFactories) and held by std::shared_ptr. Not locked: a tree belongs to one thread.
class PELElement : public std::enable_shared_from_this<PELElement>, public PELElementFactories<PELElement> {
public:
    /// The designated initialiser. A list or an absent value makes a container, a text makes a leaf.
    PELElement(std::string_view key, PELElementValue value, std::string_view identifier);
    PELElement() : PELElement({}, {}, {}) {}
    virtual ~PELElement();
    PELElement(const PELElement&) = delete;
    PELElement& operator=(const PELElement&) = delete;

    const std::string& key() const { return key_; }
    void setKey(std::string_view key) { key_ = key; }
    const std::string& identifier() const { return identifier_; }
    void setIdentifier(std::string_view identifier) { identifier_ = identifier; }
    bool canHaveChildren() const { return canHaveChildren_; }

    const PELElementValue& value() const { return value_; }
    /// Replaces the content. The kind of the node stays: a text set on a container is kept as its value and written
    /// as text, children set on a leaf are kept but are not found, added to or written.
    void setValue(PELElementValue value) { value_ = std::move(value); }
    /// The text of the value; empty for a list or an absent value.
    std::string_view stringValue() const;
    /// The children of a container, null for a leaf and for a container without any. Borrowed.
    const PELElements* children() const;

    /// Appends one node and returns it. Null, with one error line, for an absent child and on a leaf.
    std::shared_ptr<PELElement> addChild(std::shared_ptr<PELElement> child);
    /// Appends each in order; true when all were taken. A failure does not stop the rest.
    bool addChildren(const PELElements& children);
    /// For each index a new leaf or container of the receiver's class; true when all were taken. `values` has as many
    /// entries as `keys`.
    bool addChildrenWithKeys(const std::vector<std::string>& keys, const std::vector<PELElementValue>& values);
    /// A new child of the receiver's class. Null on a leaf, without a log line. An absent text makes a container.
    std::shared_ptr<PELElement> addChildWithKey(std::string_view key, PELElementValue value);
    /// A new empty container of the receiver's class with an identifier: a reference to another element.
    std::shared_ptr<PELElement> addChildWithKeyIdentifier(std::string_view key, std::string_view identifier);
    /// Appends `child` to the element at `path` and returns the child even where that element refused it; null when
    /// nothing is at `path`.
    std::shared_ptr<PELElement> addChildAtPath(std::shared_ptr<PELElement> child, std::optional<std::string_view> path);
    bool addChildrenAtPath(const PELElements& children, std::optional<std::string_view> path);
    /// A new empty container, always a plain PELElement, under the element at `path`; null when nothing is there.
    std::shared_ptr<PELElement> addChildWithKeyAtPath(std::string_view key, std::optional<std::string_view> path);

    /// The first direct child with exactly this key; the receiver itself for an empty name; null on a leaf.
    std::shared_ptr<PELElement> childNamed(std::string_view name);
    /// Names joined by "/", resolved from the receiver; a leading or trailing "/" is harmless. Null on a leaf, for an
    /// absent path and where a part is missing.
    std::shared_ptr<PELElement> childAtPath(std::optional<std::string_view> path);
    /// The receiver, or the first container below it in document order, with this identifier. Leaves are never found.
    std::shared_ptr<PELElement> childWithID(std::optional<std::string_view> identifier);

    /// A deep copy of the receiver's class.
    virtual std::shared_ptr<PELElement> copy() const;

    /// "<PELElement: 0x…> key: "name" value: "A001" identifier: """; children are counted, not listed.
    virtual std::string description() const;

protected:
    /// A new node of the receiver's class.
    virtual std::shared_ptr<PELElement> makeSameClass(std::string_view key, PELElementValue value,
                                                      std::string_view identifier) const;
    virtual const char* className() const { return "PELElement"; }

private:
    std::string key_;
    PELElementValue value_;
    std::string identifier_;
    bool canHaveChildren_ = false;
};

} // namespace zanfcp
