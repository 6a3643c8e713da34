#pragma once

#include "SliceHeader.h"

#include <algorithm>
#include <cstdint>

namespace TamrelMxf {

/// The order counts of one coded picture: of both fields of a frame, or of one field.
struct SPictureOrderCount {
    std::int32_t top = 0;    ///< TopFieldOrderCnt
    std::int32_t bottom = 0; ///< BottomFieldOrderCnt
    bool hasTop = false;
    bool hasBottom = false;

    /// PicOrderCnt(): the lower of those that are there (8-1).
    std::int32_t Count() const { return !hasBottom ? top : !hasTop ? bottom : std::min(top, bottom); }
    bool operator==(const SPictureOrderCount&) const = default;
};

/// Counts the output order of coded pictures (ITU-T H.264, 8.2.1), fed with one slice header of each primary coded
/// picture, in decoding order. Every field is a picture of its own.
///
/// Values that no conforming stream has wrap at 32 bits. "Non-existing" frames, inferred for gaps in frame_num, need
/// no call: they move the count on by at most one turn of frame_num, which the next real picture shows as well.
class CPictureOrderCounter {
public:
    /// \return the picture's counts. After memory management operation 5 they are those that the picture keeps
    ///   (8.2.1): it starts anew at 0, before everything that follows and after everything that came.
    SPictureOrderCount Next(const SAvcSliceHeader& slice, const SAvcSps& sps);

    /// Forgets what came before, as behind a gap in the stream; the next IDR picture makes all right again.
    void Reset() { *this = {}; }

private:
    SPictureOrderCount CountByLsb(const SAvcSliceHeader& slice, const SAvcSps& sps);
    SPictureOrderCount CountByCycle(const SAvcSliceHeader& slice, const SAvcSps& sps);
    SPictureOrderCount CountByFrameNum(const SAvcSliceHeader& slice, const SAvcSps& sps);
    std::uint64_t FrameNumOffset(const SAvcSliceHeader& slice, const SAvcSps& sps);

    std::int64_t previousMsb_ = 0; ///< of the previous reference picture
    std::int64_t previousLsb_ = 0;
    std::uint32_t previousFrameNum_ = 0; ///< of the previous picture
    std::uint64_t previousOffset_ = 0;   ///< FrameNumOffset of the previous picture
};

} // namespace TamrelMxf
