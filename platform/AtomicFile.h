#pragma once

#include "FileDescriptor.h"
#include "Result.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zanfcp {

/// Writes a file whole or not at all: without a name, or under a temporary one beside the target where the file system
/// has no files without a name, then flushed to the disk and renamed. Without `commit` nothing of it stays; only
/// SIGKILL between the last two calls of a replacement leaves the whole new file as `.NAME.PID-N.tmp`, which the next
/// `commit` for the same target removes, and where files must have a name, any end of the program leaves what was
/// written, as `.NAME.PID-N.part`. A target that is no regular file (a device, a FIFO) is written in place; symbolic
/// links are followed, and what they lead to is replaced, or made.
class AtomicFile {
public:
    /// What becomes of a symbolic link, or of anything else that is no regular file, at the path.
    enum class Others { follow, refuse };

    /// \return the open file, or an Error: notFound (no such folder), limit (no space), io (no permission, a folder,
    ///         what is to be refused)
    static Result<AtomicFile> create(const std::string& path, Others others = Others::follow);

    AtomicFile(AtomicFile&&) noexcept;
    AtomicFile& operator=(AtomicFile&&) = delete;
    ~AtomicFile();

    /// Appends all of `bytes`. An Error (limit: no space or a size limit, io) leaves the target as it was; do not go on
    /// after one.
    Status write(std::string_view bytes);
    /// Replaces bytes that were written already: a header that is only known at the end.
    /// \return an Error (io) for a target that is written in place
    Status overwrite(std::uint64_t offset, std::string_view bytes);
    /// Whether `overwrite` is possible.
    bool canOverwrite() const { return place_ != Place::target; }
    /// Makes the file appear under its name. Call once, last. Signals are held back for the moment that takes.
    Status commit();

private:
    /// Where the bytes go until `commit`.
    enum class Place { target, unnamed, beside };

    Status nameTarget();

    AtomicFile(FileDescriptor descriptor, std::string target, Place place, std::string temporary);

    FileDescriptor descriptor_;
    std::string target_;
    Place place_;
    std::string temporary_; ///< empty while there is none, and once committed
};

} // namespace zanfcp
