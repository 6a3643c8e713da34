#include "cli/ClipTime.h"
#include "cli/Console.h"
#include "cli/Extraction.h"
#include "cli/Inspection.h"
#include "cli/MxfCommands.h"
#include "cli/MxfStreams.h"
#include "cli/Progress.h"
#include "cli/Text.h"
#include "mxf/mxfDemuxStream.h"
#include "platform/FileDescriptor.h"
#include "platform/Format.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace zanfcp::cli {
namespace {

/// Holds many pictures, which are taken where they lie: each slice costs a change of thread to and fro. Twice as much
/// was no faster.
constexpr std::size_t kSliceBytes = std::size_t{2} << 20;

struct Arguments {
    std::string path;
    ExtractionArguments extraction;
};

/// Counts what a stream delivers.
struct Counter final : SMediaStream {
    int TakeSample(const mxf_sample& sample) override
    {
        ++samples;
        bytes += sample.size;
        return 0;
    }
    std::uint64_t samples = 0;
    std::uint64_t bytes = 0;
};

/// Passes samples on, and raises a flag when nothing more can be written.
struct Writer final : SMediaStream {
    Writer(StreamExtractor& target, std::atomic<bool>& flag) : extractor{target}, isFull{flag} {}
    int TakeSample(const mxf_sample& sample) override
    {
        const int result = extractor.TakeSample(sample);
        if (extractor.isDone()) isFull = true;
        return result;
    }
    StreamExtractor& extractor;
    std::atomic<bool>& isFull;
};

std::string patternText(std::uint32_t pattern)
{
    const std::uint32_t item = pattern >> 24;
    const std::uint32_t package = pattern >> 16 & 0xFF;
    if (item < 1 || item > 3 || package < 1 || package > 3) return "an unknown operational pattern";
    return "OP" + std::to_string(item) + std::string(1, static_cast<char>('a' + package - 1));
}

/// A stream on its way in. The thread of the demuxer calls back and delivers; the console is used under `mutex_`, which
/// nobody holds while calling the demuxer.
class Session final : CSnitcher {
public:
    Session(const Arguments& arguments, Console& console)
        : arguments_{arguments}, console_{console}, name_{arguments.path == "-" ? "standard input" : arguments.path},
          demuxer_{mxfDemuxStreamNew(), mxfDemuxStreamFree}
    {}

