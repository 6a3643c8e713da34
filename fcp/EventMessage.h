#pragma once

#include "EventCodes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zanfcp {

/// A type and its bytes. The null descriptor has the type 'null' and no bytes.
struct EventDescriptor {
    FourCC type = EventCode::null;
    std::string bytes = {};

    bool isNull() const { return type == EventCode::null; }

    /// The address of the application with this signature.
    static EventDescriptor applicationAddress(FourCC signature);
    static EventDescriptor utf8(std::string_view bytes);
    static EventDescriptor file(std::string_view path);
    static EventDescriptor float64(double value);
    static EventDescriptor boolean(bool value);
    /// Four bytes of type 'long'.
    static EventDescriptor long32(std::int32_t value);
    /// Eight bytes of type 'long'.
    static EventDescriptor long64(std::int64_t value);

    /// The values of descriptors as made above; nothing when type or size are others.
    std::optional<double> asFloat64() const;
    std::optional<bool> asBoolean() const;
    std::optional<std::int32_t> asLong32() const;
    std::optional<std::int64_t> asLong64() const;

    friend bool operator==(const EventDescriptor&, const EventDescriptor&) = default;
};

/// What events may hold. Both sides hold to it, so that neither can be made to allocate without bound.
struct EventLimits {
    std::size_t parameters = 32;                ///< in one message
    std::size_t targetBytes = 256;              ///< of the address
    std::size_t parameterBytes = 512ULL << 20U; ///< of one parameter
    std::size_t messageBytes = 513ULL << 20U;   ///< of a whole message, in the form it is sent
};

/// One event or reply: what it is, whom it is for, and its parameters in the order they were added.
class EventMessage {
public:
    struct Parameter {
        FourCC keyword;
        EventDescriptor descriptor;

        friend bool operator==(const Parameter&, const Parameter&) = default;
    };

    FourCC eventClass = {};
    FourCC eventID = {};
    std::uint64_t returnID = 0; ///< ties a reply to its event; 0 in a reply to something that could not be read
    EventDescriptor target = {};
    std::vector<Parameter> parameters = {};

    /// An event for `target` with a return ID of its own, which nobody can guess.
    static EventMessage event(FourCC eventClass, FourCC eventID, EventDescriptor target);
    /// An empty reply to the event with this return ID.
    static EventMessage reply(std::uint64_t returnID);

    /// Adds a parameter, in place of one with the same keyword.
    /// \return 0; -50 when it is larger than EventLimits allow, or one too many, or a file without a path
    OSStatus add(FourCC keyword, EventDescriptor descriptor);
    /// Borrowed; null when there is none.
    const EventDescriptor* find(FourCC keyword) const;

    friend bool operator==(const EventMessage&, const EventMessage&) = default;
};

} // namespace zanfcp
