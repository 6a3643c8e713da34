#include "project/ClipParts.h"

#include "platform/Format.h"
#include "xml/ElementKeys.h"
#include "xml/ElementText.h"

#include <algorithm>

namespace zanfcp::ClipParts {

std::string_view nameOf(const std::shared_ptr<PELFileElement>& file)
{
    return file ? std::string_view{file->name()} : std::string_view{};
}

std::string masterClipID(const std::shared_ptr<PELFileElement>& file)
{
    return std::string(nameOf(file)) + " Clip";
}

std::string itemID(const std::shared_ptr<PELFileElement>& file, const char* kind, NSInteger index)
{
    return std::string(nameOf(file)) + format(" %s%02i", kind, static_cast<int>(index));
}

PELElements links(const std::shared_ptr<PELFileElement>& file, const std::string& prefix)
{
    const PELMovieProperties& properties = movieProperties(file);
    const auto channels = static_cast<NSInteger>(properties.audioChannelCount);
    const auto tracks = static_cast<NSInteger>(properties.audioTrackCount);

    const auto video = PELElement::elementWithKey(PELLinkKey);
    addText(*video, PELLinkClipRefKey, itemID(file, (prefix + "V").c_str(), 1));
    PELElements all{video};
    if (channels <= 0 || tracks <= 0) return all;

    const NSInteger channelsPerTrack =
        std::max<NSInteger>(channels / tracks, 1); // fewer channels than tracks: no group
    const std::string kind = prefix + "A";
    for (NSInteger i = 1; i <= channels; ++i) {
        const auto audio = PELElement::elementWithKey(PELLinkKey);
        addText(*audio, PELLinkClipRefKey, itemID(file, kind.c_str(), i));
        addInteger(*audio, PELGroupIndexKey, (i - 1) / channelsPerTrack + 1);
        all.push_back(audio);
    }
    return all;
}

void addText(PELElement& parent, std::string_view key, std::string_view text)
{
    parent.addChild(PELElement::elementWithKeyStringValue(key, text));
}

void addInteger(PELElement& parent, std::string_view key, NSInteger value)
{
    addText(parent, key, integerText(value));
}

void addBoolean(PELElement& parent, std::string_view key, bool value)
{
    addText(parent, key, booleanText(value));
}

void addOptional(PELElement& parent, const std::shared_ptr<PELElement>& child)
{
    if (child) parent.addChild(child);
}

void addUnsetInAndOut(PELElement& parent)
{
    addInteger(parent, PELInKey, -1);
    addInteger(parent, PELOutKey, -1);
}

void addFileReference(PELElement& parent, const std::shared_ptr<PELFileElement>& file)
{
    parent.addChildWithKeyIdentifier(PELFileKey, file ? std::string_view{file->identifier()} : std::string_view{});
}

void addMulticlipSettings(PELElement& multiclip)
{
    addText(multiclip, PELNameKey, kMulticlipName);
    addBoolean(multiclip, PELCollapsedKey, false);
    addText(multiclip, PELSyncTypeKey, PELSyncTypeTimecode);
}

void addTrackState(PELElement& track)
{
    addBoolean(track, PELEnabledKey, true);
    addBoolean(track, PELLockedKey, false);
}

std::shared_ptr<PELElement> track(const std::shared_ptr<PELElement>& clipItem)
{
    auto element = PELElement::elementWithKey(PELTrackKey);
    element->addChild(clipItem);
    addTrackState(*element);
    return element;
}

} // namespace zanfcp::ClipParts
