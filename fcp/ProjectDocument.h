#pragma once

#include "../platform/Result.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zanfcp {

/// Where the parts of an xmeml document lie in its text, in bytes.
struct ProjectLayout {
    std::size_t contentBegin = 0; ///< behind the start tag of the root
    std::size_t contentEnd = 0;   ///< at its end tag
    bool emptyRoot = false;       ///< written as one tag; both positions are then those of its "/>"
    bool declaresNames = false;   ///< the root declares namespaces, which its content may use
    std::vector<std::pair<std::size_t, std::size_t>> importOptions = {}; ///< begin and end of each, below the root
};

/// Checks that a text is a well-formed xmeml document of version 5 in UTF-8, and finds its parts. Nothing is fetched
/// and no entity is expanded: a document that declares one is refused. The text is not copied and no tree is built.
/// \return malformed (not well-formed, not UTF-8, another root), unsupported (another version, entities), limit
///         (elements nested deeper than 256), notFound (libxml2)
Result<ProjectLayout> layOutProject(std::string_view text);

/// The document with the content of another one behind its own. The options of an import say how that one is to be
/// imported and are left out; ids that both documents use are made different (withOwnIds).
/// \return unsupported when `added` uses namespaces that its root declares
Result<std::string> appendToProject(std::string_view project, const ProjectLayout& layout, std::string_view added,
                                    const ProjectLayout& addedLayout);

} // namespace zanfcp
