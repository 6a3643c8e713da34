#pragma once

#include "../../platform/ByteSource.h"
#include "../../platform/FourCC.h"
#include "../../platform/Result.h"
#include "MediaTime.h"
#include "Track.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace zanfcp::quicktime {

/// A QuickTime movie or MP4 file as its headers tell it. Media data is never read, but for the one timecode sample that
/// readFirstSample is asked for; tables are stepped over, however long they are.
/// Source: Apple, QuickTime File Format; ISO/IEC 14496-12.
class Asset {
public:
    /// Reads the headers of the file at `path`, which stays open as long as the asset lives.
    /// \return an Error whose `offset` is the byte where reading stopped:
    ///   notFound     no such file, or no movie header in it
    ///   io           the file could not be read
    ///   truncated    the movie header needs more bytes than there are
    ///   malformed    a box that is needed contradicts its parent or itself; broken optional boxes cost only themselves
    ///   unsupported  no regular file, or a movie header that is compressed or only refers to other movies
    ///   limit        more of something than limits.h allows
    static Result<Asset> open(const std::string& path);
    /// The same for bytes from anywhere.
    static Result<Asset> read(std::unique_ptr<ByteSource> source);

    /// Length of the movie: of its header; in a fragmented movie the announced one, else that of the longest track with
    /// its fragments added up.
    MediaTime duration() const { return duration_; }
    /// In file order.
    const std::vector<Track>& tracks() const { return tracks_; }
    /// Borrowed; null when there is none.
    const Track* firstTrackWithMediaType(FourCC mediaType) const;
    std::size_t countTracksWithMediaType(FourCC mediaType) const;

    /// What the file lacks of the last box that it announces, mostly of its media data; 0 for a whole file.
    std::uint64_t missingBytes() const { return missingBytes_; }

    /// Fills `into` with the first bytes of the first sample of `track`, one of this asset's timecode tracks.
    /// \return notFound when the track has no sample or its place is not known, truncated when the sample or the file
    ///   is too short, io when the file could not be read
    Status readFirstSample(const Track& track, std::span<std::byte> into) const;

    /// What has been read from the file so far.
    const ByteSource::Counts& counts() const { return source_->counts(); }

private:
    Asset() = default;

    std::unique_ptr<ByteSource> source_;
    std::uint64_t missingBytes_ = 0;
    MediaTime duration_;
    std::vector<Track> tracks_;
};

} // namespace zanfcp::quicktime
