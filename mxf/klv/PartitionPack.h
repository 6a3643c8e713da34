#pragma once

#include "../labels/Ul.h"
#include "../labels/UlDict.h"
#include "Klv.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace TamrelMxf {

/// Byte 14 of the key of a partition pack.
enum class EPartitionKind : std::uint8_t { header = 2, body = 3, footer = 4 };

/// Byte 15 of the key of a partition pack. Open: values may still change; incomplete: some are not set yet.
/// Other values occur (0x11 marks a generic stream partition) and are kept as they are.
enum class EPartitionStatus : std::uint8_t {
    openIncomplete = 1,
    closedIncomplete = 2,
    openComplete = 3,
    closedComplete = 4,
    genericStream = 0x11
};

/// Where the parts of one partition lie: the pack, then header metadata, then index table, then essence, with
/// uncounted fill in between.
struct SPartitionExtent {
    std::int64_t position = 0;         ///< place of the pack in the source, in bytes
    std::int64_t packSize = 0;         ///< bytes of the pack itself, key and length included
    std::uint64_t headerByteCount = 0; ///< from the primer pack on
    std::uint64_t indexByteCount = 0;
};

/// What one partition pack says (SMPTE ST 377-1, 7.1). Offsets stand as the file states them, counted from the
/// first byte of the header partition; the run-in is not taken off.
class CPartitionPack {
public:
    struct SEssenceContainer {
        SUl label;
        const SUlEntry* entry = nullptr; ///< null when unknown, and for the label of multiple mappings
    };

    /// \param klv       borrowed for the call; null gives -2
    /// \param dict      names the essence containers
    /// \param foundAt   where the pack lies in the source, in bytes
    /// \return 0; -3 when the key is not that of a partition pack or there is no value; -9 when the value is
    ///   shorter than the fixed fields. A list of containers that is cut short gives those that are whole.
    ///   The object is unchanged unless 0 is returned.
    int ImportFrom(const CKlv* klv, const CMxfUlDict& dict, std::int64_t foundAt);

    /// \return the imported pack, null where ImportFrom fails
    static std::unique_ptr<CPartitionPack> CreateFrom(const CKlv* klv, const CMxfUlDict& dict, std::int64_t foundAt);

    bool IsClosedComplete() const { return status == EPartitionStatus::closedComplete; }
    bool HasMetadata() const { return extent.headerByteCount > 0; }
    bool HasIndexTable() const { return extent.indexByteCount > 0; }

    EPartitionKind kind = EPartitionKind::header;
    EPartitionStatus status = EPartitionStatus::openIncomplete;
    std::uint16_t majorVersion = 0;
    std::uint16_t minorVersion = 0;
    std::uint32_t kagSize = 0;
    std::uint64_t thisPartition = 0;
    std::uint64_t previousPartition = 0;
    std::uint64_t footerPartition = 0; ///< 0: not known
    std::uint32_t indexSID = 0;
    std::uint64_t bodyOffset = 0;
    std::uint32_t bodySID = 0;
    SUl operationalPattern;
    std::vector<SEssenceContainer> essenceContainers; ///< in file order
    SPartitionExtent extent;                          ///< the byte counts as stated, and where the pack was found
};

} // namespace TamrelMxf
