#pragma once

#include <cstddef>
#include <cstdint>

/// What a hostile or broken file may cost at most. Every loop, recursion and allocation that a file
/// controls is held against one of these figures or against the bytes that are really there.
namespace TamrelMxf {

/// The value of one KLV that is loaded into memory. Essence is never loaded this way; the largest
/// values in practice are index tables, 27 bytes an edit unit: five million of them still fit.
inline constexpr std::int64_t kMaxKlvValueBytes = std::int64_t{256} << 20;

/// One step of an allocation for data whose real size is not known.
inline constexpr std::size_t kReadStepBytes = std::size_t{1} << 20;

} // namespace TamrelMxf
