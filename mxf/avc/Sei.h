#pragma once

#include "Vui.h"

#include <cstdint>
#include <optional>
#include <span>

namespace TamrelMxf {

/// Where decoding may begin though no IDR picture stands there (recovery_point of ITU-T H.264, D.1.8).
struct SAvcRecoveryPoint {
    std::uint32_t frameCount = 0; ///< recovery_frame_cnt: frames to decode before the pictures are good
    bool isExact = false;         ///< exact_match_flag
    bool isLinkBroken = false;    ///< broken_link_flag: pictures in front of it in output order may be damaged
    bool operator==(const SAvcRecoveryPoint&) const = default;
};

/// The supplemental enhancement information that tells something about order, entry or fields.
struct SAvcSei {
    std::optional<SAvcRecoveryPoint> recoveryPoint;

    /// Takes in a whole NAL unit of type 6, header byte first. Other messages are stepped over; a broken one ends
    /// the walk, and what stood in front of it counts.
    void Read(std::span<const std::uint8_t> nal);

    /// pic_struct (table D-1), 0 to 8, of the last picture timing message; absent when there was none or it has none.
    /// \param vui  of the sequence parameter set in force, which tells the layout of the message
    std::optional<std::uint8_t> PictureStructure(const SAvcVui& vui) const;

private:
    std::optional<CBitsReader> timing_; ///< stands at the message; the bytes are those of the unit
};

} // namespace TamrelMxf
