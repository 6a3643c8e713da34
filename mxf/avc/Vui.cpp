#include "mxf/avc/Vui.h"

#include <iterator>
#include <numeric>

namespace TamrelMxf {
namespace {

/// Table E-1, from aspect_ratio_idc 1 on.
constexpr SAvcRatio kSampleAspects[] = {{1, 1},   {12, 11}, {10, 11}, {16, 11}, {40, 33},  {24, 11}, {20, 11}, {32, 11},
                                        {80, 33}, {18, 11}, {15, 11}, {64, 33}, {160, 99}, {4, 3},   {3, 2},   {2, 1}};
constexpr std::uint32_t kExtendedAspect = 255;
constexpr std::uint32_t kMaxHrdBuffers = 32;

std::optional<SAvcRatio> SampleAspect(CBitsReader& bits)
{
    const std::uint32_t code = bits.Bits(8);
    if (code == kExtendedAspect) {
        const std::uint32_t width = bits.Bits(16);
        const std::uint32_t height = bits.Bits(16);
        if (width == 0 || height == 0) return std::nullopt;
        return SAvcRatio::Reduced(width, height);
    }
    if (code == 0 || code > std::size(kSampleAspects)) return std::nullopt;
    return kSampleAspects[code - 1];
}

} // namespace

SAvcRatio SAvcRatio::Reduced(std::uint64_t num, std::uint64_t den)
{
    const std::uint64_t divisor = std::gcd(num, den);
    return {static_cast<std::uint32_t>(num / divisor), static_cast<std::uint32_t>(den / divisor)};
}

bool SAvcVui::ReadHrd(CBitsReader& bits)
{
    const std::uint32_t count = bits.Ue();
    if (count >= kMaxHrdBuffers) return false;
    bits.Skip(4 + 4); // bit_rate_scale, cpb_size_scale
    for (std::uint32_t i = 0; i <= count && bits.IsOk(); ++i) {
        bits.Ue();   // bit_rate_value_minus1
        bits.Ue();   // cpb_size_value_minus1
        bits.Flag(); // cbr_flag
    }
    bits.Skip(5); // initial_cpb_removal_delay_length_minus1
    removalDelayBits = static_cast<std::uint8_t>(bits.Bits(5) + 1);
    outputDelayBits = static_cast<std::uint8_t>(bits.Bits(5) + 1);
    timeOffsetBits = static_cast<std::uint8_t>(bits.Bits(5));
    hasRemovalDelays = true;
    return bits.IsOk();
}

bool SAvcVui::Read(CBitsReader& bits)
{
    if (bits.Flag()) sampleAspect = SampleAspect(bits);
    if (bits.Flag()) bits.Flag(); // overscan_appropriate_flag
    if (bits.Flag()) {
        videoFormat = static_cast<std::uint8_t>(bits.Bits(3));
        isFullRange = bits.Flag();
        if (bits.Flag()) {
            colourPrimaries = static_cast<std::uint8_t>(bits.Bits(8));
            transferCharacteristics = static_cast<std::uint8_t>(bits.Bits(8));
            matrixCoefficients = static_cast<std::uint8_t>(bits.Bits(8));
        }
    }
    if (bits.Flag()) {
        const std::uint32_t top = bits.Ue();
        const std::uint32_t bottom = bits.Ue();
        if (top > 5 || bottom > 5) return false;
        chromaLocationTop = static_cast<std::uint8_t>(top);
        chromaLocationBottom = static_cast<std::uint8_t>(bottom);
    }
    if (bits.Flag()) {
        const std::uint32_t unitsInTick = bits.Bits(32);
        const std::uint32_t timeScale = bits.Bits(32);
        if (unitsInTick != 0 && timeScale != 0) fieldRate = SAvcRatio::Reduced(timeScale, unitsInTick);
        isFixedFrameRate = bits.Flag();
    }
    const bool hasNalHrd = bits.Flag();
    if (hasNalHrd && !ReadHrd(bits)) return false;
    const bool hasVclHrd = bits.Flag();
    if (hasVclHrd && !ReadHrd(bits)) return false;
    if (hasNalHrd || hasVclHrd) bits.Flag(); // low_delay_hrd_flag
    hasPictureStructure = bits.Flag();
    if (bits.Flag()) {
        bits.Flag(); // motion_vectors_over_pic_boundaries_flag
        for (int i = 0; i < 4; ++i)
            bits.Ue(); // max_bytes_per_pic_denom, max_bits_per_mb_denom, log2_max_mv_length_horizontal, _vertical
        maxReorderFrames = bits.Ue();
        maxDecFrameBuffering = bits.Ue();
    }
    return bits.IsOk();
}

} // namespace TamrelMxf
