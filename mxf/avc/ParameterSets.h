#pragma once

#include "PictureParameterSet.h"

#include <cstdint>
#include <map>
#include <span>
#include <vector>

namespace TamrelMxf {

/// The parameter sets of a stream by their ids, the last one sent of each.
class CAvcParameterSets {
public:
    /// Takes in a NAL unit of type 7 or 8 with its header byte; the bytes are copied, zeros at the end left out.
    /// \return 0, also for a repetition; -1 for any other unit, a set that is broken, holds a start code or is larger
    ///   than kMaxAvcParameterSetBytes; -9 for one cut short. Only a 0 changes anything. A picture parameter set is
    ///   looked into when it is first asked for, as it may arrive ahead of its sequence parameter set.
    int Add(std::span<const std::uint8_t> nal);

    /// \return null when there is none of this id; good until the next Add()
    const SAvcSps* Sps(std::uint32_t id) const;
    /// \return null when there is none of this id, when it is broken, or its sequence parameter set is missing
    const SAvcPps* Pps(std::uint32_t id);

    /// The sequence parameter set with the lowest id, null without any.
    const SAvcSps* FirstSps() const;
    bool IsEmpty() const { return sequences_.empty() && pictures_.empty(); }

    /// The NAL units as they came, header byte first, by id.
    std::vector<std::span<const std::uint8_t>> SpsUnits() const;
    std::vector<std::span<const std::uint8_t>> PpsUnits() const;

    void Clear();

private:
    struct SSequence {
        std::vector<std::uint8_t> nal;
        SAvcSps sps;
        std::uint64_t version = 0;
    };
    struct SPicture {
        std::vector<std::uint8_t> nal;
        SAvcPps pps;
        std::uint64_t spsVersion = 0; ///< that `pps` was read with; 0: not read yet
        bool isGood = false;          ///< as read with that version
    };

    int AddSequence(std::span<const std::uint8_t> nal);
    int AddPicture(std::span<const std::uint8_t> nal);

    std::map<std::uint32_t, SSequence> sequences_;
    std::map<std::uint32_t, SPicture> pictures_;
    std::uint64_t lastVersion_ = 0;
};

} // namespace TamrelMxf
