#include "cli/EssenceOutput.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zanfcp::cli {
namespace {

constexpr std::size_t kGatherBytes = std::size_t{256} << 10;
constexpr std::size_t kPassBytes = kGatherBytes / 4; ///< pieces from this size on are not gathered

Error standardOutputError()
{
    return Error{.fault = Fault::io,
                 .what = std::string("could not write to standard output: ") + std::strerror(errno)};
}

/// Writes at the place of the descriptor, or at `offset`.
Status writeToStandard(std::string_view bytes, std::optional<std::uint64_t> offset = {})
{
    while (!bytes.empty()) {
        const ssize_t count = offset ? ::pwrite(STDOUT_FILENO, bytes.data(), bytes.size(), static_cast<off_t>(*offset))
                                     : ::write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return standardOutputError();
        bytes.remove_prefix(static_cast<std::size_t>(count));
        if (offset) *offset += static_cast<std::uint64_t>(count);
    }
    return {};
}

std::optional<std::uint64_t> startOfStandardOutput()
{
    struct stat info {};
    const int flags = ::fcntl(STDOUT_FILENO, F_GETFL);
    // Where bytes are always appended, pwrite appends as well.
    if (::fstat(STDOUT_FILENO, &info) != 0 || !S_ISREG(info.st_mode) || flags < 0 || (flags & O_APPEND) != 0) return {};
    const off_t place = ::lseek(STDOUT_FILENO, 0, SEEK_CUR);
    if (place < 0) return {};
    return static_cast<std::uint64_t>(place);
}

} // namespace

EssenceOutput::EssenceOutput(std::optional<AtomicFile> file, std::optional<std::uint64_t> standardStart)
    : file_{std::move(file)}, standardStart_{standardStart}
{
    held_.reserve(kGatherBytes);
}

Result<EssenceOutput> EssenceOutput::open(const std::string& path)
{
    if (path == "-") return EssenceOutput{std::nullopt, startOfStandardOutput()};
    auto file = AtomicFile::create(path);
    if (!file) return file.error();
    return EssenceOutput{*std::move(file), std::nullopt};
}

Status EssenceOutput::write(std::span<const std::uint8_t> bytes)
{
    return write(std::string_view{reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

Status EssenceOutput::write(std::string_view text)
{
    count_ += text.size();
    if (held_.size() + text.size() > kGatherBytes || text.size() >= kPassBytes)
        if (Status flushed = flush(); !flushed) return flushed;
    if (text.size() >= kPassBytes) return pass(text);
    held_ += text;
    return {};
}

Status EssenceOutput::pass(std::string_view bytes)
{
    return file_ ? file_->write(bytes) : writeToStandard(bytes);
}

Status EssenceOutput::flush()
{
    const Status done = pass(held_);
    held_.clear();
    return done;
}

Status EssenceOutput::overwriteStart(std::string_view bytes)
{
    if (Status flushed = flush(); !flushed) return flushed;
    return file_ ? file_->overwrite(0, bytes) : writeToStandard(bytes, standardStart_);
}

Status EssenceOutput::finish()
{
    if (Status flushed = flush(); !flushed) return flushed;
    return file_ ? file_->commit() : Status{};
}

} // namespace zanfcp::cli
