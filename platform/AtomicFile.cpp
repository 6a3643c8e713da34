#include "platform/AtomicFile.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zanfcp {
namespace {

constexpr const char* kOwnDescriptors = "/proc/self/fd";

Error systemError(const std::string& verb, const std::string& path, int code)
{
    const bool full = code == ENOSPC || code == EDQUOT || code == EFBIG;
    const Fault fault = code == ENOENT || code == ENOTDIR ? Fault::notFound : full ? Fault::limit : Fault::io;
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

constexpr std::string_view kWholeSuffix = ".tmp";    ///< flushed, and locked from before it had the name
constexpr std::string_view kGrowingSuffix = ".part"; ///< still written, where files cannot be without a name

/// What the names beside `target` begin with.
std::string stemBeside(const std::filesystem::path& target)
{
    constexpr std::size_t kNameLimit = 200; // leaves room for the rest below NAME_MAX
    return std::string{"."}.append(target.filename().string(), 0, kNameLimit).append(".");
}

/// Calls `take(name)` with names beside `target` until one is free. \return what `take` returned last
template <typename Take>
int takeNameBeside(const std::filesystem::path& target, std::string_view suffix, std::string& name, Take take)
{
    static std::atomic<unsigned> serial{0};
    const std::string stem = stemBeside(target) + std::to_string(::getpid()) + "-";
    int result = -1;
    for (int attempt = 0; attempt < 100; ++attempt) {
        name = (target.parent_path() / (stem + std::to_string(serial++)).append(suffix)).string();
        result = take(name.c_str());
        if (result >= 0 || errno != EEXIST) break;
    }
    if (result < 0) name.clear();
    return result;
}

/// Whether `takeNameBeside` makes such a name of a whole file from `stem`.
bool isNameBeside(std::string_view name, std::string_view stem)
{
    if (!name.starts_with(stem) || !name.ends_with(kWholeSuffix) || name.size() < stem.size() + kWholeSuffix.size())
        return false;
    name = name.substr(stem.size(), name.size() - stem.size() - kWholeSuffix.size());
    const auto isNumber = [](std::string_view text) {
        return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
    };
    const std::size_t dash = name.find('-');
    return dash != name.npos && isNumber(name.substr(0, dash)) && isNumber(name.substr(dash + 1));
}

/// Removes whole files that were to replace `target` and whose writers were killed right before the rename. A writer
/// holds its lock until it is done or gone, so the lock tells: getting it for a file that still has its name means that
/// nobody will rename or remove it, and nobody else removes it without the lock.
void removeLeftovers(const std::filesystem::path& target)
{
    const std::string stem = stemBeside(target);
    const std::filesystem::path folder = target.parent_path();
    std::error_code failed;
    std::filesystem::directory_iterator entry{folder.empty() ? "." : folder, failed};
    for (; !failed && entry != std::filesystem::directory_iterator{}; entry.increment(failed)) {
        const std::string path = entry->path().string();
        if (!isNameBeside(entry->path().filename().string(), stem)) continue;
        const auto isOurs = [](const struct stat& info) {
            return S_ISREG(info.st_mode) && info.st_uid == ::geteuid() && info.st_nlink == 1;
        };
        struct stat named {};
        struct stat opened {};
        if (::lstat(path.c_str(), &named) != 0 || !isOurs(named)) continue;
        const FileDescriptor file{::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)};
        if (!file || ::flock(file.value(), LOCK_EX | LOCK_NB) != 0 || ::fstat(file.value(), &opened) != 0) continue;
        if (::lstat(path.c_str(), &named) == 0 && isOurs(named) && named.st_dev == opened.st_dev &&
            named.st_ino == opened.st_ino)
            ::unlink(path.c_str());
    }
}

/// A new file in the folder of `target` that has no name yet, so that nothing of it is left when a signal ends the
/// program. Empty where the file system has no such files, or the name could not be given later.
FileDescriptor createUnnamed(const std::string& target)
{
    if (::access(kOwnDescriptors, X_OK) != 0) return {};
    const std::filesystem::path folder = std::filesystem::path{target}.parent_path();
    const std::string place = folder.empty() ? std::string(".") : folder.string();
    FileDescriptor file{::open(place.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0666)};
    // Whoever looks for leftovers must not take this one for such once it has a name; without a lock it gets none.
    if (file && ::flock(file.value(), LOCK_EX | LOCK_NB) != 0) return {};
    return file;
}

/// A new file beside `target`, created as open(2) creates any file, so that the umask counts.
FileDescriptor createBeside(const std::string& target, std::string& temporary)
{
    return FileDescriptor{takeNameBeside(target, kGrowingSuffix, temporary, [](const char* name) {
        return ::open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    })};
}

/// Holds back signals while it lives, so that none ends the program between two calls that belong together.
class SignalsHeld {
public:
    SignalsHeld()
    {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalsHeld() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    sigset_t before_{};
};

} // namespace

AtomicFile::AtomicFile(FileDescriptor descriptor, std::string target, Place place, std::string temporary)
    : descriptor_{std::move(descriptor)}, target_{std::move(target)}, place_{place}, temporary_{std::move(temporary)}
{}

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : descriptor_{std::move(other.descriptor_)}, target_{std::move(other.target_)}, place_{other.place_},
      temporary_{std::exchange(other.temporary_, {})}
{}

AtomicFile::~AtomicFile()
{
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

Result<AtomicFile> AtomicFile::create(const std::string& path, Others others)
{
    if (path.empty()) return systemError("create", path, ENOENT);
    const bool follows = others == Others::follow;
    Result<std::string> target = follows ? followLinks(path) : Result<std::string>(path);
    if (!target) return target.error();
    struct stat existing {};
    const bool exists = (follows ? ::stat(path.c_str(), &existing) : ::lstat(path.c_str(), &existing)) == 0;
    if (exists) {
        if (S_ISDIR(existing.st_mode)) return systemError("write", path, EISDIR);
        if (!follows && !S_ISREG(existing.st_mode)) return systemError("write", path, ELOOP);
        if (!S_ISREG(existing.st_mode)) {
            FileDescriptor device{::open(path.c_str(), O_WRONLY | O_CLOEXEC)};
            if (!device) return systemError("open", path, errno);
            return AtomicFile{std::move(device), path, Place::target, {}};
        }
        if (::access(path.c_str(), W_OK) != 0) return systemError("write", path, errno);
    }
    std::string temporary;
    FileDescriptor descriptor = createUnnamed(*target);
    const Place place = descriptor ? Place::unnamed : Place::beside;
    if (!descriptor) descriptor = createBeside(*target, temporary);
    if (!descriptor) return systemError("create", path, errno);
    AtomicFile file{std::move(descriptor), *std::move(target), place, std::move(temporary)};
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

Status AtomicFile::overwrite(std::uint64_t offset, std::string_view bytes)
{
    if (!canOverwrite()) return systemError("go back in", target_, ESPIPE);
    while (!bytes.empty()) {
        const ssize_t count = ::pwrite(descriptor_.value(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return systemError("write", target_, errno);
        bytes.remove_prefix(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
    return {};
}

Status AtomicFile::commit()
{
    if (place_ == Place::target) return {};
    if (::fsync(descriptor_.value()) != 0) return systemError("flush", target_, errno);
    if (Status named = nameTarget(); !named) return named;
    // Where files have names while they are written, they may lie on another machine, where a lock says little.
    if (place_ == Place::unnamed) removeLeftovers(target_);
    return {};
}

Status AtomicFile::nameTarget()
{
    // From here to the end only what must be: a name beside the target stays when the program is killed in between.
    // Closing comes last; of a file that is flushed it has nothing left to tell.
    const SignalsHeld held;
    if (place_ == Place::unnamed) {
        const std::string own = std::string(kOwnDescriptors) + "/" + std::to_string(descriptor_.value());
        const auto link = [&own](const char* name) {
            return ::linkat(AT_FDCWD, own.c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW);
        };
        if (link(target_.c_str()) == 0) {
            descriptor_.reset();
            return {};
        }
        // A link cannot replace a file, and a rename needs a name: both are needed.
        if (errno != EEXIST || takeNameBeside(target_, kWholeSuffix, temporary_, link) != 0)
            return systemError("name", target_, errno);
    }
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) return systemError("rename to", target_, errno);
    temporary_.clear();
    descriptor_.reset();
    return {};
}

} // namespace zanfcp
