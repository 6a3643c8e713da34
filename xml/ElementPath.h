#pragma once

#include "PELElement.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zanfcp {

/// The way from one element down to a container being visited: a walk in document order, without recursion.
/// The elements are borrowed and must not change during the walk.
class ElementPath {
public:
    /// Starts at `top`, a container or not.
    explicit ElementPath(const PELElement& top);

    bool empty() const { return levels_.empty(); }
    /// Levels below the top; 0 at the top itself.
    std::size_t depth() const { return levels_.size() - 1; }
    /// The innermost element.
    const PELElement& element() const { return *levels_.back().element; }
    /// Its next child, or null after the last.
    const std::shared_ptr<PELElement>* nextChild()
    {
        Level& level = levels_.back();
        return level.next == level.end ? nullptr : level.next++;
    }
    /// The next child that belongs into a document: one without a name is passed over, and so is, with one error line,
    /// one whose key is no XML name.
    const std::shared_ptr<PELElement>* nextXMLChild()
    {
        while (const std::shared_ptr<PELElement>* const child = nextChild()) {
            if ((*child)->elementName().entry().isName) return child;
            refuse(**child);
        }
        return nullptr;
    }
    /// Goes down into `child`, which nextChild() gave. False, with one error line, where it would lie inside itself or
    /// deeper than kMaxElementDepth.
    bool descend(const PELElement& child);
    void ascend() { levels_.pop_back(); }

    /// The keys down to `element`, the innermost one or a child of it, for log lines: "/xmeml/clip/name".
    std::string text(const PELElement& element) const;

private:
    struct Level {
        const PELElement* element;
        const std::shared_ptr<PELElement>* next;
        const std::shared_ptr<PELElement>* end;
    };

    void push(const PELElement& element);
    /// Logs that `child` has a key that is no name.
    void refuse(const PELElement& child) const;

    std::vector<Level> levels_;
};

/// True for an element that can be written by itself. One whose key is no XML name is refused with one error line, one
/// without a key in silence.
bool hasXMLName(const PELElement& element);

/// Logs, where there are any, the characters of `element` (the innermost of `path` or a child of it) that became
/// U+FFFD.
void logReplacedCharacters(std::size_t count, const ElementPath& path, const PELElement& element);

} // namespace zanfcp
