#pragma once

#include "../io/MediaSource.h"
#include "../labels/UlDict.h"
#include "Klv.h"
#include "PartitionPack.h"

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <vector>

namespace TamrelMxf {

/// One partition in the list of its BodySID. Ordered by its place in the source.
struct SPartitionDesc {
    enum class EState : std::uint8_t { unread, read, unreadable };

    std::int64_t offset = 0;       ///< place of the partition pack in the source, run-in taken off
    EState state = EState::unread; ///< what follows is known once it is read
    SPartitionExtent extent;
    std::uint64_t bodyOffset = 0; ///< byte of the essence that the partition begins with
    std::uint32_t indexSID = 0;
    std::int64_t essenceStart = -1; ///< place of the first essence element; -1 until it was asked for

    friend bool operator<(const SPartitionDesc& a, const SPartitionDesc& b) { return a.offset < b.offset; }
};

/// The table at the end of a file that lists its partitions (SMPTE ST 377-1, 12), and what was learnt of them.
class CRandomIndexPack {
public:
    /// \param source           borrowed; partition packs are read from it when they are needed
    /// \param dict             borrowed
    /// \param runInCorrection  taken off every offset that the file states
    CRandomIndexPack(CMediaSource* source, const CMxfUlDict& dict, std::int64_t runInCorrection)
        : source_{source}, dict_{&dict}, runInCorrection_{runInCorrection}
    {}
    virtual ~CRandomIndexPack();
    CRandomIndexPack(const CRandomIndexPack&) = delete;
    CRandomIndexPack& operator=(const CRandomIndexPack&) = delete;

    /// Finds and imports the random index pack at the end of a source, with two small reads and one of the pack.
    /// \param listPartitions  as for ImportFromEx
    /// \return the pack; null when the source does not end in a good one
    static std::unique_ptr<CRandomIndexPack> LoadFromEnd(CMediaSource& source, const CMxfUlDict& dict,
                                                         std::int64_t runInCorrection, bool listPartitions);

    /// Replaces the content by the entries of `klv`: pairs of BodySID and offset. An entry that lies before the
    /// start of the source once the run-in is taken off is skipped.
    /// \param klv             borrowed for the call
    /// \param listPartitions  also enter each partition in the list of its BodySID
    /// \return 0; -2 for a null KLV; -3 when the key is not that of a pack, the value is empty or holds more
    ///   than kMaxPartitions entries
    int ImportFromEx(const CKlv* klv, bool listPartitions);

    /// Adds a partition that was found otherwise, or completes the one known at that place.
    /// \param offset  place of the pack in the source, run-in taken off
    /// \return 0; -2 for a null pack; -3 for a negative offset
    int ImportPartition(const CPartitionPack* pack, std::int64_t offset);

    /// The place in the source of byte `offset` of the essence of `bodySID`. Byte 0 is the first byte of the
    /// key of the first essence element.
    /// \return -1 when no partition of that BodySID holds it
    std::int64_t TranslateOffset(std::int64_t offset, std::uint32_t bodySID);

    /// The partition among list[first] … list[last] that holds byte `offset` of the essence: the last one whose
    /// Body Offset is not above it. Packs that were not read yet are read on the way.
    /// \return its index; -1 when there is none
    int FindPartitionIdx(std::vector<SPartitionDesc>& list, int first, int last, std::int64_t offset);

    /// Reads the partition pack of `desc`, once.
    /// \return 0; -1 when none can be read there
    int ReadPartitionPack(SPartitionDesc& desc);

    /// Entries in the pack as stored, skipped ones included.
    std::uint32_t EntryCount() const { return entryCount_; }
    /// The places of all partitions in the source, ascending, no one twice.
    const std::set<std::uint64_t>& Offsets() const { return offsets_; }
    /// The partitions of a BodySID by ascending place; empty for an unknown one.
    std::span<const SPartitionDesc> PartitionsOf(std::uint32_t bodySID) const;
    /// The value of the pack as stored.
    std::span<const std::uint8_t> Value() const { return value_; }

private:
    std::vector<std::uint8_t> value_;
    std::uint32_t entryCount_ = 0;
    std::set<std::uint64_t> offsets_;
    std::map<std::uint32_t, std::vector<SPartitionDesc>> partitions_; // by BodySID
    CMediaSource* source_;
    const CMxfUlDict* dict_;
    std::int64_t runInCorrection_;
};

} // namespace TamrelMxf
