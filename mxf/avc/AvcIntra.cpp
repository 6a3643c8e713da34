#include "mxf/avc/AvcIntra.h"

#include "mxf/avc/BitsWriter.h"
#include "mxf/avc/ScalingLists.h"
#include "mxf/avc/SequenceParameterSet.h"

#include <algorithm>
#include <array>

namespace TamrelMxf {
namespace {

constexpr std::uint8_t kSpsHeader = 0x67; // nal_ref_idc 3, type 7
constexpr std::uint8_t kPpsHeader = 0x68;
constexpr std::uint8_t kConstraintSet3 = 0x10; // intra pictures only
constexpr std::size_t kFirstFrameExtraBytes = 512;

using TList4x4 = SScalingLists::TList4x4;
using TList8x8 = SScalingLists::TList8x8;

/// What depends on class and picture format. Of the scaling lists only those of intra chroma 4x4 and intra luma 8x8
/// differ from the default ones.
struct SVariant {
    std::uint32_t intraClass; ///< 100 also stands for 200
    std::uint32_t lines;
    bool isInterlaced;
    std::uint32_t width;
    std::uint8_t levelIdc;
    std::int8_t chromaQpOffset;
    TList4x4 chroma4x4; ///< zig-zag
    TList8x8 luma8x8;   ///< zig-zag
};

constexpr TList4x4 kChroma50{16, 22, 22, 28, 28, 28, 40, 40, 40, 40, 44, 44, 44, 48, 48, 60};
constexpr TList4x4 kChroma100{16, 20, 20, 26, 26, 26, 32, 32, 32, 32, 38, 38, 38, 44, 44, 50};
constexpr TList4x4 kChroma100At720{16, 21, 21, 27, 27, 27, 34, 34, 34, 34, 41, 41, 41, 46, 46, 54};

constexpr TList8x8 kLuma50Interlaced{16, 18, 18, 19, 19, 19, 21, 21, 21, 21, 24, 24, 24, 24, 27, 33,
                                     30, 27, 27, 27, 24, 27, 27, 30, 30, 30, 33, 81, 87, 81, 78, 33,
                                     33, 30, 30, 30, 33, 33, 33, 78, 78, 84, 87, 90, 84, 81, 78, 78,
                                     33, 78, 78, 81, 84, 90, 90, 84, 81, 81, 84, 87, 93, 93, 87, 96};
constexpr TList8x8 kLuma50{16, 18, 18, 19, 19, 19, 21, 21, 21, 21, 24, 24, 24, 24, 24, 27, 27, 27, 27, 27, 27, 30,
                           30, 30, 30, 30, 30, 30, 33, 33, 33, 33, 33, 33, 33, 33, 78, 78, 78, 78, 78, 78, 78, 81,
                           81, 81, 81, 81, 81, 84, 84, 84, 84, 84, 87, 87, 87, 87, 90, 90, 90, 93, 93, 96};
constexpr TList8x8 kLuma100Interlaced{16, 19, 18, 18, 19, 20, 23, 22, 20, 19, 20, 20, 23, 24, 24, 26,
                                      26, 24, 23, 22, 22, 22, 23, 24, 26, 26, 32, 32, 42, 36, 32, 32,
                                      26, 24, 23, 22, 23, 24, 26, 32, 36, 36, 42, 63, 42, 36, 32, 26,
                                      24, 26, 32, 36, 59, 63, 63, 59, 42, 36, 42, 59, 68, 68, 59, 72};
constexpr TList8x8 kLuma100{16, 18, 18, 19, 19, 19, 20, 20, 20, 20, 22, 22, 22, 22, 22, 23, 23, 23, 23, 23, 23, 24,
                            24, 24, 24, 24, 24, 24, 26, 26, 26, 26, 26, 26, 26, 26, 32, 32, 32, 32, 32, 32, 32, 36,
                            36, 36, 36, 36, 36, 42, 42, 42, 42, 42, 59, 59, 59, 59, 63, 63, 63, 68, 68, 72};
constexpr TList8x8 kLuma100At720{16, 18, 18, 19, 19, 19, 21, 19, 19, 21, 22, 21, 21, 21, 22, 24, 22, 22, 22, 22, 24, 26,
                                 24, 22, 22, 22, 24, 26, 32, 26, 24, 23, 23, 24, 26, 32, 32, 26, 24, 24, 24, 26, 32, 32,
                                 26, 25, 25, 26, 32, 34, 26, 26, 26, 34, 34, 34, 34, 34, 36, 36, 36, 38, 38, 42};

constexpr SVariant kVariants[] = {
    {50, 1080, true, 1440, 40, 4, kChroma50, kLuma50Interlaced},
    {50, 1080, false, 1440, 40, 4, kChroma50, kLuma50},
    {50, 720, false, 960, 32, 4, kChroma50, kLuma50},
    {100, 1080, true, 1920, 41, 3, kChroma100, kLuma100Interlaced},
    {100, 1080, false, 1920, 41, 3, kChroma100, kLuma100},
    {100, 720, false, 1280, 41, 4, kChroma100At720, kLuma100At720},
};

struct SFrameSize {
    std::size_t bytes;
    SAvcIntraFormat format;
};
constexpr SAvcRatio k25{25, 1}, k30{30000, 1001}, k50{50, 1}, k60{60000, 1001};
constexpr SFrameSize kFrameSizes[] = {
    {568832, {100, 1080, false, k25}}, {472576, {100, 1080, false, k30}}, {284672, {100, 720, false, k50}},
    {236544, {100, 720, false, k60}},  {281088, {50, 1080, false, k25}},  {232960, {50, 1080, false, k30}},
    {140800, {50, 720, false, k50}},   {116736, {50, 720, false, k60}},   {1144320, {200, 1080, false, k25}},
    {952832, {200, 1080, false, k30}}, {572416, {200, 720, false, k50}},  {476672, {200, 720, false, k60}},
};

/// The last two bytes of the labels.
struct SLabel {
    std::uint8_t code;
    std::uint32_t lines;
    bool isInterlaced;
    SAvcRatio frameRate;
};
constexpr std::array<std::uint8_t, 14> kLabelPrefix{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01,
                                                    0x0A, 0x04, 0x01, 0x02, 0x02, 0x01, 0x32};
constexpr std::size_t kLabelVersionByte = 7;
constexpr std::uint8_t kLabelClass50 = 0x21;
constexpr std::uint8_t kLabelClass100 = 0x31;
constexpr SLabel kLabels[] = {
    {1, 1080, true, k30},  {2, 1080, true, k25}, {3, 1080, false, k30},
    {4, 1080, false, k25}, {8, 720, false, k60}, {9, 720, false, k50},
};

/// scaling_list() of 7.3.2.1.1.1.
template <typename TList> void WriteList(CBitsWriter& bits, const TList& list)
{
    bits.Flag(true);
    int last = 8;
    for (const std::uint8_t value : list) {
        bits.Se(static_cast<std::int8_t>(value - last)); // modulo 256
        last = value;
    }
}

void WriteVui(CBitsWriter& bits, const SAvcIntraFormat& format)
{
    bits.Flag(true);                                // aspect_ratio_info_present_flag
    bits.Bits(format.intraClass == 50 ? 14 : 1, 8); // 4:3 or square, table E-1
    bits.Flag(false);                               // overscan_info_present_flag
    bits.Flag(false);                               // video_signal_type_present_flag
    bits.Flag(false);                               // chroma_loc_info_present_flag
    bits.Flag(true);                                // timing_info_present_flag
    bits.Bits(format.frameRate.den, 32);
    bits.Bits(format.frameRate.num * 2, 32); // fields a second
    bits.Flag(true);                         // fixed_frame_rate_flag
    bits.Flag(false);                        // nal_hrd_parameters_present_flag
    bits.Flag(false);                        // vcl_hrd_parameters_present_flag
    bits.Flag(false);                        // pic_struct_present_flag
    bits.Flag(false);                        // bitstream_restriction_flag
}

std::vector<std::uint8_t> MakeSps(const SAvcIntraFormat& format, const SVariant& variant)
{
    const bool isNarrow = format.intraClass == 50;
    CBitsWriter bits;
    bits.Bits(isNarrow ? kAvcProfileHigh10 : kAvcProfileHigh422, 8);
    bits.Bits(kConstraintSet3, 8);
    bits.Bits(variant.levelIdc, 8);
    bits.Ue(0);                // seq_parameter_set_id
    bits.Ue(isNarrow ? 1 : 2); // chroma_format_idc
    bits.Ue(2);                // bit_depth_luma_minus8
    bits.Ue(2);                // bit_depth_chroma_minus8
    bits.Flag(false);          // qpprime_y_zero_transform_bypass_flag
    bits.Flag(true);           // seq_scaling_matrix_present_flag
    bits.Flag(false);          // intra Y
    WriteList(bits, variant.chroma4x4);
    for (int i = 2; i < 6; ++i) // intra Cr is as Cb; the inter lists are the default ones
        bits.Flag(false);
    WriteList(bits, variant.luma8x8);
    bits.Flag(false); // inter Y 8x8
    bits.Ue(0);       // log2_max_frame_num_minus4
    bits.Ue(0);       // pic_order_cnt_type
    bits.Ue(0);       // log2_max_pic_order_cnt_lsb_minus4
    bits.Ue(0);       // max_num_ref_frames
    bits.Flag(false); // gaps_in_frame_num_value_allowed_flag
    bits.Ue(variant.width / 16 - 1);
    bits.Ue((variant.lines + 15) / 16 / (variant.isInterlaced ? 2 : 1) - 1);
    bits.Flag(!variant.isInterlaced);          // frame_mbs_only_flag
    if (variant.isInterlaced) bits.Flag(true); // mb_adaptive_frame_field_flag
    bits.Flag(true);                           // direct_8x8_inference_flag
    const std::uint32_t spare = (16 - variant.lines % 16) % 16;
    bits.Flag(spare != 0); // frame_cropping_flag
    if (spare != 0) {
        for (int i = 0; i < 3; ++i) // left, right, top
            bits.Ue(0);
        bits.Ue(spare / (isNarrow ? 2 : 1) / (variant.isInterlaced ? 2 : 1));
    }
    bits.Flag(true); // vui_parameters_present_flag
    WriteVui(bits, format);
    bits.TrailingBits();
    return bits.NalUnit(kSpsHeader);
}

std::vector<std::uint8_t> MakePps(const SAvcIntraFormat& format, const SVariant& variant)
{
    CBitsWriter bits;
    bits.Ue(0);                         // pic_parameter_set_id
    bits.Ue(0);                         // seq_parameter_set_id
    bits.Flag(format.intraClass == 50); // entropy_coding_mode_flag
    bits.Flag(false);                   // bottom_field_pic_order_in_frame_present_flag
    bits.Ue(0);                         // num_slice_groups_minus1
    bits.Ue(0);                         // num_ref_idx_l0_default_active_minus1
    bits.Ue(0);                         // num_ref_idx_l1_default_active_minus1
    bits.Flag(false);                   // weighted_pred_flag
    bits.Bits(0, 2);                    // weighted_bipred_idc
    bits.Se(0);                         // pic_init_qp_minus26
    bits.Se(0);                         // pic_init_qs_minus26
    bits.Se(variant.chromaQpOffset);
    bits.Flag(true);                 // deblocking_filter_control_present_flag
    bits.Flag(false);                // constrained_intra_pred_flag
    bits.Flag(false);                // redundant_pic_cnt_present_flag
    bits.Flag(true);                 // transform_8x8_mode_flag
    bits.Flag(false);                // pic_scaling_matrix_present_flag
    bits.Se(variant.chromaQpOffset); // second_chroma_qp_index_offset
    bits.TrailingBits();
    return bits.NalUnit(kPpsHeader);
}

} // namespace

std::optional<SAvcIntraFormat> AvcIntraFormatOfLabel(std::span<const std::uint8_t, 16> label)
{
    for (std::size_t i = 0; i < kLabelPrefix.size(); ++i)
        if (i != kLabelVersionByte && label[i] != kLabelPrefix[i]) return std::nullopt;
    const std::uint8_t classByte = label[14];
    if (classByte != kLabelClass50 && classByte != kLabelClass100) return std::nullopt;
    const auto* found = std::ranges::find(kLabels, label[15], &SLabel::code);
    if (found == std::end(kLabels)) return std::nullopt;
    return SAvcIntraFormat{classByte == kLabelClass50 ? 50U : 100U, found->lines, found->isInterlaced,
                           found->frameRate};
}

std::optional<SAvcIntraFormat> AvcIntraFormatOfFrameSize(std::size_t bytes)
{
    for (const SFrameSize& size : kFrameSizes)
        if (bytes == size.bytes || bytes == size.bytes + kFirstFrameExtraBytes) return size.format;
    return std::nullopt;
}

std::optional<SAvcIntraSets> MakeAvcIntraSets(const SAvcIntraFormat& format)
{
    if (format.frameRate.num == 0 || format.frameRate.den == 0 || format.frameRate.num > UINT32_MAX / 2)
        return std::nullopt;
    const std::uint32_t tableClass = format.intraClass == 200 ? 100 : format.intraClass;
    for (const SVariant& variant : kVariants)
        if (variant.intraClass == tableClass && variant.lines == format.lines &&
            variant.isInterlaced == format.isInterlaced)
            return SAvcIntraSets{MakeSps(format, variant), MakePps(format, variant)};
    return std::nullopt;
}

std::vector<std::uint8_t> SAvcIntraSets::ToAnnexB() const
{
    std::vector<std::uint8_t> bytes;
    for (const std::vector<std::uint8_t>* nal : {&sps, &pps}) {
        bytes.insert(bytes.end(), {0, 0, 0, 1});
        bytes.insert(bytes.end(), nal->begin(), nal->end());
    }
    return bytes;
}

} // namespace TamrelMxf
