#pragma once

#include "../xml/PELElement.h"
#include "PELMovieProperties.h"

#include <vector>

namespace zanfcp {

class PELFileElement;
/// A list of file elements; an entry may be null and then counts as an all-zero properties record.
using PELFileElements = std::vector<std::shared_ptr<PELFileElement>>;

/// The "file" element of one media file, with what was read from the file and where the file lies in time.
/// Not locked, like every element: the references that it hands out last until it changes.
class PELFileElement : public PELElement, public PELElementFactories<PELFileElement> {
public:
    using PELElement::PELElement;
    using PELElementFactories<PELFileElement>::elementWithKey;
    using PELElementFactories<PELFileElement>::elementWithKeyIdentifier;
    using PELElementFactories<PELFileElement>::elementWithKeyStringValue;
    using PELElementFactories<PELFileElement>::elementWithKeyChildren;

    /// Null when no file exists at the URL's path. A file that cannot be read still gives an element, with all-zero
    /// properties. `options` as for PELGetPropertiesOfMovieAtURL.
    static std::shared_ptr<PELFileElement> fileElementWithURL(const FileURL& url, const PELDictionary& options);
    /// The element of a file of which is known already what it holds; nothing is read. Null, with an error line, for an
    /// empty URL and an undefined duration.
    static std::shared_ptr<PELFileElement> fileElementWithURLMovieProperties(const FileURL& url,
                                                                             const PELMovieProperties& properties);
    /// In the order of the URLs, missing files left out with a log line, offsets and media delays set.
    static PELFileElements fileElementsWithURLs(const std::vector<FileURL>& urls, const PELDictionary& options);

    /// Sets each file's offset: frames from its own start to the latest start of all.
    static void calculateOffsetsForFiles(const PELFileElements& files);
    /// Sets each file's media delay to 0.
    static void calculateMediaDelaysForFiles(const PELFileElements& files);
    /// The largest offset, or NSIntegerMax when no file has one above -1.
    static NSInteger highestOffsetOfFiles(const PELFileElements& files);

    const PELMovieProperties& movieProperties() const { return movieProperties_; }
    void setMovieProperties(const PELMovieProperties& properties) { movieProperties_ = properties; }
    /// The last component of the file's path.
    const std::string& name() const { return name_; }
    void setName(std::string_view name) { name_ = name; }
    /// Frames from this file's start timecode to the first timecode that all files share.
    NSInteger offset() const { return offset_; }
    void setOffset(NSInteger frames) { offset_ = frames; }
    /// Frames; always 0 in this version.
    NSInteger mediaDelay() const { return mediaDelay_; }
    void setMediaDelay(NSInteger frames) { mediaDelay_ = frames; }

    /// The element at "media/video/samplecharacteristics", or null.
    std::shared_ptr<PELElement> sampleCharacteristics();

    std::string description() const override;
    /// A plain PELElement with this key and identifier alone: a reference, not a second file.
    std::shared_ptr<PELElement> copy() const override;

    const char* className() const override { return "PELFileElement"; }

protected:
    std::shared_ptr<PELElement> makeSameClass(std::string_view key, PELElementValue value,
                                              std::string_view identifier) const override;

private:
    PELMovieProperties movieProperties_;
    std::string name_;
    NSInteger offset_ = 0;
    NSInteger mediaDelay_ = 0;
};

/// The latest start timecode among the files; ties keep the earlier file. All zero for an empty list.
PELTimecode PELGetFirstCommonTimecodeOfFileElements(const PELFileElements& files);
/// The earliest last frame among the files: start + duration - 1.
NSInteger PELGetLastCommonFrameOfFileElements(const PELFileElements& files);
/// The earliest start timecode among the files; ties keep the earlier file.
PELTimecode PELGetFirstTimecodeOfFiles(const PELFileElements& files);
/// The latest last frame among the files.
NSInteger PELGetLastTimecodeAsFramesOfFiles(const PELFileElements& files);
/// Frames from the earliest start to the latest end.
NSInteger PELGetMulticlipDurationOfFileElements(const PELFileElements& files);
/// Frames in which all files have material; zero or negative when they do not overlap.
NSInteger PELGetSequenceDurationForFileElements(const PELFileElements& files);
/// -1 for an empty list; ties keep the lowest index.
NSInteger PELGetIndexOfFileWithMostSoundTracks(const PELFileElements& files);

} // namespace zanfcp
