#include "cli/Console.h"
#include "cli/Extraction.h"
#include "cli/MxfCommands.h"
#include "cli/MxfFile.h"
#include "cli/MxfStreams.h"
#include "mxf/essence/EssenceRecords.h"
#include "mxf/mxfDemux.h"
#include "platform/Format.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>

namespace zanfcp::cli {
namespace {

struct Arguments {
    std::string path;
    int stream = -1;
    bool json = false;
    std::uint32_t timeout = 0;
};

/// Prints a line for each sample.
class SampleLister final : public SMediaStream {
public:
    /// \param fileSize  bytes; the columns are as wide as it takes
    SampleLister(Console& console, bool json, std::int64_t fileSize)
        : console_{console}, json_{json},
          offsetColumns_{std::max(static_cast<int>(std::to_string(std::max<std::int64_t>(fileSize, 0)).size()), 6)}
    {}

    void printHeading()
    {
        if (!json_)
            console_.print(format("STREAM  EDIT UNIT  LENGTH  %*s        SIZE  KEY        PTS        DTS  NOTES\n",
                                  offsetColumns_, "OFFSET"));
    }

    int TakeSample(const mxf_sample& sample) override
    {
        std::int64_t& expected = expected_[sample.stream];
        const bool isBehindGap = count_[sample.stream] != 0 && sample.edit_unit != expected;
        expected = sample.edit_unit + sample.duration;
        ++count_[sample.stream];
        const bool isKey = (sample.flags & mxf_sample_key) != 0;
        const bool isDamaged = (sample.flags & mxf_sample_damaged) != 0;
        const auto number = [](std::int64_t value) { return static_cast<long long>(value); };
        if (json_)
            isWritten_ = console_.print(
                format("{\"stream\":%u,\"editUnit\":%lld,\"duration\":%lld,\"offset\":%lld,\"size\":%u,\"key\":%s,"
                       "\"pts\":%lld,\"dts\":%lld,\"damaged\":%s,\"gap\":%s}\n",
                       sample.stream, number(sample.edit_unit), number(sample.duration), number(sample.position),
                       sample.size, isKey ? "true" : "false", number(sample.pts), number(sample.dts),
                       isDamaged ? "true" : "false", isBehindGap ? "true" : "false"));
        else
            isWritten_ = console_.print(format("%6u %10lld %7lld  %*lld %11u  %-3s %10lld %10lld%s%s\n", sample.stream,
                                               number(sample.edit_unit), number(sample.duration), offsetColumns_,
                                               number(sample.position), sample.size, isKey ? "key" : "",
                                               number(sample.pts), number(sample.dts), isDamaged ? "  damaged" : "",
                                               isBehindGap ? "  gap before it" : ""));
        position_ = sample.position;
        return 0;
    }

    bool isWritten() const { return isWritten_; }
    std::int64_t position() const { return position_; }
    std::uint64_t countOf(std::uint32_t stream) const
    {
        const auto found = count_.find(stream);
        return found == count_.end() ? 0 : found->second;
    }

private:
    Console& console_;
    bool json_;
    int offsetColumns_;
    std::map<std::uint32_t, std::int64_t> expected_;
    std::map<std::uint32_t, std::uint64_t> count_;
    std::int64_t position_ = 0;
    bool isWritten_ = true;
};

ExitCode samples(const Arguments& arguments, Console& console)
{
    const MxfFile file = openMxfFile(arguments.path, console, arguments.timeout);
    if (!file.demuxer) return kFailed;
    TamrelMxf::CMxfDemuxer* const demuxer = file.demuxer.get();
    const auto formats = streamFormats(file.info.stream_count, [demuxer](int stream, mxf_stream_format* format) {
        return mxfDemuxGetStreamFormat(demuxer, stream, format);
    });
    if (arguments.stream >= 0 && static_cast<std::size_t>(arguments.stream) >= formats.size()) {
        console.error(arguments.path + ": there is no stream " + std::to_string(arguments.stream) + "; it has:");
        console.errorLines(streamTable(formats));
        return kFailed;
    }
    std::set<int> containers;
    std::vector<std::size_t> streams;
    for (std::size_t stream = 0; stream < formats.size(); ++stream) {
        if (arguments.stream >= 0 && static_cast<std::size_t>(arguments.stream) != stream) continue;
        if (const std::string why = hindrance(formats[stream]); !why.empty()) {
            const std::string text = arguments.path + ": stream " + std::to_string(stream) + " " + why;
            if (arguments.stream >= 0) {
                console.error(text);
                return kFailed;
            }
            console.warning(text);
            continue;
        }
        streams.push_back(stream);
        containers.insert(containerOf(formats, stream));
    }

    SampleLister lister{console, arguments.json, file.info.file_size};
    lister.printHeading();
    for (const int container : containers) {
        if (mxfDemuxCreateParser(demuxer, container) != 0) {
            console.error(arguments.path + ": container " + std::to_string(container) +
                          " is wrapped in a way that cannot be taken apart");
            console.stepFailed();
            return kFailed;
        }
        for (const std::size_t stream : streams)
            if (containerOf(formats, stream) == container)
                (void)mxfDemuxAddStream(demuxer, container, static_cast<int>(stream), &lister);
        int result = TamrelMxf::kDelivered;
        while (result == TamrelMxf::kDelivered && lister.isWritten())
            result = mxfDemuxPush(demuxer, container);
        (void)mxfDemuxFreeParser(demuxer, container);
        if (!lister.isWritten()) return kFailed; // reported when the console finishes
        if (result < 0) {
            console.error(arguments.path + ": could not be read on behind byte " + std::to_string(lister.position()));
            console.stepFailed();
            return kFailed;
        }
        if (result == TamrelMxf::kNeedsData)
            console.warning(arguments.path + ": ends without a footer: it is still being written, or was cut off");
    }
    for (const std::size_t stream : streams)
        if (lister.countOf(static_cast<std::uint32_t>(stream)) == 0)
            console.warning(arguments.path + ": no essence of stream " + std::to_string(stream) + " was found");
    return kDone;
}

} // namespace

Command addMxfSamples(CLI::App& group)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = group.add_subcommand("samples", "List the samples of an MXF file: where they lie, when they play");
    app->add_option("FILE", arguments->path, "an MXF file")->required()->type_name("")->check(notEmpty());
    app->add_option("--stream", arguments->stream, "this stream alone, as zanfcp mxf info numbers them")
        ->type_name("N")
        ->check(streamNumber());
    app->add_flag("--json", arguments->json, "a JSON object a line, for other programs");
    app->add_option("--timeout", arguments->timeout, "seconds to wait for more of a file that is being written (0)")
        ->type_name("SECONDS")
        ->check(timeoutSeconds());
    return {
        .app = app,
        .details = "A line for each sample in the order of the file: the stored edit unit and how many it holds, the "
                   "offset of its bytes in the file and their number, whether decoding can start there, when it is "
                   "shown (pts) and decoded (dts) in edit units of its stream, counted from the first one that is "
                   "played. Lines come as the file is read.",
        .examples = {{"zanfcp mxf samples --stream 0 CAM_A.mxf | head", "the first pictures"},
                     {"zanfcp mxf samples --json CAM_A.mxf | jq 'select(.key) | .editUnit'", "where to seek to"}},
        .fileTypes = {"mxf"},
        .run = [arguments](Console& console) { return samples(*arguments, console); },
    };
}

} // namespace zanfcp::cli
