#pragma once

#include <string>
#include <string_view>

namespace zanfcp {

/// The text of a document's content with the ids made its own: those that `existing` uses as well get a number at their
/// end, together with what refers to them (elements of the same id, masterclipid, subclipmasterid, linkclipref). Two
/// documents that were made apart can so stand in one.
/// \param content   well-formed, as ProjectLayout finds it
/// \param existing  the same of the document that it goes to; the ids of all its elements are taken
std::string withOwnIds(std::string content, std::string_view existing);

} // namespace zanfcp
