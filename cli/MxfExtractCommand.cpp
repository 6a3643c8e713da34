#include "cli/ClipTime.h"
#include "cli/Console.h"
#include "cli/Extraction.h"
#include "cli/MxfCommands.h"
#include "cli/MxfFile.h"
#include "cli/MxfStreams.h"
#include "cli/Progress.h"
#include "mxf/essence/EssenceRecords.h"
#include "mxf/mxfDemux.h"

#include <algorithm>
#include <memory>

namespace zanfcp::cli {
namespace {

struct Arguments {
    std::string path;
    ExtractionArguments extraction;
    std::string from;
    std::string to;
    bool exact = false;
    std::uint32_t timeout = 0;
};

/// The range of the command line in edit units of the stream; nothing, with a message, when it is wrong.
std::optional<ExtractedRange> rangeOf(const Arguments& arguments, const ClipTime& time, Console& console)
{
    ExtractedRange range{.isExact = arguments.exact};
    std::int64_t from = 0;
    const auto read = [&](const char* option, const std::string& text) -> std::optional<std::int64_t> {
        const auto place = time.placeOf(text);
        if (!place) console.error(std::string(option) + " " + text + ": " + place.error().what);
        return place ? std::optional{*place} : std::nullopt;
    };
    if (!arguments.from.empty()) {
        const auto place = read("--from", arguments.from);
        if (!place) return std::nullopt;
        if (*place == time.frames()) {
            console.error("--from " + arguments.from + ": is the end of the clip, which goes from " + time.extent());
            return std::nullopt;
        }
        from = *place;
        range.from = time.editUnits(from);
    }
    if (!arguments.to.empty()) {
        const auto place = read("--to", arguments.to);
        if (!place) return std::nullopt;
        if (*place <= from) {
            console.error("--to " + arguments.to + ": must lie behind " +
                          (arguments.from.empty() ? "the start of the clip" : "--from " + arguments.from) +
                          "; the frame at --to is left out");
            return std::nullopt;
        }
        range.to = time.editUnits(*place);
    }
    return range;
}

/// Everything between the open file and the written one.
class Extraction {
public:
    Extraction(const Arguments& arguments, const MxfFile& file, Console& console)
        : arguments_{arguments}, console_{console}, demuxer_{file.demuxer.get()}, info_{file.info}
    {}

    ExitCode run()
    {
        const auto formats = streamFormats(info_.stream_count, [this](int stream, mxf_stream_format* format) {
            return mxfDemuxGetStreamFormat(demuxer_, stream, format);
        });
        const auto plan = planExtraction(arguments_.extraction, formats, arguments_.path, console_);
        if (!plan) return kFailed;
        stream_ = static_cast<std::size_t>(arguments_.extraction.stream);
        file_ = containerOf(formats, stream_);
        const mxf_stream_format& format = formats[stream_];
        const ClipTime time{info_, format};
        const auto range = rangeOf(arguments_, time, console_);
        if (!range) return kFailed;
        if (mxfDemuxCreateParser(demuxer_, file_) != 0) return fail("is wrapped in a way that cannot be taken apart");

        auto output = EssenceOutput::open(arguments_.extraction.output);
        if (!output) {
            console_.error(output.error().what);
            return kFailed;
        }
        StreamExtractor extractor{*std::move(output), *plan, *range};
        if (mxfDemuxAddStream(demuxer_, file_, static_cast<int>(stream_), &extractor) != 0)
            return fail("cannot be delivered");
        const int result = seek(*range, format) ? push(extractor, time, *range) : -1;
        (void)mxfDemuxRemoveStream(demuxer_, file_, static_cast<int>(stream_));
        if (result < 0) return kFailed;
        warnOfEnd(extractor, result, time, *range);
        return finishExtraction(extractor,
                                {.arguments = arguments_.extraction,
                                 .input = arguments_.path,
                                 .time = &time,
                                 .hasRange = !arguments_.from.empty()},
                                console_);
    }

private:
    ExitCode fail(const std::string& why)
    {
        console_.error(arguments_.path + ": stream " + std::to_string(stream_) + " " + why);
        console_.stepFailed();
        return kFailed;
    }

    bool seek(const ExtractedRange& range, const mxf_stream_format& format)
    {
        if (arguments_.from.empty()) return true;
        constexpr std::uint32_t kPicture = 1;
        const bool toKey = format.stream_type == kPicture;
        mxf_dmuxer_seek place{};
        place.stream = static_cast<std::uint32_t>(stream_);
        place.flags = toKey ? mxf_seek_key_frame : mxf_seek_exact;
        place.position = range.from;
        const int status = mxfDemuxSeek(demuxer_, file_, &place);
        if (status == 0) return true;
        console_.error(arguments_.path + ": --from " + arguments_.from +
                       (status == -3 ? " is not there: the essence ends before, or is damaged" : " could not be read"));
        console_.stepFailed();
        return false;
    }

