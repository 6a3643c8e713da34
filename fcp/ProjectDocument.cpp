#include "fcp/ProjectDocument.h"

#include "fcp/ElementIds.h"
#include "platform/LibXml2.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

namespace zanfcp {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kChunkBytes = 64U << 10U;
constexpr int kDeepest = 256; ///< elements in each other; documents of this kind need about twenty

struct FreeParser {
    const LibXml2& xml;
    void operator()(xmlParserCtxtPtr parser) const
    {
        xml.xmlFreeDoc(parser->myDoc); // made in passing by some declarations
        parser->myDoc = nullptr;
        xml.xmlFreeParserCtxt(parser);
    }
};

std::string_view view(const xmlChar* text)
{
    return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

/// What the parser's callbacks share.
struct Scan {
    const LibXml2& xml;
    std::string_view text;
    ProjectLayout layout = {};
    std::optional<Error> error = {};
    xmlParserCtxtPtr parser = nullptr;
    int depth = 0;
    bool rootEnded = false;

    std::size_t position() const { return static_cast<std::size_t>(std::max(0L, xml.xmlByteConsumed(parser))); }
    void refuse(Fault fault, std::string what)
    {
        if (!error) error = Error{.fault = fault, .what = std::move(what), .offset = position()};
        xml.xmlStopParser(parser);
    }
};

Scan& scanOf(void* context)
{
    return *static_cast<Scan*>(static_cast<xmlParserCtxtPtr>(context)->_private);
}

/// Whether the text's XML declaration is silent about the encoding or names UTF-8. The parser is told to ignore what
/// it names: it would convert everything behind the declaration, and positions would no longer be those of the text.
bool saysUTF8(std::string_view text)
{
    constexpr std::string_view kSpaces = " \t\r\n";
    constexpr std::string_view kName = "encoding";
    constexpr std::string_view kUTF8 = "UTF-8";
    if (!text.starts_with("<?xml") || kSpaces.find(text.substr(5, 1)) == std::string_view::npos) return true;
    const std::string_view declaration = text.substr(0, text.find("?>"));
    std::size_t at = declaration.find(kName);
    if (at == std::string_view::npos) return true;
    at = declaration.find_first_of("\"'", at + kName.size());
    if (at == std::string_view::npos) return true; // not well-formed, which the parser says better
    const std::string_view value = declaration.substr(at + 1, declaration.find(declaration[at], at + 1) - at - 1);
    return std::ranges::equal(value, kUTF8, [](char a, char b) {
        return (a >= 'a' && a <= 'z' ? static_cast<char>(a - 'a' + 'A') : a) == b;
    });
}

void readRoot(Scan& scan, std::string_view name, int attributes, const xmlChar** attribute)
{
    if (name != "xmeml") return scan.refuse(Fault::malformed, "the root element is no xmeml");
    std::string_view version;
    for (int i = 0; i < attributes; ++i, attribute += 5) // name, prefix, namespace, begin and end of the value
        if (view(attribute[0]) == "version" && attribute[1] == nullptr)
            version = {reinterpret_cast<const char*>(attribute[3]),
                       static_cast<std::size_t>(attribute[4] - attribute[3])};
    if (version != "5") return scan.refuse(Fault::unsupported, "the document is not of xmeml version 5");
    const std::size_t at = scan.position(); // attributes are read, what closes the tag is not
    scan.layout.emptyRoot = scan.text.substr(at, 2) == "/>";
    scan.layout.contentBegin = scan.layout.emptyRoot ? at : at + 1;
    if (!scan.layout.emptyRoot && scan.text.substr(at, 1) != ">")
        scan.refuse(Fault::malformed, "the end of the root's start tag was not found");
}

void startElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar*, int namespaces,
                  const xmlChar**, int attributes, int, const xmlChar** attribute)
{
    Scan& scan = scanOf(context);
    if (scan.error) return;
    if (++scan.depth > kDeepest) return scan.refuse(Fault::limit, "elements are nested too deep");
    if (scan.depth == 1) {
        scan.layout.declaresNames = namespaces > 0;
        readRoot(scan, prefix == nullptr ? view(name) : std::string_view(), attributes, attribute);
    } else if (scan.depth == 2 && view(name) == "importoptions") {
        const std::size_t begin = scan.text.rfind('<', scan.position()); // a value cannot hold this character
        scan.layout.importOptions.emplace_back(begin, begin);
    }
}

void endElement(void* context, const xmlChar* name, const xmlChar*, const xmlChar*)
{
    Scan& scan = scanOf(context);
    if (scan.error) return;
    if (scan.depth == 2 && view(name) == "importoptions") scan.layout.importOptions.back().second = scan.position();
    if (scan.depth == 1 && scan.layout.emptyRoot) scan.layout.contentEnd = scan.layout.contentBegin;
    if (scan.depth == 1 && !scan.layout.emptyRoot)
        scan.layout.contentEnd = scan.text.substr(0, scan.position()).rfind("</");
    if (--scan.depth == 0) scan.rootEnded = true;
}

xmlEntityPtr predefinedEntity(void* context, const xmlChar* name)
{
    return scanOf(context).xml.xmlGetPredefinedEntity(name); // &lt; and its kind; all others are unknown
}

void refuseEntity(void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*)
{
    scanOf(context).refuse(Fault::unsupported, "the document declares an entity");
}

void refuseUnparsedEntity(void* context, const xmlChar*, const xmlChar*, const xmlChar*, const xmlChar*)
{
    scanOf(context).refuse(Fault::unsupported, "the document declares an entity");
}

void refuseReference(void* context, const xmlChar*)
{
    scanOf(context).refuse(Fault::unsupported, "the document refers to an entity");
}

void noteError(void* context, xmlErrorPtr error)
{
    Scan& scan = scanOf(context);
    if (scan.error || error == nullptr || error->level < XML_ERR_ERROR) return;
    std::string what = error->message == nullptr ? "it is not well-formed" : error->message;
    if (error->code == XML_ERR_DOCUMENT_END && !scan.rootEnded)
        what = "the document ends before its root element does"; // libxml2 calls it extra content
    while (what.ends_with('\n'))
        what.pop_back();
    scan.error = Error{.fault = Fault::malformed,
                       .what = "line " + std::to_string(error->line) + ": " + what,
                       .offset = scan.position()};
}

xmlSAXHandler handlers()
{
    xmlSAXHandler sax{};
    sax.initialized = XML_SAX2_MAGIC;
    sax.startElementNs = startElement;
    sax.endElementNs = endElement;
    sax.getEntity = predefinedEntity;
    sax.entityDecl = refuseEntity;
    sax.unparsedEntityDecl = refuseUnparsedEntity;
    sax.reference = refuseReference;
    sax.serror = noteError;
    return sax;
}

} // namespace

