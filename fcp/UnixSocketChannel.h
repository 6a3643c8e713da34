#pragma once

#include "EventTransport.h"

#include <chrono>
#include <string>

namespace zanfcp {

/// Carries events over a Unix-domain stream socket, one connection an event, so that a reply that comes too late can
/// never be taken for another one's. May be used from several threads at once.
class UnixSocketChannel final : public EventTransport {
public:
    /// The time an event and its reply may take together unless another is set.
    static constexpr std::chrono::milliseconds kDefaultTimeout = std::chrono::seconds(60);

    /// \param socketPath  where the receiving side listens; nothing is opened before an event is sent
    explicit UnixSocketChannel(std::string socketPath, std::chrono::milliseconds timeout = kDefaultTimeout);

    /// As EventTransport::send. Only a receiving side of the same user is spoken to: -54 for any other, and for a
    /// socket that may not be opened; -50 for a path too long for a socket or an event above EventLimits. An event
    /// whose reply did not come in time, or whose connection broke, may have been carried out all the same.
    Outcome send(const EventMessage& event) override;

private:
    std::string socketPath_;
    std::chrono::milliseconds timeout_;
};

} // namespace zanfcp
