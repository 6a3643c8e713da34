#pragma once

#include "EssenceInput.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace TamrelMxf {

/// Essence that lies in memory as a whole, or as far as it has come.
class CMemoryEssenceInput final : public CEssenceInput {
public:
    /// \param bytes       borrowed, the file from its first byte on
    /// \param isComplete  false when more may follow, see Extend
    explicit CMemoryEssenceInput(std::span<const std::uint8_t> bytes, bool isComplete = true)
        : bytes_{bytes}, isComplete_{isComplete}
    {}

    /// Replaces the bytes by a longer row that begins with them.
    void Extend(std::span<const std::uint8_t> bytes, bool isComplete)
    {
        bytes_ = bytes;
        isComplete_ = isComplete;
    }

    std::span<const std::uint8_t> View(std::int64_t position, std::size_t count) override
    {
        if (position < 0 || position > static_cast<std::int64_t>(bytes_.size())) return {};
        const auto from = static_cast<std::size_t>(position);
        return bytes_.subspan(from, std::min(count, bytes_.size() - from));
    }
    bool IsComplete() override { return isComplete_; }
    std::int64_t Size() override { return isComplete_ ? static_cast<std::int64_t>(bytes_.size()) : -1; }
    void Release(std::int64_t /*position*/) override {}

private:
    std::span<const std::uint8_t> bytes_;
    bool isComplete_;
};

} // namespace TamrelMxf
