#pragma once

#include "../platform/PELValue.h"

#include <optional>
#include <string>

namespace zanfcp {

/// The options of a project, read once, with their defaults and with what one forces on another. Not installed.
struct ProjectSettings {
    bool addProject = true;
    bool addSequence = false;
    bool addMulticlip = false; ///< always with a sequence
    bool useClipItems = false; ///< always with a multiclip
    PELDictionary importOptions;

    std::string projectName;
    std::string binName;
    std::string binLabel;
    std::string clipLabel;
    std::string sequenceName;
    std::string sequenceLabel;
    std::optional<std::string> sequenceStartTimecode;
    std::optional<NSInteger> sequenceDuration; ///< frames
    bool sequenceCorrectFileOffsets = false;

    NSInteger sequenceTemplateFileIndex = 0;
    NSInteger multiclipMainFileIndex = 0;
    std::optional<NSInteger> soundSourceIndex;

    std::string scene;
    std::string take;
    std::string sequenceComment; ///< the master comment where it goes to the sequence
    std::string clipComment;     ///< the master comment where it goes to the clips
    bool sequenceIsGood = false;
    bool clipsAreGood = false;

    bool useFirstClipSettings = false;
    PELDictionary sequenceOverrides; ///< empty when the first clip decides

    PELArray cuts;
    PELArray markers;
};

ProjectSettings readProjectSettings(const PELDictionary& options);

} // namespace zanfcp
