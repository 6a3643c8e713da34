#pragma once

#include "../platform/Result.h"
#include "PELCoder.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace zanfcp {

/// Most elements that the tree in an archive may have, one under several parents counted for each.
inline constexpr std::uint64_t kMaxArchivedElements = 16'000'000;

/// A class of elements that an archive may hold.
struct PELArchiveClass {
    std::string_view name; ///< as PELElement::className() gives it
    std::shared_ptr<PELElement> (*make)(PELCoder& coder);

    template <typename Class> static PELArchiveClass of(std::string_view name)
    {
        return {name, [](PELCoder& coder) -> std::shared_ptr<PELElement> { return makeElement<Class>(coder); }};
    }
};

/// The bytes that unarchiveElement() makes the same tree of: every element asked by encodeWithCoder(), one that hangs
/// under several parents once.
///
/// Numbers are 32 bits, big-endian; a text is its length and its bytes. After "PELA" and the version, 1: the number of
/// names and the names (of classes and keys); the number of elements and the elements, the top first. An element is
/// the number of its class's name, its number of values, and for each the number of its key's name, a byte for its
/// kind, and a text (kind 1) or the number of children and for each its number among the elements (kind 2).
/// \return the bytes, or an Error: limit (deeper than kMaxElementDepth, more than kMaxArchivedElements, a text of
///         4 GiB), malformed (an element lies inside itself)
[[nodiscard]] Result<std::string> archiveElement(const PELElement& top);

/// Reads a tree from an archive, which may come from anywhere.
/// \param bytes    borrowed for the call
/// \param classes  known beside PELElement and PELRootElement; an element of another class becomes a PELElement, and
///                 one line of the default level names that class
/// \return the top, or an Error with the byte where reading stopped: unsupported (another version), truncated,
///         malformed (no archive, numbers that lead nowhere, elements inside themselves or in no tree, bytes left
///         over), limit as above
[[nodiscard]] Result<std::shared_ptr<PELElement>> unarchiveElement(std::string_view bytes,
                                                                   std::span<const PELArchiveClass> classes = {});

} // namespace zanfcp
