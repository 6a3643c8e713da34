#include "xml/XMLWriter.h"

#include "xml/ElementPath.h"
#include "xml/XMLText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>

namespace zanfcp {
namespace {

constexpr std::size_t kBlock = 64 * 1024;
constexpr std::size_t kIndent = 2;
constexpr std::size_t kMaxIndent = 60; ///< libxml2 indents no further
constexpr std::string_view kDocumentHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE xmeml>\n";
constexpr std::string_view kRootName = "xmeml";
constexpr std::string_view kRootAttribute = " version=\"5\"";

/// Where a text stands decides what has to be escaped in it.
enum class Place { content, attribute };

/// What libxml2 writes for a character of ASCII; empty for the character itself.
template <Place place> constexpr std::string_view escapeOf(char character)
{
    switch (character) {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '\r': return "&#13;";
    case '\n': return place == Place::attribute ? "&#10;" : "";
    case '\t': return place == Place::attribute ? "&#9;" : "";
    case '"': return place == Place::attribute ? "&quot;" : "";
    default: return {};
    }
}
constexpr std::size_t kLongestEscape = 6; ///< "&quot;"

/// True for the bytes that are written as they are, whatever stands beside them.
template <Place place> constexpr std::array<bool, 256> makePlainBytes()
{
    std::array<bool, 256> plain{};
    for (int byte = 0x20; byte < 0x80; ++byte)
        plain[static_cast<std::size_t>(byte)] = escapeOf<place>(static_cast<char>(byte)).empty();
    return plain;
}
template <Place place> constexpr std::array<bool, 256> kPlainBytes = makePlainBytes<place>();

/// True when none of eight bytes of content needs a look: no control character, no byte above 0x7F, no "&", "<", ">".
bool isPlainContent(std::uint64_t eight)
{
    constexpr std::uint64_t ones = 0x0101010101010101u, highs = 0x8080808080808080u;
    const std::uint64_t notAmpersand = eight ^ ones * '&';
    const std::uint64_t notAngle = (eight & ~(ones * 2)) ^ ones * '<'; // "<" and ">" differ in that bit alone
    const std::uint64_t hits = eight | ((eight - ones * 0x20) & ~eight) | ((notAmpersand - ones) & ~notAmpersand) |
                               ((notAngle - ones) & ~notAngle);
    return (hits & highs) == 0;
}

/// Turns elements into text in one fixed buffer.
class Writer {
public:
    Writer(XMLFormat format, const XMLSink& sink) : pretty_{format == XMLFormat::pretty}, sink_{sink} {}

    void element(const PELElement& element)
    {
        if (!hasXMLName(element)) return;
        ElementPath path{element};
        begin(element, path);
        if (element.children() != nullptr)
            below(path);
        else
            content(element, path);
    }

    void document(const PELElement& root)
    {
        raw(kDocumentHead);
        raw("<");
        raw(kRootName);
        raw(kRootAttribute);
        open_ = true;
        root_ = &root;
        ElementPath path{root};
        below(path);
        raw("\n");
    }

    /// Hands out the rest. False when the sink has stopped the writing.
    bool finish()
    {
        flush();
        return !stopped_;
    }

private:
    /// Writes everything below the top of `path`, whose start is written, and then the ends up to the top's own.
    void below(ElementPath& path)
    {
        while (!stopped_) {
            if (const std::shared_ptr<PELElement>* const child = path.nextXMLChild()) {
                const PELElement& element = **child;
                if (element.children() == nullptr)
                    leaf(element, path);
                else if (path.descend(element))
                    container(element, path);
            } else {
                const PELElement& done = path.element();
                const std::size_t depth = path.depth();
                path.ascend();
                end(done, depth);
                if (path.empty()) return;
                lineEnd();
            }
        }
    }

    void container(const PELElement& element, const ElementPath& path)
    {
        closeParent();
        indent(path.depth());
        begin(element, path);
    }

    void leaf(const PELElement& element, const ElementPath& path)
    {
        closeParent();
        indent(path.depth() + 1);
        begin(element, path);
        content(element, path);
        lineEnd();
    }

    /// "<name id="…"", without the closing bracket: what follows decides about it.
    void begin(const PELElement& element, const ElementPath& path)
    {
        char* out = room(1 + ElementName::kPadded);
        *out++ = '<';
        name(element, out);
        open_ = true;
        if (!element.identifier().empty()) {
            raw(" id=\"");
            logReplacedCharacters(escaped<Place::attribute>(element.identifier()), path, element);
            raw("\"");
        }
    }

    /// The text of an element without children and its end: ">text</name>", or "/>" for none.
    void content(const PELElement& element, const ElementPath& path)
    {
        const std::string_view text = element.stringValue();
        if (!text.empty()) {
            closeParent(Layout::inLine);
            const std::size_t replaced = escaped<Place::content>(text);
            if (replaced > 0) logReplacedCharacters(replaced, path, element);
        }
        endTag(element);
    }

