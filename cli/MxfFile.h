#pragma once

#include "mxf/demuxer/MxfDemuxer.h"
#include "mxf/io/MediaSource.h"

#include <memory>
#include <string>
#include <vector>

namespace zanfcp::cli {

class Console;

/// An MXF file as the commands of the group "mxf" see it.
struct MxfFile {
    std::string path; ///< as it was given
    std::unique_ptr<TamrelMxf::CMxfDemuxer> demuxer;
    mxf_file_info info{};
    std::unique_ptr<CMediaSource> source; ///< a second view of the same file, free to be moved
};

/// Opens a file and reads its header, begins a step of the console for it, and says what is wrong when that fails.
/// A header that is cut short is waited for, a second or so.
/// \param timeout  seconds to wait for more of a file that is being written
/// \return the file; a null `demuxer` when it cannot be read
MxfFile openMxfFile(const std::string& path, Console& console, std::uint32_t timeout = 0);

/// The partitions of a file, in its order.
struct PartitionList {
    enum class Way { randomIndexPack, links, walk };

    struct Entry {
        std::int64_t offset = 0;                               ///< place of the pack in the file
        std::unique_ptr<const TamrelMxf::CPartitionPack> pack; ///< null: none can be read there
    };

    Way way = Way::walk;
    bool isWhole = true; ///< false: the chain breaks, or the file goes on behind what was looked at
    std::vector<Entry> entries;
};

/// Finds them through the random index pack, else from the footer back over the links from each to the one before, else
/// KLV by KLV from the start. Reads the packs alone; of a file without either, the heads of its first few thousand
/// KLVs.
PartitionList listPartitions(const MxfFile& file);

} // namespace zanfcp::cli
