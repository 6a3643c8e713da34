#include "xml/LabelFile.h"

#include "platform/FileDescriptor.h"
#include "platform/Format.h"
#include "xml/Horspool.h"
#include "xml/XMLText.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zanfcp {
namespace {

constexpr std::size_t kNameDistance = 16; // from the first byte of a key to the first byte of its name

/// The text that begins at `start` and ends before the next NUL.
Result<std::string> nameAt(std::string_view bytes, std::size_t start)
{
    const std::string_view rest = bytes.substr(start);
    const std::size_t length = rest.substr(0, kMaxLabelBytes + 1).find('\0');
    if (length == std::string_view::npos) {
        if (rest.size() <= kMaxLabelBytes) return Error{Fault::truncated, "the file ends inside a name", start};
        return Error{Fault::limit, format("a name is longer than %zu bytes", kMaxLabelBytes), start};
    }
    if (!isUtf8(rest.substr(0, length))) return Error{Fault::malformed, "a name is not UTF-8", start};
    return std::string(rest.substr(0, length));
}

Error systemError(const char* what)
{
    const Fault fault = errno == ENOENT || errno == ENOTDIR ? Fault::notFound : Fault::io;
    return Error{fault, format("%s: %s", what, std::strerror(errno))};
}

/// Reads to the end, and no further than one byte past the limit: a file can grow, or lie about its size.
Result<std::string> readAll(int descriptor, std::size_t expected)
{
    std::string bytes;
    std::size_t filled = 0;
    for (;;) {
        if (filled > kMaxLabelFileBytes)
            return Error{Fault::limit, format("the file is larger than %zu bytes", kMaxLabelFileBytes)};
        if (filled == bytes.size())
            bytes.resize(std::min(std::max(expected, filled * 2) + 4096, kMaxLabelFileBytes + 1));
        const ssize_t got = ::read(descriptor, bytes.data() + filled, bytes.size() - filled);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return systemError("cannot read");
        if (got == 0) break;
        filled += static_cast<std::size_t>(got);
    }
    bytes.resize(filled);
    return bytes;
}

} // namespace

Result<LabelNames> parseLabelNames(std::string_view bytes)
{
    LabelNames names;
    std::size_t position = 0;
    std::string key = "label1";
    for (std::string& name : names) {
        const auto match = horspoolSearch(bytes.substr(position), key);
        if (!match) return Error{Fault::notFound, "no " + key, position};
        const std::size_t found = position + *match;
        if (bytes.size() - found <= kNameDistance)
            return Error{Fault::truncated, "the file ends before the name of " + key, found};
        position = found + kNameDistance;
        auto text = nameAt(bytes, position);
        if (!text) return std::move(text).error().under(key);
        name = *std::move(text);
        ++key.back(); // the next key is sought from the name on, not from behind it
    }
    return names;
}

Result<LabelNames> readLabelFile(const std::string& path)
{
    // Not blocking, because opening a FIFO would wait for its writer.
    const FileDescriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK)};
    struct stat status = {};
    if (!file || ::fstat(file.value(), &status) != 0) return systemError("cannot open");
    if (!S_ISREG(status.st_mode)) return Error{Fault::unsupported, "not a regular file"};
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (size > kMaxLabelFileBytes)
        return Error{Fault::limit, format("the file is larger than %zu bytes", kMaxLabelFileBytes)};
    const auto bytes = readAll(file.value(), static_cast<std::size_t>(size));
    if (!bytes) return bytes.error();
    return parseLabelNames(*bytes);
}

} // namespace zanfcp
