#pragma once

#include "BitsReader.h"

#include <cstdint>
#include <optional>

namespace TamrelMxf {

/// An exact ratio of two whole numbers; both are above 0 unless a member says otherwise.
struct SAvcRatio {
    std::uint32_t num = 0;
    std::uint32_t den = 0;

    /// num / den in lowest terms; num and den are above 0 and the results must fit 32 bits, as they do when one
    /// comes from the stream and the other is at most twice that.
    static SAvcRatio Reduced(std::uint64_t num, std::uint64_t den);
    bool operator==(const SAvcRatio&) const = default;
};

/// Video usability information (ITU-T H.264, Annex E). What the stream leaves out has the value that the standard
/// infers, or none.
struct SAvcVui {
    std::optional<SAvcRatio> sampleAspect; ///< width to height of a sample; absent: unspecified
    std::uint8_t videoFormat = 5;          ///< 0 component, 1 PAL, 2 NTSC, 3 SECAM, 4 MAC, 5 unspecified
    bool isFullRange = false;
    std::uint8_t colourPrimaries = 2; ///< ITU-T H.273 codes; 2: unspecified
    std::uint8_t transferCharacteristics = 2;
    std::uint8_t matrixCoefficients = 2;
    std::uint8_t chromaLocationTop = 0; ///< chroma_sample_loc_type, 0 to 5
    std::uint8_t chromaLocationBottom = 0;

    /// Fields a second; absent without timing, or with a zero in it.
    std::optional<SAvcRatio> fieldRate;
    bool isFixedFrameRate = false;

    bool hasPictureStructure = false; ///< picture timing messages carry pic_struct
    bool hasRemovalDelays = false;    ///< they begin with the two delays below (an HRD is present)
    std::uint8_t removalDelayBits = 24;
    std::uint8_t outputDelayBits = 24;
    std::uint8_t timeOffsetBits = 24;

    std::optional<std::uint32_t> maxReorderFrames;     ///< max_num_reorder_frames
    std::optional<std::uint32_t> maxDecFrameBuffering; ///< frames

    /// Reads vui_parameters().
    /// \return false when a value is out of its range or the bits end
    bool Read(CBitsReader& bits);

private:
    bool ReadHrd(CBitsReader& bits);
};

} // namespace TamrelMxf
