#pragma once

#include "ScalingLists.h"
#include "Vui.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace TamrelMxf {

/// Values of profile_idc (ITU-T H.264, Annex A).
inline constexpr std::uint8_t kAvcProfileCavlc444Intra = 44;
inline constexpr std::uint8_t kAvcProfileBaseline = 66;
inline constexpr std::uint8_t kAvcProfileMain = 77;
inline constexpr std::uint8_t kAvcProfileExtended = 88;
inline constexpr std::uint8_t kAvcProfileHigh = 100;
inline constexpr std::uint8_t kAvcProfileHigh10 = 110;
inline constexpr std::uint8_t kAvcProfileHigh422 = 122;
inline constexpr std::uint8_t kAvcProfileHigh444 = 244;

/// chroma_format_idc.
enum class EAvcChroma : std::uint8_t { monochrome = 0, yuv420 = 1, yuv422 = 2, yuv444 = 3 };

/// A sequence parameter set (ITU-T H.264, 7.3.2.1.1).
struct SAvcSps {
    std::uint8_t profileIdc = 0;
    std::uint8_t constraintFlags = 0; ///< the byte behind profile_idc: constraint_set0_flag on top
    std::uint8_t levelIdc = 0;        ///< ten times the level; 9 or 11 with constraint_set3_flag for level 1b
    std::uint8_t id = 0;              ///< 0 to 31

    EAvcChroma chroma = EAvcChroma::yuv420;
    bool hasSeparatePlanes = false; ///< separate_colour_plane_flag
    std::uint8_t lumaDepth = 8;     ///< bits, 8 to 14
    std::uint8_t chromaDepth = 8;
    bool hasLosslessBypass = false; ///< qpprime_y_zero_transform_bypass_flag
    bool hasScalingMatrix = false;  ///< seq_scaling_matrix_present_flag
    SScalingLists scaling = SScalingLists::Flat();

    std::uint8_t frameNumBits = 4;                  ///< 4 to 16
    std::uint8_t pictureOrderType = 0;              ///< pic_order_cnt_type, 0 to 2
    std::uint8_t pictureOrderLsbBits = 4;           ///< 4 to 16, of type 0
    bool isDeltaAlwaysZero = false;                 ///< delta_pic_order_always_zero_flag, of type 1
    std::int32_t offsetForNonReference = 0;         ///< of type 1
    std::int32_t offsetForTopToBottom = 0;          ///< of type 1
    std::vector<std::int32_t> offsetsForReferences; ///< of type 1, at most 255
    std::uint8_t maxReferenceFrames = 0;            ///< max_num_ref_frames, 0 to 16
    bool allowsFrameNumGaps = false;

    std::uint32_t widthInMacroblocks = 0;
    std::uint32_t heightInMapUnits = 0; ///< macroblock rows of a frame, or of a field when `isFrameOnly` is false
    bool isFrameOnly = true;            ///< frame_mbs_only_flag: no fields and no field macroblocks anywhere
    bool hasMbaff = false;              ///< mb_adaptive_frame_field_flag
    bool hasDirect8x8 = false;

    /// Cut off each side of the coded picture, in luma samples of a frame.
    std::uint32_t cropLeft = 0, cropRight = 0, cropTop = 0, cropBottom = 0;
    std::optional<SAvcVui> vui;

    /// Reads a NAL unit of type 7, header byte first. Types 13 and 15 (extension, subset) are other structures.
    /// Not in the standard: cropping that leaves no picture is dropped, and so is usability information that is
    /// broken or cut short: it stands last, and the pictures can be read without.
    /// \return 0; -1 a value is out of its range; -9 the bytes end too early. The object is unchanged unless 0 is
    ///   returned.
    int Parse(std::span<const std::uint8_t> nal);

    std::uint32_t CodedWidth() const { return widthInMacroblocks * 16; }     ///< luma samples
    std::uint32_t CodedHeight() const { return HeightInMacroblocks() * 16; } ///< of a frame
    std::uint32_t HeightInMacroblocks() const { return heightInMapUnits * (isFrameOnly ? 1 : 2); }
    std::uint32_t Width() const { return CodedWidth() - cropLeft - cropRight; } ///< after cropping
    std::uint32_t Height() const { return CodedHeight() - cropTop - cropBottom; }
    /// ChromaArrayType: 0 also when the three planes are coded apart.
    EAvcChroma ChromaArrayType() const { return hasSeparatePlanes ? EAvcChroma::monochrome : chroma; }
    bool HasConstraint(unsigned set) const { return ((constraintFlags << set) & 0x80) != 0; } ///< \param set  0 to 5

    /// True when profile and constraints promise that every picture is an IDR picture (A.2.8 to A.2.11), or when
    /// no frame may refer to another.
    bool IsIntraOnly() const;
    /// Frames a second; absent when the stream does not tell.
    std::optional<SAvcRatio> FrameRate() const;
    /// MaxDpbFrames (A.3.1), 1 to 16. An unknown level counts as the highest.
    std::uint32_t MaxDpbFrames() const;
    /// Frames that may come before another in decoding order and after it in output order, 0 to 16: as stated, or
    /// inferred (E.2.1). Order type 2 has none.
    std::uint32_t ReorderFrames() const;
    /// max_dec_frame_buffering, as stated or inferred, 0 to 16.
    std::uint32_t DecFrameBuffering() const;
    /// "High 4:2:2 Intra"; empty for a profile that is not one of Annex A.
    std::string_view ProfileName() const;

    bool operator==(const SAvcSps&) const = delete;

private:
    int Read(CBitsReader& bits);
    int ReadHighProfile(CBitsReader& bits);
    int ReadPictureOrder(CBitsReader& bits);
    void ReadCropping(CBitsReader& bits);
    bool IsIntraProfile() const;
};

} // namespace TamrelMxf
