#pragma once

#include "cli/Commands.h"
#include "cli/StreamExtractor.h"

#include <optional>
#include <string>
#include <vector>

/// What "mxf extract" and "mxf stream" have in common.
namespace zanfcp::cli {

class ClipTime;

struct ExtractionArguments {
    int stream = -1;
    std::string output;
    std::string format; ///< "raw", "wav"; empty: as the name of the output says
};

/// What --stream and --timeout may be.
CLI::Validator streamNumber();
CLI::Validator timeoutSeconds();

/// Adds --stream, -o and --format, none of them required.
void addExtractionOptions(CLI::App& app, ExtractionArguments& arguments);

/// How a stream is written; nothing, with a message, when it cannot be.
/// \param formats  of all streams
/// \param input    what is read
std::optional<ExtractionPlan> planExtraction(const ExtractionArguments& arguments,
                                             const std::vector<mxf_stream_format>& formats, const std::string& input,
                                             Console& console);

struct ExtractionEnd {
    const ExtractionArguments& arguments;
    const std::string& input; ///< what was read
    const ClipTime* time;     ///< puts places into words
    bool hasRange;            ///< whether it began inside the clip
};

/// Makes the output appear and says what was written, and what was damaged.
ExitCode finishExtraction(StreamExtractor& extractor, const ExtractionEnd& end, Console& console);

} // namespace zanfcp::cli
