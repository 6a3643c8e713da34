#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Json.h"
#include "cli/OptionReader.h"
#include "cli/ReadFile.h"
#include "cli/Recording.h"
#include "cli/ValidatorMessages.h"
#include "platform/AtomicFile.h"
#include "project/Options.h"
#include "project/ProjectRoot.h"
#include "xml/PELRootElement.h"

#include <memory>
#include <optional>

namespace zanfcp::cli {
namespace {

struct Arguments {
    std::vector<std::string> files;
    std::string output;
    std::string optionsFile;
    std::vector<std::string> settings;
    std::string cutsFile;
    std::string markersFile;
    bool sequence = false;
    bool multiclip = false;
    bool interlaced = false;
    bool validate = false;

    bool toStandardOutput() const { return output.empty() || output == "-"; }
};

/// What to say of an error about the content of `file`.
Error about(const std::string& file, const Error& error)
{
    return Error{.fault = error.fault, .what = file + ": " + lineOf(error)};
}

template <typename T, typename Read> Result<T> readJson(const std::string& file, Read read)
{
    const auto text = readWholeFile(file, kMaxJsonBytes);
    if (!text) return about(file, text.error());
    auto value = read(*text);
    if (!value) return about(file, value.error());
    return value;
}

/// The options of the command line: those of the file, then each --set, then what has a switch of its own.
Result<PELDictionary> optionsOf(const Arguments& arguments)
{
    PELDictionary options;
    if (!arguments.optionsFile.empty()) {
        auto read = readJson<PELDictionary>(arguments.optionsFile, optionsFromJson);
        if (!read) return read;
        options = *std::move(read);
    }
    for (const std::string& setting : arguments.settings)
        if (const Status status = setOption(options, setting); !status) return about("--set", status.error());
    if (!arguments.cutsFile.empty()) {
        auto cuts = readJson<PELArray>(arguments.cutsFile, cutsFromJson);
        if (!cuts) return std::move(cuts).error();
        options.set(PELCuts, *std::move(cuts));
    }
    if (!arguments.markersFile.empty()) {
        auto markers = readJson<PELArray>(arguments.markersFile, markersFromJson);
        if (!markers) return std::move(markers).error();
        options.set(PELMarkers, *std::move(markers));
    }
    if (arguments.sequence) options.set(PELProjectAddSequence, true);
    if (arguments.multiclip) options.set(PELProjectAddMulticlip, true);
    if (arguments.interlaced) options.set("interlaced", true);
    if (!options.contains(PELMeasureSoundFiles)) options.set(PELMeasureSoundFiles, true);
    if (const Status status = checkFileIndices(options, arguments.files.size()); !status) return status.error();
    return options;
}

/// The input that the output would replace, if any.
std::optional<std::string> replacedInput(const Arguments& arguments)
{
    if (arguments.toStandardOutput()) return std::nullopt;
    std::vector<std::string> inputs = arguments.files;
    inputs.insert(inputs.end(), {arguments.optionsFile, arguments.cutsFile, arguments.markersFile});
    for (const std::string& input : inputs)
        if (!input.empty() && (input == arguments.output || isSameFile(input, arguments.output))) return input;
    return std::nullopt;
}

/// Reads all files; false, with a message for each that could not be read.
bool inspectAll(const Arguments& arguments, const PELDictionary& options, Console& console,
                std::vector<InspectedFile>& out)
{
    bool allRead = true;
    for (const std::string& path : arguments.files) {
        console.beginStep(path);
        out.push_back(inspectFile(path, options));
        if (out.back().status == 0) continue;
        console.error(path + ": " + out.back().problem);
        console.stepFailed();
        allRead = false;
    }
    return allRead;
}

std::shared_ptr<PELRootElement> buildDocument(const Recording& recording, Console& console)
{
    const InspectedFile& base = templateFile(recording.inspected, recording.options);
    if (hasSequence(recording.options) && !recording.options.boolFor(PELUseFirstClipSettings) &&
        !base.properties.hasVideo) {
        console.error("the sequence takes its format from " + base.path +
                      ", which has no picture; choose another file with --set sequenceTemplateFileIndex=N");
        return nullptr;
    }
    console.beginStep();
    std::shared_ptr<PELRootElement> root;
    const std::int32_t status = Convenience::rootElementForProject(&root, recording.files, recording.options);
    if (status == 0) return root;
    console.error("the project could not be built (status " + std::to_string(status) + ")");
    console.stepFailed();
    return nullptr;
}

bool isValid(const PELRootElement& root, Console& console)
{
    console.beginStep();
    ValidationError fault;
    if (root.validateAndReturnError(&fault)) return true;
    const bool isChecked = fault.domain == kXmllintErrorDomain && isVerdict(fault.code);
    console.error((isChecked ? "the project does not validate: " : "the project could not be checked: ") +
                  fault.localizedDescription);
    console.errorLines(validatorMessages(fault.userInfo["stdErr"] + fault.userInfo["stdOut"], "project"));
    console.stepFailed();
    return false;
}

ExitCode write(const PELRootElement& root, const Arguments& arguments, Console& console)
{
    if (arguments.toStandardOutput()) {
        const bool written = root.writeXML([&console](std::string_view block) { return console.print(block); });
        return written ? kDone : kFailed; // a failure is reported when the console finishes
    }
    const auto failed = [&console](const Error& error) {
        console.error(error.what);
        return kFailed;
    };
    auto file = AtomicFile::create(arguments.output);
    if (!file) return failed(file.error());
    Status status;
    const bool written = root.writeXML([&](std::string_view block) {
        status = file->write(block);
        return status.has_value();
    });
    if (status && written) status = file->commit();
    if (!status) return failed(status.error());
    console.note("wrote " + arguments.output + "\n");
    return kDone;
}

/// Keeps a document until the process ends, which takes the memory of a large one back far faster than taking the tree
/// apart would.
void keep(std::shared_ptr<PELRootElement> root)
{
    static auto& kept = *new std::vector<std::shared_ptr<PELRootElement>>;
    kept.push_back(std::move(root));
}

ExitCode build(const Arguments& arguments, Console& console)
{
    const auto options = optionsOf(arguments);
    if (!options) {
        console.error(lineOf(options.error()));
        return options.error().fault == Fault::io || options.error().fault == Fault::notFound ? kFailed : kWrongUsage;
    }
    if (const auto input = replacedInput(arguments)) {
        console.error("-o " + arguments.output + " would replace " + *input + ", which is read");
        return kWrongUsage;
    }
    Recording recording{.inspected = {}, .files = {}, .options = *options};
    if (!inspectAll(arguments, *options, console, recording.inspected)) return kFailed;
    if (const Status times = checkTimecodes(*options, sequenceRate(recording.inspected, *options)); !times) {
        console.error(lineOf(times.error()));
        return kWrongUsage;
    }

    std::vector<FileURL> urls;
    for (const InspectedFile& file : recording.inspected)
        urls.push_back(file.url);
    console.beginStep(); // what there was to say about the files has been said
    recording.files = PELFileElement::fileElementsWithURLs(urls, *options);
    if (recording.files.size() != urls.size()) {
        console.error("a file went away while it was read");
        return kFailed;
    }
    console.note(recordingTable(recording));
    for (const std::string& warning : recordingWarnings(recording))
        console.warning(warning);

    const auto root = buildDocument(recording, console);
    if (root == nullptr) return kFailed;
    keep(root);
    if (arguments.validate && !isValid(*root, console)) return kFailed;
    return write(*root, arguments, console);
}

void addOptions(CLI::App& app, Arguments& arguments)
{
    app.add_option("FILE", arguments.files, "media files of one recording (.mov, .mxf), cameras and sound recorders")
        ->required()
        ->type_name("")
        ->check(notEmpty());
    app.add_option("-o,--output", arguments.output, "where the project is written; standard output without it or for -")
        ->type_name("OUT")
        ->check(notEmpty());
    app.add_option("--options", arguments.optionsFile, "a JSON object with options of the project, see below")
        ->type_name("OPTIONS.json")
        ->check(notEmpty());
    app.add_option("--set", arguments.settings, "one option of the project, see below; repeatable")
        ->type_name("KEY=VALUE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->allow_extra_args(false);
    app.add_flag("--sequence", arguments.sequence, "add a sequence, cut from the multiclip");
    app.add_flag("--multiclip", arguments.multiclip, "add a multiclip with the files as its angles");
    app.add_flag("--interlaced", arguments.interlaced, "take the pictures as interlaced");
    app.add_option("--cuts", arguments.cutsFile, "a JSON list with the cuts of the sequence")
        ->type_name("CUTS.json")
        ->check(notEmpty());
    app.add_option("--markers", arguments.markersFile, "a JSON list with the markers of the sequence")
        ->type_name("MARKERS.json")
        ->check(notEmpty());
    app.add_flag("--validate", arguments.validate, "check the project with xmllint before it is written");
}

} // namespace

Command addBuild(CLI::App& parent)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = parent.add_subcommand("build", "Build a project from the media files of one recording");
    addOptions(*app, *arguments);
    return {
        .app = app,
        .details = "Lines the files up by their timecode and writes a project with a bin of clips; with --multiclip "
                   "also a multiclip, with --sequence also a sequence that is cut from it. The files, their common "
                   "span and what will not import well are shown first. The project is written whole or not at all. "
                   "A --set counts more than --options, a switch more than both.",
        .examples = {{"zanfcp build CAM_A.mxf CAM_B.mov SOUND.mov --sequence -o show.xml", "a project with a sequence"},
                     {"zanfcp build *.mov --sequence --cuts cuts.json --set projectName=\"Show 12\" -o show.xml",
                      "with a cut list and a name"},
                     {"zanfcp build *.mov --multiclip --validate >show.xml",
                      "a multiclip, checked, to standard output"}},
        .fileTypes = {"mov", "mxf"},
        .run = [arguments](Console& console) { return build(*arguments, console); },
    };
}

} // namespace zanfcp::cli
