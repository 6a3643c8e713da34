#pragma once

#include "EventMessage.h"

namespace zanfcp {

/// Carries events to the editing application. A host program can bring a way of its own.
class EventTransport {
public:
    /// How sending went. The reply counts only when the status is 0.
    struct Outcome {
        OSStatus status = EventStatus::noErr;
        EventMessage reply = {};
    };

    EventTransport() = default;
    virtual ~EventTransport() = default;
    EventTransport(const EventTransport&) = delete;
    EventTransport& operator=(const EventTransport&) = delete;

    /// Sends an event and waits for its reply.
    /// \return a status of 0 and the reply to this event, or a negative status: -600 nobody listens, -609 the
    ///         connection broke, -1712 no reply in time, -1709 what came is no reply to this event, -50 the event
    ///         cannot be sent
    virtual Outcome send(const EventMessage& event) = 0;
};

} // namespace zanfcp
