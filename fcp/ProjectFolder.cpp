#include "fcp/ProjectFolder.h"

#include "platform/AtomicFile.h"
#include "platform/FileURL.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <utility>

namespace zanfcp {
namespace {

constexpr const char* kWorkFolder = ".zanfcp";
constexpr std::string_view kWorkSuffix = ".unsaved";

Error systemError(const std::string& what, int code)
{
    return Error{.fault = code == ENOENT || code == ENOTDIR ? Fault::notFound : Fault::io,
                 .what = what + ": " + std::strerror(code)};
}

Refusal refusedBySystem(const std::string& what, int code)
{
    const OSStatus status = code == ENOENT ? EventStatus::fnfErr : EventStatus::ioErr;
    return {.code = status, .reason = what + ": " + std::strerror(code)};
}

/// Another way to name a folder that is open: it stays the same folder whatever happens to the path that led there.
std::string pathThroughDescriptor(const ProjectFolder::Place& place)
{
    return "/proc/self/fd/" + std::to_string(place.folder.value()) + "/" + place.name;
}

/// One name that stands for a whole key: slashes are escaped, and what escapes them.
std::string workName(std::string_view key)
{
    std::string name;
    for (const char c : key) {
        if (c == '/')
            name += "%2F";
        else if (c == '%')
            name += "%25";
        else
            name += c;
    }
    return name.append(kWorkSuffix);
}

std::string keyOfWorkName(std::string_view name)
{
    std::string key;
    name.remove_suffix(kWorkSuffix.size());
    while (!name.empty()) {
        const bool slash = name.starts_with("%2F");
        const bool percent = name.starts_with("%25");
        key += slash ? '/' : name.front();
        name.remove_prefix(slash || percent ? 3 : 1);
    }
    return key;
}

Refused checkName(const std::string& name)
{
    if (name == "..") return Refusal{EventStatus::permErr, "the path leads upwards"};
    if (name.starts_with('.')) return Refusal{EventStatus::bdNamErr, "the name " + name + " begins with a dot"};
    if (name.size() > NAME_MAX) return Refusal{EventStatus::bdNamErr, "a name of the path is too long"};
    return std::nullopt;
}

bool isLink(int folder, const std::string& name)
{
    struct stat found {};
    return ::fstatat(folder, name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(found.st_mode);
}

Granted<FileDescriptor> enter(int folder, const std::string& name)
{
    FileDescriptor inner{::openat(folder, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)};
    if (inner) return inner;
    const int code = errno;
    if (isLink(folder, name)) return Refusal{EventStatus::permErr, "the path goes through the symbolic link " + name};
    if (code == ENOENT || code == ENOTDIR) return Refusal{EventStatus::dirNFErr, "there is no folder " + name};
    return refusedBySystem("could not enter " + name, code);
}

/// Fills in whether the file is there; refuses what is no file.
Granted<ProjectFolder::Place> looked(ProjectFolder::Place place)
{
    struct stat found {};
    if (::fstatat(place.folder.value(), place.name.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno != ENOENT) return refusedBySystem("could not look at " + place.key, errno);
        return place;
    }
    if (S_ISLNK(found.st_mode)) return Refusal{EventStatus::permErr, place.key + " is a symbolic link"};
    if (!S_ISREG(found.st_mode)) return Refusal{EventStatus::paramErr, place.key + " is no file"};
    place.exists = true;
    return place;
}

} // namespace

Result<ProjectFolder> ProjectFolder::open(const std::string& path)
{
    ProjectFolder made;
    made.path_ = FileURL::fileURLWithPath(path).path();
    std::error_code fault;
    made.canonical_ = std::filesystem::canonical(made.path_, fault).string();
    made.folder_.reset(::open(made.path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fault || !made.folder_) return systemError("could not open the folder " + path, fault ? fault.value() : errno);
    if (::mkdirat(made.folder_.value(), kWorkFolder, 0700) != 0 && errno != EEXIST)
        return systemError("could not write in " + path, errno);
    made.work_.reset(::openat(made.folder_.value(), kWorkFolder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!made.work_) return systemError("could not open " + path + "/" + kWorkFolder, errno);
    if (::flock(made.work_.value(), LOCK_EX | LOCK_NB) != 0)
        return Error{.fault = Fault::io, .what = "another host keeps the projects in " + path};
    return made;
}

Granted<ProjectFolder::Place> ProjectFolder::place(std::string_view path) const
{
    if (path.find('\0') != std::string_view::npos) return Refusal{EventStatus::paramErr, "the path holds a NUL"};
    if (!path.starts_with('/')) return Refusal{EventStatus::paramErr, "the path is not absolute"};
    for (const std::string* root : {&path_, &canonical_}) {
        if (path == *root) return placeOfKey({});
        const std::string prefix = root->ends_with('/') ? *root : *root + "/";
        if (path.starts_with(prefix)) return placeOfKey(path.substr(prefix.size()));
    }
    return Refusal{EventStatus::permErr, "the path lies outside the projects folder " + canonical_};
}

Granted<ProjectFolder::Place> ProjectFolder::placeOfKey(std::string_view key) const
{
    std::vector<std::string> names;
    while (!key.empty()) {
        const std::size_t slash = std::min(key.find('/'), key.size());
        std::string name{key.substr(0, slash)};
        key.remove_prefix(std::min(slash + 1, key.size()));
        if (name.empty() || name == ".") continue;
        if (Refused wrong = checkName(name)) return *std::move(wrong);
        names.push_back(std::move(name));
    }
    if (names.empty()) return Refusal{EventStatus::paramErr, "the path names no file"};

    Place place;
    for (std::size_t i = 0; i + 1 < names.size(); ++i) {
        auto inner = enter(place.folder ? place.folder.value() : folder_.value(), names[i]);
        if (!inner) return inner.refusal();
        place.folder = std::move(*inner);
        place.key += names[i] + "/";
    }
    if (!place.folder) place.folder.reset(::openat(folder_.value(), ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!place.folder) return refusedBySystem("could not enter the projects folder", errno);
    place.name = names.back();
    place.key += names.back();
    if (workName(place.key).size() > NAME_MAX)
        return Refusal{EventStatus::bdNamErr, "the path within the projects folder is too long"};
    return looked(std::move(place));
}

Granted<ProjectFolder::Place> ProjectFolder::workingPlace(std::string_view key) const
{
    Place place{.folder = FileDescriptor{::openat(work_.value(), ".", O_PATH | O_DIRECTORY | O_CLOEXEC)},
                .name = workName(key),
                .key = std::string(key)};
    if (!place.folder) return refusedBySystem("could not enter the folder of unsaved work", errno);
    return looked(std::move(place));
}

std::vector<std::string> ProjectFolder::keysWithWork() const
{
    struct CloseFolder {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };
    std::vector<std::pair<std::pair<time_t, long>, std::string>> found;
    FileDescriptor copy{::openat(work_.value(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    const std::unique_ptr<DIR, CloseFolder> listing{copy ? ::fdopendir(copy.value()) : nullptr};
    if (!listing) return {};
    copy.release(); // the listing closes it
    while (const dirent* entry = ::readdir(listing.get())) {
        const std::string_view name = entry->d_name;
        struct stat info {};
        if (name.starts_with('.') &&
            (name.ends_with(".tmp") || name.ends_with(".part"))) // nobody else writes here while the lock is held
            ::unlinkat(work_.value(), entry->d_name, 0);
        else if (name.ends_with(kWorkSuffix) &&
                 ::fstatat(work_.value(), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0)
            found.push_back({{info.st_mtim.tv_sec, info.st_mtim.tv_nsec}, keyOfWorkName(name)});
    }
    std::ranges::sort(found);
    std::vector<std::string> keys;
    for (auto& [time, key] : found)
        keys.push_back(std::move(key));
    return keys;
}

Granted<std::string> readProjectFile(const ProjectFolder::Place& place, std::size_t most)
{
    const FileDescriptor file{
        ::openat(place.folder.value(), place.name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)};
    struct stat info {};
    if (!file || ::fstat(file.value(), &info) != 0) return refusedBySystem("could not open " + place.key, errno);
    if (!S_ISREG(info.st_mode)) return Refusal{EventStatus::paramErr, place.key + " is no file"};
    const auto size = static_cast<std::uint64_t>(info.st_size);
    if (size > most) return Refusal{EventStatus::paramErr, place.key + " is too large"};
    std::string bytes(static_cast<std::size_t>(size), '\0');
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = ::read(file.value(), bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return refusedBySystem("could not read " + place.key, errno);
        if (count == 0) break; // it became shorter while it was read
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

Refused writeProjectFile(const ProjectFolder::Place& place, std::string_view bytes)
{
    const std::string path = pathThroughDescriptor(place);
    Result<AtomicFile> file = AtomicFile::create(path, AtomicFile::Others::refuse);
    Status written = file ? file->write(bytes) : Status(file.error());
    if (written) written = file->commit();
    if (!written) {
        const OSStatus code = written.error().fault == Fault::limit ? EventStatus::dskFulErr : EventStatus::ioErr;
        std::string reason = written.error().what;
        if (const std::size_t at = reason.find(path); at != std::string::npos)
            reason.replace(at, path.size(), place.key);
        return Refusal{code, std::move(reason)};
    }
    // The new name is in the folder, which is another file to the disk.
    const FileDescriptor folder{::openat(place.folder.value(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    if (folder && ::fsync(folder.value()) != 0 && errno == EIO)
        return refusedBySystem("could not flush " + place.key, EIO);
    return std::nullopt;
}

Refused removeProjectFile(const ProjectFolder::Place& place)
{
    if (::unlinkat(place.folder.value(), place.name.c_str(), 0) != 0 && errno != ENOENT)
        return refusedBySystem("could not remove unsaved work on " + place.key, errno);
    return std::nullopt;
}

} // namespace zanfcp
