#include "media/quicktime/Asset.h"

#include "media/quicktime/Movie.h"

#include <algorithm>

namespace zanfcp::quicktime {
namespace {

struct WholeMovie {
    Movie movie;
    std::uint64_t missingBytes = 0;
};

/// What the last box behind the movie header claims beyond the end of the file. Nothing here is needed, so what cannot
/// be read or makes no sense is no fault.
std::uint64_t missingBehind(Window& window, Extent rest)
{
    constexpr int kMostBoxes = 16; // media data and free space
    for (int count = 0; rest.size > 0 && count < kMostBoxes; ++count) {
        const Result<std::optional<Box>> read = readBox(window, rest);
        if (!read || !*read || !isPlausibleType((*read)->type)) return 0;
        if (!(*read)->fits) return (*read)->missing;
        rest = rest.after((*read)->end() - rest.offset);
    }
    return 0;
}

/// Walks the top level of the file up to the movie header, and on through the fragments where these follow.
Result<WholeMovie> readMovie(Window& window)
{
    std::optional<Movie> movie;
    std::uint64_t missing = 0;
    std::optional<Error> cut; // a box that the file ends inside
    Extent rest{.offset = 0, .size = window.fileSize()};
    for (std::uint64_t count = 0; rest.size > 0; ++count) {
        if (count == kMaxTopLevelBoxes)
            return Error{Fault::limit, "more than " + std::to_string(count) + " boxes in the file", rest.offset};
        Result<std::optional<Box>> read = readBox(window, rest);
        if (!read) return Error{read.error()};
        if (!*read) break;
        const Box& box = **read;
        const bool isHeader = box.type == FourCC{"moov"} && !movie;
        if (!isPlausibleType(box.type) && !movie)
            return Error{Fault::malformed, "not a movie: no box where one must begin", box.offset};
        if (!box.fits) {
            cut = Error{Fault::truncated, "the file ends inside this box", box.offset, box.type.text()};
            if (isPlausibleType(box.type)) missing = box.missing;
            break;
        }
        if (isHeader) {
            Result<Movie> parsed = parseMovie(window, box.body);
            if (!parsed) return Error{parsed.error()}.under("moov");
            movie = *std::move(parsed);
            if (!movie->extends) {
                missing = missingBehind(window, rest.after(box.end() - rest.offset));
                break;
            }
        } else if (box.type == FourCC{"moof"} && movie) {
            Status added = readMovieFragment(window, box, *movie->extends);
            if (!added && added.error().fault == Fault::io) return Error{added.error()}.under("moof");
            // A recording that broke off ends in a broken fragment; what came before it stands.
            if (!added) break;
        }
        rest = rest.after(box.end() - rest.offset);
    }
    if (movie) return WholeMovie{.movie = *std::move(movie), .missingBytes = missing};
    if (cut) return *cut;
    return Error{Fault::notFound, "no movie header"};
}

} // namespace

Result<Asset> Asset::open(const std::string& path)
{
    Result<FileByteSource::Opened> file = FileByteSource::open(path);
    if (!file) return Error{file.error()};
    return read(std::make_unique<FileByteSource>(*std::move(file)));
}

Result<Asset> Asset::read(std::unique_ptr<ByteSource> source)
{
    Window window{*source};
    Result<WholeMovie> read = readMovie(window);
    if (!read) return Error{read.error()};
    Asset asset;
    asset.source_ = std::move(source);
    asset.missingBytes_ = read->missingBytes;
    asset.duration_ = read->movie.totalDuration();
    asset.tracks_ = std::move(read->movie).finishTracks();
    return asset;
}

const Track* Asset::firstTrackWithMediaType(FourCC mediaType) const
{
    const auto found = std::ranges::find(tracks_, mediaType, &Track::mediaType);
    return found == tracks_.end() ? nullptr : &*found;
}

std::size_t Asset::countTracksWithMediaType(FourCC mediaType) const
{
    return static_cast<std::size_t>(std::ranges::count(tracks_, mediaType, &Track::mediaType));
}

Status Asset::readFirstSample(const Track& track, std::span<std::byte> into) const
{
    if (!track.firstSample || !track.firstSample->location)
        return Error{Fault::notFound, "no sample that lies in this file"};
    const SampleLocation& sample = *track.firstSample->location;
    if (sample.size < into.size())
        return Error{Fault::truncated, "sample of " + std::to_string(sample.size) + " bytes", sample.offset};
    return source_->readAt(sample.offset, into);
}

} // namespace zanfcp::quicktime
