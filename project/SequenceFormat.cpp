#include "project/SequenceFormat.h"

#include "media/FileTiming.h"
#include "project/Options.h"
#include "xml/ElementKeys.h"
#include "xml/ElementText.h"

#include <string>

namespace zanfcp {
namespace {

void setCharacteristic(SequenceFormat& format, std::string_view path, std::string text)
{
    const auto child = format.sampleCharacteristics ? format.sampleCharacteristics->childAtPath(path) : nullptr;
    if (child) child->setValue(std::move(text));
}

} // namespace

SequenceFormat sequenceFormatOfFile(const std::shared_ptr<PELFileElement>& file)
{
    SequenceFormat format;
    format.properties = movieProperties(file);
    if (const auto characteristics = file ? file->sampleCharacteristics() : nullptr)
        format.sampleCharacteristics = characteristics->copy();
    return format;
}

void applyOverrides(SequenceFormat& format, const PELDictionary& overrides)
{
    PELMovieProperties& properties = format.properties;
    if (overrides.contains(PELAnamorphicOverride)) {
        properties.anamorphic = overrides.boolFor(PELAnamorphicOverride);
        setCharacteristic(format, PELAnamorphicKey, booleanText(properties.anamorphic));
    }
    if (const PELValue* timebase = overrides.find(PELEditingTimebaseOverride)) {
        properties.timecode.rate.timebase = timebase->integerValue();
        setCharacteristic(format, "rate/timebase", timebase->stringValue());
    }
    if (const auto dominance = overrides.stringFor(PELFieldDominanceOverride)) {
        properties.videoCodec.fieldDominance = PELFieldDominanceFromString(*dominance);
        setCharacteristic(format, PELFieldDominanceKey, *dominance);
    }
    const PELValue* width = overrides.find(PELFrameSizeWidthOverride);
    const PELValue* height = overrides.find(PELFrameSizeHeightOverride);
    if (width != nullptr && height != nullptr) {
        properties.width = width->integerValue();
        properties.height = height->integerValue();
        setCharacteristic(format, PELWidthKey, width->stringValue());
        setCharacteristic(format, PELHeightKey, height->stringValue());
    }
    if (const auto ratio = overrides.stringFor(PELPixelAspectRatioOverride)) {
        properties.pixelAspectRatio = PELPixelAspectRatioFromString(*ratio);
        setCharacteristic(format, PELPixelAspectRatioKey, *ratio);
    }
}

} // namespace zanfcp
