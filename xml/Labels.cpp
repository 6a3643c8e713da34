#include "xml/Labels.h"

#include "platform/Log.h"
#include "xml/LabelFile.h"

#include <array>
#include <mutex>
#include <pwd.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace zanfcp {
namespace {

constexpr char kPathInHome[] = "/Library/Preferences/Final Cut Pro User Data/Final Cut Pro 7.0 Prefs.fcset";

const LabelNames& englishNames()
{
    static const LabelNames names = {"Good Take", "Best Take", "Alternate Shots", "Interviews", "B Roll"};
    return names;
}

struct State {
    std::mutex mutex;
    std::optional<std::string> path; ///< set by the host
    std::optional<LabelNames> names; ///< once loaded
};

State& state()
{
    static State instance;
    return instance;
}

/// Empty when the user has none.
std::string homeFolder()
{
    std::vector<char> buffer(16384); // an entry is a line of /etc/passwd, or as long as a directory service makes it
    passwd entry = {};
    passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) return {};
    return entry.pw_dir == nullptr ? std::string() : std::string(entry.pw_dir);
}

std::string pathOf(const State& current)
{
    if (current.path) return *current.path;
    const std::string home = homeFolder();
    return home.empty() ? std::string() : home + kPathInHome;
}

bool load(State& current)
{
    if (current.names) return true;
    auto names = readLabelFile(pathOf(current));
    if (names) current.names = *std::move(names);
    return current.names.has_value();
}

/// `("Good Take", "Best Take")`
std::string listText(const LabelNames& names)
{
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "(\"" : ", \"") + name + "\"";
    return text + ")";
}

/// The names, and whether they were just taken from the defaults.
std::pair<LabelNames, bool> loadedNames()
{
    State& current = state();
    const std::scoped_lock lock{current.mutex};
    const bool fallsBack = !load(current);
    if (fallsBack) current.names = englishNames();
    return {*current.names, fallsBack};
}

} // namespace

bool PELInitializeFCPLabelStrings()
{
    State& current = state();
    const std::scoped_lock lock{current.mutex};
    return load(current);
}

std::optional<std::string> PELLabelForColor(std::uint32_t index)
{
    const auto [names, fellBack] = loadedNames();
    if (fellBack)
        ZAN_LOG_DEFAULT("Could not load FCP 7 Label strings, using english default values: %s",
                        listText(names).c_str());
    if (index == 0) return std::string();
    if (index <= names.size()) return names[index - 1];
    ZAN_LOG_ERROR("Invalid color index: %i", static_cast<int>(index));
    return std::nullopt;
}

std::string labelPreferencesPath()
{
    State& current = state();
    const std::scoped_lock lock{current.mutex};
    return pathOf(current);
}

void setLabelPreferencesPath(std::optional<std::string> path)
{
    State& current = state();
    const std::scoped_lock lock{current.mutex};
    current.path = std::move(path);
    current.names.reset();
}

} // namespace zanfcp
