#include "fcp/EventMessage.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <sys/random.h>
#include <utility>

namespace zanfcp {
namespace {

template <typename T> std::string bytesOf(T value)
{
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

template <typename T> std::optional<T> valueOf(const EventDescriptor& descriptor, FourCC type)
{
    T value{};
    if (descriptor.type != type || descriptor.bytes.size() != sizeof value) return std::nullopt;
    std::memcpy(&value, descriptor.bytes.data(), sizeof value);
    return value;
}

/// Never 0. The ID is what tells a reply to this event from one that was made up or came too late.
std::uint64_t newReturnID()
{
    std::uint64_t id = 0;
    if (::getrandom(&id, sizeof id, 0) != static_cast<ssize_t>(sizeof id)) {
        std::random_device source;
        id = static_cast<std::uint64_t>(source()) << 32U | source();
    }
    return id == 0 ? 1 : id;
}

} // namespace

EventDescriptor EventDescriptor::applicationAddress(FourCC signature)
{
    std::string bytes;
    for (unsigned shift = 32; shift > 0; shift -= 8)
        bytes += static_cast<char>(static_cast<unsigned char>(signature.value >> (shift - 8)));
    return {EventCode::applicationSignature, std::move(bytes)};
}

EventDescriptor EventDescriptor::utf8(std::string_view bytes)
{
    return {EventCode::utf8, std::string(bytes)};
}

EventDescriptor EventDescriptor::file(std::string_view path)
{
    return {EventCode::fileURL, std::string(path)};
}

EventDescriptor EventDescriptor::float64(double value)
{
    return {EventCode::float64, bytesOf(value)};
}

EventDescriptor EventDescriptor::boolean(bool value)
{
    return {EventCode::boolean, std::string(1, value ? '\1' : '\0')};
}

EventDescriptor EventDescriptor::long32(std::int32_t value)
{
    return {EventCode::longInteger, bytesOf(value)};
}

EventDescriptor EventDescriptor::long64(std::int64_t value)
{
    return {EventCode::longInteger, bytesOf(value)};
}

std::optional<double> EventDescriptor::asFloat64() const
{
    return valueOf<double>(*this, EventCode::float64);
}

std::optional<bool> EventDescriptor::asBoolean() const
{
    const auto value = valueOf<std::uint8_t>(*this, EventCode::boolean);
    return value ? std::optional(*value != 0) : std::nullopt;
}

std::optional<std::int32_t> EventDescriptor::asLong32() const
{
    return valueOf<std::int32_t>(*this, EventCode::longInteger);
}

std::optional<std::int64_t> EventDescriptor::asLong64() const
{
    return valueOf<std::int64_t>(*this, EventCode::longInteger);
}

EventMessage EventMessage::event(FourCC eventClass, FourCC eventID, EventDescriptor target)
{
    EventMessage message;
    message.eventClass = eventClass;
    message.eventID = eventID;
    message.returnID = newReturnID();
    message.target = std::move(target);
    return message;
}

EventMessage EventMessage::reply(std::uint64_t returnID)
{
    EventMessage message;
    message.eventClass = EventCode::replyClass;
    message.eventID = EventCode::replyID;
    message.returnID = returnID;
    return message;
}

OSStatus EventMessage::add(FourCC keyword, EventDescriptor descriptor)
{
    constexpr EventLimits limits;
    if (descriptor.bytes.size() > limits.parameterBytes) return EventStatus::paramErr;
    if (descriptor.type == EventCode::fileURL && descriptor.bytes.empty()) return EventStatus::paramErr;
    const auto place =
        std::ranges::find_if(parameters, [&](const Parameter& parameter) { return parameter.keyword == keyword; });
    if (place != parameters.end()) {
        place->descriptor = std::move(descriptor);
        return EventStatus::noErr;
    }
    if (parameters.size() == limits.parameters) return EventStatus::paramErr;
    parameters.push_back({.keyword = keyword, .descriptor = std::move(descriptor)});
    return EventStatus::noErr;
}

const EventDescriptor* EventMessage::find(FourCC keyword) const
{
    for (const Parameter& parameter : parameters)
        if (parameter.keyword == keyword) return &parameter.descriptor;
    return nullptr;
}

} // namespace zanfcp
