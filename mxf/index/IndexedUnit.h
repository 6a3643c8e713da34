#pragma once

#include "MxfIndexSegment.h"

#include <cstdint>

namespace TamrelMxf {

/// What the index tables say of one edit unit, in stored order.
struct SIndexedUnit {
    std::int64_t editUnit = 0;
    std::int64_t streamOffset = 0; ///< of the edit unit in its container
    std::int64_t size = -1;        ///< to the start of the next one; -1 when that is not known
    std::int64_t displayed = 0;    ///< the position at which it is shown, on the same scale as `editUnit`
    std::int64_t keyFrame = 0;     ///< the stored edit unit that decoding starts from
    bool isKey = true;
    SIndexEntry entry; ///< all zero for constant sizes
};

} // namespace TamrelMxf
