#include "media/MXFMovieProperties.h"

#include "mxf/model/Timing.h"
#include "mxf/mxfDemux.h"
#include "timecode/PELTimecodeObject.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <string_view>

namespace zanfcp {
namespace {

constexpr std::int32_t kUnreadable = -38;
constexpr std::uint32_t kTimeoutSeconds = 10;

enum StreamType : std::uint32_t { kVideo = 1, kAudio = 2 };

struct FreeDemuxer {
    void operator()(TamrelMxf::CMxfDemuxer* demuxer) const
    {
        mxfDemuxClose(demuxer);
        mxfDemuxFree(demuxer);
    }
};

CSnitcher* messageSink = nullptr;

void printLine(std::FILE* stream, const char* prefix, const char* format, va_list arguments)
{
    std::fputs(prefix, stream);
    std::vfprintf(stream, format, arguments);
    std::fputc('\n', stream);
}

/// One row of the XDCAM table: the codes of a family and a width by frame rate.
struct XDCAMRow {
    std::uint8_t family;
    std::uint32_t width;
    FourCC upTo24;
    FourCC at25, at25Interlaced;
    FourCC upTo30, upTo30Interlaced;
    FourCC at50, above50;
};
// At 24 frames the two rows of 1280 carry each other's prefix, as the applications that read them expect.
constexpr auto kXDCAMRows = std::to_array<XDCAMRow>({
    {4, 1920, FourCC{"xd5d"}, FourCC{"xd5e"}, FourCC{"xd5c"}, FourCC{"xd5f"}, FourCC{"xd5b"}, {}, {}},
    {4, 1280, FourCC{"xdv4"}, FourCC{"xd55"}, FourCC{"xd55"}, FourCC{"xd51"}, FourCC{"xd51"}, FourCC{"xd5a"},
     FourCC{"xd59"}},
    {3, 1920, FourCC{"xdvd"}, FourCC{"xdve"}, FourCC{"xdvc"}, FourCC{"xdvf"}, FourCC{"xdvb"}, {}, {}},
    {3, 1440, FourCC{"xdv6"}, FourCC{"xdv7"}, FourCC{"xdv3"}, FourCC{"xdv8"}, FourCC{"xdv2"}, {}, {}},
    {3, 1280, FourCC{"xd54"}, FourCC{"xdv5"}, FourCC{"xdv5"}, FourCC{"xdv1"}, FourCC{"xdv1"}, FourCC{"xdva"},
     FourCC{"xdv9"}},
});

FourCC xdcamCode(const mxf_stream_format& format)
{
    constexpr std::uint8_t kMPEG = 2;
    constexpr std::uint8_t kMPEG2 = 2;
    if (format.essence_kind != kMPEG || format.profile != kMPEG2) return {};
    const auto row = std::ranges::find_if(kXDCAMRows, [&format](const XDCAMRow& candidate) {
        return candidate.family == format.family && candidate.width == format.width;
    });
    if (row == kXDCAMRows.end()) return {};
    const bool interlaced = format.interlaced != 0;
    const double rate = format.frame_rate;
    if (rate <= 24) return row->upTo24;
    if (rate == 25) return interlaced ? row->at25Interlaced : row->at25;
    if (rate > 25 && rate <= 30) return interlaced ? row->upTo30Interlaced : row->upTo30;
    if (rate == 50) return row->at50;
    if (rate > 50) return row->above50;
    return {};
}

void readVideo(PELMovieProperties& properties, const mxf_file_info& info, const mxf_stream_format& format)
{
    constexpr std::uint32_t kHDWidth = 1280;
    constexpr std::uint32_t kHDHeight = 720;
    const bool storesFields = format.width >= kHDWidth && format.height < kHDHeight;
    properties.hasVideo = true;
    properties.width = format.width;
    properties.height = NSInteger{format.height} * (storesFields ? 2 : 1);
    properties.pixelAspectRatio = PELPixelAspectRatio::square;
    properties.duration = std::max<std::int64_t>(info.duration, 0); // a file that grows may not know it yet
    properties.nominalFrameRate = format.frame_rate;
    propagateMXFCodecInfo(properties, format);
}

void readAudio(PELMovieProperties& properties, const mxf_stream_format& format)
{
    constexpr double kMost = 4294967295.0;
    const bool isRate = format.sample_rate > 0 && format.sample_rate <= kMost;
    properties.hasAudio = true;
    properties.audioSampleRate = isRate ? static_cast<std::uint64_t>(format.sample_rate) : 0;
    properties.audioBitDepth = format.bits_per_sample;
    ++properties.audioTrackCount;
}

/// The duration of the file in frames of its timecode, 0 when it has none.
NSInteger framesOfTimecode(const mxf_file_info& info, const mxf_stream_format& format)
{
    const auto frames = TamrelMxf::Rescale(info.duration, {info.edit_rate_num, info.edit_rate_den},
                                           {format.timecode_rate_num, format.timecode_rate_den});
    return info.duration < 0 ? 0 : frames.value_or(0);
}

} // namespace

void CMyLogger::DoLogError(const char* format, va_list arguments)
{
    printLine(stream_, "Error: ", format, arguments);
}
void CMyLogger::DoLogWarning(const char* format, va_list arguments)
{
    printLine(stream_, "", format, arguments);
}
void CMyLogger::DoLogInfo(const char* format, va_list arguments)
{
    printLine(stream_, "", format, arguments);
}
void CMyLogger::DoLogDebug(const char* format, va_list arguments)
{
    printLine(stream_, "", format, arguments);
}

void setMXFMessageSink(CSnitcher* sink)
{
    messageSink = sink;
}

NSInteger timebaseFromFrameInfo(std::uint32_t code)
{
    switch (code) {
    case 24:
    case 2398:
    case 2400:
    case 24000: return 24;
    case 25:
    case 2500:
    case 25000: return 25;
    case 29:
    case 30:
    case 2997:
    case 3000:
    case 30000: return 30;
    case 50:
    case 5000:
    case 50000: return 50;
    case 59:
    case 60:
    case 5994:
    case 6000:
    case 60000: return 60;
    default: return 0;
    }
}

void propagateMXFCodecInfo(PELMovieProperties& properties, const mxf_stream_format& format)
{
    constexpr std::string_view kName = "XDCAM";
    PELCodecProperties& codec = properties.videoCodec;
    codec.name = codec.typeName = {};
    kName.copy(codec.name.data(), codec.name.size() - 1);
    kName.copy(codec.typeName.data(), codec.typeName.size() - 1);
    codec.typeCode = xdcamCode(format);
    codec.vendorCode = "appl";
    codec.spatialQuality = 1024;
    codec.temporalQuality = 0;
}

std::int32_t readMXFProperties(const FileURL& url, PELMovieProperties& properties, const PELDictionary& options)
{
    CMyLogger logger; // outlives the demuxer
    CSnitcher* const sink = messageSink != nullptr ? messageSink : &logger;
    const std::unique_ptr<TamrelMxf::CMxfDemuxer, FreeDemuxer> demuxer{mxfDemuxNew()};
    if (!demuxer) {
        std::fputs("MXF Demuxer: Unable to create MXF Demuxer\n", stderr);
        return kUnreadable;
    }
    mxf_demuxer_config config{};
    config.timeout = kTimeoutSeconds;
    config.lazy_index_loading = 1;
    config.flag = 1;
    if (const int error = mxfDemuxOpen(demuxer.get(), url.path().c_str(), &config, sink); error != 0) {
        std::fprintf(stderr, "MXF Demuxer: Unable to open MXF Demuxer with error %i\n", error);
        return kUnreadable;
    }
    mxf_file_info info{};
    if (const int error = mxfDemuxGetFileInfo(demuxer.get(), &info); error != 0) {
        std::fprintf(stderr, "MXF Demuxer: Unable to obtain file info from MXF Demuxer with error %i\n", error);
        return kUnreadable;
    }

    NSInteger timebase = 0;
    NSInteger soundFrames = 0;
    for (std::uint32_t stream = 0; stream < info.stream_count; ++stream) {
        mxf_stream_format format{};
        if (mxfDemuxGetStreamFormat(demuxer.get(), static_cast<int>(stream), &format) != 0) continue;
        if (format.stream_type == kVideo) {
            readVideo(properties, info, format);
            timebase = timebaseFromFrameInfo(format.frame_rate_code);
        } else if (format.stream_type == kAudio) {
            readAudio(properties, format);
            soundFrames = framesOfTimecode(info, format);
        }
    }
    properties.audioChannelCount = properties.audioTrackCount;
    if (!properties.hasVideo && options.boolFor(PELMeasureSoundFiles) && info.timecode_base != 0) {
        timebase = info.timecode_base;
        properties.duration = soundFrames;
    }

    const PELRate rate = PELRateMake(timebase, info.drop_frame != 0);
    PELSetFPSForRate(rate); // the label is printed at this rate
    properties.timecode =
        PELTimecodeMakeWithCString(PELTimecodeObject::timecodeWithFrames(info.start_timecode).description(), rate);
    properties.timecode.rate.timebase = timebase;
    properties.hasTimecode = true;
    constexpr std::string_view kReel = "Tape";
    kReel.copy(properties.reel.data(), properties.reel.size() - 1);
    properties.videoCodec.fieldDominance =
        options.boolFor("interlaced") ? PELFieldDominance::upper : PELFieldDominance::none;
    return 0;
}

} // namespace zanfcp
