#include "fcp/ProjectStore.h"

#include "fcp/ProjectDocument.h"
#include "platform/Log.h"

#include <algorithm>
#include <utility>

namespace zanfcp {
namespace {

constexpr std::size_t kMostOpen = 1000;
constexpr std::size_t kMostBytes = EventLimits{}.parameterBytes; ///< what is kept can also be given back

Refusal notProject(const std::string& what, const Error& error)
{
    return {EventStatus::paramErr, what + " is no xmeml document: " + error.what};
}

} // namespace

Result<ProjectStore> ProjectStore::open(const std::string& path)
{
    Result<ProjectFolder> folder = ProjectFolder::open(path);
    if (!folder) return folder.error();
    ProjectStore store{*std::move(folder)};
    store.reopenWork();
    return store;
}

void ProjectStore::reopenWork()
{
    for (std::string& key : folder_.keysWithWork()) {
        ZAN_LOG_DEFAULT("ZANFCPProjectHost: Reopened %s, which has unsaved work", key.c_str());
        projects_.push_back({.key = std::move(key), .unsaved = true});
    }
}

std::vector<ProjectStore::Project>::iterator ProjectStore::find(std::string_view key)
{
    return std::ranges::find(projects_, key, &Project::key);
}

Granted<std::string> ProjectStore::currentKey() const
{
    if (projects_.empty()) return Refusal{EventStatus::errAENoSuchObject, "no project is open"};
    return projects_.back().key;
}

Granted<std::string> ProjectStore::newKey() const
{
    for (std::size_t number = 1; number <= kMostOpen; ++number) {
        std::string key = "Untitled Project " + std::to_string(number) + ".xml";
        auto place = folder_.placeOfKey(key);
        const bool open = std::ranges::find(projects_, key, &Project::key) != projects_.end();
        if (place && !place->exists && !open) return key;
    }
    return Refusal{EventStatus::tmfoErr, "there are too many untitled projects"};
}

Granted<std::string> ProjectStore::textOf(const std::string& key) const
{
    const auto open = std::ranges::find(projects_, key, &Project::key);
    if (open != projects_.end() && open->unsaved) {
        auto work = folder_.workingPlace(key);
        if (!work) return work.refusal();
        return readProjectFile(*work, kMostBytes);
    }
    auto place = folder_.placeOfKey(key);
    if (!place) return place.refusal();
    return readProjectFile(*place, kMostBytes);
}

void ProjectStore::bringToFront(std::vector<Project>::iterator project)
{
    std::rotate(project, project + 1, projects_.end());
}

Refused ProjectStore::importDocument(std::string_view document, Path path)
{
    const Result<ProjectLayout> added = layOutProject(document);
    if (!added) return notProject("what is imported", added.error());

    std::string key;
    bool exists = true;
    if (path) {
        auto place = folder_.place(*path);
        if (!place) return place.refusal();
        key = place->key;
        exists = place->exists || find(key) != projects_.end();
    } else {
        exists = !projects_.empty();
        auto found = exists ? currentKey() : newKey();
        if (!found) return found.refusal();
        key = std::move(*found);
    }
    auto project = find(key);
    if (project == projects_.end() && projects_.size() >= kMostOpen)
        return Refusal{EventStatus::tmfoErr, "too many projects are open"};

    std::string whole;
    if (exists) {
        auto text = textOf(key);
        if (!text) return text.refusal();
        const Result<ProjectLayout> layout = layOutProject(*text);
        if (!layout) return notProject(key, layout.error());
        Result<std::string> joined = appendToProject(*text, *layout, document, *added);
        if (!joined) return notProject("what is imported", joined.error());
        whole = *std::move(joined);
        if (whole.size() > kMostBytes) return Refusal{EventStatus::paramErr, key + " would become too large"};
    }
    auto work = folder_.workingPlace(key);
    if (!work) return work.refusal();
    if (Refused refused = writeProjectFile(*work, exists ? std::string_view(whole) : document)) return refused;
    if (project == projects_.end()) project = projects_.insert(projects_.end(), {.key = key});
    project->unsaved = true;
    bringToFront(project);
    return std::nullopt;
}

Granted<std::string> ProjectStore::document(Path path) const
{
    std::string key;
    if (path) {
        auto place = folder_.place(*path);
        if (!place) return place.refusal();
        key = place->key;
    } else {
        auto current = currentKey();
        if (!current) return current.refusal();
        key = std::move(*current);
    }
    auto text = textOf(key);
    if (!text) return text;
    if (const auto layout = layOutProject(*text); !layout) return notProject(key, layout.error());
    return text;
}

Refused ProjectStore::openProject(std::string_view path)
{
    auto place = folder_.place(path);
    if (!place) return place.refusal();
    if (const auto open = find(place->key); open != projects_.end()) {
        bringToFront(open);
        return std::nullopt;
    }
    auto text = readProjectFile(*place, kMostBytes);
    if (!text) return text.refusal();
    if (const auto layout = layOutProject(*text); !layout) return notProject(place->key, layout.error());
    if (projects_.size() >= kMostOpen) return Refusal{EventStatus::tmfoErr, "too many projects are open"};
    projects_.push_back({.key = place->key});
    return std::nullopt;
}

/// Writes the project to a place and, when that has worked, drops the working file.
Refused ProjectStore::saveTo(const std::string& key, const Place& place)
{
    auto text = textOf(key);
    if (!text) return text.refusal();
    if (Refused refused = writeProjectFile(place, *text)) return refused;
    const auto project = find(key);
    if (project->unsaved) {
        auto work = folder_.workingPlace(key);
        if (!work) return work.refusal();
        if (Refused refused = removeProjectFile(*work)) return refused;
        project->unsaved = false;
    }
    return std::nullopt;
}

Refused ProjectStore::save(Path path, bool overwrite)
{
    auto key = currentKey();
    if (!key) return key.refusal();
    auto place = path ? folder_.place(*path) : folder_.placeOfKey(*key);
    if (!place) return place.refusal();
    if (path && place->exists && !overwrite)
        return Refusal{EventStatus::dupFNErr, place->key + " exists and is not to be overwritten"};
    if (place->key != *key && find(place->key) != projects_.end())
        return Refusal{EventStatus::fBsyErr, place->key + " is open as another project"};
    if (!path && !projects_.back().unsaved) {
        if (!place->exists) return Refusal{EventStatus::fnfErr, *key + " is gone, and there is nothing to save"};
        return std::nullopt;
    }
    if (Refused refused = saveTo(*key, *place)) return refused;
    projects_.back().key = place->key;
    return std::nullopt;
}

Refused ProjectStore::close(Path path, bool save)
{
    std::string key;
    if (path) {
        auto place = folder_.place(*path);
        if (!place) return place.refusal();
        key = place->key;
        if (find(key) == projects_.end())
            return Refusal{place->exists ? EventStatus::fnOpnErr : EventStatus::fnfErr, key + " is not open"};
    } else {
        auto current = currentKey();
        if (!current) return current.refusal();
        key = std::move(*current);
    }
    const auto project = find(key);
    if (project->unsaved) {
        auto place = save ? folder_.placeOfKey(key) : folder_.workingPlace(key);
        if (!place) return place.refusal();
        if (Refused refused = save ? saveTo(key, *place) : removeProjectFile(*place)) return refused;
    }
    projects_.erase(project);
    return std::nullopt;
}

std::vector<std::string> ProjectStore::openProjects() const
{
    std::vector<std::string> keys;
    for (const Project& project : projects_)
        keys.push_back(project.key);
    return keys;
}

} // namespace zanfcp
