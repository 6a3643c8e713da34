#pragma once

#include "EssenceInput.h"

namespace TamrelMxf {

/// The essence as far as it is there: a look at it waits for nothing.
class CPresentInput final : public CEssenceInput {
public:
    explicit CPresentInput(CEssenceInput& input) : input_{&input} {}

    std::span<const std::uint8_t> View(std::int64_t position, std::size_t count) override
    {
        return input_->Peek(position, count);
    }
    bool IsComplete() override { return input_->IsComplete(); }
    std::int64_t Size() override { return input_->Size(); }
    void Release(std::int64_t /*position*/) override {}

private:
    CEssenceInput* input_;
};

} // namespace TamrelMxf
