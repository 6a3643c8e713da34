#pragma once

#include "platform/AtomicFile.h"
#include "platform/Result.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zanfcp::cli {

/// Where essence goes: a file that appears when it is whole, or standard output. Small pieces are gathered.
class EssenceOutput {
public:
    /// \param path  "-" for standard output
    /// \return as AtomicFile::create
    static Result<EssenceOutput> open(const std::string& path);

    /// Appends. After an Error nothing more is written.
    Status write(std::span<const std::uint8_t> bytes);
    Status write(std::string_view text);
    /// Bytes appended so far.
    std::uint64_t count() const { return count_; }

    /// Whether what was written can be written again.
    bool canOverwrite() const { return file_ ? file_->canOverwrite() : standardStart_.has_value(); }
    /// Replaces the first bytes.
    /// \pre canOverwrite()
    Status overwriteStart(std::string_view bytes);
    /// Writes out what is held, and makes the file appear. Call once, last.
    Status finish();

private:
    EssenceOutput(std::optional<AtomicFile> file, std::optional<std::uint64_t> standardStart);

    Status flush();
    Status pass(std::string_view bytes);

    std::optional<AtomicFile> file_; ///< nothing: standard output
    /// Where standard output began, when it is a file that can be sought.
    std::optional<std::uint64_t> standardStart_;
    std::string held_;
    std::uint64_t count_ = 0;
};

} // namespace zanfcp::cli