    ExitCode run(int descriptor)
    {
        mxf_stream_demuxer_config config{};
        config.context = this;
        config.state_callback = [](void* context, std::int32_t event, std::int32_t /*zero*/) {
            static_cast<Session*>(context)->onEvent(event);
        };
        TamrelMxf::SMemoryStream* stream = nullptr;
        if (mxfDemuxStreamOpen(demuxer_.get(), &config, this, &stream) != 0) return fail("could not be taken apart");
        const bool isRead = pushAll(*stream, descriptor);
        if (!isStopped_) (void)mxfDemuxStreamDrain(demuxer_.get());
        mxfDemuxStreamClose(demuxer_.get()); // nothing calls back any more
        return isRead ? end() : kFailed;
    }

private:
    /// \return false, with a message, when the input cannot be read
    bool pushAll(TamrelMxf::SMemoryStream& stream, int descriptor)
    {
        std::vector<unsigned char> slice(kSliceBytes);
        struct stat info {};
        const bool isFile = ::fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode);
        Progress progress{console_, name_, isFile ? std::int64_t{info.st_size} : 0};
        while (!isStopped_ && !isFull_) {
            const ssize_t count = ::read(descriptor, slice.data(), slice.size());
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) {
                fail(std::string("could not be read: ") + std::strerror(errno));
                return false;
            }
            if (count == 0) return true;
            pushed_ += static_cast<std::uint64_t>(count);
            while (!isStopped_ && stream.CopyData(slice.data(), static_cast<int>(count)) != count)
                std::this_thread::sleep_for(std::chrono::milliseconds{1}); // until there is room
            if (arguments_.extraction.output.empty()) continue;
            const std::lock_guard lock{mutex_};
            progress.update(static_cast<std::int64_t>(pushed_), pushed_);
        }
        return true;
    }

    void onEvent(std::int32_t event)
    {
        switch (event) {
        case mxf_stream_header_parsed: begin(); break;
        case mxf_stream_ended: {
            const std::lock_guard lock{mutex_};
            hasEnded_ = true;
            tell("end of the stream\n");
            break;
        }
        case mxf_stream_failed: {
            const std::lock_guard lock{mutex_};
            console_.error(name_ + ": could not be taken apart");
            console_.stepFailed();
            isStopped_ = true;
            break;
        }
        default: break;
        }
    }

    /// The header has been parsed: shows the streams and adds the receivers.
    void begin()
    {
        TamrelMxf::CMxfStreamDemuxer* const demuxer = demuxer_.get();
        mxf_file_info info{};
        (void)mxfDemuxStreamGetFileInfo(demuxer, &info);
        const auto formats = streamFormats(info.stream_count, [demuxer](int stream, mxf_stream_format* format) {
            return mxfDemuxStreamGetStreamFormat(demuxer, stream, format);
        });
        {
            const std::lock_guard lock{mutex_};
            hasBegun_ = true;
            const ClipTime time{info, formats.empty() ? mxf_stream_format{} : formats.front()};
            tell("header parsed: " + patternText(info.operational_pattern) + ", " + std::to_string(formats.size()) +
                 (formats.size() == 1 ? " stream" : " streams") +
                 (info.timecode_base == 0 ? "" : ", starts at " + time.labelAt(0)) + "\n" + streamTable(formats));
        }
        if (arguments_.extraction.output.empty())
            count(formats.size());
        else
            isStopped_ = !beginExtraction(info, formats);
    }

    void count(std::size_t streams)
    {
        counters_ = std::vector<Counter>(streams);
        for (std::size_t stream = 0; stream < streams; ++stream)
            (void)mxfDemuxStreamAddStream(demuxer_.get(), static_cast<int>(stream), &counters_[stream]);
    }

    bool beginExtraction(const mxf_file_info& info, const std::vector<mxf_stream_format>& formats)
    {
        {
            const std::lock_guard lock{mutex_};
            const auto plan = planExtraction(arguments_.extraction, formats, arguments_.path, console_);
            if (!plan) return false;
            auto output = EssenceOutput::open(arguments_.extraction.output);
            if (!output) {
                console_.error(output.error().what);
                return false;
            }
            time_ = std::make_unique<ClipTime>(info, formats[static_cast<std::size_t>(arguments_.extraction.stream)]);
            extractor_ = std::make_unique<StreamExtractor>(*std::move(output), *plan, ExtractedRange{});
            writer_ = std::make_unique<Writer>(*extractor_, isFull_);
        }
        if (mxfDemuxStreamAddStream(demuxer_.get(), arguments_.extraction.stream, writer_.get()) == 0) return true;
        const std::lock_guard lock{mutex_};
        fail("stream " + std::to_string(arguments_.extraction.stream) +
             " lies in another container than the one that is delivered while a file comes in");
        return false;
    }

    /// After the demuxer has been closed.
    ExitCode end()
    {
        console_.endProgress();
        if (isStopped_) return kFailed;
        if (!hasBegun_)
            return fail(pushed_ == 0 ? "is empty"
                                     : "holds no MXF header among its " + std::to_string(pushed_) + " bytes");
        if (!hasEnded_ && !isFull_)
            console_.warning(name_ + ": ends without a random index pack: it was cut off, or never had one");
        for (std::size_t stream = 0; stream < counters_.size(); ++stream)
            tell("stream " + std::to_string(stream) + ": " + std::to_string(counters_[stream].samples) + " samples, " +
                 std::to_string(counters_[stream].bytes) + " bytes\n");
        if (!extractor_) return kDone;
        return finishExtraction(
            *extractor_, {.arguments = arguments_.extraction, .input = name_, .time = time_.get(), .hasRange = false},
            console_);
    }

    /// Events and formats; on standard error when essence goes to standard output.
    void tell(const std::string& text)
    {
        if (arguments_.extraction.output == "-")
            console_.note(text);
        else if (console_.print(text))
            (void)console_.flush(); // who reads along wants to see it now
    }

    ExitCode fail(const std::string& why)
    {
        console_.error(name_ + ": " + why);
        console_.stepFailed();
        return kFailed;
    }

    void pass(void (CSnitcher::*method)(const char*, va_list), const char* pattern, va_list arguments)
    {
        const std::lock_guard lock{mutex_};
        (console_.mxfSink().*method)(pattern, arguments);
    }
    void DoLogError(const char* pattern, va_list list) override { pass(&CSnitcher::DoLogError, pattern, list); }
    void DoLogWarning(const char* pattern, va_list list) override { pass(&CSnitcher::DoLogWarning, pattern, list); }
    void DoLogInfo(const char* pattern, va_list list) override { pass(&CSnitcher::DoLogInfo, pattern, list); }
    void DoLogDebug(const char* pattern, va_list list) override { pass(&CSnitcher::DoLogDebug, pattern, list); }

    const Arguments& arguments_;
    Console& console_;
    std::string name_;
    std::mutex mutex_; // of the console
    std::uint64_t pushed_ = 0;
    bool hasBegun_ = false;
    bool hasEnded_ = false;
    std::atomic<bool> isStopped_{false}; // by a failure that has been reported
    std::atomic<bool> isFull_{false};    // nothing more can be written
    std::vector<Counter> counters_;
    std::unique_ptr<ClipTime> time_;
    std::unique_ptr<StreamExtractor> extractor_;
    std::unique_ptr<Writer> writer_;
    std::unique_ptr<TamrelMxf::CMxfStreamDemuxer, void (*)(TamrelMxf::CMxfStreamDemuxer*)> demuxer_; // first to go
};

