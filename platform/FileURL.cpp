#include "platform/FileURL.h"

#include <filesystem>
#include <system_error>

namespace zanfcp {
namespace {

constexpr std::string_view kScheme = "file://";
constexpr std::string_view kLocalHost = "localhost";
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

/// pchar and "/" of RFC 3986, less ";", which some readers still split segments at (RFC 1808 parameters).
constexpr bool standsAsItIs(unsigned char c)
{
    if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) return true;
    return std::string_view{"-._~!$&'()*+,=:@/"}.find(static_cast<char>(c)) != std::string_view::npos;
}

constexpr int hexValue(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

} // namespace

FileURL FileURL::fileURLWithPath(std::string_view path)
{
    FileURL url;
    if (path.empty()) return url;

    namespace fs = std::filesystem;
    std::error_code fault;
    fs::path whole{path};
    if (whole.is_relative()) {
        const fs::path here = fs::current_path(fault);
        // In a folder that was removed, such a path must not become one of the root folder.
        whole = (fault ? fs::path{"/proc/self/cwd"} : here) / whole;
    }
    fs::path clean;
    for (const fs::path& part : whole) {
        if (part == ".") continue;
        if (part == "..") { // through a symbolic link, the parent is not the part before it
            const fs::path real = fs::weakly_canonical(clean, fault);
            clean = (fault ? clean : real).parent_path();
            continue;
        }
        if (part.empty()) continue;
        clean /= part;
    }
    url.path_ = clean.string();
    return url;
}

std::optional<FileURL> FileURL::fileURLWithString(std::string_view text)
{
    if (!text.starts_with(kScheme)) return std::nullopt;
    text.remove_prefix(kScheme.size());
    if (text.starts_with(kLocalHost)) text.remove_prefix(kLocalHost.size());
    if (!text.starts_with('/')) return std::nullopt;

    FileURL url;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '?' || c == '#') break; // a query or fragment names no other file
        if (c == '%') {
            if (i + 2 >= text.size()) return std::nullopt;
            const int high = hexValue(text[i + 1]);
            const int low = hexValue(text[i + 2]);
            if (high < 0 || low < 0 || (high == 0 && low == 0)) return std::nullopt;
            c = static_cast<char>(high * 16 + low);
            i += 2;
        }
        url.path_ += c;
    }
    return url;
}

std::string FileURL::absoluteString() const
{
    if (path_.empty()) return {};
    std::string text{kScheme};
    for (const char c : path_) {
        const auto byte = static_cast<unsigned char>(c);
        if (standsAsItIs(byte)) {
            text += c;
        } else {
            text += '%';
            text += kHexDigits[byte >> 4U];
            text += kHexDigits[byte & 0x0FU];
        }
    }
    return text;
}

std::string FileURL::lastPathComponent() const
{
    std::string_view rest = path_;
    while (rest.size() > 1 && rest.ends_with('/'))
        rest.remove_suffix(1);
    const std::size_t slash = rest.rfind('/');
    return std::string(rest.size() > 1 && slash != std::string_view::npos ? rest.substr(slash + 1) : rest);
}

std::string FileURL::pathExtension() const
{
    const std::string name = lastPathComponent();
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? std::string() : name.substr(dot + 1);
}

} // namespace zanfcp
