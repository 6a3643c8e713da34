#include "fcp/EventCodec.h"

#include "platform/ByteReader.h"

#include <algorithm>
#include <cassert>
#include <concepts>
#include <cstring>
#include <utility>

namespace zanfcp {
namespace {

constexpr FourCC kMagic{"zfcp"};
constexpr std::size_t kLeadBytes = 16; ///< magic, version, kind and length: what the length does not count
constexpr std::size_t kHeadBytes = 44;
constexpr std::size_t kParameterHeadBytes = 16;
constexpr std::size_t kFirstPartBytes = 64U << 10U; ///< of memory taken on the word of the sender
constexpr std::size_t kBelievedTimes = 8;           ///< what has arrived; as much is set aside, and not touched yet
constexpr std::size_t kStepBytes = 512U << 10U;     ///< cleared at a time: still in the cache when they are filled

template <std::unsigned_integral T> void put(std::string& into, T value)
{
    for (std::size_t shift = sizeof(T) * 8; shift > 0; shift -= 8)
        into += static_cast<char>(static_cast<unsigned char>(value >> (shift - 8)));
}

} // namespace

EventMessageWriter::EventMessageWriter(const EventMessage& message, MessageKind kind)
{
    remaining_ = kHeadBytes + message.target.bytes.size();
    for (const EventMessage::Parameter& parameter : message.parameters)
        remaining_ += kParameterHeadBytes + parameter.descriptor.bytes.size();

    heads_.reserve(kHeadBytes + message.target.bytes.size() + message.parameters.size() * kParameterHeadBytes);
    put(heads_, kMagic.value);
    put(heads_, kMessageVersion);
    put(heads_, static_cast<std::uint16_t>(kind));
    put(heads_, remaining_ - kLeadBytes);
    put(heads_, message.eventClass.value);
    put(heads_, message.eventID.value);
    put(heads_, message.returnID);
    put(heads_, message.target.type.value);
    put(heads_, static_cast<std::uint32_t>(message.target.bytes.size()));
    put(heads_, static_cast<std::uint32_t>(message.parameters.size()));
    assert(heads_.size() == kHeadBytes);
    heads_ += message.target.bytes;
    const std::size_t firstHead = heads_.size();
    for (const EventMessage::Parameter& parameter : message.parameters) {
        put(heads_, parameter.keyword.value);
        put(heads_, parameter.descriptor.type.value);
        put(heads_, static_cast<std::uint64_t>(parameter.descriptor.bytes.size()));
    }

    const std::string_view heads = heads_; // complete: it moves no more
    pieces_.push_back(heads.substr(0, firstHead));
    for (std::size_t i = 0; i < message.parameters.size(); ++i) {
        pieces_.push_back(heads.substr(firstHead + i * kParameterHeadBytes, kParameterHeadBytes));
        pieces_.push_back(message.parameters[i].descriptor.bytes);
    }
}

std::span<iovec> EventMessageWriter::next(std::span<iovec> into) const
{
    std::size_t count = 0;
    std::size_t skip = at_;
    for (std::size_t i = piece_; i < pieces_.size() && count < into.size(); ++i, skip = 0) {
        const std::string_view rest = pieces_[i].substr(skip);
        if (!rest.empty()) into[count++] = {const_cast<char*>(rest.data()), rest.size()}; // sendmsg only reads
    }
    return into.first(count);
}

void EventMessageWriter::advance(std::size_t count)
{
    assert(count <= remaining_);
    remaining_ -= count;
    while (count > 0) {
        const std::size_t here = std::min(count, pieces_[piece_].size() - at_);
        count -= here;
        at_ += here;
        if (at_ == pieces_[piece_].size()) {
            ++piece_;
            at_ = 0;
        }
    }
}

EventMessageReader::EventMessageReader(MessageKind expected, const EventLimits& limits)
    : expected_{expected}, limits_{limits}
{
    startPart(State::head, kHeadBytes);
}

void EventMessageReader::startPart(State state, std::uint64_t length)
{
    state_ = state;
    partLength_ = length;
    filled_ = 0;
    part_.clear();
}

void EventMessageReader::refuse(OSStatus fault)
{
    fault_ = fault;
    state_ = State::refused;
    part_ = {};
}

std::span<char> EventMessageReader::space()
{
    if (state_ == State::complete || state_ == State::refused) return {};
    if (part_.size() < partLength_ && part_.size() - filled_ < kStepBytes / 2) {
        const std::uint64_t believed = std::max<std::uint64_t>(kFirstPartBytes, filled_ * kBelievedTimes);
        const std::uint64_t wanted = std::min({partLength_, believed, std::uint64_t{filled_ + kStepBytes}});
        if (part_.capacity() < wanted) part_.reserve(static_cast<std::size_t>(std::min(partLength_, believed)));
        part_.resize(static_cast<std::size_t>(std::max<std::uint64_t>(wanted, part_.size())));
    }
    return std::span{part_}.subspan(filled_);
}

void EventMessageReader::advance(std::size_t count)
{
    assert(count <= part_.size() - filled_);
    filled_ += count;
    received_ += count;
    while (filled_ == partLength_ && state_ != State::complete && state_ != State::refused) {
        switch (state_) {
        case State::head: readHead(); break;
        case State::target:
            message_.target.bytes = std::move(part_);
            nextParameter();
            break;
        case State::parameterHead: readParameterHead(); break;
        case State::parameterBytes:
            message_.parameters.back().descriptor.bytes = std::move(part_);
            nextParameter();
            break;
        case State::complete:
        case State::refused: break;
        }
    }
}

std::size_t EventMessageReader::feed(std::string_view bytes)
{
    const std::size_t before = bytes.size();
    while (!bytes.empty()) {
        const std::span<char> room = space();
        if (room.empty()) break;
        const std::size_t count = std::min(room.size(), bytes.size());
        std::memcpy(room.data(), bytes.data(), count);
        bytes.remove_prefix(count);
        advance(count);
    }
    return before - bytes.size();
}

void EventMessageReader::readHead()
{
    ByteReader reader{std::as_bytes(std::span{part_})};
    const FourCC magic{reader.read<std::uint32_t>()};
    const auto version = reader.read<std::uint16_t>();
    const auto kind = reader.read<std::uint16_t>();
    left_ = reader.read<std::uint64_t>();
    if (magic != kMagic) return refuse(EventStatus::errAECorruptData);
    if (version != kMessageVersion) return refuse(EventStatus::errAENewerVersion);
    message_.eventClass = FourCC{reader.read<std::uint32_t>()};
    message_.eventID = FourCC{reader.read<std::uint32_t>()};
    message_.returnID = reader.read<std::uint64_t>();
    message_.target.type = FourCC{reader.read<std::uint32_t>()};
    const auto targetBytes = reader.read<std::uint32_t>();
    parametersLeft_ = reader.read<std::uint32_t>();
    if (kind != static_cast<std::uint16_t>(expected_) || left_ < kHeadBytes - kLeadBytes)
        return refuse(EventStatus::errAECorruptData);
    if (left_ > limits_.messageBytes || targetBytes > limits_.targetBytes || parametersLeft_ > limits_.parameters)
        return refuse(EventStatus::paramErr);
    left_ -= kHeadBytes - kLeadBytes;
    if (targetBytes > left_) return refuse(EventStatus::errAECorruptData);
    left_ -= targetBytes;
    startPart(State::target, targetBytes);
}

void EventMessageReader::nextParameter()
{
    if (parametersLeft_ == 0) {
        if (left_ != 0) return refuse(EventStatus::errAECorruptData);
        startPart(State::complete, 0);
        return;
    }
    if (left_ < kParameterHeadBytes) return refuse(EventStatus::errAECorruptData);
    left_ -= kParameterHeadBytes;
    --parametersLeft_;
    startPart(State::parameterHead, kParameterHeadBytes);
}

void EventMessageReader::readParameterHead()
{
    ByteReader reader{std::as_bytes(std::span{part_})};
    const FourCC keyword{reader.read<std::uint32_t>()};
    const FourCC type{reader.read<std::uint32_t>()};
    const auto length = reader.read<std::uint64_t>();
    if (length > left_ || message_.find(keyword) != nullptr) return refuse(EventStatus::errAECorruptData);
    if (length > limits_.parameterBytes) return refuse(EventStatus::paramErr);
    left_ -= length;
    message_.parameters.push_back({.keyword = keyword, .descriptor = {.type = type}});
    startPart(State::parameterBytes, length);
}

EventMessage EventMessageReader::take()
{
    assert(complete());
    EventMessage message = std::exchange(message_, {});
    received_ = 0;
    startPart(State::head, kHeadBytes);
    return message;
}

} // namespace zanfcp
