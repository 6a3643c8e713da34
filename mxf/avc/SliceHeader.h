#pragma once

#include "ParameterSets.h"

#include <array>
#include <cstdint>
#include <span>

namespace TamrelMxf {

/// What a slice is predicted from: slice_type modulo 5 (ITU-T H.264, table 7-6).
enum class EAvcSliceType : std::uint8_t { p = 0, b = 1, i = 2, sp = 3, si = 4 };

/// A slice header (ITU-T H.264, 7.3.3), from its first field to the marking of reference pictures.
struct SAvcSliceHeader {
    std::uint8_t nalType = 1; ///< 1, 2 or 5
    std::uint8_t refIdc = 0;  ///< nal_ref_idc; 0: no other picture refers to this one
    std::uint32_t firstMacroblock = 0;
    EAvcSliceType type = EAvcSliceType::i;
    bool isTypeOfAllSlices = false; ///< slice_type 5 to 9: the picture's other slices are like this one
    std::uint8_t pictureSetId = 0;
    std::uint8_t sequenceSetId = 0;
    std::uint8_t colourPlane = 0;
    std::uint32_t frameNum = 0;
    bool isField = false;
    bool isBottomField = false;
    std::uint32_t idrPictureId = 0;
    std::uint32_t orderLsb = 0;               ///< pic_order_cnt_lsb
    std::int32_t orderDeltaBottom = 0;        ///< delta_pic_order_cnt_bottom
    std::array<std::int32_t, 2> orderDelta{}; ///< delta_pic_order_cnt
    std::uint32_t redundantCount = 0;         ///< redundant_pic_cnt; 0: of the primary coded picture
    bool isLongTermReference = false;         ///< of an IDR picture
    bool isMarkingAdaptive = false;           ///< adaptive_ref_pic_marking_mode_flag
    bool clearsReferences = false;            ///< memory_management_control_operation 5

    bool IsIdr() const { return nalType == 5; }
    bool IsIntra() const { return type == EAvcSliceType::i || type == EAvcSliceType::si; }

    /// Reads the header at the start of a NAL unit of type 1, 2 or 5, header byte first. The bytes may run on
    /// behind the unit.
    /// \return 0; -1 a value is out of its range or the unit is another one; -4 its parameter sets are not known;
    ///   -9 the bytes end too early. The object is unchanged unless 0 is returned.
    int Parse(std::span<const std::uint8_t> nal, CAvcParameterSets& sets);

    /// True when this slice, in decoding order after `previous`, is the first of another primary coded picture
    /// (7.4.1.2.4). Neither may be of a redundant picture.
    /// \param sps  of this slice
    bool StartsPicture(const SAvcSliceHeader& previous, const SAvcSps& sps) const;

    /// True when this slice is of the second field of the frame whose first field `first` is of, the picture in
    /// front of it: opposite parity, the same frame_num, neither IDR nor operation 5 (3.30, 3.31). Not in the
    /// standard: two IDR fields with the same idr_pic_id, which two pictures in a row may not have, are a frame too.
    bool CompletesFrame(const SAvcSliceHeader& first) const;

private:
    int Read(CBitsReader& bits, CAvcParameterSets& sets);
    void ReadPictureOrder(CBitsReader& bits, const SAvcSps& sps, const SAvcPps& pps);
    int ReadReferences(CBitsReader& bits, const SAvcSps& sps, const SAvcPps& pps);
    int ReadMarking(CBitsReader& bits);
};

} // namespace TamrelMxf
