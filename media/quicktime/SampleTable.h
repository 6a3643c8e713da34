#pragma once

#include "SampleDescriptions.h"
#include "SampleDurations.h"
#include "SampleLocation.h"

#include <cstdint>
#include <optional>

namespace zanfcp::quicktime {

/// The tables of one track ('stbl'): read where they are short, noted where they are long.
struct SampleTable {
    /// A table in the file; its entries are known to lie inside it.
    struct Table {
        Extent entries;
        std::uint32_t count = 0;
    };

    SampleDescriptions descriptions;
    /// The time-to-sample table added up; absent when it has more than kMaxTimeToSampleEntries entries and nobody
    /// called addUpTimes.
    std::optional<SampleDurations> durations;
    std::uint64_t sampleCount = 0; ///< of the sample size table; 0 when it was not needed

    std::optional<Table> timeToSample;  ///< 'stts': count, duration
    std::optional<Table> sampleToChunk; ///< 'stsc': first chunk, samples a chunk, description
    std::optional<Table> sampleSizes;   ///< 'stsz' or 'stz2': size; no entries where all samples are of one size
    std::uint32_t sampleSizeBits = 32;  ///< of an entry: 32 of 'stsz', 4, 8 or 16 of 'stz2'
    std::uint32_t commonSampleSize = 0; ///< bytes; 0: see sampleSizes
    std::optional<Table> chunkOffsets;  ///< 'stco' or 'co64'
    bool hasLongOffsets = false;        ///< 'co64'
};

/// Reads what a track of this media type needs: of sound the descriptions and durations, of pictures the number of
/// samples too where the durations do not give it, of timecode all tables.
/// \return truncated or malformed when one of these is cut short or counts more entries than it holds
/// Source: ISO/IEC 14496-12, 8.5 to 8.7; Apple, QuickTime File Format, "Sample Table Atoms".
Result<SampleTable> parseSampleTable(Window& window, Extent body, FourCC mediaType);

/// Adds up a time-to-sample table, of whatever length.
/// \return limit when it has more than kMaxTimeToSampleEntriesWithoutDuration entries, io when it cannot be read
Result<SampleDurations> addUpTimes(Window& window, const SampleTable::Table& timeToSample);

/// Finds the sample that is shown at `mediaTime`, in units of the media's timescale.
/// \return notFound when there is none, malformed when the tables contradict each other, limit when it is too far in
Result<SampleLocation> locateSample(Window& window, const SampleTable& table, std::uint64_t mediaTime);

} // namespace zanfcp::quicktime
