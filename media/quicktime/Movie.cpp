#include "media/quicktime/Movie.h"

#include "media/quicktime/TimeHeader.h"

#include <limits>

namespace zanfcp::quicktime {
namespace {

const TrackFragments* findFragments(const Movie& movie, const Track& track)
{
    if (!movie.extends) return nullptr;
    const auto found = movie.extends->tracks.find(track.identifier);
    return found == movie.extends->tracks.end() ? nullptr : &found->second;
}

std::uint64_t lengthWithFragments(const ParsedTrack& parsed, const TrackFragments* fragments)
{
    std::uint64_t length = parsed.mediaDuration;
    if (fragments && __builtin_add_overflow(length, fragments->durations.total(), &length))
        length = std::numeric_limits<std::uint64_t>::max();
    return length;
}

float nominalRate(const ParsedTrack& parsed, const TrackFragments* fragments)
{
    SampleDurations durations;
    if (parsed.samples.durations)
        durations = *parsed.samples.durations;
    else if (parsed.samples.sampleCount > 0) // the table is long: the media header has its sum
        durations.addTotal(parsed.samples.sampleCount, parsed.mediaDuration);
    if (fragments) durations.add(fragments->durations);
    return durations.rate(parsed.timescale);
}

} // namespace

MediaTime Movie::totalDuration() const
{
    const MediaTime stated{.value = duration.value_or(0), .timescale = timescale};
    if (!extends && duration) return stated;
    if (extends && extends->duration > 0) return {.value = extends->duration, .timescale = timescale};
    MediaTime longest;
    for (const ParsedTrack& parsed : tracks)
        longest = longer(longest, {.value = lengthWithFragments(parsed, findFragments(*this, parsed.track)),
                                   .timescale = parsed.timescale});
    return longest.value > 0 ? longest : stated;
}

std::vector<Track> Movie::finishTracks() &&
{
    std::vector<Track> finished;
    finished.reserve(tracks.size());
    for (ParsedTrack& parsed : tracks) {
        Track& track = parsed.track;
        const TrackFragments* fragments = findFragments(*this, track);
        if (track.mediaType == kVideoMedia) track.nominalFrameRate = nominalRate(parsed, fragments);
        if (track.mediaType == kTimecodeMedia && !track.firstSample && fragments && fragments->durations.count() > 0) {
            const auto& entries = parsed.samples.descriptions.entries;
            const std::uint32_t number = fragments->firstSample ? fragments->firstSample->description : 1;
            const bool isKnown = number > 0 && number <= entries.size();
            track.firstSample = Track::FirstSample{.format = isKnown ? entries[number - 1].format : FourCC{},
                                                   .location = fragments->firstSample};
            if (parsed.dataPlace == DataPlace::elsewhere) track.firstSample->location.reset();
        }
        finished.push_back(std::move(track));
    }
    return finished;
}

Result<Movie> parseMovie(Window& window, Extent body)
{
    Movie movie;
    bool hasHeader = false;
    std::optional<Error> substitute;
    constexpr FourCC kWanted[] = {FourCC{"mvhd"}, FourCC{"trak"}, FourCC{"mvex"}, FourCC{"cmov"}, FourCC{"rmra"}};
    Status walked = forEachBox(window, body, kWanted, [&](const Box& box) -> Result<Walk> {
        if (box.type == FourCC{"mvhd"}) {
            const Result<TimeHeader> header = parseTimeHeader(window, box.body);
            if (!header) return Error{header.error()};
            movie.timescale = header->timescale;
            movie.duration = header->duration;
            hasHeader = true;
        } else if (box.type == FourCC{"trak"}) {
            if (movie.tracks.size() == kMaxTracks)
                return Error{Fault::limit, "more than " + std::to_string(kMaxTracks) + " tracks", box.offset};
            Result<ParsedTrack> track = parseTrack(window, box.body);
            if (!track) return Error{track.error()};
            movie.tracks.push_back(*std::move(track));
        } else if (box.type == FourCC{"mvex"}) {
            Result<MovieExtends> extends = parseMovieExtends(window, box.body);
            if (!extends) return Error{extends.error()};
            movie.extends = *std::move(extends);
        } else {
            const bool isCompressed = box.type == FourCC{"cmov"};
            substitute =
                Error{Fault::unsupported,
                      isCompressed ? "the movie header is compressed" : "the movie only refers to others", box.offset};
        }
        return Walk::on;
    });
    if (!walked) return Error{walked.error()};
    if (!hasHeader) return substitute ? *substitute : Error{Fault::malformed, "movie without a header", body.offset};
    return movie;
}

} // namespace zanfcp::quicktime
