#pragma once

#include <memory>
#include <utility>

struct _xmlDoc;
struct _xmlNode;

namespace zanfcp {

class PELElement;

/// Frees a document of libxml2.
struct XMLDocumentDeleter {
    void operator()(_xmlDoc* document) const;
};

/// Owner of a document of libxml2 (an xmlDocPtr); null for none.
using XMLDocument = std::unique_ptr<_xmlDoc, XMLDocumentDeleter>;

/// Owner of one element of libxml2 (an xmlNodePtr) and of the empty document, in UTF-8, that it belongs to. It is that
/// document's root; use xmlDocCopyNode to take it elsewhere.
class XMLElementNode {
public:
    XMLElementNode() = default;
    XMLElementNode(XMLDocument document, _xmlNode* node) : document_{std::move(document)}, node_{node} {}

    /// Borrowed; null for none.
    _xmlNode* get() const { return node_; }
    /// The document it belongs to, borrowed.
    _xmlDoc* document() const { return document_.get(); }
    explicit operator bool() const { return node_ != nullptr; }

private:
    XMLDocument document_;
    _xmlNode* node_ = nullptr;
};

/// The nodes of one element, as PELElement::XMLRepresentation() says.
XMLElementNode makeXMLElement(const PELElement& element);
/// A whole document: the skeleton with the children of `root` inside "xmeml".
XMLDocument makeXMLDocument(const PELElement& root);

} // namespace zanfcp
