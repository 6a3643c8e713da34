#pragma once

#include "xml/PELElement.h"
#include "xml/PELRootElement.h"

#include <string>

namespace zanfcp::test {

/// What libxml2 prints for the nodes that XMLRepresentation() hands out; empty for no nodes.
std::string textOfNodes(const PELElement& element, XMLFormat format);
std::string textOfNodes(const PELRootElement& root, XMLFormat format);

/// Expects, pretty and plain, that the text written from the tree is what libxml2 prints for its nodes, and that it
/// can be read again by libxml2 without a complaint.
void expectSameXml(const PELElement& element);
void expectSameXml(const PELRootElement& root);

} // namespace zanfcp::test
