#pragma once

#include "ParameterSets.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace TamrelMxf {

/// What the parameter sets of an AVC stream say about its format.
struct SAvcFormat {
    std::uint8_t profileIdc = 0;
    std::uint8_t constraintFlags = 0; ///< constraint_set0_flag on top
    std::uint8_t levelIdc = 0;
    std::string_view profileName; ///< "High 4:2:2 Intra"; empty when unknown; good for ever
    bool isIntraOnly = false;     ///< promised, see SAvcSps::IsIntraOnly
    bool isInterlaced = false;    ///< frame_mbs_only_flag is 0: fields or field macroblocks may occur

    EAvcChroma chroma = EAvcChroma::yuv420;
    std::uint8_t lumaDepth = 8; ///< bits
    std::uint8_t chromaDepth = 8;

    std::uint32_t codedWidth = 0; ///< samples of a frame, whole macroblocks
    std::uint32_t codedHeight = 0;
    std::uint32_t displayX = 0; ///< of the cropped rectangle in the coded frame
    std::uint32_t displayY = 0;
    std::uint32_t displayWidth = 0;
    std::uint32_t displayHeight = 0;
    std::optional<SAvcRatio> sampleAspect;  ///< width to height of one sample
    std::optional<SAvcRatio> pictureAspect; ///< of the displayed rectangle

    std::optional<SAvcRatio> frameRate; ///< frames a second: half the stated field rate, which is exact
    bool isFixedFrameRate = false;
    std::uint8_t videoFormat = 5; ///< see SAvcVui
    bool isFullRange = false;
    std::uint8_t colourPrimaries = 2;
    std::uint8_t transferCharacteristics = 2;
    std::uint8_t matrixCoefficients = 2;

    std::uint8_t reorderFrames = 0;     ///< see SAvcSps::ReorderFrames
    std::uint8_t decFrameBuffering = 0; ///< frames

    std::vector<std::uint8_t> annexB;        ///< all parameter sets with start codes
    std::vector<std::uint8_t> configuration; ///< all parameter sets as an AVC decoder configuration record
};

/// \param sps  the sequence parameter set that the pictures use, one of `sets`
SAvcFormat ToAvcFormat(const SAvcSps& sps, const CAvcParameterSets& sets);

} // namespace TamrelMxf
