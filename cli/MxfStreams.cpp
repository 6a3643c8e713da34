#include "cli/MxfStreams.h"

#include "cli/MxfWords.h"
#include "cli/Text.h"
#include "platform/Format.h"

#include <algorithm>
#include <array>

namespace zanfcp::cli {
namespace {

std::string rateText(std::int32_t num, std::int32_t den)
{
    if (num <= 0 || den <= 0) return {};
    return num % den == 0 ? std::to_string(num / den) : format("%.2f", static_cast<double>(num) / den);
}

std::string detailText(const mxf_stream_format& one)
{
    constexpr std::uint32_t kPicture = 1, kSound = 2;
    if (one.stream_type == kPicture) return std::to_string(one.width) + "x" + std::to_string(one.frame_height);
    if (one.stream_type != kSound) return {};
    std::string text = std::to_string(one.channels) + " x " + format("%.0f", one.sample_rate) + " Hz";
    if (one.bits_per_sample != 0) text += " " + std::to_string(one.bits_per_sample) + " bit";
    return text;
}

} // namespace

std::string codecName(const mxf_stream_format& format)
{
    TamrelMxf::SStreamFormat words;
    words.essenceKind = static_cast<TamrelMxf::EEssenceKind>(format.essence_kind);
    words.codecName = format.codec_name;
    words.profile = format.profile;
    words.family = format.family;
    return codecName(words);
}

const char* kindWord(const mxf_stream_format& format)
{
    constexpr auto kWords = std::to_array({"unknown", "picture", "sound", "data", "other"});
    return kWords[format.stream_type < kWords.size() ? format.stream_type : 0];
}

std::string streamTable(const std::vector<mxf_stream_format>& formats)
{
    constexpr auto kWrappings = std::to_array({"", "frame", "clip", "custom", "field", "line"});
    Table table{{"STREAM", "KIND", "CODEC", "FORMAT", "RATE", "WRAPPING"}};
    for (std::size_t stream = 0; stream < formats.size(); ++stream) {
        const mxf_stream_format& one = formats[stream];
        table.addRow(
            {std::to_string(stream), kindWord(one), codecName(one), detailText(one),
             rateText(one.edit_rate_num, one.edit_rate_den),
             one.body_sid == 0 ? "not in this file" : kWrappings[one.wrapping < kWrappings.size() ? one.wrapping : 0]});
    }
    return table.text();
}

int containerOf(const std::vector<mxf_stream_format>& formats, std::size_t stream)
{
    std::vector<std::uint32_t> containers;
    for (const mxf_stream_format& one : formats)
        if (one.body_sid != 0 && std::ranges::find(containers, one.body_sid) == containers.end())
            containers.push_back(one.body_sid);
    const auto found = std::ranges::find(containers, formats[stream].body_sid);
    return found == containers.end() ? -1 : static_cast<int>(found - containers.begin());
}

std::string hindrance(const mxf_stream_format& format)
{
    // SMPTE ST 429-6: the container label of encrypted essence, from its ninth byte on.
    constexpr auto kEncrypted = std::to_array<std::uint8_t>({0x0D, 0x01, 0x03, 0x01, 0x02, 0x0B});
    if (format.body_sid == 0) return "is not in this file: its essence lies in another one";
    if (std::equal(kEncrypted.begin(), kEncrypted.end(), format.essence_container + 8)) return "is encrypted";
    return {};
}

} // namespace zanfcp::cli
