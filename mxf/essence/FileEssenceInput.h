#pragma once

#include "../io/SourceReader.h"
#include "EssenceInput.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace TamrelMxf {

/// The essence of a file, through one window of memory that moves along. What lies in the window is handed out in
/// place. On the way forward up to kReadAheadBytes are read at a time; an element that is larger makes the window grow.
/// In a file that is being written a view waits as CSourceReader does.
class CFileEssenceInput final : public CEssenceInput {
public:
    /// \param reader  borrowed; others may read through it as well
    explicit CFileEssenceInput(CSourceReader& reader) : reader_{reader} {}

    /// At most kMaxSampleBytes, and no more memory than the file can fill.
    std::span<const std::uint8_t> View(std::int64_t position, std::size_t count) override;
    std::span<const std::uint8_t> Peek(std::int64_t position, std::size_t count) override;
    bool IsComplete() override { return reader_.IsComplete(); }
    std::int64_t Size() override;
    void Release(std::int64_t /*position*/) override {}

private:
    std::span<const std::uint8_t> InWindow(std::int64_t position, std::size_t count) const;
    void MoveTo(std::int64_t position);
    bool Reserve(std::size_t count);
    void ReadAhead(std::size_t count);
    void WaitFor(std::size_t count);

    CSourceReader& reader_;
    std::unique_ptr<std::uint8_t[]> buffer_;
    std::size_t capacity_ = 0;
    std::size_t filled_ = 0;      // bytes of the window
    std::int64_t begin_ = 0;      // where the window begins in the file
    std::int64_t knownSize_ = -1; // once it can change no more
    std::size_t nextAhead_ = 0;   // how much the next read takes: grows on the way forward
};

} // namespace TamrelMxf
