#pragma once

#include "FileDescriptor.h"
#include "Result.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace zanfcp {

/// Random-access bytes: a file, or memory that stands in for one. Counts what is read through it.
/// Used by one thread at a time.
class ByteSource {
public:
    /// What has been read so far.
    struct Counts {
        std::uint64_t reads = 0; ///< calls of readAt that asked the source
        std::uint64_t bytes = 0;
    };

    virtual ~ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    /// Bytes in the source when it was opened.
    std::uint64_t size() const { return size_; }
    const Counts& counts() const { return counts_; }

    /// Fills all of `into` with the bytes from `offset` on.
    /// \return truncated when the source ends before, io when the operating system refuses; `into` is then undefined.
    Status readAt(std::uint64_t offset, std::span<std::byte> into);

protected:
    explicit ByteSource(std::uint64_t size) : size_{size} {}

private:
    /// As readAt; the range lies inside size() and is not empty.
    virtual Status doReadAt(std::uint64_t offset, std::span<std::byte> into) = 0;

    std::uint64_t size_ = 0;
    Counts counts_;
};

/// A regular file, read with pread(2): no position, nothing kept, larger than memory is fine.
class FileByteSource final : public ByteSource {
public:
    struct Opened {
        FileDescriptor descriptor;
        std::uint64_t size = 0;
    };
    /// Opens `path` for reading.
    /// \return notFound when there is no such file, unsupported for a folder, pipe or device, io for any other refusal.
    static Result<Opened> open(const std::string& path);

    explicit FileByteSource(Opened file) : ByteSource{file.size}, descriptor_{std::move(file.descriptor)} {}

private:
    Status doReadAt(std::uint64_t offset, std::span<std::byte> into) override;

    FileDescriptor descriptor_;
};

/// Bytes in memory, borrowed: they must outlive the source.
class MemoryByteSource final : public ByteSource {
public:
    explicit MemoryByteSource(std::span<const std::byte> bytes) : ByteSource{bytes.size()}, bytes_{bytes} {}

private:
    Status doReadAt(std::uint64_t offset, std::span<std::byte> into) override;

    std::span<const std::byte> bytes_;
};

} // namespace zanfcp
