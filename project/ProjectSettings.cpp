#include "project/ProjectSettings.h"

#include "project/Options.h"
#include "xml/ElementKeys.h"

namespace zanfcp {
namespace {

constexpr char kUseFirstClipSettings[] = "useFirstClipSettings"; ///< as a preset name

std::string textFor(const PELDictionary& options, std::string_view key, const char* fallback = "")
{
    return options.stringFor(key).value_or(fallback);
}

std::optional<NSInteger> optionalIntegerFor(const PELDictionary& options, std::string_view key)
{
    return options.contains(key) ? std::optional{options.integerFor(key)} : std::nullopt;
}

PELArray listFor(const PELDictionary& options, std::string_view key)
{
    const PELArray* list = options.arrayFor(key);
    return list != nullptr ? *list : PELArray{};
}

/// A sequence needs the multiclip, and the multiclip needs clip items.
void readExtent(ProjectSettings& settings, const PELDictionary& options)
{
    settings.addProject = !options.contains(PELAddProject) || options.boolFor(PELAddProject);
    settings.addSequence = options.boolFor(PELProjectAddSequence);
    settings.addMulticlip = settings.addSequence || options.boolFor(PELProjectAddMulticlip);
    settings.useClipItems = settings.addMulticlip || options.boolFor(PELProjectUseCliptitems);
}

void readSequenceFormat(ProjectSettings& settings, const PELDictionary& options)
{
    settings.useFirstClipSettings = options.boolFor(PELUseFirstClipSettings);
    if (settings.useFirstClipSettings)
        settings.importOptions.set(PELDefSequencePresetNameKey, kUseFirstClipSettings);
    else if (const PELDictionary* overrides = options.dictionaryFor(PELSequenceSettingsOverrides))
        settings.sequenceOverrides = *overrides;
}

void readLogging(ProjectSettings& settings, const PELDictionary& options)
{
    settings.scene = textFor(options, PELProjectScene);
    settings.take = textFor(options, PELProjectTake);
    const std::string comment = textFor(options, PELMasterComment1);
    if (options.boolFor(PELMasterComment1AddToSequence)) settings.sequenceComment = comment;
    if (options.boolFor(PELMasterComment1AddToClipsAndMulticlips)) settings.clipComment = comment;
    const bool isGood = options.boolFor(PELGoodShot);
    settings.sequenceIsGood = isGood && options.boolFor(PELGoodShotAddToSequence);
    settings.clipsAreGood = isGood && options.boolFor(PELGoodShotAddToClipsAndMulticlips);
}

} // namespace

ProjectSettings readProjectSettings(const PELDictionary& options)
{
    ProjectSettings settings;
    readExtent(settings, options);

    if (const PELDictionary* importOptions = options.dictionaryFor(PELImportOptions))
        settings.importOptions = *importOptions;
    else
        settings.importOptions.set(PELCreateNewProjectKey, "TRUE");

    settings.projectName = textFor(options, PELProjectName, "Project");
    settings.binName = textFor(options, PELBinName, "Bin");
    settings.binLabel = textFor(options, PELBinLabel);
    settings.clipLabel = textFor(options, PELClipLabel);
    settings.sequenceName = textFor(options, PELSequenceName, "Sequence");
    settings.sequenceLabel = textFor(options, PELSequenceLabel);
    settings.sequenceStartTimecode = options.stringFor(PELSequenceStartTimecode);
    settings.sequenceDuration = optionalIntegerFor(options, PELSequenceDuration);
    settings.sequenceCorrectFileOffsets = options.boolFor(PELSequenceCorrectFileOffsets);

    settings.sequenceTemplateFileIndex = options.integerFor(PELSequenceTemplateFileIndex);
    settings.multiclipMainFileIndex = options.integerFor(PELMulticlipMainFileIndex);
    settings.soundSourceIndex = optionalIntegerFor(options, PELSoundSourceIndex);

    readLogging(settings, options);
    readSequenceFormat(settings, options);
    settings.cuts = listFor(options, PELCuts);
    settings.markers = listFor(options, PELMarkers);
    return settings;
}

} // namespace zanfcp
