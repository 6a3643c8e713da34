#pragma once

#include "xml/PELElement.h"

#include <memory>
#include <string>

namespace zanfcp::test {

/// An element as one line that is read at a glance: "clip#A001(name=A001.mov rate(ntsc=TRUE timebase=30))".
/// An empty container ends in "()"; null is "nothing".
inline std::string sketch(const PELElement& element)
{
    std::string text = element.key();
    if (!element.identifier().empty()) text += "#" + element.identifier();
    if (!element.canHaveChildren()) return text + "=" + std::string(element.stringValue());
    text += "(";
    if (const PELElements* children = element.children())
        for (const auto& child : *children)
            text += (child == children->front() ? "" : " ") + sketch(*child);
    return text + ")";
}

inline std::string sketch(const std::shared_ptr<PELElement>& element)
{
    return element ? sketch(*element) : "nothing";
}

} // namespace zanfcp::test
