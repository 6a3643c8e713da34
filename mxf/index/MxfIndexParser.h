#pragma once

#include "../io/Snitcher.h"
#include "../io/SourceReader.h"
#include "../klv/Klv.h"
#include "../klv/PartitionPack.h"
#include "../klv/RandomIndexPack.h"
#include "MxfIndexSegment.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

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

/// The index tables of one file, by IndexSID. Tables are loaded when they are first needed, or as they come.
class CMxfIndexParser {
public:
    /// \param reader  borrowed; holds the source that tables are read from; null when they are only imported
    CMxfIndexParser(CSourceReader* reader, CLoggerT<CSnitcher> logger);
    ~CMxfIndexParser();

    /// Takes all segments that a partition carries, also those that its pack does not count.
    /// \return 0; -1 when none can be read there; -9 when one is cut short (those in front of it are kept)
    int LoadSegmentFromPartition(const CPartitionPack& partition);
    /// Remembers the partitions of a random index pack: each is read when a question needs it, the footer first.
    /// \param rip  borrowed until it is replaced or Reset
    void LoadSegments(CRandomIndexPack& rip);
    /// Takes one segment from a KLV at hand.
    /// \return 0; -3 when it is no index table segment; else as CMxfIndexSegment::Import
    int ImportSegment(const CKlv& klv);
    /// Adds an edit unit that was met while essence was walked through, for files without a table. Those that a table
    /// covers are ignored.
    void NoteUnit(std::uint32_t indexSid, std::int64_t editUnit, std::int64_t streamOffset, std::uint8_t flags);
    void Reset();

    /// True when there is a table, loaded or waiting to be, for `indexSid`.
    bool HasTable(std::uint32_t indexSid);
    /// The segments of a table by start position, none that later ones have replaced; empty without one. They are good
    /// until the next call of any other operation.
    const std::vector<const CMxfIndexSegment*>& Segments(std::uint32_t indexSid);
    /// Edit units that the table covers without a gap, from edit unit 0 on; nothing when sizes are constant to the end
    /// and no duration is stated. 0 without a table. Noted units do not count.
    std::optional<std::int64_t> CoveredUnits(std::uint32_t indexSid);
    SRational EditRate(std::uint32_t indexSid);
    /// Bytes of every edit unit when they are all of one size.
    std::optional<std::uint32_t> ConstantSize(std::uint32_t indexSid);

    /// \param editUnit  stored
    /// \return nothing when no table covers it
    std::optional<SIndexedUnit> Find(std::uint32_t indexSid, std::int64_t editUnit);
    /// The stored edit unit that is shown at `position`.
    std::optional<std::int64_t> StoredAt(std::uint32_t indexSid, std::int64_t position);
    /// How far stored order runs ahead of display order at most: 0 without reordering.
    std::int64_t ReorderDelay(std::uint32_t indexSid);
    /// The last edit unit that does not begin behind `streamOffset`.
    std::optional<std::int64_t> UnitAtOffset(std::uint32_t indexSid, std::int64_t streamOffset);
    /// Where an element of the content package starts.
    /// \param element  its place in the delta array
    std::optional<std::int64_t> ElementOffset(std::uint32_t indexSid, std::int64_t editUnit, std::size_t element);

private:
    struct SImpl;
    std::unique_ptr<SImpl> impl_;
};

} // namespace TamrelMxf
