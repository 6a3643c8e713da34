#include "fcp/EventCodec.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

std::string written(const zanfcp::EventMessage& message, zanfcp::MessageKind kind)
{
    zanfcp::EventMessageWriter writer{message, kind};
    std::string bytes;
    while (!writer.done()) {
        std::array<iovec, 3> room{};
        std::size_t count = 0;
        for (const iovec& piece : writer.next(room)) {
            bytes.append(static_cast<const char*>(piece.iov_base), piece.iov_len);
            count += piece.iov_len;
        }
        writer.advance(count);
    }
    return bytes;
}

/// A number that a parameter holds makes the same parameter again.
void look(const zanfcp::EventMessage& message)
{
    using zanfcp::EventDescriptor;
    for (const auto& [keyword, descriptor] : message.parameters) {
        if (message.find(keyword) == nullptr) std::abort();
        (void)descriptor.asFloat64();
        if (const auto value = descriptor.asLong32(); value && EventDescriptor::long32(*value) != descriptor)
            std::abort();
        if (const auto value = descriptor.asLong64(); value && EventDescriptor::long64(*value) != descriptor)
            std::abort();
        if (const auto value = descriptor.asBoolean();
            value && EventDescriptor::boolean(*value).type != descriptor.type)
            std::abort();
    }
}

} // namespace

// The first byte says which side reads and how large the pieces are; what was read must be written the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const auto kind = (data[0] & 1U) != 0 ? zanfcp::MessageKind::reply : zanfcp::MessageKind::event;
    const std::size_t step = data[0] / 2U + 1U;
    std::string_view bytes{reinterpret_cast<const char*>(data) + 1, size - 1};
    zanfcp::EventMessageReader reader{kind, {.parameterBytes = 1U << 20U, .messageBytes = 2U << 20U}};
    while (!bytes.empty() && reader.fault() == 0) {
        const std::string_view start = bytes;
        while (!bytes.empty() && reader.fault() == 0 && !reader.complete())
            bytes.remove_prefix(reader.feed(bytes.substr(0, step)));
        if (!reader.complete()) break;
        const std::string_view used = start.substr(0, start.size() - bytes.size());
        const zanfcp::EventMessage message = reader.take();
        look(message);
        if (written(message, kind) != used) std::abort();
    }
    if (reader.fault() != 0 && !reader.space().empty()) std::abort();
    return 0;
}