Result<ProjectLayout> layOutProject(std::string_view text)
{
    const std::size_t mark = text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
    const Result<const LibXml2*> loaded = libXml2();
    if (!loaded) return loaded.error();
    const LibXml2& xml = **loaded;
    Scan scan{.xml = xml, .text = text.substr(mark)};
    // Other encodings show in the first bytes, and the parser would follow them.
    const std::size_t first = scan.text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos || scan.text[first] != '<' ||
        scan.text.substr(0, first + 2).find('\0') != std::string_view::npos)
        return Error{.fault = Fault::malformed, .what = "it does not begin as an XML document in UTF-8 does"};
    if (!saysUTF8(scan.text)) return Error{.fault = Fault::malformed, .what = "the document is not in UTF-8"};

    xmlSAXHandler sax = handlers();
    const std::unique_ptr<xmlParserCtxt, FreeParser> parser{
        xml.xmlCreatePushParserCtxt(&sax, nullptr, nullptr, 0, nullptr), FreeParser{xml}};
    if (!parser) return Error{.fault = Fault::limit, .what = "no memory for a parser"};
    xml.xmlCtxtUseOptions(parser.get(), XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
    parser->_private = &scan;
    scan.parser = parser.get();
    for (std::size_t at = 0; at < scan.text.size() && !scan.error; at += kChunkBytes) {
        const std::string_view chunk = scan.text.substr(at, kChunkBytes);
        if (xml.xmlParseChunk(parser.get(), chunk.data(), static_cast<int>(chunk.size()), 0) != 0) break;
    }
    if (!scan.error) xml.xmlParseChunk(parser.get(), nullptr, 0, 1);
    if (scan.error) return *std::move(scan.error);
    ProjectLayout& layout = scan.layout;
    if (parser->wellFormed == 0 || !scan.rootEnded || layout.contentEnd < layout.contentBegin ||
        layout.contentEnd >= scan.text.size())
        return Error{.fault = Fault::malformed, .what = "it is not well-formed"};
    layout.contentBegin += mark;
    layout.contentEnd += mark;
    for (auto& [begin, end] : layout.importOptions) {
        begin += mark;
        end += mark;
    }
    return std::move(layout);
}

Result<std::string> appendToProject(std::string_view project, const ProjectLayout& layout, std::string_view added,
                                    const ProjectLayout& addedLayout)
{
    if (addedLayout.declaresNames)
        return Error{.fault = Fault::unsupported, .what = "a root with namespaces cannot be joined to another"};
    std::string content;
    content.reserve(addedLayout.contentEnd - addedLayout.contentBegin);
    std::size_t from = addedLayout.contentBegin;
    for (const auto& [begin, end] : addedLayout.importOptions) {
        content += added.substr(from, begin - from);
        from = end;
    }
    content += added.substr(from, addedLayout.contentEnd - from);
    content =
        withOwnIds(std::move(content), project.substr(layout.contentBegin, layout.contentEnd - layout.contentBegin));

    std::string joined;
    joined.reserve(project.size() + content.size() + 16);
    joined += project.substr(0, layout.contentEnd);
    if (layout.emptyRoot) joined += ">";
    joined += content;
    joined += layout.emptyRoot ? "</xmeml>" + std::string(project.substr(layout.contentEnd + 2))
                               : std::string(project.substr(layout.contentEnd));
    return joined;
}

} // namespace zanfcp
