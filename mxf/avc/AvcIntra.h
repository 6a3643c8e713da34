#pragma once

#include "Vui.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// AVC-Intra (SMPTE RP 2027): constrained intra coding in three classes of constant frame size, often stored without
/// parameter sets, because class and picture format settle them.
namespace TamrelMxf {

struct SAvcIntraFormat {
    std::uint32_t intraClass = 0; ///< 50: 10 bit 4:2:0, narrowed; 100: 10 bit 4:2:2; 200: the same at twice the rate
    std::uint32_t lines = 0;      ///< 1080 or 720
    bool isInterlaced = false;    ///< of 1080 lines only
    SAvcRatio frameRate;          ///< frames a second

    bool operator==(const SAvcIntraFormat&) const = default;
};

/// What a picture coding label of the RP 2027 kind says (06.0E.2B.34.04.01.01.0A.04.01.02.02.01.32.21.xx for class 50,
/// .31.xx for class 100). The label for 29.97p also stands on 23.98p and that for 25p on 50p: take the rate of the
/// track where it differs.
/// \return nothing for any other label. Class 200 has none in the register.
std::optional<SAvcIntraFormat> AvcIntraFormatOfLabel(std::span<const std::uint8_t, 16> label);

/// The class and lines of a stream whose frames all have `bytes` bytes; the first of a file may be 512 longer. Class
/// 100 at 720 lines has frames of half the size of 1080, and class 50 at 1080 lines frames of nearly the same size. The
/// rate is that of the family that the size belongs to: 25 or 30000/1001 frames a second for 1080 lines, 50 or
/// 60000/1001 for 720. Fields are not known from the size: isInterlaced is false.
/// \return nothing for any other size
std::optional<SAvcIntraFormat> AvcIntraFormatOfFrameSize(std::size_t bytes);

/// A sequence and a picture parameter set, both with id 0: NAL units, header byte first.
struct SAvcIntraSets {
    std::vector<std::uint8_t> sps;
    std::vector<std::uint8_t> pps;

    /// Both behind start codes, as CAvcAnalyser::SetExtraData takes them.
    std::vector<std::uint8_t> ToAnnexB() const;
};

/// Builds the parameter sets that decoders need for slices stored without: profile High 10 Intra for class 50
/// (1440x1080 and 960x720, samples 4:3) and High 4:2:2 Intra above, 1080 lines cropped from 1088, interlaced frames
/// with macroblock-adaptive coding, CAVLC but for class 50, 8x8 transform, the scaling matrices of class and format.
///
/// Profile, depth, size, entropy coding and class sizes are the constraints of RP 2027. The scaling matrices, the
/// chroma QP offsets, macroblock-adaptive coding and the widths of frame_num and order count were taken from streams of
/// an encoder for these classes and checked by decoding such streams with the sets replaced; streams from cameras
/// have not been at hand. The level of class 200 is not certain: 4.1 is stated, as for class 100, since no higher one
/// admits fields.
/// \return nothing for another class or number of lines, interlaced 720 lines, or a frame rate with a zero
std::optional<SAvcIntraSets> MakeAvcIntraSets(const SAvcIntraFormat& format);

} // namespace TamrelMxf
