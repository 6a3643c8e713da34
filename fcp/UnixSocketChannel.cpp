#include "fcp/UnixSocketChannel.h"

#include "fcp/EventCodec.h"
#include "fcp/LocalSocket.h"
#include "platform/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace zanfcp {
namespace {

using Clock = std::chrono::steady_clock;

/// At least zero; rounded up, so that a wait never ends just before the deadline.
std::chrono::milliseconds left(Clock::time_point deadline)
{
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()),
                    std::chrono::milliseconds::zero());
}

/// Connects, waiting for a place in the queue of the receiving side at most until the deadline.
OSStatus connectTo(const std::string& path, Clock::time_point deadline, FileDescriptor& connection)
{
    const auto address = localAddress(path);
    if (!address) return EventStatus::paramErr;
    connection.reset(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!connection) return EventStatus::connectionInvalid;
    for (;;) {
        const auto wait = std::max(left(deadline), std::chrono::milliseconds(1)); // zero would be for ever
        const timeval limit{.tv_sec = wait.count() / 1000, .tv_usec = wait.count() % 1000 * 1000};
        ::setsockopt(connection.value(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
        if (::connect(connection.value(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) == 0) break;
        switch (errno) {
        case EINTR: // a Unix-domain connect that was interrupted has not begun
            if (left(deadline).count() == 0) return EventStatus::errAETimeout;
            continue;
        case EAGAIN: return EventStatus::errAETimeout;
        case EACCES:
        case EPERM: return EventStatus::permErr;
        case ENOENT:
        case ENOTDIR:
        case ECONNREFUSED: return EventStatus::procNotFound;
        default: return EventStatus::connectionInvalid;
        }
    }
    return peerUser(connection.value()) == ::geteuid() ? EventStatus::noErr : EventStatus::permErr;
}

/// Reads what is there of the reply. A status other than 0 ends the exchange.
OSStatus receive(int connection, EventMessageReader& reader)
{
    while (!reader.complete()) {
        const std::span<char> room = reader.space();
        const ssize_t count = ::recv(connection, room.data(), room.size(), MSG_DONTWAIT);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN) return EventStatus::noErr;
        if (count <= 0) return EventStatus::connectionInvalid;
        reader.advance(static_cast<std::size_t>(count));
        if (reader.fault() != EventStatus::noErr) return EventStatus::errAEReplyNotValid;
    }
    return EventStatus::noErr;
}

/// Sends and receives at the same time: a refusal may come before the whole event is sent.
OSStatus exchange(int connection, EventMessageWriter& writer, EventMessageReader& reader, Clock::time_point deadline)
{
    bool sending = true;
    while (!reader.complete()) {
        pollfd wait{connection, static_cast<short>(sending ? POLLIN | POLLOUT : POLLIN), 0};
        const int ready = ::poll(&wait, 1, static_cast<int>(std::min<std::int64_t>(left(deadline).count(), 1 << 30)));
        if (ready < 0 && errno != EINTR) return EventStatus::connectionInvalid;
        if (ready > 0 && (wait.revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
            const OSStatus status = receive(connection, reader);
            if (status != EventStatus::noErr) return status;
        }
        if (ready > 0 && sending && (wait.revents & POLLOUT) != 0) {
            // When the other side closed, what it said before is still to be read.
            if (sendSome(connection, writer) < 0 && errno != EAGAIN) sending = false;
            if (writer.done()) sending = false;
        }
        if (!reader.complete() && left(deadline).count() == 0) return EventStatus::errAETimeout;
    }
    return EventStatus::noErr;
}

} // namespace

UnixSocketChannel::UnixSocketChannel(std::string socketPath, std::chrono::milliseconds timeout)
    : socketPath_{std::move(socketPath)}, timeout_{std::clamp<std::chrono::milliseconds>(
                                              timeout, std::chrono::milliseconds::zero(), std::chrono::hours(24))}
{}

EventTransport::Outcome UnixSocketChannel::send(const EventMessage& event)
{
    EventMessageWriter writer{event, MessageKind::event};
    if (writer.remaining() > EventLimits{}.messageBytes) return {.status = EventStatus::paramErr};
    const Clock::time_point deadline = Clock::now() + timeout_;
    FileDescriptor connection;
    if (const OSStatus status = connectTo(socketPath_, deadline, connection); status != EventStatus::noErr)
        return {.status = status};
    EventMessageReader reader{MessageKind::reply};
    if (const OSStatus status = exchange(connection.value(), writer, reader, deadline); status != EventStatus::noErr)
        return {.status = status};
    EventMessage reply = reader.take();
    // The whole reply has come, so nothing can follow: one that made up an ID is no answer to this event.
    if (reply.returnID != event.returnID || reply.eventClass != EventCode::replyClass ||
        reply.eventID != EventCode::replyID)
        return {.status = EventStatus::errAEReplyNotValid};
    return {.status = EventStatus::noErr, .reply = std::move(reply)};
}

} // namespace zanfcp
