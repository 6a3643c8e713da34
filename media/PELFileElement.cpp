#include "media/PELFileElement.h"

#include "media/FileTiming.h"
#include "media/FixedText.h"
#include "platform/Format.h"
#include "platform/Log.h"
#include "xml/CommonElements.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace zanfcp {
namespace {

bool fileExists(const FileURL& url)
{
    std::error_code unreadable;
    return !url.empty() && std::filesystem::exists(url.path(), unreadable);
}

void addPicture(PELElement& media, const PELMovieProperties& properties)
{
    if (!properties.hasVideo) return;
    media.addChild(CommonElements::videoElementWithDuration({.duration = properties.duration,
                                                             .width = properties.width,
                                                             .height = properties.height,
                                                             .anamorphic = properties.anamorphic,
                                                             .pixelAspectRatio = properties.pixelAspectRatio,
                                                             .fieldDominance = properties.videoCodec.fieldDominance,
                                                             .rate = &properties.timecode.rate}));
}

void addSound(PELElement& media, const PELMovieProperties& properties)
{
    const std::uint64_t tracks = properties.audioTrackCount;
    if (!properties.hasAudio || tracks == 0 || properties.audioChannelCount == 0) return;
    const auto channelsPerTrack = static_cast<NSInteger>(properties.audioChannelCount / tracks);
    for (std::uint64_t track = 0; track < tracks; ++track)
        media.addChild(CommonElements::audioElementWithSampleRate(static_cast<NSInteger>(properties.audioSampleRate),
                                                                  static_cast<NSInteger>(properties.audioBitDepth),
                                                                  channelsPerTrack));
}

} // namespace

std::shared_ptr<PELFileElement> PELFileElement::fileElementWithURL(const FileURL& url, const PELDictionary& options)
{
    if (!fileExists(url)) return nullptr;

    PELMovieProperties properties;
    // A file that cannot be read still belongs to the recording, so the status does not matter here.
    (void)PELGetPropertiesOfMovieAtURL(url, properties, options);
    return fileElementWithURLMovieProperties(url, properties);
}

std::shared_ptr<PELFileElement> PELFileElement::fileElementWithURLMovieProperties(const FileURL& url,
                                                                                  const PELMovieProperties& properties)
{
    const std::string name = url.lastPathComponent();
    const auto element = CommonElements::fileElementWithID<PELFileElement>({.identifier = name + " File",
                                                                            .duration = properties.duration,
                                                                            .rate = &properties.timecode.rate,
                                                                            .name = name,
                                                                            .pathURL = url});
    if (!element) return nullptr;
    element->setMovieProperties(properties);
    element->setName(name);

    if (properties.hasTimecode)
        element->addChild(
            CommonElements::timecodeElementWithTimecode(&properties.timecode, "source", fixedText(properties.reel)));
    const auto media = element->addChild(CommonElements::mediaElement());
    addPicture(*media, properties);
    addSound(*media, properties);
    return element;
}

PELFileElements PELFileElement::fileElementsWithURLs(const std::vector<FileURL>& urls, const PELDictionary& options)
{
    PELFileElements files;
    files.reserve(urls.size());
    for (const FileURL& url : urls) {
        if (auto file = fileElementWithURL(url, options))
            files.push_back(std::move(file));
        else
            ZAN_LOG_DEFAULT("PELFileElement: File not found: %s", url.absoluteString().c_str());
    }
    calculateOffsetsForFiles(files);
    calculateMediaDelaysForFiles(files);
    return files;
}

void PELFileElement::calculateOffsetsForFiles(const PELFileElements& files)
{
    const auto common = static_cast<NSInteger>(PELGetFirstCommonTimecodeOfFileElements(files).frames);
    for (const auto& file : files)
        if (file) file->setOffset(wrappingDifference(common, startFrame(file)));
}

void PELFileElement::calculateMediaDelaysForFiles(const PELFileElements& files)
{
    for (const auto& file : files)
        if (file) file->setMediaDelay(0);
}

NSInteger PELFileElement::highestOffsetOfFiles(const PELFileElements& files)
{
    NSInteger highest = -1;
    for (const auto& file : files)
        highest = std::max(highest, file ? file->offset() : 0);
    return highest == -1 ? NSIntegerMax : highest;
}

std::shared_ptr<PELElement> PELFileElement::sampleCharacteristics()
{
    return childAtPath("media/video/samplecharacteristics");
}

std::string PELFileElement::description() const
{
    // Not through %s: a codec that is not set has a type code of four NUL characters.
    return PELElement::description() + " name: " + name_ +
           format(", offset: %ld, mediaDelay: %ld, movieProperties: ", offset_, mediaDelay_) +
           NSStringFromPELMovieProperties(movieProperties_);
}

std::shared_ptr<PELElement> PELFileElement::copy() const
{
    return PELElement::elementWithKeyIdentifier(key(), identifier());
}

std::shared_ptr<PELElement> PELFileElement::makeSameClass(std::string_view key, PELElementValue value,
                                                          std::string_view identifier) const
{
    return makeElement<PELFileElement>(key, std::move(value), identifier);
}

} // namespace zanfcp
