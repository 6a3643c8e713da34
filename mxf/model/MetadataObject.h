#pragma once

#include "../labels/Ul.h"
#include "../metadata/Identifiers.h"
#include "../metadata/SetTables.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TamrelMxf {

/// A set of any class, with the sets that it owns: descriptive frameworks and everything that has no record of its own.
struct SMetadataObject {
    struct SProperty;

    SUl key;
    const SSetDef* definition = nullptr; ///< null for a class that the register does not know
    SUUID instanceUid;
    std::vector<SProperty> properties; ///< in the order of their tags

    /// The first property of this name, or null.
    const SProperty* Find(std::string_view name) const;
    /// The value of a property as text; empty when it is absent.
    std::string Text(std::string_view name) const;
};

struct SMetadataObject::SProperty {
    std::uint16_t tag = 0;                    ///< as in this file
    const SPropertyDef* definition = nullptr; ///< null for a tag that nobody knows
    std::vector<std::uint8_t> value;
    std::vector<SMetadataObject> objects; ///< the sets behind strong references, those that are there
};

} // namespace TamrelMxf
