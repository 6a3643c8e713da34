#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zanfcp {

class PELElement;

/// How the text of elements is laid out.
enum class XMLFormat {
    plain,  ///< nothing between the elements
    pretty, ///< one element a line, indented by two spaces a level up to 30 levels, as libxml2 does
};

/// Takes the text in order, in blocks of at most 64 KiB, each borrowed for the call. False stops the writing.
using XMLSink = std::function<bool(std::string_view block)>;

/// Writes one element and all below it, as PELElement::writeXML() says. False when the sink stopped it.
bool writeXMLElement(const PELElement& element, XMLFormat format, const XMLSink& sink);

/// Writes a whole document with the children of `root` inside "xmeml". False when the sink stopped it.
bool writeXMLDocument(const PELElement& root, XMLFormat format, const XMLSink& sink);

/// What `element.writeXML()` writes, as one text.
std::string xmlText(const PELElement& element, XMLFormat format);

} // namespace zanfcp