ExitCode stream(const Arguments& arguments, Console& console)
{
    const bool isStandard = arguments.path == "-";
    if (!arguments.extraction.output.empty() && arguments.extraction.stream < 0) {
        console.error("-o: say which stream with --stream N");
        return kWrongUsage;
    }
    if (arguments.extraction.output.empty() && arguments.extraction.stream >= 0) {
        console.error("--stream: say where to write it with -o OUT");
        return kWrongUsage;
    }
    if (isStandard && ::isatty(STDIN_FILENO) == 1) {
        console.error("standard input is a terminal; pipe an MXF file in");
        return kFailed;
    }
    console.beginStep(isStandard ? "standard input" : arguments.path);
    const FileDescriptor opened{isStandard ? -1 : ::open(arguments.path.c_str(), O_RDONLY | O_CLOEXEC)};
    if (!isStandard && !opened) {
        const std::string problem = obstacle(arguments.path);
        console.error(arguments.path + ": " + (problem.empty() ? std::strerror(errno) : problem));
        return kFailed;
    }
    const int descriptor = isStandard ? STDIN_FILENO : opened.value();
    constexpr int kPipeBytes = 1 << 20;                  // as much as anybody may ask for
    (void)::fcntl(descriptor, F_SETPIPE_SZ, kPipeBytes); // nothing but a pipe heeds it
    return Session{arguments, console}.run(descriptor);
}

} // namespace

Command addMxfStream(CLI::App& group)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = group.add_subcommand("stream", "Take an MXF file apart while it comes in through a pipe");
    app->add_option("FILE", arguments->path, "an MXF file or a pipe, - for standard input")
        ->required()
        ->type_name("")
        ->check(notEmpty());
    addExtractionOptions(*app, arguments->extraction);
    return {
        .app = app,
        .details = "Shows the streams as soon as the header has come in, and at the end what each of them delivered. "
                   "With --stream and -o one of them is written while it comes, in the same way as by zanfcp mxf "
                   "extract. Nothing is sought, and no more than a few megabytes are held at a time. Files of OP-Atom "
                   "and OP1b cannot be taken apart this way: use zanfcp mxf extract for those.",
        .examples = {{"ssh studio cat CAM_A.mxf | zanfcp mxf stream -", "what comes in there"},
                     {"zanfcp mxf stream --stream 1 -o sound.wav - < CAM_A.mxf", "its sound"}},
        .fileTypes = {"mxf"},
        .run = [arguments](Console& console) { return stream(*arguments, console); },
    };
}

} // namespace zanfcp::cli
