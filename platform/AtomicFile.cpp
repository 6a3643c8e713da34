#include "platform/AtomicFile.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace zanfcp {
namespace {

Error systemError(const std::string& verb, const std::string& path, int code)
{
    const Fault fault = code == ENOENT || code == ENOTDIR ? Fault::notFound : Fault::io;
    return Error{.fault = fault, .what = "could not " + verb + " " + path + ": " + std::strerror(code)};
}

/// Where writing to `path` puts the file: at the end of its symbolic links, whether a file is there yet or not.
Result<std::string> followLinks(const std::string& path)
{
    constexpr int kMostLinks = 40; // as many as the kernel follows
    std::filesystem::path place{path};
    for (int links = 0; links <= kMostLinks; ++links) {
        std::error_code isNoLink;
        const std::filesystem::path next = std::filesystem::read_symlink(place, isNoLink);
        if (isNoLink) return place.string();
        place = place.parent_path() / next; // an absolute target replaces the folder
    }
    return systemError("write", path, ELOOP);
}

/// A new file beside `target`, created as open(2) creates any file, so that the umask counts.
FileDescriptor createBeside(const std::string& target, std::string& temporary)
{
    static std::atomic<unsigned> serial{0};
    constexpr std::size_t kNameLimit = 200; // leaves room for the suffix below NAME_MAX
    const std::filesystem::path place{target};
    std::string stem = ".";
    stem.append(place.filename().string(), 0, kNameLimit).append(".").append(std::to_string(::getpid()));
    for (int attempt = 0; attempt < 100; ++attempt) {
        temporary = (place.parent_path() / (stem + "-" + std::to_string(serial++) + ".tmp")).string();
        FileDescriptor descriptor{::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)};
        if (descriptor || errno != EEXIST) return descriptor;
    }
    return {};
}

} // namespace

AtomicFile::AtomicFile(FileDescriptor descriptor, std::string target, std::string temporary)
    : descriptor_{std::move(descriptor)}, target_{std::move(target)}, temporary_{std::move(temporary)}
{}

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : descriptor_{std::move(other.descriptor_)}, target_{std::move(other.target_)}, temporary_{std::exchange(
                                                                                        other.temporary_, {})}
{}

AtomicFile::~AtomicFile()
{
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

Result<AtomicFile> AtomicFile::create(const std::string& path)
{
    if (path.empty()) return systemError("create", path, ENOENT);
    Result<std::string> target = followLinks(path);
    if (!target) return target.error();
    struct stat existing {};
    const bool exists = ::stat(path.c_str(), &existing) == 0;
    if (exists) {
        if (S_ISDIR(existing.st_mode)) return systemError("write", path, EISDIR);
        if (!S_ISREG(existing.st_mode)) {
            FileDescriptor device{::open(path.c_str(), O_WRONLY | O_CLOEXEC)};
            if (!device) return systemError("open", path, errno);
            return AtomicFile{std::move(device), path, {}};
        }
        if (::access(path.c_str(), W_OK) != 0) return systemError("write", path, errno);
    }
    std::string temporary;
    FileDescriptor descriptor = createBeside(*target, temporary);
    if (!descriptor) return systemError("create", path, errno);
    AtomicFile file{std::move(descriptor), *std::move(target), std::move(temporary)};
    if (exists && ::fchmod(file.descriptor_.value(), existing.st_mode & 07777) != 0)
        return systemError("set the mode of", path, errno);
    return file;
}

Status AtomicFile::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor_.value(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return systemError("write", target_, errno);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

Status AtomicFile::commit()
{
    if (temporary_.empty()) return {};
    if (::fsync(descriptor_.value()) != 0) return systemError("flush", target_, errno);
    if (::close(descriptor_.release()) != 0) return systemError("close", target_, errno);
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) return systemError("rename to", target_, errno);
    temporary_.clear();
    return {};
}

} // namespace zanfcp