    /// \return kEnded, or kDelivered when the range is done; kNeedsData where the file ends early; -1 with a message
    int push(StreamExtractor& extractor, const ClipTime& time, const ExtractedRange& range)
    {
        const std::int64_t whole = time.frames() < 0 ? 0 : time.editUnits(time.frames());
        const std::int64_t begin = std::max<std::int64_t>(range.from, 0);
        Progress progress{console_, arguments_.path, std::max<std::int64_t>(std::min(range.to, whole) - begin, 0)};
        while (!extractor.isDone()) {
            const int result = mxfDemuxPush(demuxer_, file_);
            if (result < 0) {
                console_.endProgress();
                fail("could not be read on behind " + time.labelAt(extractor.end()));
                return -1;
            }
            if (result != TamrelMxf::kDelivered) return result;
            progress.update(extractor.end() - begin, extractor.bytes());
        }
        return TamrelMxf::kDelivered;
    }

    void warnOfEnd(const StreamExtractor& extractor, int result, const ClipTime& time, const ExtractedRange& range)
    {
        const std::int64_t whole = time.frames() < 0 ? 0 : time.editUnits(time.frames());
        const std::int64_t wanted = std::min(whole, range.to);
        if (result == TamrelMxf::kDelivered || extractor.editUnits() == 0) return;
        if (result == TamrelMxf::kNeedsData)
            console_.warning(arguments_.path + ": ends at " + time.labelAt(extractor.end()) +
                             " without a footer: it is still being written, or was cut off");
        else if (extractor.end() + std::max<std::int64_t>(time.editUnits(1), 1) <=
                 wanted) // sound may end inside a frame
            console_.warning(arguments_.path + ": the essence ends at " + time.labelAt(extractor.end()) +
                             ", and the header promises it up to " + time.labelAt(wanted));
    }

    const Arguments& arguments_;
    Console& console_;
    TamrelMxf::CMxfDemuxer* demuxer_;
    mxf_file_info info_;
    std::size_t stream_ = 0;
    int file_ = -1;
};

ExitCode extract(const Arguments& arguments, Console& console)
{
    const MxfFile file = openMxfFile(arguments.path, console, arguments.timeout);
    if (!file.demuxer) return kFailed;
    return Extraction{arguments, file, console}.run();
}

} // namespace

Command addMxfExtract(CLI::App& group)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = group.add_subcommand("extract", "Write one stream of an MXF file as it is, or its sound as WAV");
    app->add_option("FILE", arguments->path, "an MXF file")->required()->type_name("")->check(notEmpty());
    addExtractionOptions(*app, arguments->extraction);
    app->get_option("--stream")->required();
    app->get_option("--output")->required();
    app->add_option("--from", arguments->from,
                    "the first frame: a label, frames since midnight, or +LABEL or +FRAMES "
                    "from the start of the clip")
        ->type_name("TC")
        ->check(notEmpty());
    app->add_option("--to", arguments->to, "the frame behind the last one, in the same way")
        ->type_name("TC")
        ->check(notEmpty());
    app->add_flag("--exact", arguments->exact,
                  "only the pictures of the range, even where they cannot be decoded without others");
    app->add_option("--timeout", arguments->timeout, "seconds to wait for more of a file that is being written (0)")
        ->type_name("SECONDS")
        ->check(timeoutSeconds());
    return {
        .app = app,
        .details =
            "The bytes of the stream are written one sample after the other, as they lie in the file: an elementary "
            "stream of MPEG-2, AVC and so on, or bare samples of sound. An output whose name ends in .wav becomes a "
            "WAV file (RF64 above 4 GiB); --format decides otherwise. In a pipe a WAV file does not say how long it "
            "is. Eight-channel sound of D-10 is unpacked. "
            "--from and --to are timecodes of the clip, as zanfcp mxf info shows them; the frame at --to is left out. "
            "Of long-GOP pictures, the ones that the range is decoded from are written too, unless --exact is given. "
            "Damaged essence costs the samples that it lies in: what is left is written, with a warning, and the "
            "command succeeds.",
        .examples = {{"zanfcp mxf extract CAM_A.mxf --stream 0 -o CAM_A.m2v", "the pictures"},
                     {"zanfcp mxf extract CAM_A.mxf --stream 1 -o CAM_A.wav", "the sound"},
                     {"zanfcp mxf extract CAM_A.mxf --stream 1 --from 10:00:05:00 --to 10:00:07:00 -o take.wav",
                      "two seconds of it"},
                     {"zanfcp mxf extract CAM_A.mxf --stream 0 -o - | ffplay -", "look at it"}},
        .fileTypes = {"mxf"},
        .run = [arguments](Console& console) { return extract(*arguments, console); },
    };
}

} // namespace zanfcp::cli
