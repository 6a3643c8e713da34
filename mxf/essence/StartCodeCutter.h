#pragma once

#include "UnitCutter.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace TamrelMxf {

/// Cuts a row of coded pictures where its start codes say that another one begins. The row is looked through once, as
/// far as it is asked for; 8 bytes are kept of each picture.
class CStartCodeCutter : public CUnitCutter {
public:
    std::optional<std::int64_t> Begin(CElementBytes& bytes, std::int64_t unit) override;
    bool NeedsRow() const override { return true; }
    bool FindsAll() const override { return true; }

protected:
    /// Bytes of a start code and behind it that are looked at.
    static constexpr std::size_t kLookedAt = 8;

    /// \param code  from the byte behind the prefix 00 00 01 on, kLookedAt less 3 bytes
    /// \return true when a picture, with its headers, begins at the prefix
    virtual bool BeginsPicture(std::span<const std::uint8_t> code) = 0;

private:
    std::vector<std::int64_t> begins_;
    std::int64_t searched_ = 0;
};

/// The cutter for MPEG or AVC; null for other codings and for a row that does not begin with a start code.
std::unique_ptr<CUnitCutter> MakeStartCodeCutter(const SStreamFormat& format, CElementBytes& bytes);

} // namespace TamrelMxf
