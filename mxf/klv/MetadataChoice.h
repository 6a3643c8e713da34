#pragma once

#include "../io/MediaSource.h"
#include "../labels/UlDict.h"
#include "PartitionPack.h"

#include <cstdint>
#include <memory>

namespace TamrelMxf {

/// Looks for header metadata that is more final than that of the header partition: a closed and complete header
/// partition is the best there is, next comes the footer partition, then the latest body partition that carries
/// metadata. Partitions are found through the footer offset, the random index pack, the chain of previous
/// partitions or, in a file that has none of these, KLV by KLV from the start. Only metadata that lies whole
/// in the source is considered.
/// \param header           the header partition pack
/// \param runInCorrection  taken off every offset that the file states
/// \return the pack of the partition to take the metadata from; null for that of the header partition
std::unique_ptr<CPartitionPack> ChooseMetadataPartition(CMediaSource& source, const CMxfUlDict& dict,
                                                        const CPartitionPack& header, std::int64_t runInCorrection);

} // namespace TamrelMxf
