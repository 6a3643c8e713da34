#include "media/quicktime/Fragments.h"

namespace zanfcp::quicktime {
namespace {

/// The header of one track in one fragment ('tfhd'), its gaps filled from the track's defaults.
struct TrackFragmentHeader {
    std::uint32_t track = 0;
    std::optional<std::uint64_t> dataOffset; ///< where data offsets count from; absent: behind the track before
    TrackFragments::Defaults defaults;
};

namespace headerFlags {
constexpr std::uint32_t kBaseDataOffset = 0x000001;
constexpr std::uint32_t kDescription = 0x000002;
constexpr std::uint32_t kDuration = 0x000008;
constexpr std::uint32_t kSize = 0x000010;
constexpr std::uint32_t kBaseIsFragment = 0x020000;
} // namespace headerFlags

namespace runFlags {
constexpr std::uint32_t kDataOffset = 0x000001;
constexpr std::uint32_t kFirstSampleFlags = 0x000004;
constexpr std::uint32_t kDuration = 0x000100;
constexpr std::uint32_t kSize = 0x000200;
constexpr std::uint32_t kSampleFlags = 0x000400;
constexpr std::uint32_t kCompositionOffset = 0x000800;
} // namespace runFlags

enum class Position { firstInFragment, later };

Result<TrackFragmentHeader> parseTrackFragmentHeader(Window& window, Extent body, const Box& fragment,
                                                     Position position, const FragmentedTracks& tracks)
{
    Result<ByteReader> bytes = window.read(body.first(32));
    if (!bytes) return Error{bytes.error()};
    const auto flags = bytes->read<std::uint32_t>() & 0xFFFFFF;
    TrackFragmentHeader header{.track = bytes->read<std::uint32_t>(), .dataOffset = {}, .defaults = {}};
    if (const auto track = tracks.find(header.track); track != tracks.end()) header.defaults = track->second.defaults;
    if (position == Position::firstInFragment || (flags & headerFlags::kBaseIsFragment) != 0)
        header.dataOffset = fragment.offset;
    if ((flags & headerFlags::kBaseDataOffset) != 0) header.dataOffset = bytes->read<std::uint64_t>();
    if ((flags & headerFlags::kDescription) != 0) header.defaults.description = bytes->read<std::uint32_t>();
    if ((flags & headerFlags::kDuration) != 0) header.defaults.duration = bytes->read<std::uint32_t>();
    if ((flags & headerFlags::kSize) != 0) header.defaults.size = bytes->read<std::uint32_t>();
    if (!bytes->ok()) return Error{Fault::truncated, "track fragment header is cut short", body.offset};
    return header;
}

/// One run of samples ('trun'): count, then per sample those of duration, size, flags and offset that are flagged.
Status readRun(Window& window, Extent body, const TrackFragmentHeader& header, TrackFragments& track,
               std::uint64_t& entriesRead)
{
    Result<ByteReader> head = window.read(body.first(16));
    if (!head) return head.error();
    const auto flags = head->read<std::uint32_t>() & 0xFFFFFF;
    const auto count = head->read<std::uint32_t>();
    std::uint64_t headSize = 8;
    std::optional<std::int32_t> dataOffset;
    if ((flags & runFlags::kDataOffset) != 0) {
        dataOffset = head->read<std::int32_t>();
        headSize += 4;
    }
    if ((flags & runFlags::kFirstSampleFlags) != 0) headSize += 4;
    if (!head->ok() || headSize > body.size) return Error{Fault::truncated, "track run is cut short", body.offset};

    const bool hasDurations = (flags & runFlags::kDuration) != 0;
    const bool hasSizes = (flags & runFlags::kSize) != 0;
    std::uint64_t entrySize = 0;
    for (const std::uint32_t field :
         {runFlags::kDuration, runFlags::kSize, runFlags::kSampleFlags, runFlags::kCompositionOffset})
        if ((flags & field) != 0) entrySize += 4;
    const Extent entries = body.after(headSize);
    if (entrySize > 0 && count > entries.size / entrySize)
        return Error{Fault::malformed, "track run counts " + std::to_string(count) + " samples and has fewer",
                     body.offset};

    if (count > 0 && track.durations.count() == 0 && !track.firstSample && header.dataOffset) {
        std::uint64_t size = header.defaults.size;
        if (hasSizes) {
            Result<ByteReader> first = window.read(entries.first(entrySize));
            if (!first) return first.error();
            if (hasDurations) first->skip(4);
            size = first->read<std::uint32_t>();
        }
        // A negative offset wraps to what was meant; one that leads outside shows when the sample is read.
        track.firstSample = SampleLocation{.description = header.defaults.description,
                                           .offset = *header.dataOffset +
                                                     static_cast<std::uint64_t>(std::int64_t{dataOffset.value_or(0)}),
                                           .size = size};
    }
    if (!hasDurations) {
        track.durations.add(count, header.defaults.duration);
        return {};
    }
    if (count > kMaxRunEntries - entriesRead)
        return Error{Fault::limit, "more than " + std::to_string(kMaxRunEntries) + " samples in track runs",
                     body.offset};
    entriesRead += count;
    const std::uint64_t perPiece = kMaxPieceBytes / entrySize;
    for (std::uint64_t done = 0; done < count; done += perPiece) {
        const std::uint64_t here = std::min<std::uint64_t>(perPiece, count - done);
        Result<ByteReader> piece = window.read(entries.after(done * entrySize).first(here * entrySize));
        if (!piece) return piece.error();
        for (std::uint64_t i = 0; i < here; ++i) {
            track.durations.add(1, piece->read<std::uint32_t>());
            piece->skip(static_cast<std::size_t>(entrySize - 4));
        }
    }
    return {};
}

Status readTrackFragment(Window& window, const Box& fragment, Extent body, Position position, MovieExtends& movie)
{
    std::optional<TrackFragmentHeader> header;
    constexpr FourCC kWanted[] = {FourCC{"tfhd"}, FourCC{"trun"}};
    return forEachBox(window, body, kWanted, [&](const Box& box) -> Result<Walk> {
        if (box.type == FourCC{"tfhd"}) {
            Result<TrackFragmentHeader> parsed =
                parseTrackFragmentHeader(window, box.body, fragment, position, movie.tracks);
            if (!parsed) return Error{parsed.error()};
            header = *parsed;
            return Walk::on;
        }
        if (!header) return Error{Fault::malformed, "track run before its header", box.offset};
        const auto track = movie.tracks.find(header->track);
        if (track == movie.tracks.end()) return Walk::stop;
        if (Status s = readRun(window, box.body, *header, track->second, movie.entriesRead); !s) return s.error();
        return Walk::on;
    });
}

} // namespace

Result<MovieExtends> parseMovieExtends(Window& window, Extent body)
{
    MovieExtends extends;
    constexpr FourCC kWanted[] = {FourCC{"mehd"}, FourCC{"trex"}};
    Status walked = forEachBox(window, body, kWanted, [&](const Box& box) -> Result<Walk> {
        Result<ByteReader> bytes = window.read(box.body.first(24));
        if (!bytes) return Error{bytes.error()};
        const auto version = bytes->read<std::uint8_t>();
        bytes->skip(3);
        if (box.type == FourCC{"mehd"}) {
            extends.duration = version == 1 ? bytes->read<std::uint64_t>() : bytes->read<std::uint32_t>();
        } else {
            if (extends.tracks.size() == kMaxTracks)
                return Error{Fault::limit, "more than " + std::to_string(kMaxTracks) + " tracks", box.offset};
            const auto track = bytes->read<std::uint32_t>();
            TrackFragments::Defaults& defaults = extends.tracks[track].defaults;
            defaults.description = bytes->read<std::uint32_t>();
            defaults.duration = bytes->read<std::uint32_t>();
            defaults.size = bytes->read<std::uint32_t>();
        }
        if (!bytes->ok()) return Error{Fault::truncated, "box is cut short", box.offset};
        return Walk::on;
    });
    if (!walked) return Error{walked.error()};
    return extends;
}

Status readMovieFragment(Window& window, const Box& fragment, MovieExtends& movie)
{
    Position position = Position::firstInFragment;
    constexpr FourCC kWanted[] = {FourCC{"traf"}};
    return forEachBox(window, fragment.body, kWanted, [&](const Box& box) -> Result<Walk> {
        Status read = readTrackFragment(window, fragment, box.body, position, movie);
        if (!read) return read.error();
        position = Position::later;
        return Walk::on;
    });
}

} // namespace zanfcp::quicktime
