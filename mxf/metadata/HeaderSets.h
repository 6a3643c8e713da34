#pragma once

#include "MetadataSet.h"
#include "PrimerPack.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace TamrelMxf {

/// One copy of the header metadata of a file, read but not yet put together.
struct SHeaderSets {
    CPrimerPack primer;  ///< empty when there was none: then no dynamic tag is known
    CMetadataArray sets; ///< in the order of the file
    bool hasPrimer = false;
    bool isCut = false;           ///< the last KLV reached beyond the bytes
    std::size_t skippedBytes = 0; ///< bytes between KLVs that belonged to none
};

/// True for the key of a local set with 2-byte tags: what CMetadataSet can read.
bool IsLocalSetKey(const SUl& key);

/// Reads the primer pack and every local set in bytes that hold KLVs, one after the other. Fill, packs and unknown
/// KLVs are stepped over; where the bytes are not a key, the next key is looked for. Of several primer packs the first
/// good one counts. Never fails: what can be read is kept.
/// \param bytes  header metadata of a partition, from the primer pack on, borrowed for the call
SHeaderSets ReadHeaderSets(std::span<const std::uint8_t> bytes);

} // namespace TamrelMxf
