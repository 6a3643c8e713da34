#include "xml/ElementPath.h"

#include "platform/Log.h"
#include "xml/XMLText.h"

#include <algorithm>

namespace zanfcp {
namespace {

constexpr std::size_t kUsualDepth = 32;
constexpr std::size_t kMaxPlace = 512; ///< bytes of a path in a log line

std::string place(const PELElement& element)
{
    // Only the root of a document has no key of its own.
    return element.key().empty() ? std::string("/xmeml") : std::string("/").append(printableXmlText(element.key()));
}

} // namespace

ElementPath::ElementPath(const PELElement& top)
{
    levels_.reserve(kUsualDepth);
    push(top);
}

void ElementPath::push(const PELElement& element)
{
    const PELElements* const children = element.children();
    if (children == nullptr)
        levels_.push_back({&element, nullptr, nullptr});
    else
        levels_.push_back({&element, children->data(), children->data() + children->size()});
}

bool ElementPath::descend(const PELElement& child)
{
    // A child that contains itself would go on for ever, and with two such children grow without bound before the
    // depth ends it.
    const bool inside =
        std::any_of(levels_.begin(), levels_.end(), [&child](const Level& level) { return level.element == &child; });
    if (inside) {
        ZAN_LOG_ERROR("PELElement: Left out, it lies inside itself: %s", text(child).c_str());
        return false;
    }
    if (depth() == kMaxElementDepth) {
        ZAN_LOG_ERROR("PELElement: Left out, nested deeper than %zu levels: %s", kMaxElementDepth, text(child).c_str());
        return false;
    }
    push(child);
    return true;
}

std::string ElementPath::text(const PELElement& element) const
{
    std::string path;
    for (const Level& level : levels_)
        path += place(*level.element);
    if (&element != &this->element()) path += place(element);
    if (path.size() > kMaxPlace) path = "…" + printableXmlText(path.substr(path.size() - kMaxPlace));
    return path;
}

void ElementPath::refuse(const PELElement& child) const
{
    if (!child.key().empty()) ZAN_LOG_ERROR("PELElement: Left out, not an XML name: %s", text(child).c_str());
}

bool hasXMLName(const PELElement& element)
{
    if (element.elementName().entry().isName) return true;
    if (!element.key().empty()) ZAN_LOG_ERROR("PELElement: Left out, not an XML name: %s", place(element).c_str());
    return false;
}

void logReplacedCharacters(std::size_t count, const ElementPath& path, const PELElement& element)
{
    if (count > 0)
        ZAN_LOG_DEFAULT("PELElement: Replaced %zu characters that XML cannot hold in %s", count,
                        path.text(element).c_str());
}

} // namespace zanfcp
