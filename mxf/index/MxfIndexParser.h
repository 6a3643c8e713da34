#pragma once

#include "../io/Snitcher.h"
#include "../io/SourceReader.h"
#include "../klv/Klv.h"
#include "../klv/PartitionPack.h"
#include "../klv/RandomIndexPack.h"
#include "IndexedUnit.h"
#include "MxfIndexSegment.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace TamrelMxf {

/// The index tables of one file, by IndexSID. Tables are loaded when they are first needed, or as they come.
class CMxfIndexParser {
public:
    /// \param reader  borrowed; holds the source that tables are read from; null when they are only imported
    CMxfIndexParser(CSourceReader* reader, CLoggerT<CSnitcher> logger);
    ~CMxfIndexParser();

    /// Takes all segments that a partition carries, also those that its pack does not count.
    /// \return 0; -1 when none can be read there; -9 when one is cut short (those in front of it are kept)
    int LoadSegmentFromPartition(const CPartitionPack& partition);
    /// Remembers the partitions of a random index pack: each is read when a question needs it, the last one first, and
    /// none twice.
    /// \param rip  borrowed for the call
    void LoadSegments(const CRandomIndexPack& rip);
    /// Takes one segment from a KLV at hand: it replaces what those in front of it say of the same edit units.
    /// \return 0; -3 when it is no index table segment; -9 when an item of it is cut short, which costs that item; -1
    ///   when it cannot be used
    int ImportSegment(const CKlv& klv);
    void Reset();
    /// Drops loaded segments that only speak of edit units in front of `editUnit`: nobody will ask for those. For
    /// streams without an end.
    void DropBefore(std::uint32_t indexSid, std::int64_t editUnit);

    /// True when there is a table, loaded or waiting to be, for `indexSid`.
    bool HasTable(std::uint32_t indexSid);
    /// The segments of a table by start position, none that later ones have replaced; empty without one. They are good
    /// until the next call of any other operation.
    const std::vector<const CMxfIndexSegment*>& Segments(std::uint32_t indexSid);
    /// Edit units that the table covers without a gap, from edit unit 0 on; nothing when sizes are constant to the end
    /// and no duration is stated. 0 without a table.
    std::optional<std::int64_t> CoveredUnits(std::uint32_t indexSid);
    SRational EditRate(std::uint32_t indexSid);
    /// Bytes of every edit unit when they are all of one size.
    std::optional<std::uint32_t> ConstantSize(std::uint32_t indexSid);

    /// \param editUnit  stored
    /// \return nothing when no table covers it
    std::optional<SIndexedUnit> Find(std::uint32_t indexSid, std::int64_t editUnit);
    /// The stored edit unit that is shown at `position`; nothing when no table covers that.
    std::optional<std::int64_t> StoredAt(std::uint32_t indexSid, std::int64_t position);
    /// How far stored order runs ahead of display order at most: 0 without reordering.
    std::int64_t ReorderDelay(std::uint32_t indexSid);
    /// The last edit unit that does not begin behind `streamOffset`.
    std::optional<std::int64_t> UnitAtOffset(std::uint32_t indexSid, std::int64_t streamOffset);
    /// Where an element of the content package starts: the byte of the container, as SIndexedUnit::streamOffset counts.
    /// \param element  its place in the delta array
    /// \return nothing when no table covers the edit unit, or none tells where the element lies
    std::optional<std::int64_t> ElementOffset(std::uint32_t indexSid, std::int64_t editUnit, std::size_t element);

private:
    struct SImpl;
    std::unique_ptr<SImpl> impl_;
};

} // namespace TamrelMxf