    /// The end of an element with children, or of one that turned out to have none to write.
    void end(const PELElement& element, std::size_t depth)
    {
        if (!open_) indent(depth);
        endTag(element);
    }

    void endTag(const PELElement& element)
    {
        char* out = room(2 + ElementName::kPadded + 1);
        if (open_) {
            std::memcpy(out, "/>", 2);
            out_ = out + 2;
            open_ = false;
            return;
        }
        std::memcpy(out, "</", 2);
        name(element, out + 2);
        *room(1) = '>';
        ++out_;
    }

    enum class Layout { ownLine, inLine };

    /// Ends the start tag that is still open, for there is something to go inside.
    void closeParent(Layout layout = Layout::ownLine)
    {
        if (!open_) return;
        open_ = false;
        *room(1) = '>';
        ++out_;
        if (layout == Layout::ownLine) lineEnd();
    }

    void lineEnd()
    {
        if (!pretty_) return;
        *room(1) = '\n';
        ++out_;
    }

    void indent(std::size_t depth)
    {
        if (!pretty_) return;
        std::memset(room(kMaxIndent), ' ', kMaxIndent);
        out_ += std::min(depth * kIndent, kMaxIndent);
    }

    /// Writes the element's name at `out`, where room has been made for kPadded bytes.
    void name(const PELElement& element, char* out)
    {
        const ElementName::Entry& entry = element.elementName().entry();
        out_ = out;
        if (&element == root_) return raw(kRootName);
        if (entry.text.size() > entry.padded.size()) return raw(entry.text);
        std::memcpy(out, entry.padded.data(), entry.padded.size());
        out_ += entry.text.size();
    }

    /// Writes a text with its escapes; returns how many characters it replaced.
    template <Place place> std::size_t escaped(std::string_view text)
    {
        constexpr std::size_t kPiece = 4096; // of the text, so that its longest form fits the buffer
        std::size_t replaced = 0, at = 0;
        while (at < text.size()) {
            const std::size_t end = std::min(text.size(), at + kPiece);
            char* out = room((end - at) * kLongestEscape + 8);
            while (at < end) {
                if constexpr (place == Place::content) {
                    for (std::uint64_t eight = 0; end - at >= sizeof eight; at += sizeof eight, out += sizeof eight) {
                        std::memcpy(&eight, text.data() + at, sizeof eight);
                        if (!isPlainContent(eight)) break;
                        std::memcpy(out, &eight, sizeof eight);
                    }
                }
                while (at < end && kPlainBytes<place>[static_cast<std::uint8_t>(text[at])])
                    *out++ = text[at++];
                if (at < end) at += special<place>(text.substr(at), out, replaced);
            }
            out_ = out;
        }
        return replaced;
    }

    /// Writes the first character of `text`, which is not a plain one, and returns its length in `text`.
    template <Place place> static std::size_t special(std::string_view text, char*& out, std::size_t& replaced)
    {
        const XMLCharacter character = readXmlCharacter(text);
        std::string_view written = text.substr(0, character.length);
        if (!character.allowed) {
            written = kReplacementCharacter;
            ++replaced;
        } else if (const std::string_view escape = escapeOf<place>(text.front()); !escape.empty()) {
            written = escape;
        }
        out = std::copy(written.begin(), written.end(), out);
        return character.length;
    }

    void raw(std::string_view text)
    {
        while (!text.empty()) {
            const std::string_view piece = text.substr(0, kBlock);
            std::memcpy(room(piece.size()), piece.data(), piece.size());
            out_ += piece.size();
            text.remove_prefix(piece.size());
        }
    }

    /// The place for the next `count` bytes, which must not exceed the buffer.
    char* room(std::size_t count)
    {
        if (static_cast<std::size_t>(buffer_.get() + kBlock - out_) < count) flush();
        return out_;
    }

    void flush()
    {
        const std::string_view block{buffer_.get(), static_cast<std::size_t>(out_ - buffer_.get())};
        if (!block.empty() && !stopped_) stopped_ = !sink_(block);
        out_ = buffer_.get();
    }

    const bool pretty_;
    bool open_ = false; ///< the last start tag still lacks its bracket
    bool stopped_ = false;
    const PELElement* root_ = nullptr; ///< written as "xmeml", whatever its key
    const XMLSink& sink_;
    std::unique_ptr<char[]> buffer_{new char[kBlock]};
    char* out_ = buffer_.get();
};

} // namespace

bool writeXMLElement(const PELElement& element, XMLFormat format, const XMLSink& sink)
{
    Writer writer{format, sink};
    writer.element(element);
    return writer.finish();
}

bool writeXMLDocument(const PELElement& root, XMLFormat format, const XMLSink& sink)
{
    Writer writer{format, sink};
    writer.document(root);
    return writer.finish();
}

std::string xmlText(const PELElement& element, XMLFormat format)
{
    std::string text;
    element.writeXML(
        [&text](std::string_view block) {
            text += block;
            return true;
        },
        format);
    return text;
}

} // namespace zanfcp
