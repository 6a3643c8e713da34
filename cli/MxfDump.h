#pragma once

#include "mxf/io/MediaSource.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zanfcp::cli {

/// How the walk through a file ended.
struct MxfDumpOutcome {
    bool isMxf = false;       ///< a partition pack was found where one must be
    bool isStopped = false;   ///< the printer did not want more
    bool hasFooter = false;   ///< a footer partition
    bool hasRip = false;      ///< a random index pack
    std::string cut;          ///< where the file ends in the middle of a KLV; empty when it does not
    std::int64_t rubbish = 0; ///< bytes between KLVs
};

/// Prints every KLV of a file: offset, length of the value, key, name; below it what partition packs, the primer pack,
/// the random index pack and local sets hold. Of essence and fill only the heads are read, whatever their length. What
/// is no KLV is stepped over and shown as a range.
/// \param print  takes whole lines; false ends the walk
MxfDumpOutcome dumpMxf(CMediaSource& source, const std::function<bool(std::string_view)>& print);

} // namespace zanfcp::cli
