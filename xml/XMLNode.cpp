#include "xml/XMLNode.h"

#include "platform/LibXml2.h"
#include "platform/Log.h"
#include "xml/ElementPath.h"
#include "xml/XMLText.h"

#include <new>
#include <string>
#include <string_view>

namespace zanfcp {
namespace {

constexpr std::string_view kSkeleton =
    R"(<?xml version="1.0" encoding="UTF-8"?><!DOCTYPE xmeml><xmeml version="5"></xmeml>)";

constexpr int kNoStandaloneDeclaration = -2; ///< libxml2: there is a declaration, and it does not speak of standalone

const xmlChar* toXml(const char* text)
{
    return reinterpret_cast<const xmlChar*>(text);
}

const xmlChar* toXml(const std::string& text)
{
    return toXml(text.c_str());
}

/// libxml2 answers with null when there is no memory left, and only then.
template <typename T> T* made(T* thing)
{
    if (thing == nullptr) throw std::bad_alloc{};
    return thing;
}

/// Null, with one error line, without libxml2.
const LibXml2* loadedLibXml2()
{
    const Result<const LibXml2*> xml = libXml2();
    if (!xml) ZAN_LOG_ERROR("%s", xml.error().what.c_str());
    return xml ? *xml : nullptr;
}

/// Makes the node of one element, with its attribute and text but without children, below `parent` (null for the first
/// node of a document). `path` leads to the element or to its parent.
xmlNode* makeNode(const LibXml2& xml, xmlDoc* document, xmlNode* parent, const PELElement& element,
                  const ElementPath& path)
{
    xmlNode* const node = made(xml.xmlNewDocNode(document, nullptr, toXml(element.key()), nullptr));
    if (parent == nullptr)
        xml.xmlDocSetRootElement(document, node);
    else
        xml.xmlAddChild(parent, node);

    std::size_t replaced = 0;
    if (!element.identifier().empty()) {
        const XMLCleanText identifier = cleanXmlText(element.identifier());
        made(xml.xmlNewProp(node, toXml("id"), toXml(identifier.text)));
        replaced = identifier.replaced;
    }
    if (!element.stringValue().empty()) {
        const XMLCleanText text = cleanXmlText(element.stringValue());
        xml.xmlAddChild(node, made(xml.xmlNewDocText(document, toXml(text.text))));
        replaced += text.replaced;
    }
    logReplacedCharacters(replaced, path, element);
    return node;
}

/// Makes the nodes of everything below the top of `path`, which `node` stands for.
void makeChildren(const LibXml2& xml, xmlNode* node, ElementPath& path)
{
    while (!path.empty()) {
        if (const std::shared_ptr<PELElement>* const child = path.nextXMLChild()) {
            const PELElement& element = **child;
            if (element.children() == nullptr)
                makeNode(xml, node->doc, node, element, path);
            else if (path.descend(element))
                node = makeNode(xml, node->doc, node, element, path);
        } else {
            path.ascend();
            node = node->parent;
        }
    }
}

} // namespace

void XMLDocumentDeleter::operator()(_xmlDoc* document) const
{
    (*libXml2())->xmlFreeDoc(document); // which made it
}

XMLElementNode makeXMLElement(const PELElement& element)
{
    if (!hasXMLName(element)) return {};
    const LibXml2* const xml = loadedLibXml2();
    if (xml == nullptr) return {};
    XMLDocument document{made(xml->xmlNewDoc(toXml("1.0")))};
    document->encoding = made(xml->xmlStrdup(toXml("UTF-8")));
    ElementPath path{element};
    xmlNode* const node = makeNode(*xml, document.get(), nullptr, element, path);
    makeChildren(*xml, node, path);
    return {std::move(document), node};
}

XMLDocument makeXMLDocument(const PELElement& root)
{
    const LibXml2* const xml = loadedLibXml2();
    if (xml == nullptr) return {};
    XMLDocument document{made(
        xml->xmlReadMemory(kSkeleton.data(), static_cast<int>(kSkeleton.size()), nullptr, nullptr, XML_PARSE_NONET))};
    document->standalone = kNoStandaloneDeclaration;
    ElementPath path{root};
    makeChildren(*xml, xml->xmlDocGetRootElement(document.get()), path);
    return document;
}

} // namespace zanfcp
