#pragma once

#include "../io/SourceReader.h"
#include "PartitionPack.h"
#include "RandomIndexPack.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace TamrelMxf {

/// What the partition layer hands on to the index tables and to the header metadata above it. Every operation
/// may move the source.
class CPartitionClient {
public:
    virtual ~CPartitionClient();

    /// True once there is something that takes index tables.
    virtual bool HasIndexParser() const = 0;
    /// Takes the index table that a partition carries. \return 0 on success
    virtual int LoadSegmentFromPartition(const CPartitionPack& partition) = 0;
    /// Takes the index tables of all partitions of `rip`, when they are loaded on demand.
    virtual void LoadSegments(CRandomIndexPack& rip) = 0;
    /// Brings tracks and sequences up to date from the header metadata that the footer carries.
    virtual void ScanFooter(const CPartitionPack& footer) = 0;

protected:
    CPartitionClient() = default;
    CPartitionClient(const CPartitionClient&) = default;
    CPartitionClient& operator=(const CPartitionClient&) = default;
};

/// The outer structure of one file: header and footer partition, random index pack, and the partition whose
/// header metadata is to be parsed. Positions are places in the source, in bytes; offsets are what the file
/// states, and differ from positions by the run-in correction.
class CPartitionScanner {
public:
    /// \param reader  borrowed; holds the source that is scanned
    /// \param dict    borrowed
    CPartitionScanner(CSourceReader& reader, const CMxfUlDict& dict) : reader_{reader}, dict_{dict} {}

    /// Forgets everything read so far.
    /// \param client            borrowed, may be null
    /// \param lazyIndexLoading  index tables are loaded through the random index pack, on demand
    void Reset(CLoggerT<CSnitcher> logger, CPartitionClient* client, bool lazyIndexLoading);
    /// The setting of Reset, once the operational pattern is known and calls for it.
    void SetLazyIndexLoading(bool lazy) { lazyIndexLoading_ = lazy; }

    /// Finds the first partition pack, the run-in in front of it and the partition with the best metadata, and
    /// reads that metadata. Whether the first partition is a header partition is left to the caller.
    /// \return 0; -4 without a source; -9 when the pack is cut short or too large; -1 when there are fewer than
    ///   128 bytes or no partition pack among the first 65,535 bytes
    int FindPartitionWithMetadata();

    /// Loads the random index pack at the end of the source and lets the client load index tables through it.
    /// \return 0; -4 without a source; -1 when there is none, which leaves none
    int LoadRIP();

    /// Loads the footer partition pack from where the header partition says it lies, or else where the random
    /// index pack does, and hands on what the footer carries. A false offset is reported and dropped.
    /// \return 0, also when it is known already; -4 without a source or a header partition; -1 when none is found
    int LoadFooter();

    /// Hands every partition of the random index pack that carries an index table to the client; one that
    /// cannot be loaded is reported and skipped.
    /// \return 0; -4 without a source; -1 without a random index pack
    int ScanPartitions();

    /// True once a random index pack or a footer is known; looks for both, and leaves the source where it was.
    /// A footer that the file does not reach yet is not looked for.
    bool IsMxfComplete();

    /// Reads the header partition again, which a writer may have filled in since: mostly when it closed the file. Never
    /// waits.
    /// \return true when there is other header metadata than before: that of the header partition, unless better one
    ///   was found elsewhere already
    bool RefreshHeader();

    /// The first partition pack of the file; null before it is found.
    const CPartitionPack* HeaderPartition() const { return header_.get(); }
    const CPartitionPack* FooterPartition() const { return footer_.get(); }
    /// The partition that the metadata is taken from: HeaderPartition() or a later one.
    const CPartitionPack* MetadataPartition() const { return chosen_ ? chosen_.get() : header_.get(); }
    CRandomIndexPack* RandomIndexPack() const { return rip_.get(); }
    /// This Partition of the first pack less the place where it was found: taken off every stated offset.
    std::int64_t RunInCorrection() const { return runInCorrection_; }
    /// The size that the source had when the random index pack was looked for, -1 before.
    std::int64_t SourceSize() const { return sourceSize_; }

    /// The header metadata of MetadataPartition(), from the primer pack to the end of what the pack counts or of
    /// what could be read. Empty when the partition has none. Valid until the next search or reset.
    std::span<const std::uint8_t> Metadata() const;
    /// Where the first byte of Metadata() stands.
    std::int64_t MetadataPosition() const;

private:
    int FindFirstPartition();
    void ReadMetadata();
    bool EnsureProbe(std::size_t end);
    int ReadProbe(std::int64_t position, std::size_t count);
    std::unique_ptr<CPartitionPack> FooterFromRip();

    CSourceReader& reader_;
    const CMxfUlDict& dict_;
    CLoggerT<CSnitcher> logger_;
    CPartitionClient* client_ = nullptr;
    bool lazyIndexLoading_ = false;

    std::vector<std::uint8_t> probe_; // what was read from probePosition_ on
    std::int64_t probePosition_ = 0;
    std::size_t metadataBegin_ = 0; // within the probe
    std::size_t metadataEnd_ = 0;

    std::unique_ptr<CPartitionPack> header_;
    std::unique_ptr<CPartitionPack> footer_;
    std::unique_ptr<CPartitionPack> chosen_; // null: the header partition
    std::unique_ptr<CRandomIndexPack> rip_;
    std::int64_t runInCorrection_ = 0;
    std::int64_t sourceSize_ = -1;
};

} // namespace TamrelMxf
