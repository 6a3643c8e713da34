#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace zanfcp::test {

/// An empty folder of its own, removed with all it holds at the end of the test.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    /// The path of a file of this name inside; the file is not made.
    std::string file(std::string_view name) const { return (path_ / name).string(); }
    /// Writes a file and returns its path.
    std::string write(std::string_view name, std::string_view bytes) const;

private:
    std::filesystem::path path_;
};

/// The whole content of a file; fails the test when it cannot be read.
std::string readFile(const std::string& path);

} // namespace zanfcp::test
