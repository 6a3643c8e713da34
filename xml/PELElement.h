#pragma once

#include "ElementName.h"
#include "PELElementFactories.h"
#include "XMLNode.h"
#include "XMLWriter.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zanfcp {

class PELCoder;
class PELElement;

/// Children in document order. A child may hang under several parents.
using PELElements = std::vector<std::shared_ptr<PELElement>>;

/// What an element holds: nothing yet, a text, or children.
using PELElementValue = std::variant<std::monostate, std::string, PELElements>;

/// Levels of containers below the element that is copied, searched or turned into XML. A container that lies deeper, or
/// inside itself, is left out with one error line. (The usual tools read 256 levels, and 2048 when told to.)
inline constexpr std::size_t kMaxElementDepth = 2048;

/// One node of a document: a leaf with a text, or a container of child nodes. The only attribute is `id`.
/// Whether it can have children is decided when it is made and never changes. Made by its class factories
/// (see PELElementFactories) and held by std::shared_ptr. Not locked: a tree belongs to one thread.
/// Trees may be nested to any depth without harm to the stack.
class PELElement : public std::enable_shared_from_this<PELElement>, public PELElementFactories<PELElement> {
public:
    /// The designated initialiser. A list or an absent value makes a container, a text makes a leaf. Null entries of
    /// a list are dropped, with one error line each.
    PELElement(std::string_view key, PELElementValue value, std::string_view identifier);
    PELElement() : PELElement({}, {}, {}) {}
    /// Reads what encodeWithCoder() wrote. A list or an absent value makes a container.
    explicit PELElement(PELCoder& coder);
    virtual ~PELElement();
    PELElement(const PELElement&) = delete;
    PELElement& operator=(const PELElement&) = delete;

    /// Empty for an element without a name, which is never written.
    const std::string& key() const { return key_.text(); }
    void setKey(std::string_view key) { key_ = key; }
    /// The same, with what is known about it.
    const ElementName& elementName() const { return key_; }
    /// Written as the attribute `id`; empty for none.
    const std::string& identifier() const;
    void setIdentifier(std::string_view identifier);
    bool canHaveChildren() const { return canHaveChildren_; }

    const PELElementValue& value() const { return value_; }
    /// Replaces the content. The kind of the node stays: a text set on a container is kept as its value and written
    /// as text, children set on a leaf are kept but are not found, added to or written.
    void setValue(PELElementValue value);
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
    /// The receiver, or the first container below it in document order, with this identifier. Leaves are never found,
    /// and nothing has an empty identifier.
    std::shared_ptr<PELElement> childWithID(std::optional<std::string_view> identifier);

    /// A deep copy of the receiver's class: children are copied each in its own way, and a child that hangs under
    /// several parents becomes several. Null, with one error line, where classes of their own lie more than 256 levels
    /// inside one another.
    virtual std::shared_ptr<PELElement> copy() const;

    /// "<PELElement: 0x…> key: "name" value: "A001" identifier: """; children are counted, not listed.
    /// What is absent shows as (null).
    virtual std::string description() const;

    /// Writes the key, the value and the identifier under "key", "value" and "identifier".
    virtual void encodeWithCoder(PELCoder& coder) const;
    /// The name of the class in descriptions and archives.
    virtual const char* className() const { return "PELElement"; }

    /// The element and all below it as nodes of libxml2. Null without a key, and, with one error line, for a key that
    /// is no XML name; such children are left out likewise. Characters that XML cannot hold become U+FFFD, and one
    /// line of the default level says where. libxml2 is loaded at the first call; who calls its functions for the nodes
    /// links the same shared library. Null, with one error line, where it is not installed.
    XMLElementNode XMLRepresentation() const;
    /// The text of the same, written straight from the tree: UTF-8, and byte for byte what libxml2 prints for
    /// XMLRepresentation(). Without a key nothing is written.
    /// \return false when the sink stopped the writing
    virtual bool writeXML(const XMLSink& sink, XMLFormat format = XMLFormat::pretty) const;
    /// The text, indented, one element a line; empty for an element without a key.
    std::string XMLDescription() const;
    /// The text without blanks and line ends between the elements.
    std::string XMLString() const;

protected:
    /// A new node of the receiver's class.
    virtual std::shared_ptr<PELElement> makeSameClass(std::string_view key, PELElementValue value,
                                                      std::string_view identifier) const;

private:
    ElementName key_;
    std::unique_ptr<std::string> identifier_;     ///< null for none, as most have none
    [[no_unique_address]] PELElementValue value_; ///< lets the next one have what it ends with for nothing
    bool canHaveChildren_ = false;
};

} // namespace zanfcp
