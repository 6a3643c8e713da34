#pragma once

#include "media/PELFileElement.h"

#include <string_view>

namespace zanfcp::test {

/// Copies a text into a field of fixed size, zero-terminated.
template <std::size_t N> void setField(std::array<char, N>& field, std::string_view text)
{
    field = {};
    text.substr(0, N - 1).copy(field.data(), N - 1);
}

/// The properties of a file without picture and sound.
PELMovieProperties emptyMovie(NSInteger startFrames, NSInteger duration);
/// 1920x1080 H.264, progressive, 25 frames a second, with a timecode track.
/// \param audioTracks  mono, 24 bits, 48 kHz; 0 for none
PELMovieProperties cameraMovie(std::string_view startTimecode, NSInteger duration, std::uint64_t audioTracks);
/// The same without a picture.
PELMovieProperties soundMovie(std::string_view startTimecode, NSInteger duration, std::uint64_t audioTracks);

/// The element of a file in /Volumes/Show 12 that was never read from a disk.
std::shared_ptr<PELFileElement> makeFile(std::string_view name, const PELMovieProperties& properties);

/// A camera (01:00:00:00, 1000 frames, 2 tracks), a second one that starts 200 frames later (900 frames, no sound), a
/// third one 100 frames later (1000 frames, interlaced, anamorphic) and a sound recorder (50 frames later, 1200
/// frames, 4 tracks), offsets set. They share the frames from 01:00:08:00 on, 800 of them.
PELFileElements showRecording();

} // namespace zanfcp::test
