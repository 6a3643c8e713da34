#pragma once

#include "../media/PELFileElement.h"
#include "../xml/PELElement.h"

#include <memory>
#include <optional>
#include <string_view>

/// Builders of the parts of a project, from file elements up to the whole document. Each returns new elements.
/// An element that is passed in is attached as it is, not copied; the logging info hangs under many parents.
/// Texts, lists and records in the aggregates are borrowed for the call.
namespace zanfcp::Convenience {

/// "codec" with the codec's names and numbers, as a sequence states them. A codec without a vendor has an empty
/// "codecvendorcode". Refused: null ("movieProperties").
std::shared_ptr<PELElement> codecElementWithMovieProperties(const PELMovieProperties* movieProperties);

/// "sourcetrack" of a media type ("video" or "audio"); NSNotFound leaves the track index out. Refused: an absent media
/// type ("mediaType").
std::shared_ptr<PELElement> sourceTrackElementWithMediaType(std::optional<std::string_view> mediaType,
                                                            NSInteger trackIndex);

/// One "link" to the picture, present or not, then one for each audio channel, with a group for each audio track.
/// An absent file gives the link to the picture alone, with an empty file name in it.
PELElements linkElementsForFileElement(const std::shared_ptr<PELFileElement>& file);

struct Clip {
    std::string_view identifier = {};
    std::string_view name = {};
    NSInteger duration = 0; ///< frames
    PELRate rate = {};
    std::shared_ptr<PELFileElement> fileElement = nullptr;
    std::shared_ptr<PELElement> loggingInfo = nullptr; ///< may be null
    bool useClipItems = false;                         ///< describe the tracks, not the file alone
};
/// The master "clip" of a file. With clip items it has one video track, whether or not the file has a picture, and one
/// audio track for each channel. Refused: no file ("file").
std::shared_ptr<PELElement> clipElementWithID(const Clip& clip);

struct Clips {
    const PELFileElements& fileElements;
    std::string_view label = {};                       ///< none when empty
    std::shared_ptr<PELElement> loggingInfo = nullptr; ///< may be null
    std::string_view masterComment = {};               ///< none when empty
    bool useClipItems = false;
};
/// The master clip of each file, in order; null in the place of an absent file.
PELElements clipsForFileElements(const Clips& clips);

} // namespace zanfcp::Convenience
