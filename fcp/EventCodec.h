#pragma once

#include "EventMessage.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <sys/uio.h>
#include <vector>

namespace zanfcp {

// The form that messages have on a stream; docs/event-channel.md describes it byte by byte.

/// Which way a message goes.
enum class MessageKind : std::uint16_t { event = 1, reply = 2 };

/// Version of the form that is written and read.
inline constexpr std::uint16_t kMessageVersion = 1;

/// Hands out the bytes of one message in pieces of any size, without copying what the parameters hold.
class EventMessageWriter {
public:
    /// \param message  borrowed; must outlive the writer and stay as it is
    EventMessageWriter(const EventMessage& message, MessageKind kind);

    std::uint64_t remaining() const { return remaining_; }
    bool done() const { return remaining_ == 0; }
    /// The next pieces, as sendmsg(2) takes them: at most as many as `into` has room for.
    std::span<iovec> next(std::span<iovec> into) const;
    /// Marks the next `count` bytes as sent. \pre count <= remaining()
    void advance(std::size_t count);

private:
    std::string heads_; ///< all that is not parameter bytes, in order
    std::vector<std::string_view> pieces_;
    std::size_t piece_ = 0;
    std::size_t at_ = 0; ///< within the piece
    std::uint64_t remaining_ = 0;
};

/// Puts one message together from bytes that arrive in pieces of any size. Nothing is believed before it has been
/// compared with the limits, and memory is taken as bytes arrive, not as they are announced.
class EventMessageReader {
public:
    explicit EventMessageReader(MessageKind expected, const EventLimits& limits = {});

    /// Where the next bytes go; empty once the message is complete or refused.
    std::span<char> space();
    /// Says that `count` bytes were put into `space()`. \pre count <= space().size()
    void advance(std::size_t count);
    /// Takes bytes from the front of `bytes` until the message is complete or refused, or there are no more.
    /// \return how many were taken
    std::size_t feed(std::string_view bytes);

    bool started() const { return received_ > 0; }
    bool complete() const { return state_ == State::complete; }
    /// 0, or why the bytes are no message that is taken: -1702 no message or one that contradicts itself, -1706
    /// another version, -50 above the limits.
    OSStatus fault() const { return fault_; }
    /// The return ID, once it has arrived; 0 before.
    std::uint64_t returnID() const { return message_.returnID; }
    /// Bytes taken so far of this message.
    std::uint64_t received() const { return received_; }

    /// The message; the reader then waits for the next one. \pre complete()
    EventMessage take();

private:
    enum class State : std::uint8_t { head, target, parameterHead, parameterBytes, complete, refused };

    void refuse(OSStatus fault);
    void readHead();
    void readParameterHead();
    void nextParameter();
    void startPart(State state, std::uint64_t length);

    MessageKind expected_;
    EventLimits limits_;
    State state_ = State::head;
    OSStatus fault_ = EventStatus::noErr;
    EventMessage message_;
    std::string part_;             ///< what is being filled: a head, the target or a parameter
    std::size_t filled_ = 0;       ///< of `part_`
    std::uint64_t partLength_ = 0; ///< that `part_` will have
    std::uint64_t left_ = 0;       ///< of the message's body, not given to a part yet
    std::uint32_t parametersLeft_ = 0;
    std::uint64_t received_ = 0;
};

} // namespace zanfcp
