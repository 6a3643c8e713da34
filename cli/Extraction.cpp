#include "cli/Extraction.h"

#include "cli/ClipTime.h"
#include "cli/Console.h"
#include "cli/MxfStreams.h"
#include "cli/Progress.h"
#include "cli/ReadFile.h"
#include "cli/Text.h"

#include <algorithm>
#include <cctype>
#include <unistd.h>

namespace zanfcp::cli {
namespace {

bool namesWav(std::string path)
{
    std::ranges::transform(path, path.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return path.ends_with(".wav");
}

std::string counted(std::int64_t count, const std::string& thing)
{
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

void warnOfDamage(const StreamExtractor::Damage& damage, const ExtractionEnd& end, Console& console)
{
    if (damage.firstPosition < 0) return;
    std::string what;
    if (damage.damaged != 0)
        what = counted(static_cast<std::int64_t>(damage.damaged), "sample") +
               (damage.damaged == 1 ? " is damaged" : " are damaged");
    if (damage.lost != 0) what += (what.empty() ? "" : " and ") + counted(damage.lost, "edit unit") + " missing";
    console.warning(end.input + ": stream " + std::to_string(end.arguments.stream) + ": " + what + ", the first at " +
                    end.time->labelAt(damage.firstUnit) + ", byte " + std::to_string(damage.firstPosition));
}

} // namespace

CLI::Validator streamNumber()
{
    constexpr int kMost = 9999;
    return CLI::Range(0, kMost).description("");
}

CLI::Validator timeoutSeconds()
{
    constexpr int kDay = 86'400;
    return CLI::Range(0, kDay).description("");
}

void addExtractionOptions(CLI::App& app, ExtractionArguments& arguments)
{
    app.add_option("--stream", arguments.stream, "the stream, as zanfcp mxf info numbers them")
        ->type_name("N")
        ->check(streamNumber());
    app.add_option("-o,--output", arguments.output, "the file to write, - for standard output")
        ->type_name("OUT")
        ->check(notEmpty());
    app.add_option("--format", arguments.format, "raw or wav (as the name of OUT says)")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"raw", "wav"}).description(""));
}

std::optional<ExtractionPlan> planExtraction(const ExtractionArguments& arguments,
                                             const std::vector<mxf_stream_format>& formats, const std::string& input,
                                             Console& console)
{
    const auto stream = static_cast<std::size_t>(arguments.stream);
    if (stream >= formats.size()) {
        console.error(input + ": there is no stream " + std::to_string(stream) + "; it has:");
        console.errorLines(streamTable(formats));
        return std::nullopt;
    }
    const std::string name = input + ": stream " + std::to_string(stream) + " ";
    if (const std::string why = hindrance(formats[stream]); !why.empty()) {
        console.error(name + why);
        return std::nullopt;
    }
    if (arguments.output != "-" && isSameFile(arguments.output, input == "-" ? "/dev/stdin" : input)) {
        console.error(arguments.output + ": is the file that is read");
        return std::nullopt;
    }
    if (arguments.output == "-" && ::isatty(STDOUT_FILENO) == 1) {
        console.error("standard output is a terminal: essence would only upset it; name a file, or pipe it on");
        return std::nullopt;
    }
    ExtractionPlan plan{.startOffset = formats[stream].start_offset};
    if (arguments.format == "wav" || (arguments.format.empty() && namesWav(arguments.output))) {
        const auto wav = wavFormatOf(formats[stream]);
        if (!wav) {
            console.error(name + wav.error().what);
            return std::nullopt;
        }
        plan.wav = *wav;
        plan.swapsBytes = isBigEndianSound(formats[stream]);
    }
    return plan;
}

ExitCode finishExtraction(StreamExtractor& extractor, const ExtractionEnd& end, Console& console)
{
    const std::string& output = end.arguments.output;
    if (extractor.status() && extractor.editUnits() == 0) {
        console.error(end.input + ": no essence of stream " + std::to_string(end.arguments.stream) + " was found");
        console.stepFailed();
        return kFailed;
    }
    if (const Status status = extractor.finish(); !status) {
        console.error(status.error().what);
        return kFailed;
    }
    warnOfDamage(extractor.damage(), end, console);
    if (end.hasRange && extractor.leading() > 0)
        console.note("with " + counted(extractor.leading(), "picture") +
                     " in front of --from, which decoding starts from; --exact leaves them out\n");
    console.note("wrote " + (output == "-" ? std::string("to standard output") : printable(output)) + ": " +
                 counted(extractor.editUnits(), "edit unit") + ", " + std::to_string(extractor.bytes()) + " bytes\n");
    return kDone;
}

} // namespace zanfcp::cli
