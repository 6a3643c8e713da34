#pragma once

#include "../../platform/FourCC.h"

namespace zanfcp::quicktime {

/// Media types of the tracks that are described; tracks of other types are only listed.
inline constexpr FourCC kVideoMedia{"vide"};
inline constexpr FourCC kSoundMedia{"soun"};
inline constexpr FourCC kTimecodeMedia{"tmcd"};

} // namespace zanfcp::quicktime
