#include "tests/support/XmlComparison.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlsave.h>
#include <memory>

namespace zanfcp::test {
namespace {

struct BufferDeleter {
    void operator()(xmlBuffer* buffer) const { xmlBufferFree(buffer); }
};

int options(XMLFormat format)
{
    return format == XMLFormat::pretty ? XML_SAVE_FORMAT : 0;
}

template <typename Save> std::string printed(XMLFormat format, Save save)
{
    const std::unique_ptr<xmlBuffer, BufferDeleter> buffer{xmlBufferCreate()};
    xmlSaveCtxt* const context = xmlSaveToBuffer(buffer.get(), "UTF-8", options(format));
    save(context);
    xmlSaveClose(context);
    return {reinterpret_cast<const char*>(xmlBufferContent(buffer.get())),
            static_cast<std::size_t>(xmlBufferLength(buffer.get()))};
}

template <typename Element> void expectSame(const Element& element)
{
    for (const XMLFormat format : {XMLFormat::pretty, XMLFormat::plain}) {
        const std::string written = xmlText(element, format);
        ASSERT_EQ(written, textOfNodes(element, format));
        if (written.empty()) continue;
        const XMLDocument read{xmlReadMemory(written.data(), static_cast<int>(written.size()), nullptr, nullptr,
                                             XML_PARSE_NONET | XML_PARSE_HUGE)};
        const xmlError* const complaint = read ? nullptr : xmlGetLastError();
        ASSERT_TRUE(read) << (complaint != nullptr ? complaint->message : "") << written;
    }
}

} // namespace

std::string textOfNodes(const PELElement& element, XMLFormat format)
{
    const XMLElementNode nodes = element.XMLRepresentation();
    if (!nodes) return {};
    return printed(format, [&nodes](xmlSaveCtxt* context) { xmlSaveTree(context, nodes.get()); });
}

std::string textOfNodes(const PELRootElement& root, XMLFormat format)
{
    const XMLDocument document = root.XMLRepresentation();
    return printed(format, [&document](xmlSaveCtxt* context) { xmlSaveDoc(context, document.get()); });
}

void expectSameXml(const PELElement& element)
{
    expectSame(element);
}

void expectSameXml(const PELRootElement& root)
{
    expectSame(root);
}

} // namespace zanfcp::test
