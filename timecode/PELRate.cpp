#include "timecode/PELRate.h"

#include "platform/Format.h"
#include "timecode/PELTimecodeObject.h"

namespace zanfcp {

PELRate PELRateMake(NSInteger timebase, bool isNTSC)
{
    return {.timebase = timebase, .isNTSC = isNTSC};
}

std::string NSStringFromPELRate(PELRate rate)
{
    return format("timebase: %i, isNTSC: %i", static_cast<int>(rate.timebase), rate.isNTSC ? 1 : 0);
}

void PELSetFPSForRate(const PELRate& rate)
{
    switch (rate.timebase) {
    case 24: rate.isNTSC ? PELTimecodeObject::fps2398() : PELTimecodeObject::fps24(); break;
    case 30: rate.isNTSC ? PELTimecodeObject::fps2997() : PELTimecodeObject::fps30(); break;
    case 50: PELTimecodeObject::fps50(); break;
    case 60: rate.isNTSC ? PELTimecodeObject::fps5994() : PELTimecodeObject::fps60(); break;
    default: PELTimecodeObject::fps25(); break;
    }
}

} // namespace zanfcp
