#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Inspection.h"
#include "cli/Text.h"
#include "cli/Timecodes.h"

#include <memory>

namespace zanfcp::cli {
namespace {

struct Arguments {
    std::vector<std::string> files;
    bool json = false;
    bool interlaced = false;
};

std::string pixelText(const PELMovieProperties& properties)
{
    if (!properties.hasVideo) return {};
    return NSStringFromPELPixelAspectRatio(properties.pixelAspectRatio) + (properties.anamorphic ? " 16:9" : "");
}

std::string soundText(const PELMovieProperties& properties)
{
    if (!properties.hasAudio) return {};
    std::string text =
        std::to_string(properties.audioTrackCount) + " x " + std::to_string(properties.audioSampleRate) + " Hz";
    if (properties.audioBitDepth != 0) text += " " + std::to_string(properties.audioBitDepth) + " bit";
    return text;
}

ExitCode inspect(const Arguments& arguments, Console& console)
{
    PELDictionary options{{PELMeasureSoundFiles, true}, {"interlaced", arguments.interlaced}};
    Table table{{"FILE", "SIZE", "PIXELS", "FIELDS", "RATE", "START", "LENGTH", "FRAMES", "CODEC", "SOUND", "REEL"}};
    bool anyRead = false;
    bool allRead = true;
    for (const std::string& path : arguments.files) {
        console.beginStep(path);
        const InspectedFile file = inspectFile(path, options);
        if (file.status != 0) {
            allRead = false;
            console.error(path + ": " + file.problem);
            console.stepFailed();
        }
        if (arguments.json) {
            console.print(inspectionJson(file) + "\n");
        } else if (file.status == 0) {
            for (const std::string& warning : fileWarnings(file))
                console.warning(warning);
            const PELMovieProperties& properties = file.properties;
            anyRead = true;
            table.addRow({path, sizeText(properties), pixelText(properties),
                          properties.hasVideo ? NSStringFromPELFieldDominance(properties.videoCodec.fieldDominance)
                                              : std::string(),
                          rateText(properties.timecode.rate), startText(properties), lengthText(properties),
                          std::to_string(properties.duration), file.codec, soundText(properties),
                          fieldText(properties.reel)});
        }
    }
    if (anyRead) console.print(table.text());
    return allRead ? kDone : kFailed;
}

} // namespace

Command addInspect(CLI::App& parent)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = parent.add_subcommand("inspect", "Show what media files say of themselves");
    app->add_option("FILE", arguments->files, "media files (.mov, .mxf)")->required()->type_name("")->check(notEmpty());
    app->add_flag("--json", arguments->json, "one JSON object a line for each file, for other programs");
    app->add_flag("--interlaced", arguments->interlaced, "take the pictures as interlaced");
    return {
        .app = app,
        .details = "Reads the headers of each file: picture, codec, sound, start timecode, length and reel. A file "
                   "without picture is measured by its sound. With --json, the keys are the names of the fields; "
                   "\"status\" is 0 for a file that could be read. \"zanfcp mxf info\" tells more of an MXF file; one "
                   "that is still being written, or cut short, is waited for, some ten seconds.",
        .examples = {{"zanfcp inspect CAM_A.mxf CAM_B.mov", "a table of two files"},
                     {"zanfcp inspect --json *.mov | jq .timecode.string", "the start timecodes alone"}},
        .fileTypes = {"mov", "mxf"},
        .run = [arguments](Console& console) { return inspect(*arguments, console); },
    };
}

} // namespace zanfcp::cli
