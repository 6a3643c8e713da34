#pragma once

#include "SequenceParameterSet.h"

#include <cstdint>
#include <span>

namespace TamrelMxf {

/// A picture parameter set (ITU-T H.264, 7.3.2.2): what slice headers are read with, and what a decoder is told.
struct SAvcPps {
    std::uint8_t id = 0;                ///< 0 to 255
    std::uint8_t sequenceId = 0;        ///< of its sequence parameter set
    bool isCabac = false;               ///< entropy_coding_mode_flag
    bool hasFieldOrderInFrames = false; ///< bottom_field_pic_order_in_frame_present_flag
    std::uint8_t sliceGroups = 1;       ///< 1 to 8
    std::uint8_t sliceGroupMapType = 0; ///< 0 to 6
    std::uint8_t referencesList0 = 1;   ///< num_ref_idx_l0_default_active, 1 to 32
    std::uint8_t referencesList1 = 1;
    bool hasWeightedPrediction = false;
    std::uint8_t weightedBipred = 0; ///< weighted_bipred_idc, 0 to 2
    std::int8_t initialQp = 26;      ///< 26 + pic_init_qp_minus26; below 0 for deep samples
    std::int8_t initialQs = 26;
    std::int8_t cbQpOffset = 0; ///< -12 to 12
    std::int8_t crQpOffset = 0;
    bool hasDeblockingControl = false;
    bool hasConstrainedIntra = false;
    bool allowsRedundantPictures = false; ///< redundant_pic_cnt_present_flag
    bool hasTransform8x8 = false;
    bool hasScalingMatrix = false;                 ///< pic_scaling_matrix_present_flag
    SScalingLists scaling = SScalingLists::Flat(); ///< in force: its own, or those of the sequence

    /// Reads a NAL unit of type 8, header byte first.
    /// \param sps  the sequence parameter set that SequenceIdOf(nal) names
    /// \return 0; -1 a value is out of its range; -9 the bytes end too early. The object is unchanged unless 0 is
    ///   returned.
    int Parse(std::span<const std::uint8_t> nal, const SAvcSps& sps);

    /// The id of the sequence parameter set that a NAL unit of type 8 is to be read with, 0 to 31; -1 or -9 as above.
    static int SequenceIdOf(std::span<const std::uint8_t> nal);

private:
    int Read(CBitsReader& bits, const SAvcSps& sps);
    int ReadSliceGroups(CBitsReader& bits);
};

} // namespace TamrelMxf
