#pragma once

#include "../platform/FileDescriptor.h"
#include "../platform/Result.h"
#include "Refusal.h"

#include <string>
#include <string_view>
#include <vector>

namespace zanfcp {

/// The folder that a project host keeps its files in. Every file is reached from the folder's own descriptor, step by
/// step and without following symbolic links, so that no path leads out. Held by one host at a time.
class ProjectFolder {
public:
    /// A place for a file inside; the file may be missing.
    struct Place {
        FileDescriptor folder; ///< that holds it
        std::string name;      ///< within `folder`
        std::string key;       ///< path from the projects folder, the same for every way of writing it
        bool exists = false;   ///< as a regular file
    };

    /// Opens the folder, makes the one inside that unsaved work is kept in, and locks it.
    /// \return an Error: notFound (no such folder), io (another host holds it, or the system refuses)
    static Result<ProjectFolder> open(const std::string& path);

    /// Finds the place of an absolute path, as clients send it.
    /// \return -50 (no absolute path, a NUL inside, something that is no file), -54 (it leads out, or through a
    ///         symbolic link), -37 (a name that begins with a dot or is too long), -120 (no such folder)
    Granted<Place> place(std::string_view path) const;
    /// The place of a path from the folder on.
    Granted<Place> placeOfKey(std::string_view key) const;
    /// The place where unsaved work on the project with this key is kept.
    Granted<Place> workingPlace(std::string_view key) const;
    /// The keys of all projects with unsaved work, the latest last. Removes what broken writes left behind.
    std::vector<std::string> keysWithWork() const;

    const std::string& path() const { return path_; }

private:
    std::string path_; ///< as it was given, made absolute
    std::string canonical_;
    FileDescriptor folder_;
    FileDescriptor work_;
};

/// \return the file's bytes; -43 (no such file), -50 (more than `most` bytes, no regular file), -36
Granted<std::string> readProjectFile(const ProjectFolder::Place& place, std::size_t most);
/// Writes the file whole or not at all. \return -34 (no space), -36
Refused writeProjectFile(const ProjectFolder::Place& place, std::string_view bytes);
/// A file that is not there is no refusal. \return -36
Refused removeProjectFile(const ProjectFolder::Place& place);

} // namespace zanfcp
