#pragma once

#include "../labels/Ul.h"

#include <cstdint>

/// The keys inside of essence containers (SMPTE ST 379-1, ST 379-2). Byte 8, the version, is never looked at.
namespace TamrelMxf::EssenceKeys {

/// What an element carries, by byte 13 of its key.
enum class EItem : std::uint8_t { none, system, picture, sound, data, compound };

constexpr EItem ItemOf(std::uint8_t itemType)
{
    switch (itemType & 0x0F) {
    case 0x04: return EItem::system;
    case 0x05: return EItem::picture;
    case 0x06: return EItem::sound;
    case 0x07: return EItem::data;
    case 0x08: return EItem::compound;
    default: return EItem::none;
    }
}

/// True for an element of picture, sound or data: of the generic container, and of containers that are registered
/// privately (classes 14 and 15), which number their elements in the same way.
constexpr bool IsElement(const SUl& key)
{
    if (!key.IsSmpte() || key.bytes[4] != 0x01 || key.bytes[5] != 0x02) return false;
    return key.Item() >> 32 == 0x0D010301 || key.bytes[8] == 0x0E || key.bytes[8] == 0x0F;
}

/// True for an item that describes the content package which it stands in, whatever its coding.
constexpr bool IsSystem(const SUl& key)
{
    const std::uint8_t itemType = key.bytes[12];
    return key.IsSmpte() && key.bytes[4] == 0x02 && key.Item() >> 32 == 0x0D010301 &&
           (itemType == 0x04 || itemType == 0x14);
}

/// Bytes 13 to 16: what the number of the track stands for.
constexpr std::uint32_t NumberOf(const SUl& key)
{
    return static_cast<std::uint32_t>(key.Item());
}

} // namespace TamrelMxf::EssenceKeys
