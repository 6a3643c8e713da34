#pragma once

#include "../platform/Integers.h"

#include <string>

namespace zanfcp {

/// A frame rate as the interchange format states it.
struct PELRate {
    NSInteger timebase = 0; ///< nominal whole frames per second: 24, 25, 30, 50 or 60 in practice; 0 when unknown
    bool isNTSC = false;    ///< the real rate is timebase x 1000/1001 (23.98, 29.97, 59.94)

    friend bool operator==(const PELRate&, const PELRate&) = default;
};

PELRate PELRateMake(NSInteger timebase, bool isNTSC);

/// "timebase: 30, isNTSC: 1"; the timebase as a 32-bit integer.
std::string NSStringFromPELRate(PELRate rate);

/// Selects the process-wide frame rate for `rate`: 24, 30 and 60 honour the NTSC flag, 50 does not, and every
/// other timebase, unknown ones included, selects 25.
void PELSetFPSForRate(const PELRate& rate);

} // namespace zanfcp
