#pragma once

#include "tests/support/MxfBuilder.h"

#include <cstdint>

namespace TamrelMxf::test {

/// What stands in a partition pack.
struct PackParts {
    std::uint8_t kind = 2;
    std::uint8_t status = 4;
    std::uint32_t kag = 0;
    std::uint64_t thisPartition = 0;
    std::uint64_t header = 0, index = 0; ///< byte counts
    std::uint32_t bodySid = 1;
    std::uint64_t pattern = 0x0D01020101010900;
    Bytes trailing = {}; ///< behind the list of containers, in the same KLV
};

/// A partition pack without containers: 108 bytes and what trails.
inline Bytes PackBytes(const PackParts& parts)
{
    Bytes value;
    putNumber(value, 1, 2);
    putNumber(value, 3, 2);
    putNumber(value, parts.kag, 4);
    putNumber(value, parts.thisPartition, 8);
    putNumber(value, 0, 8);
    putNumber(value, 0, 8);
    putNumber(value, parts.header, 8);
    putNumber(value, parts.index, 8);
    putNumber(value, 0, 4);
    putNumber(value, 0, 8);
    putNumber(value, parts.bodySid, 4);
    putBytes(value, ulOf(0x060E2B3404010101, parts.pattern));
    putNumber(value, 0, 4);
    putNumber(value, 16, 4);
    putBytes(value, parts.trailing);
    Bytes key = ulOf(0x060E2B3402050101, 0x0D01020101000000);
    key[13] = parts.kind;
    key[14] = parts.status;
    return MxfBuilder{}.klv(key, value).bytes;
}

} // namespace TamrelMxf::test
