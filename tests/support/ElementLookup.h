#pragma once

#include "xml/PELElement.h"
#include "xml/PELRootElement.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zanfcp::test {

using Strings = std::vector<std::string>;

/// The element at a path such as "media/audio/track[2]/clipitem": each part names a child, and says, from 1, which of
/// those of the same key. Null when there is none.
std::shared_ptr<PELElement> at(const std::shared_ptr<PELElement>& element, std::string_view path);
/// Its text; "<nothing>" when there is no such element.
std::string textAt(const std::shared_ptr<PELElement>& element, std::string_view path);
/// Its identifier; "<nothing>" when there is no such element.
std::string idAt(const std::shared_ptr<PELElement>& element, std::string_view path);

/// The children in order: "key=text" for a leaf, "key" for a container, "key#identifier" for one with an identifier.
Strings outline(const std::shared_ptr<PELElement>& element);
Strings outlineAt(const std::shared_ptr<PELElement>& element, std::string_view path);
/// The same without the texts: keys alone.
Strings keysAt(const std::shared_ptr<PELElement>& element, std::string_view path);

/// Expects that xmllint has nothing to say about the document.
void expectValid(const PELRootElement& root);
/// The same for a document that has the elements under `path` ("sequence/media/video/track"), or alone without one.
void expectValid(const PELElements& elements, std::string_view path = {});

} // namespace zanfcp::test
