#pragma once

#include "mxf/metadata/SetTables.h"

#include <array>
#include <cstdint>

/// The rows behind FindSet and FindProperty, made by generate_set_tables.py.
namespace TamrelMxf::Tables {

inline constexpr std::size_t kSetCount = 281;
inline constexpr std::size_t kPropertyCount = 1191;
inline constexpr std::size_t kTaggedCount = 492; ///< properties with a static local tag

extern const std::array<SSetDef, kSetCount> kSets;
extern const std::array<SPropertyDef, kPropertyCount> kProperties; ///< grouped by class
extern const std::array<std::uint16_t, kSetCount> kSetsByKey;      ///< without bytes 6 and 8
extern const std::array<std::uint16_t, kTaggedCount> kPropertiesByTag;
extern const std::array<std::uint16_t, kPropertyCount> kPropertiesByLabel; ///< by bytes 9 to 16

} // namespace TamrelMxf::Tables
