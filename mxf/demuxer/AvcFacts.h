#pragma once

#include "../model/StreamFormat.h"

#include <cstdint>
#include <span>

namespace TamrelMxf {

/// Completes the format of an AVC stream by what its own parameter sets say: profile, level, depth, subsampling,
/// whether all pictures are intra, sizes where the header is silent, and the sets themselves as extra data (ITU-T
/// H.264, Annex B). Intra streams of fixed frame size that are stored without sets get those of their class (SMPTE RP
/// 2027). What the header says of rate, rectangle and fields stays. \param head  the first bytes of the first edit
/// unit; empty when they cannot be had
void CompleteAvcFormat(SStreamFormat& format, std::span<const std::uint8_t> head);

} // namespace TamrelMxf
