#pragma once

#include "../labels/Ul.h"

/// The keys that the outer structure of a file is made of (SMPTE ST 377-1). Byte 8, the version of the
/// register, is left out of every comparison.
namespace TamrelMxf::Keys {

/// Partition packs of every kind: byte 14 tells the kind, byte 15 the status.
inline constexpr SUl kPartitionPack{
    {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0D, 0x01, 0x02, 0x01, 0x01, 0x00, 0x00, 0x00}};
inline constexpr SUl kRandomIndexPack{
    {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0D, 0x01, 0x02, 0x01, 0x01, 0x11, 0x01, 0x00}};
inline constexpr SUl kPrimerPack{
    {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0D, 0x01, 0x02, 0x01, 0x01, 0x05, 0x01, 0x00}};
inline constexpr SUl kIndexTableSegment{
    {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0D, 0x01, 0x02, 0x01, 0x01, 0x10, 0x01, 0x00}};
inline constexpr SUl kFill{
    {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02, 0x03, 0x01, 0x02, 0x10, 0x01, 0x00, 0x00, 0x00}};
/// Stands in a partition pack beside the labels of several containers and names none itself.
inline constexpr SUl kMultipleMappings{
    {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x03, 0x0D, 0x01, 0x03, 0x01, 0x02, 0x7F, 0x01, 0x00}};

/// True for the first 12 bytes that partition packs, the primer pack and the random index pack share.
constexpr bool HasPackPrefix(const SUl& key)
{
    for (std::size_t i = 0; i < 12; ++i)
        if (i != 7 && key.bytes[i] != kPartitionPack.bytes[i]) return false;
    return true;
}

constexpr bool IsPartitionPack(const SUl& key)
{
    return HasPackPrefix(key) && key.bytes[12] == 0x01 && key.bytes[13] >= 0x02 && key.bytes[13] <= 0x04;
}

/// An element of a generic container (SMPTE ST 379-1): picture, sound, data or compound.
constexpr bool IsEssenceElement(const SUl& key)
{
    return key.IsSmpte() && key.bytes[4] == 0x01 && key.bytes[5] == 0x02 && key.Item() >> 32 == 0x0D010301;
}

constexpr bool IsFill(const SUl& key)
{
    return key.MatchesAnyVersion(kFill);
}

} // namespace TamrelMxf::Keys
