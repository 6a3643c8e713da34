#include "cli/Inspection.h"

#include "cli/MxfWords.h"
#include "cli/Timecodes.h"
#include "platform/Format.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

namespace zanfcp::cli {
namespace {

constexpr std::int32_t kUnreadable = -38;

std::string refusal(const FileURL& url)
{
    const std::string extension = url.pathExtension();
    if (extension == "mov") return "could not be read as a QuickTime movie";
    if (extension == "mxf") return "could not be read as an MXF file";
    std::string lowered = extension;
    for (char& c : lowered)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (lowered == "mov" || lowered == "mxf") return "unknown type: the extension must be in lower case, ." + lowered;
    return "unknown type: " + (extension.empty() ? std::string("a name without extension") : "." + extension);
}

/// Documents call the picture of every MXF file XDCAM; a person is told what it is.
std::string codecText(const InspectedFile& file)
{
    const PELCodecProperties& codec = file.properties.videoCodec;
    if (file.url.pathExtension() == "mxf")
        if (const std::string text = pictureCodecOfFile(file.url.path()); !text.empty()) return text;
    const std::string code = codec.typeCode.text();
    const std::string name = fieldText(codec.name);
    return name.empty() ? code : name + " (" + code + ")";
}

nlohmann::ordered_json codecJson(const PELCodecProperties& codec)
{
    nlohmann::ordered_json json;
    json["name"] = fieldText(codec.name);
    json["typeName"] = fieldText(codec.typeName);
    json["typeCode"] = codec.typeCode == FourCC{} ? std::string() : codec.typeCode.text();
    json["vendorCode"] = nullptr;
    if (codec.vendorCode) json["vendorCode"] = *codec.vendorCode;
    json["spatialQuality"] = codec.spatialQuality;
    json["temporalQuality"] = codec.temporalQuality;
    json["keyframeRate"] = codec.keyframeRate;
    json["dataRate"] = codec.dataRate;
    json["fieldDominance"] = NSStringFromPELFieldDominance(codec.fieldDominance);
    return json;
}

nlohmann::ordered_json timecodeJson(const PELTimecode& timecode)
{
    nlohmann::ordered_json json;
    json["kind"] = timecode.kind;
    json["rate"] = {{"timebase", timecode.rate.timebase}, {"isNTSC", timecode.rate.isNTSC}};
    json["frames"] = timecode.frames;
    json["hasDropframe"] = timecode.hasDropframe;
    json["string"] = fieldText(timecode.string);
    return json;
}

/// Pictures a second, as a person writes them: "29.97", "25".
std::string pictureRateText(double rate)
{
    std::string text = format("%.2f", rate);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text;
}

/// Whether the project will say another rate than the pictures have: it takes that of the timecode, which is known to
/// be 1000/1001 of a whole number at drop-frame alone, and may count some of the pictures only.
bool timecodeRunsApart(const PELMovieProperties& properties)
{
    constexpr double kTolerance = 0.0005; // half of what lies between 29.97 and 30
    const PELRate rate = properties.timecode.rate;
    const double counted = static_cast<double>(rate.timebase) * (rate.isNTSC ? 1000.0 / 1001.0 : 1.0);
    const double shown = properties.nominalFrameRate;
    return properties.hasTimecode && shown > 0 && std::abs(shown - counted) > kTolerance * counted;
}

} // namespace

std::string obstacle(const std::string& path)
{
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) return errno == ENOENT ? "no such file" : std::strerror(errno);
    if (S_ISDIR(info.st_mode)) return "is a folder";
    if (!S_ISREG(info.st_mode)) return "is no regular file";
    if (::access(path.c_str(), R_OK) != 0) return std::strerror(errno);
    return {};
}

InspectedFile inspectFile(const std::string& path, const PELDictionary& options)
{
    InspectedFile file{
        .path = path, .url = FileURL::fileURLWithPath(path), .problem = obstacle(path), .properties = {}, .codec = {}};
    if (!file.problem.empty()) {
        file.status = kUnreadable;
        return file;
    }
    file.status = PELGetPropertiesOfMovieAtURL(file.url, file.properties, options);
    if (file.status != 0)
        file.problem = refusal(file.url);
    else if (file.properties.hasVideo)
        file.codec = codecText(file);
    return file;
}

std::vector<std::string> fileWarnings(const InspectedFile& file)
{
    const PELMovieProperties& properties = file.properties;
    const PELRate rate = properties.timecode.rate;
    std::vector<std::string> out;
    if (!properties.hasVideo && !properties.hasAudio) out.push_back(file.path + " has neither picture nor sound");
    if (properties.missingBytes != 0)
        out.push_back(file.path + " is cut short: " + std::to_string(properties.missingBytes) +
                      " bytes are missing at its end");
    if (rate.timebase == 0)
        out.push_back(file.path + " has no frame rate that timecode knows: its labels are counted at 25");
    else if (!isTimecodeRate(rate))
        out.push_back(file.path + " has a rate of " + rateText(rate) +
                      " frames a second, which timecode does not know: its labels are counted at 25");
    else if (timecodeRunsApart(properties))
        out.push_back(file.path + " shows " + pictureRateText(properties.nominalFrameRate) +
                      " pictures a second, but its timecode counts " + rateText(rate) +
                      ", and the project takes it for that");
    if (properties.duration <= 0) out.push_back(file.path + " has no length");
    return out;
}

std::string inspectionJson(const InspectedFile& file)
{
    const PELMovieProperties& properties = file.properties;
    nlohmann::ordered_json json;
    json["schemaVersion"] = kInspectionSchema;
    json["path"] = file.path;
    json["status"] = file.status;
    json["codec"] = file.codec;
    json["hasVideo"] = properties.hasVideo;
    json["width"] = properties.width;
    json["height"] = properties.height;
    json["pixelAspectRatio"] = NSStringFromPELPixelAspectRatio(properties.pixelAspectRatio);
    json["anamorphic"] = properties.anamorphic;
    json["duration"] = properties.duration;
    json["videoCodec"] = codecJson(properties.videoCodec);
    json["hasAudio"] = properties.hasAudio;
    json["audioSampleRate"] = properties.audioSampleRate;
    json["audioBitDepth"] = properties.audioBitDepth;
    json["audioTrackCount"] = properties.audioTrackCount;
    json["audioChannelCount"] = properties.audioChannelCount;
    json["hasTimecode"] = properties.hasTimecode;
    json["timecode"] = timecodeJson(properties.timecode);
    json["reel"] = fieldText(properties.reel);
    json["missingBytes"] = properties.missingBytes;
    json["nominalFrameRate"] = std::round(properties.nominalFrameRate * 1000) / 1000;
    // Names on Linux are bytes; what is no UTF-8 is replaced, since JSON cannot hold it.
    return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

std::string sizeText(const PELMovieProperties& properties)
{
    if (!properties.hasVideo) return {};
    return std::to_string(properties.width) + "x" + std::to_string(properties.height);
}

std::string startText(const PELMovieProperties& properties)
{
    std::string label = fieldText(properties.timecode.string);
    if (!properties.hasTimecode || label.empty()) return "none";
    // The record has the same mark for all rates; a person is shown the usual one.
    const std::size_t mark = label.rfind(':');
    const PELRate rate = properties.timecode.rate;
    if (isTimecodeRate(rate) && mark == 8) label[mark] = labelFromFrames(0, rate)[mark];
    return label;
}

std::string lengthText(const PELMovieProperties& properties)
{
    if (properties.duration == 0) return {};
    return labelFromFrames(properties.duration, properties.timecode.rate);
}

} // namespace zanfcp::cli
