#include "mxf/demuxer/RecordFilling.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace TamrelMxf {
namespace {

/// UTF-8 as wide characters, a code point each, cut at the end of `out`; the last one is NUL. `out` is all zero.
void Widen(std::string_view text, std::span<wchar_t> out)
{
    std::size_t at = 0;
    for (std::size_t i = 0; i < text.size() && at + 1 < out.size(); ++at) {
        const auto lead = static_cast<unsigned char>(text[i++]);
        const int more = lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        std::uint32_t code = more == 0 ? lead : lead & (0x3FU >> more);
        for (int n = 0; n < more && i < text.size(); ++n)
            code = (code << 6) | (static_cast<unsigned char>(text[i++]) & 0x3FU);
        out[at] = static_cast<wchar_t>(code);
    }
}

/// True when `stored` is `used` and what a coder adds to make whole blocks of it.
bool FillsBlocks(std::uint64_t used, std::uint64_t stored)
{
    constexpr std::uint64_t kBlock = 16;
    return used > 0 && stored == (used + kBlock - 1) / kBlock * kBlock;
}

} // namespace

std::uint32_t WidthWithoutPadding(const SStreamFormat& format)
{
    return format.displayed.x == 0 && FillsBlocks(format.sampledWidth, format.width) ? format.sampledWidth
                                                                                     : format.width;
}

std::uint32_t HeightWithoutPadding(const SStreamFormat& format)
{
    return format.displayed.y == 0 && FillsBlocks(format.displayed.height, format.height) ? format.displayed.height
                                                                                          : format.height;
}

void FillRecord(mxf_stream_format& record, const SStreamFormat& format, std::int64_t startOffset, bool withExtraData)
{
    record = {};
    record.stream_type = static_cast<std::uint32_t>(format.type);
    record.track_id = format.trackId;
    record.track_number = format.trackNumber;
    record.material_track_id = format.materialTrackId;
    record.body_sid = format.bodySid;
    record.index_sid = format.indexSid;
    std::ranges::copy(format.essenceContainer.bytes, record.essence_container);
    std::ranges::copy(format.coding.bytes, record.coding);
    record.wrapping = static_cast<std::uint32_t>(format.wrapping);
    record.codec = format.codec;
    std::ranges::copy(format.codecName.substr(0, sizeof record.codec_name - 1), record.codec_name);
    record.edit_rate_num = format.editRate.num;
    record.edit_rate_den = format.editRate.den;
    record.start_offset = startOffset;
    record.frame_rate = format.frameRate;
    record.frame_rate_code = format.frameRateCode;
    record.bit_rate = format.bitRate;

    record.width = WidthWithoutPadding(format);
    record.height = HeightWithoutPadding(format);
    const bool storesFields = format.height != 0 && format.frameHeight == 2 * format.height;
    record.frame_height = storesFields ? 2 * record.height : record.height;
    record.stored_width = format.width;
    record.stored_height = format.height;
    record.display_x = format.displayed.x;
    record.display_y = format.displayed.y;
    record.display_width = format.displayed.width;
    record.display_height = format.displayed.height;
    record.aspect_num = format.aspectRatio.num;
    record.aspect_den = format.aspectRatio.den;
    record.component_depth = format.componentDepth;
    record.horizontal_subsampling = format.horizontalSubsampling;
    record.vertical_subsampling = format.verticalSubsampling;
    record.max_gop = format.maxGop;
    record.max_b_pictures = format.maxBPictureCount;
    record.essence_kind = static_cast<std::uint8_t>(format.essenceKind);
    record.profile = format.profile;
    record.family = format.family;
    record.level = format.level;
    record.interlaced = format.isInterlaced ? 1 : 0;
    record.field_dominance = format.fieldDominance;
    record.closed_gop = format.isClosedGop ? 1 : 0;
    record.identical_gop = format.isIdenticalGop ? 1 : 0;

    record.sample_rate = format.sampleRate;
    record.bits_per_sample = format.bitsPerSample;
    record.channels = format.channelCount;
    record.block_align = format.blockAlign;
    if (withExtraData && !format.extraData.empty()) {
        record.extra_data_size = static_cast<std::uint32_t>(format.extraData.size());
        record.extra_data = format.extraData.data();
    }
}

void FillRecord(mxf_identification& record, const SIdentification& identification)
{
    record = {};
    Widen(identification.companyName, record.company_name);
    Widen(identification.productName, record.product_name);
    Widen(identification.versionString, record.version_string);
}

void FillRecord(mxf_top_pack& record, const CMxfPackage& package)
{
    record = {};
    std::ranges::copy(package.uid.bytes, record.umid);
    Widen(package.name, record.name);
}

} // namespace TamrelMxf
