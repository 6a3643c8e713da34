#include "cli/ReadFile.h"

#include "platform/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zanfcp::cli {
namespace {

Error systemError(int code)
{
    if (code == ENOENT) return Error{.fault = Fault::notFound, .what = "no such file"};
    return Error{.fault = Fault::io, .what = std::strerror(code)};
}

} // namespace

Result<std::string> readWholeFile(const std::string& path, std::size_t maxBytes)
{
    const FileDescriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    if (!file) return systemError(errno);
    std::string content;
    std::array<char, 64 * 1024> block;
    for (;;) {
        const ssize_t count = ::read(file.value(), block.data(), block.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return systemError(errno);
        if (count == 0) return content;
        content.append(block.data(), static_cast<std::size_t>(count));
        if (content.size() > maxBytes)
            return Error{.fault = Fault::limit,
                         .what = "larger than " + std::to_string(maxBytes >> 20) + " MiB, the most that is read"};
    }
}

bool isSameFile(const std::string& a, const std::string& b)
{
    struct stat one {};
    struct stat other {};
    if (::stat(a.c_str(), &one) != 0 || ::stat(b.c_str(), &other) != 0) return false;
    return S_ISREG(one.st_mode) && one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

} // namespace zanfcp::cli
