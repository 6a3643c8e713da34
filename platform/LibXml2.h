#pragma once

#include "Result.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>

namespace zanfcp {

/// Every function of libxml2 that is used.
#define ZANFCP_LIBXML2_FUNCTIONS(FUNCTION)                                                                             \
    FUNCTION(xmlAddChild)                                                                                              \
    FUNCTION(xmlByteConsumed)                                                                                          \
    FUNCTION(xmlCheckUTF8)                                                                                             \
    FUNCTION(xmlCreatePushParserCtxt)                                                                                  \
    FUNCTION(xmlCtxtUseOptions)                                                                                        \
    FUNCTION(xmlDocGetRootElement)                                                                                     \
    FUNCTION(xmlDocSetRootElement)                                                                                     \
    FUNCTION(xmlFreeDoc)                                                                                               \
    FUNCTION(xmlFreeParserCtxt)                                                                                        \
    FUNCTION(xmlGetPredefinedEntity)                                                                                   \
    FUNCTION(xmlInitParser)                                                                                            \
    FUNCTION(xmlNewDoc)                                                                                                \
    FUNCTION(xmlNewDocNode)                                                                                            \
    FUNCTION(xmlNewDocText)                                                                                            \
    FUNCTION(xmlNewProp)                                                                                               \
    FUNCTION(xmlParseChunk)                                                                                            \
    FUNCTION(xmlReadMemory)                                                                                            \
    FUNCTION(xmlStopParser)                                                                                            \
    FUNCTION(xmlStrdup)

/// The functions of libxml2, under their own names. Most programs never read a document, and loading libxml2 with the
/// character tables behind it takes longer than all that they do: so it is not linked, but loaded by who asks first.
struct LibXml2 {
#define ZANFCP_MEMBER(name) decltype(&::name) name = nullptr;
    ZANFCP_LIBXML2_FUNCTIONS(ZANFCP_MEMBER)
#undef ZANFCP_MEMBER
};

/// libxml2, loaded at the first call and kept to the end of the process; from any thread.
/// \return never null; notFound when it could not be loaded, and then for every further call
Result<const LibXml2*> libXml2();

} // namespace zanfcp
