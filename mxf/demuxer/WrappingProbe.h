#pragma once

#include "../io/MediaSource.h"
#include "../klv/PartitionPack.h"
#include "../model/Codings.h"

#include <cstdint>

namespace TamrelMxf {

/// How the essence of a file with a single stream is wrapped, from its first two KLVs: writers of such files
/// put everything into one KLV under the label of frame wrapping. The place of the source is kept.
/// \param header           the header partition
/// \param editUnits        the duration of the stream; with 1 or fewer nothing can be told
/// \return clip or frame; unknown when the essence is not there or not whole
EWrapping ProbeWrapping(CMediaSource& source, const CMxfUlDict& dict, const CPartitionPack& header,
                        std::uint32_t bodySid, std::int64_t editUnits);

} // namespace TamrelMxf
