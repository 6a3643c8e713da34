#pragma once

#include "../index/MxfIndexParser.h"
#include "../model/StreamFormat.h"
#include "ElementBytes.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace TamrelMxf {

/// Where the edit units of a stream begin in the row of its bytes.
class CUnitCutter {
public:
    virtual ~CUnitCutter();
    CUnitCutter(const CUnitCutter&) = delete;
    CUnitCutter& operator=(const CUnitCutter&) = delete;

    /// The byte of the row at which stored edit unit `unit` begins.
    /// \param bytes  looked into where the row itself has to tell
    /// \return nothing when it is not known, or not yet
    virtual std::optional<std::int64_t> Begin(CElementBytes& bytes, std::int64_t unit) = 0;
    /// How many whole edit units `count` bytes from the beginning of one on are, at least 1.
    virtual std::int64_t UnitsIn(std::int64_t /*count*/) const { return 1; }
    /// True when the row itself is looked through: then what was not found is not there.
    virtual bool NeedsRow() const { return false; }
    /// True when Begin knows all that begin in the row as far as that is there.
    virtual bool FindsAll() const { return false; }
    /// Tells that the row ends where it ends now. \return true when Begin may know more than before
    virtual bool Finish() { return false; }

protected:
    CUnitCutter() = default;
};

/// The cutter for a stream. Sound is cut by the size of its samples; everything else by the index tables or, without
/// them, by what the first bytes tell: the frame size of DV and VC-3, the start codes of MPEG and AVC. In frame
/// wrapping each element is an edit unit. \param index  may be null; borrowed \return null where nothing tells, as far
/// as the bytes are there
std::unique_ptr<CUnitCutter> MakeUnitCutter(const SStreamFormat& format, CMxfIndexParser* index, CElementBytes& bytes);
/// The cutter that makes each element an edit unit, or the two that are fields of a frame.
std::unique_ptr<CUnitCutter> MakeElementCutter(const SStreamFormat& format);

} // namespace TamrelMxf
