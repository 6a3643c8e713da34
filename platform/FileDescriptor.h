#pragma once

#include <unistd.h>
#include <utility>

namespace zanfcp {

/// Owner of one POSIX file descriptor; closes it on destruction. Empty (-1) after a move.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_{descriptor} {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_{std::exchange(other.descriptor_, -1)} {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        if (this != &other) reset(std::exchange(other.descriptor_, -1));
        return *this;
    }
    ~FileDescriptor() { reset(); }

    /// Borrowed; -1 when empty.
    int value() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }
    void reset(int descriptor = -1)
    {
        if (descriptor_ >= 0) ::close(descriptor_);
        descriptor_ = descriptor;
    }
    int release() { return std::exchange(descriptor_, -1); }

private:
    int descriptor_ = -1;
};

} // namespace zanfcp
