#pragma once

#include "EventMessage.h"
#include "ProjectFolder.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zanfcp {

/// The projects that a host has open, the current one in front. What is imported is written to a working file beside
/// the projects before the import counts as done, so that neither a stop nor a crash loses it; the project's own file
/// changes when it is saved. Used by one thread at a time.
/// A path is absolute and lies in the projects folder; no path stands for the current project.
class ProjectStore {
public:
    using Path = std::optional<std::string_view>;

    /// Opens the folder and, again, every project in it that has unsaved work.
    /// \return an Error as of ProjectFolder::open
    static Result<ProjectStore> open(const std::string& folder);

    /// Appends a document to a project and puts that in front. A project that does not exist is made, named "Untitled
    /// Project 1.xml" or the next free number when no path is given and none is open; it has no file before it is
    /// saved.
    Refused importDocument(std::string_view document, Path path);
    /// The text of a project, with unsaved work. A project that is not open is read and stays closed.
    Granted<std::string> document(Path path) const;
    /// Opens a project file, or brings an open project to the front.
    Refused openProject(std::string_view path);
    /// Saves the current project, into its own file without a path. A project saved under another path goes on there.
    Refused save(Path path, bool overwrite);
    /// Closes a project; without saving, its unsaved work is gone.
    Refused close(Path path, bool save);

    /// Paths from the projects folder of what is open, the current one last.
    std::vector<std::string> openProjects() const;

private:
    struct Project {
        std::string key;
        bool unsaved = false; ///< there is a working file
    };
    using Place = ProjectFolder::Place;

    explicit ProjectStore(ProjectFolder folder) : folder_{std::move(folder)} {}

    void reopenWork();
    std::vector<Project>::iterator find(std::string_view key);
    Granted<std::string> currentKey() const;
    Granted<std::string> newKey() const;
    Granted<std::string> textOf(const std::string& key) const;
    void bringToFront(std::vector<Project>::iterator project);
    Refused saveTo(const std::string& key, const Place& place);

    ProjectFolder folder_;
    std::vector<Project> projects_; ///< the current one last
};

} // namespace zanfcp
