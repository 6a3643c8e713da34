#pragma once

#include "../labels/Ul.h"
#include "MetadataItem.h"
#include "PrimerPack.h"
#include "SetTables.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace TamrelMxf {

/// How values are put into words.
struct SValueStyle {
    /// The name of a label for a person, or an empty text when it has none; may be empty.
    std::function<std::string_view(const SUl&)> labelName = {};
    std::size_t mostEntries = 32; ///< of a list, the rest is counted
    std::size_t mostBytes = 32;   ///< of bytes without a type, the rest is counted
    std::size_t mostLetters = 1024;
};

/// The property that an item of a set stands for, by its static tag or through the primer pack.
/// \param set     class of the set, null when unknown
/// \param primer  of the same header metadata, may be null
/// \return null for a tag that nobody knows
const SPropertyDef* PropertyOf(const SSetDef* set, std::uint16_t tag, const CPrimerPack* primer);

/// A value in words on one line: "30000/1001", "2026-03-01 12:00:00.000", "[1, 2, 3]", a text as it is.
/// A value that does not have the bytes of its type is shown as bytes, "<02 0A>"; control characters in texts become
/// U+FFFD, so that a file cannot steer the terminal that shows it.
/// \param property  null: shown as bytes
std::string ValueText(const SPropertyDef* property, std::span<const std::uint8_t> value, const SValueStyle& style = {});

} // namespace TamrelMxf
