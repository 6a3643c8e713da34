#pragma once

#include "FixedText.h"
#include "Ul.h"

#include <cstdint>

namespace TamrelMxf {

/// What the value behind a key of the body is.
enum class EEssenceKeyKind : std::uint8_t {
    element,       ///< picture, sound, data or compound essence, the encrypted form included
    system,        ///< an element of the system item: metadata of one edit unit
    genericStream, ///< SMPTE ST 410
    fill,
};

/// A row of the registers of essence element keys (SMPTE ST 379-1 and the mappings on top of it).
struct SEssenceKey {
    std::uint64_t head = 0; ///< bytes 1 to 8 of the key; 7F stands for any byte
    std::uint64_t item = 0; ///< bytes 9 to 16, alike
    EEssenceKeyKind kind = EEssenceKeyKind::element;
    SFixedText<45> name;
};

/// The row that fits a key best, constant data; byte 8 (version) does not matter. Null for any other key.
const SEssenceKey* FindEssenceKey(const SUl& key);

/// Bytes 13 to 16 of an essence element key: the number of the track in its file package.
constexpr std::uint32_t TrackNumberOf(const SUl& key)
{
    return static_cast<std::uint32_t>(key.Item());
}

} // namespace TamrelMxf
