#include "platform/ByteSource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zanfcp {
namespace {

Error systemError(const char* what, int code, std::uint64_t offset = 0)
{
    return {.fault = code == ENOENT ? Fault::notFound : Fault::io,
            .what = std::string(what) + ": " + std::strerror(code),
            .offset = offset};
}

} // namespace

Status ByteSource::readAt(std::uint64_t offset, std::span<std::byte> into)
{
    if (into.empty()) return {};
    if (offset > size_ || into.size() > size_ - offset)
        return Error{Fault::truncated, "the file ends after " + std::to_string(size_) + " bytes", offset};
    ++counts_.reads;
    counts_.bytes += into.size();
    return doReadAt(offset, into);
}

Result<FileByteSource::Opened> FileByteSource::open(const std::string& path)
{
    // Not blocking: a pipe that nobody writes to would otherwise never open.
    FileDescriptor descriptor{::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    if (!descriptor) return systemError("could not open", errno);
    struct stat status = {};
    if (::fstat(descriptor.value(), &status) != 0) return systemError("could not stat", errno);
    if (!S_ISREG(status.st_mode)) return Error{Fault::unsupported, "not a regular file"};
    return Opened{std::move(descriptor), static_cast<std::uint64_t>(status.st_size)};
}

Status FileByteSource::doReadAt(std::uint64_t offset, std::span<std::byte> into)
{
    while (!into.empty()) {
        const ssize_t got = ::pread(descriptor_.value(), into.data(), into.size(), static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return systemError("could not read", errno, offset);
        if (got == 0) return Error{Fault::truncated, "the file became shorter while it was read", offset};
        offset += static_cast<std::uint64_t>(got);
        into = into.subspan(static_cast<std::size_t>(got));
    }
    return {};
}

Status MemoryByteSource::doReadAt(std::uint64_t offset, std::span<std::byte> into)
{
    std::ranges::copy(bytes_.subspan(static_cast<std::size_t>(offset), into.size()), into.begin());
    return {};
}

} // namespace zanfcp
