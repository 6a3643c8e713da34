#include "media/quicktime/SampleTable.h"

#include <array>

namespace zanfcp::quicktime {
namespace {

using Table = SampleTable::Table;

/// Version and flags, a 32-bit count, entries of `entrySize` bytes.
Result<Table> parseTable(Window& window, Extent body, std::uint64_t entrySize)
{
    Result<ByteReader> head = window.read(body.first(8));
    if (!head) return Error{head.error()};
    head->skip(4);
    const Table table{.entries = body.after(8), .count = head->read<std::uint32_t>()};
    if (!head->ok()) return Error{Fault::truncated, "table is cut short", body.offset};
    if (table.count > table.entries.size / entrySize)
        return Error{Fault::malformed, "table counts " + std::to_string(table.count) + " entries and has fewer",
                     body.offset};
    return table;
}

/// The 32-bit fields of one entry.
template <std::size_t Fields>
Result<std::array<std::uint32_t, Fields>> readEntry(Window& window, const Table& table, std::uint64_t index)
{
    constexpr std::uint64_t kEntrySize = Fields * 4;
    if (index >= table.count)
        return Error{Fault::malformed, "entry " + std::to_string(index) + " is beyond the table", table.entries.offset};
    Result<ByteReader> bytes = window.read(table.entries.after(index * kEntrySize).first(kEntrySize));
    if (!bytes) return Error{bytes.error()};
    std::array<std::uint32_t, Fields> fields;
    for (std::uint32_t& field : fields)
        field = bytes->read<std::uint32_t>();
    return fields;
}

Status readDurations(Window& window, Extent body, SampleTable& into)
{
    const Result<Table> table = parseTable(window, body, 8);
    if (!table) return table.error();
    into.timeToSample = *table;
    if (table->count > kMaxTimeToSampleEntries) return {};
    const Result<SampleDurations> durations = addUpTimes(window, *table);
    if (!durations) return durations.error();
    into.durations = *durations;
    return {};
}

Status readSampleSizes(Window& window, const Box& box, SampleTable& into)
{
    Result<ByteReader> head = window.read(box.body.first(12));
    if (!head) return head.error();
    head->skip(4);
    const auto sizeOrBits = head->read<std::uint32_t>(); // of 'stz2': 24 bits that mean nothing, bits of an entry
    const auto count = head->read<std::uint32_t>();
    if (!head->ok()) return Error{Fault::truncated, "table is cut short", box.body.offset};
    into.sampleCount = count;
    const bool isCompact = box.type == FourCC{"stz2"};
    into.sampleSizeBits = isCompact ? sizeOrBits & 0xFF : 32;
    into.commonSampleSize = isCompact ? 0 : sizeOrBits;
    if (isCompact && into.sampleSizeBits != 4 && into.sampleSizeBits != 8 && into.sampleSizeBits != 16)
        return {}; // the count is enough for pictures
    into.sampleSizes = Table{.entries = box.body.after(12), .count = into.commonSampleSize == 0 ? count : 0};
    const std::uint64_t bits = std::uint64_t{into.sampleSizes->count} * into.sampleSizeBits;
    if (bits / 8 + (bits % 8 != 0) > into.sampleSizes->entries.size)
        return Error{Fault::malformed, "table counts " + std::to_string(count) + " entries and has fewer",
                     box.body.offset};
    return {};
}

Result<Walk> readTable(Window& window, const Box& box, FourCC mediaType, SampleTable& into)
{
    const auto keep = [](const Result<Table>& table, std::optional<Table>& place) -> Status {
        if (!table) return table.error();
        place = *table;
        return {};
    };
    Status status;
    if (box.type == FourCC{"stsd"}) {
        Result<SampleDescriptions> descriptions = parseSampleDescriptions(window, box.body, mediaType);
        if (!descriptions) return Error{descriptions.error()};
        into.descriptions = *std::move(descriptions);
    } else if (box.type == FourCC{"stts"}) {
        status = readDurations(window, box.body, into);
    } else if (box.type == FourCC{"stsz"} || box.type == FourCC{"stz2"}) {
        status = readSampleSizes(window, box, into);
    } else if (box.type == FourCC{"stsc"}) {
        status = keep(parseTable(window, box.body, 12), into.sampleToChunk);
    } else {
        into.hasLongOffsets = box.type == FourCC{"co64"};
        status = keep(parseTable(window, box.body, into.hasLongOffsets ? 8 : 4), into.chunkOffsets);
    }
    if (!status) return status.error();

    // Behind these lie the long tables: whoever has what is needed saves a jump over each.
    const bool hasTimes = into.timeToSample && (into.durations || into.sampleCount > 0 || mediaType != kVideoMedia);
    const bool isDone = mediaType != kTimecodeMedia && hasTimes && !into.descriptions.entries.empty();
    return isDone ? Walk::stop : Walk::on;
}

/// The 0-based number of the sample that is shown at `mediaTime`.
Result<std::uint64_t> sampleAtTime(Window& window, const SampleTable& table, std::uint64_t mediaTime)
{
    if (mediaTime == 0) return std::uint64_t{0};
    std::uint64_t samples = 0;
    std::uint64_t time = 0; // of sample number `samples`; each round adds less than 2^64, checked
    const std::uint32_t count = table.timeToSample ? table.timeToSample->count : 0;
    for (std::uint32_t i = 0; i < std::min(count, kMaxEntriesToFirstSample); ++i) {
        const auto entry = readEntry<2>(window, *table.timeToSample, i);
        if (!entry) return entry.error();
        const auto [entrySamples, duration] = *entry;
        const std::uint64_t entryTime = std::uint64_t{entrySamples} * duration;
        if (mediaTime - time < entryTime) return samples + (mediaTime - time) / duration;
        time += entryTime; // <= mediaTime
        samples += entrySamples;
    }
    return Error{Fault::notFound, "no sample at time " + std::to_string(mediaTime)};
}

/// A sample inside its chunk.
struct ChunkPlace {
    std::uint64_t chunk = 0;  ///< 0-based
    std::uint64_t before = 0; ///< samples before it in the same chunk
    std::uint32_t description = 1;
};

Result<ChunkPlace> findChunk(Window& window, const Table& sampleToChunk, std::uint64_t sample)
{
    for (std::uint32_t i = 0; i < std::min(sampleToChunk.count, kMaxEntriesToFirstSample); ++i) {
        const auto entry = readEntry<3>(window, sampleToChunk, i);
        if (!entry) return entry.error();
        const auto [firstChunk, perChunk, description] = *entry;
        const bool isLast = i + 1 == sampleToChunk.count;
        std::uint64_t nextChunk = 0;
        if (!isLast) {
            const auto next = readEntry<3>(window, sampleToChunk, i + 1);
            if (!next) return next.error();
            nextChunk = (*next)[0];
        }
        if (firstChunk == 0 || perChunk == 0 || (!isLast && nextChunk <= firstChunk))
            return Error{Fault::malformed, "sample-to-chunk entry " + std::to_string(i) + " makes no sense",
                         sampleToChunk.entries.offset};
        const std::uint64_t samplesHere = isLast ? 0 : (nextChunk - firstChunk) * perChunk;
        if (isLast || sample < samplesHere)
            return ChunkPlace{
                .chunk = firstChunk - 1 + sample / perChunk, .before = sample % perChunk, .description = description};
        sample -= samplesHere;
    }
    return Error{Fault::notFound, "no chunk holds the sample"};
}

Result<std::uint64_t> sampleSize(Window& window, const SampleTable& table, std::uint64_t sample)
{
    if (table.commonSampleSize != 0) return std::uint64_t{table.commonSampleSize};
    const Table& sizes = *table.sampleSizes;
    const std::uint32_t bits = table.sampleSizeBits;
    if (bits == 32) {
        const auto entry = readEntry<1>(window, sizes, sample);
        if (!entry) return entry.error();
        return std::uint64_t{(*entry)[0]};
    }
    if (sample >= sizes.count)
        return Error{Fault::malformed, "entry " + std::to_string(sample) + " is beyond the table",
                     sizes.entries.offset};
    const std::uint64_t width = bits == 16 ? 2 : 1;
    Result<ByteReader> bytes = window.read(sizes.entries.after(sample * bits / 8).first(width));
    if (!bytes) return Error{bytes.error()};
    if (bits == 16) return std::uint64_t{bytes->read<std::uint16_t>()};
    const auto byte = bytes->read<std::uint8_t>();
    if (bits == 8) return std::uint64_t{byte};
    return std::uint64_t{sample % 2 == 0 ? byte >> 4U : byte & 0xFU}; // the first of two in the upper half
}

Result<std::uint64_t> chunkOffset(Window& window, const SampleTable& table, std::uint64_t chunk)
{
    if (chunk >= table.chunkOffsets->count)
        return Error{Fault::malformed, "chunk " + std::to_string(chunk + 1) + " is beyond the table",
                     table.chunkOffsets->entries.offset};
    const std::uint64_t width = table.hasLongOffsets ? 8 : 4;
    Result<ByteReader> bytes = window.read(table.chunkOffsets->entries.after(chunk * width).first(width));
    if (!bytes) return Error{bytes.error()};
    return table.hasLongOffsets ? bytes->read<std::uint64_t>() : bytes->read<std::uint32_t>();
}

} // namespace

Result<SampleTable> parseSampleTable(Window& window, Extent body, FourCC mediaType)
{
    constexpr FourCC kTables[] = {FourCC{"stsd"}, FourCC{"stts"}, FourCC{"stsz"}, FourCC{"stz2"},
                                  FourCC{"stsc"}, FourCC{"stco"}, FourCC{"co64"}};
    constexpr std::size_t kForSound = 2;
    constexpr std::size_t kForVideo = 4;
    const std::span<const FourCC> wanted = mediaType == kTimecodeMedia ? std::span{kTables}
                                           : mediaType == kVideoMedia  ? std::span{kTables}.first(kForVideo)
                                                                       : std::span{kTables}.first(kForSound);
    SampleTable table;
    Status walked =
        forEachBox(window, body, wanted, [&](const Box& box) { return readTable(window, box, mediaType, table); });
    if (!walked) return Error{walked.error()};
    return table;
}

Result<SampleDurations> addUpTimes(Window& window, const Table& timeToSample)
{
    constexpr std::uint32_t kEntrySize = 8;
    constexpr std::uint32_t kAtOnce = kMaxPieceBytes / kEntrySize;
    if (timeToSample.count > kMaxTimeToSampleEntriesWithoutDuration)
        return Error{Fault::limit, std::to_string(timeToSample.count) + " entries", timeToSample.entries.offset};
    SampleDurations durations;
    for (std::uint32_t i = 0; i < timeToSample.count; i += kAtOnce) {
        const std::uint32_t count = std::min(timeToSample.count - i, kAtOnce);
        Result<ByteReader> bytes =
            window.read(timeToSample.entries.after(std::uint64_t{i} * kEntrySize).first(count * kEntrySize));
        if (!bytes) return Error{bytes.error()};
        for (std::uint32_t entry = 0; entry < count; ++entry) {
            const auto samples = bytes->read<std::uint32_t>();
            durations.add(samples, bytes->read<std::uint32_t>());
        }
    }
    return durations;
}

Result<SampleLocation> locateSample(Window& window, const SampleTable& table, std::uint64_t mediaTime)
{
    if (!table.sampleToChunk || !table.chunkOffsets || !table.sampleSizes)
        return Error{Fault::malformed, "a table that places the samples is missing"};
    const Result<std::uint64_t> sample = sampleAtTime(window, table, mediaTime);
    if (!sample) return sample.error();
    const Result<ChunkPlace> place = findChunk(window, *table.sampleToChunk, *sample);
    if (!place) return place.error();
    const Result<std::uint64_t> chunk = chunkOffset(window, table, place->chunk);
    if (!chunk) return chunk.error();
    if (place->before > kMaxEntriesToFirstSample)
        return Error{Fault::limit, std::to_string(place->before) + " samples before the first one shown"};

    SampleLocation location{.description = place->description, .offset = *chunk};
    for (std::uint64_t i = *sample - place->before; i <= *sample; ++i) {
        const Result<std::uint64_t> size = sampleSize(window, table, i);
        if (!size) return size.error();
        if (i < *sample && __builtin_add_overflow(location.offset, *size, &location.offset))
            return Error{Fault::malformed, "sample lies beyond any file", location.offset};
        location.size = *size;
    }
    return location;
}

} // namespace zanfcp::quicktime
