#include "media/quicktime/TimeHeader.h"

#include <limits>

namespace zanfcp::quicktime {
namespace {

constexpr std::uint64_t kLongestRead = 32;

/// Steps over version, flags and the two dates that all three headers begin with.
Result<std::uint8_t> readVersion(ByteReader& bytes)
{
    const std::uint64_t at = bytes.offset();
    const auto version = bytes.read<std::uint8_t>();
    bytes.skip(3);
    if (version > 1) return Error{Fault::unsupported, "version " + std::to_string(version), at};
    bytes.skip(version == 1 ? 16 : 8);
    return version;
}

} // namespace

Result<TimeHeader> parseTimeHeader(Window& window, Extent body)
{
    Result<ByteReader> bytes = window.read(body.first(kLongestRead));
    if (!bytes) return Error{bytes.error()};
    const Result<std::uint8_t> version = readVersion(*bytes);
    if (!version) return Error{version.error()};

    TimeHeader header{.timescale = bytes->read<std::uint32_t>(), .duration = {}};
    if (*version == 1) {
        const auto duration = bytes->read<std::uint64_t>();
        if (duration != std::numeric_limits<std::uint64_t>::max()) header.duration = duration;
    } else {
        const auto duration = bytes->read<std::uint32_t>();
        if (duration != std::numeric_limits<std::uint32_t>::max()) header.duration = duration;
    }
    if (!bytes->ok()) return Error{Fault::truncated, "header is cut short", body.offset};
    if (header.timescale == 0) return Error{Fault::malformed, "timescale is zero", body.offset};
    return header;
}

Result<std::uint32_t> parseTrackIdentifier(Window& window, Extent body)
{
    Result<ByteReader> bytes = window.read(body.first(kLongestRead));
    if (!bytes) return Error{bytes.error()};
    const Result<std::uint8_t> version = readVersion(*bytes);
    if (!version) return Error{version.error()};
    const auto identifier = bytes->read<std::uint32_t>();
    if (!bytes->ok()) return Error{Fault::truncated, "header is cut short", body.offset};
    return identifier;
}

} // namespace zanfcp::quicktime
