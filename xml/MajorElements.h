#pragma once

#include "../platform/Integers.h"
#include "../platform/PELValue.h"
#include "../timecode/PELRate.h"
#include "PELElement.h"

/// Factories of the large containers of a document. Each returns a new element; a refused argument gives null and
/// one error line.
namespace zanfcp::MajorElements {

/// "importoptions" with one leaf per entry, in the dictionary's order; numbers are written as "TRUE" or "FALSE".
std::shared_ptr<PELElement> importOptionsElementWithOptions(const PELDictionary& options);

/// "project" with a name and an empty "children". Refused: an empty name ("name").
std::shared_ptr<PELElement> projectElementWithName(std::string_view name);

/// "bin" with a name and an empty "children". Refused: an empty name ("name").
std::shared_ptr<PELElement> binElementWithName(std::string_view name);

/// An empty "children".
std::shared_ptr<PELElement> childrenElement();

/// "clip" with an optional name, the duration in frames and, when given, the rate. `rate` is borrowed, may be null.
std::shared_ptr<PELElement> clipElementWithID(std::string_view identifier, std::string_view name, NSInteger duration,
                                              const PELRate* rate);

/// The same shape under "sequence".
std::shared_ptr<PELElement> sequenceElementWithID(std::string_view identifier, std::string_view name,
                                                  NSInteger duration, const PELRate* rate);

} // namespace zanfcp::MajorElements
