#pragma once

#include "../labels/FixedText.h"
#include "../labels/Ul.h"

#include <cstdint>

namespace TamrelMxf {

/// How essence is cut into KLVs.
enum class EWrapping : std::uint32_t {
    unknown = 0,
    frame = 1, ///< one KLV a frame
    clip = 2,  ///< one KLV for everything
    custom = 3,
    field = 4, ///< one KLV a field
    line = 5,  ///< one KLV a line
};

enum class ECodingKind : std::uint8_t { container, picture, sound };

/// What a label says about essence: a row of the registers of container and coding labels.
struct SCoding {
    std::uint64_t item; ///< bytes 9 to 16 of the label
    ECodingKind kind;
    EWrapping wrapping;
    SFixedText<23> family; ///< "MPEG-2", "AVC", "PCM" and so on
    SFixedText<91> name;   ///< in full
};

/// The row of an essence container or coding label; without one the row of the nearest branch above it. The stream
/// number in byte 15 of elementary stream containers does not matter, nor does byte 8 (version). \return null for
/// labels of other kinds and unknown branches
const SCoding* FindCoding(const SUl& label);

} // namespace TamrelMxf
