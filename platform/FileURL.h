#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zanfcp {

/// A file URL: an absolute path and its percent-encoded text.
/// Paths are bytes, as Linux has them: nothing is assumed about their encoding, and composed and decomposed
/// letters stay as they are.
class FileURL {
public:
    FileURL() = default;

    /// \param path  made absolute against the working directory; "." parts and doubled slashes are dropped, and
    ///              ".." parts are resolved through the file system, because URL readers would drop them as text.
    ///              An empty path gives an empty URL.
    static FileURL fileURLWithPath(std::string_view path);

    /// Reads "file:///…" or "file://localhost/…"; nothing for other schemes and hosts, bad escapes or an escaped NUL.
    /// Source: RFC 8089.
    static std::optional<FileURL> fileURLWithString(std::string_view text);

    /// The absolute path, without escapes.
    const std::string& path() const { return path_; }
    /// "file:///…" with every byte escaped that a path segment cannot hold, and ";". Source: RFC 3986, 3.3; RFC 8089.
    std::string absoluteString() const;
    /// What follows the last slash; a trailing slash is not counted.
    std::string lastPathComponent() const;
    /// What follows the last dot of the last component, without the dot; empty for none and for names like ".mov".
    std::string pathExtension() const;
    bool empty() const { return path_.empty(); }

    friend bool operator==(const FileURL&, const FileURL&) = default;

private:
    std::string path_;
};

} // namespace zanfcp
