#include "cli/OptionTable.h"

#include "media/PELMovieProperties.h"
#include "project/Options.h"

#include <algorithm>
#include <array>

namespace zanfcp::cli {
namespace {

constexpr auto kCutTypes = std::to_array<std::string_view>({PELCutTypeCut, PELCutTypeDissolve});
constexpr auto kFieldDominances = std::to_array<std::string_view>({"none", "upper", "lower"});
constexpr auto kPixelAspectRatios = std::to_array<std::string_view>(
    {"square", "NTSC-601", "PAL-601", "HD-(960x720)", "HD-(1280x1080)", "HD-(1440x1080)"});
constexpr auto kTimebases = std::to_array<std::string_view>({"24", "25", "30", "50", "60"});

constexpr NSInteger kMaxPixels = 100'000;

// The format names these ten import options and no others.
constexpr auto kImportOptions = std::to_array<OptionSpec>({
    {.key = "createnewproject", .type = OptionType::importFlag, .help = "make a new project for what is imported"},
    {.key = "targetprojectname", .type = OptionType::text, .help = "name of the open project to import into"},
    {.key = "defsequencepresetname", .type = OptionType::text, .help = "name of the preset for sequence settings"},
    {.key = "displaynonfatalerrors", .type = OptionType::importFlag, .help = "show errors that do not stop the import"},
    {.key = "filterreconnectmediafiles",
     .type = OptionType::importFlag,
     .help = "connect the clips with their media files"},
    {.key = "filterincludemarkers", .type = OptionType::importFlag, .help = "import markers"},
    {.key = "filterincludeeffects", .type = OptionType::importFlag, .help = "import effects"},
    {.key = "filterincludesequencesettings", .type = OptionType::importFlag, .help = "import sequence settings"},
    {.key = "deletethisxmlfileatimport",
     .type = OptionType::importFlag,
     .help = "delete the document once it is imported"},
    {.key = "createfcpprojectatxmlfilepath",
     .type = OptionType::importFlag,
     .help = "put the new project beside the document"},
});
OptionTable importOptions()
{
    return kImportOptions;
}

constexpr auto kSequenceOverrides = std::to_array<OptionSpec>({
    {.key = PELAnamorphicOverride, .type = OptionType::boolean, .help = "16:9 picture on a 4:3 raster"},
    {.key = PELEditingTimebaseOverride,
     .type = OptionType::integer,
     .help = "whole frames per second of the sequence",
     .choices = kTimebases,
     .minimum = 24,
     .maximum = 60},
    {.key = PELFieldDominanceOverride,
     .type = OptionType::choice,
     .help = "which field of an interlaced picture comes first",
     .choices = kFieldDominances},
    {.key = PELFrameSizeWidthOverride,
     .type = OptionType::integer,
     .help = "picture width in pixels, together with the height",
     .minimum = 1,
     .maximum = kMaxPixels},
    {.key = PELFrameSizeHeightOverride,
     .type = OptionType::integer,
     .help = "picture height in pixels, together with the width",
     .minimum = 1,
     .maximum = kMaxPixels},
    {.key = PELPixelAspectRatioOverride,
     .type = OptionType::choice,
     .help = "shape of a pixel",
     .choices = kPixelAspectRatios},
});
OptionTable sequenceOverrides()
{
    return kSequenceOverrides;
}

constexpr auto kCut = std::to_array<OptionSpec>({
    {.key = PELCutType,
     .type = OptionType::choice,
     .help = "a cut shows one file; a dissolve lies between the two cuts it joins",
     .choices = kCutTypes,
     .required = true},
    {.key = PELCutActiveAngleIndex, .type = OptionType::fileIndex, .help = "the file that a cut shows, counted from 0"},
    {.key = PELCutStartTimecode,
     .type = OptionType::timecode,
     .help = "first frame, counted from the start of the sequence",
     .required = true},
    {.key = PELCutEndTimecode, .type = OptionType::timecode, .help = "the frame after the last one", .required = true},
});

constexpr auto kMarker = std::to_array<OptionSpec>({
    {.key = PELMarkerName, .type = OptionType::text, .help = "name", .required = true, .mayBeEmpty = false},
    {.key = PELMarkerComment, .type = OptionType::text, .help = "comment"},
    {.key = PELMarkerColor, .type = OptionType::color, .help = "colour"},
    {.key = PELMarkerStartFrame,
     .type = OptionType::timecode,
     .help = "its frame, counted from the start of the sequence",
     .required = true},
    {.key = PELMarkerDuration,
     .type = OptionType::integer,
     .help = "length in frames; none for 0 and less",
     .minimum = std::numeric_limits<std::int32_t>::min()},
});

constexpr auto kProject = std::to_array<OptionSpec>({
    {.key = PELProjectAddSequence,
     .type = OptionType::boolean,
     .help = "build a sequence, and the multiclip it is cut from (--sequence)"},
    {.key = PELProjectAddMulticlip,
     .type = OptionType::boolean,
     .help = "build the multiclip that groups the files as angles (--multiclip)"},
    {.key = PELProjectUseCliptitems,
     .type = OptionType::boolean,
     .help = "describe the tracks of every clip; on with a multiclip or a sequence"},
    {.key = "interlaced", .type = OptionType::boolean, .help = "the pictures are interlaced (--interlaced)"},
    {.key = PELMeasureSoundFiles,
     .type = OptionType::boolean,
     .help = "measure files without picture, so that sound recorders have a length; on unless set to false"},
    {.key = PELAddProject,
     .type = OptionType::boolean,
     .help = "put everything into a project; on unless set to false"},
    {.key = PELProjectName, .type = OptionType::text, .help = "name of the project (\"Project\")", .mayBeEmpty = false},
    {.key = PELBinName, .type = OptionType::text, .help = "name of the bin (\"Bin\")", .mayBeEmpty = false},
    {.key = PELBinLabel, .type = OptionType::text, .help = "label of the bin; `zanfcp labels` lists the names"},
    {.key = PELClipLabel, .type = OptionType::text, .help = "label of the clips"},
    {.key = PELMulticlipMainFileIndex,
     .type = OptionType::fileIndex,
     .help = "main angle, shown by a sequence without cuts (0: the first file)"},
    {.key = PELSequenceTemplateFileIndex,
     .type = OptionType::fileIndex,
     .help = "file that gives the sequence its format and rate (0)"},
    {.key = PELSoundSourceIndex,
     .type = OptionType::fileIndex,
     .help = "file that the sequence sounds like (the one with most audio tracks)"},
    {.key = PELSequenceName, .type = OptionType::text, .help = "name of the sequence (\"Sequence\")"},
    {.key = PELSequenceLabel, .type = OptionType::text, .help = "label of the sequence"},
    {.key = PELSequenceStartTimecode, .type = OptionType::timecode, .help = "start timecode of the sequence"},
    {.key = PELSequenceDuration,
     .type = OptionType::integer,
     .help = "length of the sequence in frames (the common span of the files)",
     .minimum = 1},
    {.key = PELSequenceCorrectFileOffsets,
     .type = OptionType::boolean,
     .help = "with a start timecode: place the files by their own timecode"},
    {.key = PELProjectScene, .type = OptionType::text, .help = "scene, for the logging information"},
    {.key = PELProjectTake, .type = OptionType::text, .help = "take, for the logging information"},
    {.key = PELMasterComment1, .type = OptionType::text, .help = "text of the first master comment"},
    {.key = PELMasterComment1AddToSequence, .type = OptionType::boolean, .help = "put the comment on the sequence"},
    {.key = PELMasterComment1AddToClipsAndMulticlips,
     .type = OptionType::boolean,
     .help = "put the comment on the clips"},
    {.key = PELGoodShot, .type = OptionType::boolean, .help = "the shot is good"},
    {.key = PELGoodShotAddToSequence, .type = OptionType::boolean, .help = "mark a good shot on the sequence"},
    {.key = PELGoodShotAddToClipsAndMulticlips,
     .type = OptionType::boolean,
     .help = "mark a good shot on the clips and the multiclip"},
    {.key = PELUseFirstClipSettings,
     .type = OptionType::boolean,
     .help = "leave the sequence settings to the first clip; the overrides do not count then"},
    {.key = PELSequenceSettingsOverrides,
     .type = OptionType::dictionary,
     .help = "settings of the sequence that differ from the template file's",
     .table = sequenceOverrides},
    {.key = PELImportOptions,
     .type = OptionType::dictionary,
     .help = "what the editing application does on import (createnewproject)",
     .table = importOptions},
    {.key = PELCuts,
     .type = OptionType::list,
     .help = "the cuts of the sequence in order (--cuts); one over its whole length when there are none",
     .table = cutKeys},
    {.key = PELMarkers, .type = OptionType::list, .help = "markers on the sequence (--markers)", .table = markerKeys},
});

std::string joined(std::span<const std::string_view> words)
{
    std::string text;
    for (const std::string_view word : words)
        text += (text.empty() ? "" : ", ") + std::string(word);
    return text;
}

void appendSettable(OptionTable table, const std::string& prefix, std::vector<SettableOption>& out)
{
    for (const OptionSpec& spec : table) {
        if (spec.type == OptionType::dictionary)
            appendSettable(spec.table(), std::string(spec.key) + ".", out);
        else if (spec.type != OptionType::list)
            out.push_back({.path = prefix + std::string(spec.key), .spec = &spec});
    }
}

} // namespace

OptionTable projectOptions()
{
    return kProject;
}

OptionTable cutKeys()
{
    return kCut;
}

OptionTable markerKeys()
{
    return kMarker;
}

const OptionSpec* findOption(OptionTable table, std::string_view key)
{
    const auto at = std::ranges::find(table, key, &OptionSpec::key);
    return at == table.end() ? nullptr : &*at;
}

std::string valueText(const OptionSpec& spec)
{
    switch (spec.type) {
    case OptionType::boolean:
    case OptionType::importFlag: return "true or false";
    case OptionType::fileIndex: return "the index of a file, counted from 0";
    case OptionType::text: return spec.mayBeEmpty ? "a text" : "a text that is not empty";
    case OptionType::timecode: return "a timecode such as \"01:00:00:00\", or a number of frames";
    case OptionType::choice: return "one of " + joined(spec.choices);
    case OptionType::color: return "a colour, \"#rrggbb\", \"#rrggbbaa\" or four fractions from 0 to 1";
    case OptionType::dictionary: return "an object";
    case OptionType::list: return "a list of objects";
    case OptionType::integer: break;
    }
    if (!spec.choices.empty()) return "one of " + joined(spec.choices);
    if (spec.minimum == std::numeric_limits<std::int32_t>::min()) return "a whole number";
    if (spec.maximum == std::numeric_limits<std::int32_t>::max())
        return "a whole number from " + std::to_string(spec.minimum);
    return "a whole number from " + std::to_string(spec.minimum) + " to " + std::to_string(spec.maximum);
}

std::vector<SettableOption> settableOptions()
{
    std::vector<SettableOption> out;
    appendSettable(projectOptions(), "", out);
    return out;
}

} // namespace zanfcp::cli
