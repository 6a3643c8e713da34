#include "mxf/klv/Klv.h"

#include "mxf/Limits.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace TamrelMxf {

namespace {

constexpr std::uint8_t kLongForm = 0x80; // alone: an indefinite length
constexpr std::int64_t kSmallValueBytes = 4096;

} // namespace

int SKlvHeader::Parse(std::span<const std::uint8_t> bytes)
{
    constexpr std::size_t kLengthAt = SUl::kSize;
    constexpr std::size_t kPrefixSize = 4;
    if (bytes.size() < kPrefixSize) return kCutShort;
    constexpr std::array<std::uint8_t, kPrefixSize> kPrefix{0x06, 0x0E, 0x2B, 0x34};
    if (!std::equal(kPrefix.begin(), kPrefix.end(), bytes.begin())) return kNotAKey;
    if (bytes.size() <= kLengthAt) return kCutShort;

    SKlvHeader read;
    read.key = SUl::From(bytes.data());
    const std::uint8_t first = bytes[kLengthAt];
    read.lengthFieldSize = 1;
    if (first < kLongForm) {
        read.length = first;
    } else if (first == kLongForm) {
        read.length = -1;
    } else {
        read.lengthFieldSize += first & 0x7F;
        const std::size_t count = first & 0x0F;
        if (bytes.size() - kLengthAt - 1 < count) return kCutShort;
        std::uint64_t number = 0;
        for (const std::uint8_t byte : bytes.subspan(kLengthAt + 1, count)) {
            if (number > (std::uint64_t{std::numeric_limits<std::int64_t>::max()} >> 8)) return kCutShort;
            number = (number << 8) | byte;
        }
        read.length = static_cast<std::int64_t>(number);
    }
    *this = read;
    return kSuccess;
}

std::int64_t SKlvHeader::TotalSize() const
{
    if (IsIndefinite()) return -1;
    const std::int64_t most = std::numeric_limits<std::int64_t>::max();
    return length > most - HeaderSize() ? most : HeaderSize() + length;
}

CKlv::CKlv(CKlv&& other) noexcept
{
    *this = std::move(other);
}

CKlv& CKlv::operator=(CKlv&& other) noexcept
{
    if (this == &other) return *this;
    header_ = other.header_;
    storage_ = std::move(other.storage_); // the buffer moves along, so the view of it stays valid
    value_ = other.value_;
    isOwned_ = other.isOwned_;
    isEmpty_ = other.isEmpty_;
    other.Clear();
    return *this;
}

void CKlv::Clear()
{
    header_ = {};
    storage_ = {};
    value_ = {};
    isOwned_ = false;
    isEmpty_ = true;
}

int CKlv::LoadFrom(CMediaSource* source)
{
    Clear();
    if (source == nullptr) return kNullArgument;

    const std::int64_t start = source->GetPos();
    std::array<std::uint8_t, SKlvHeader::kProbeSize> probe{};
    if (start < 0 || source->Read(probe.data(), probe.size()) != static_cast<std::int64_t>(probe.size()))
        return kCutShort;
    if (const int status = header_.Parse(probe); status != kSuccess) return status;

    int status = kCutShort;
    if (start <= std::numeric_limits<std::int64_t>::max() - header_.HeaderSize())
        status = ReadValue(*source, start + header_.HeaderSize());
    if (status != kSuccess) {
        Clear();
        return status;
    }
    value_ = storage_;
    isOwned_ = true;
    isEmpty_ = false;
    return kSuccess;
}

int CKlv::ReadValue(CMediaSource& source, std::int64_t position)
{
    if (source.Seek(position) != 0) return kCutShort;
    if (header_.length < 1) return kSuccess;

    // Of a small value the size of the source tells nothing that reading it does not.
    const std::int64_t size = header_.length <= kSmallValueBytes ? -1 : source.GetSize();
    const std::int64_t left = size < 0 ? std::numeric_limits<std::int64_t>::max() : size - position;
    if (header_.length > left) return kCutShort;
    if (header_.length > kMaxKlvValueBytes) return kFailed;

    // A source that does not know its size gets no more memory ahead than it has filled so far.
    const auto length = static_cast<std::size_t>(header_.length);
    for (std::size_t have = 0; have < length;) {
        const std::size_t step = size < 0 ? std::min(length - have, std::max(have, kReadStepBytes)) : length - have;
        storage_.resize(have + step);
        if (source.Read(storage_.data() + have, step) != static_cast<std::int64_t>(step)) return kCutShort;
        have += step;
    }
    return kSuccess;
}

int CKlv::View(std::span<const std::uint8_t> bytes)
{
    Clear();
    if (const int status = header_.Parse(bytes); status != kSuccess) return status;
    const auto headerSize = static_cast<std::size_t>(header_.HeaderSize());
    const std::size_t length = header_.length < 1 ? 0 : static_cast<std::size_t>(header_.length);
    if (headerSize > bytes.size() || length > bytes.size() - headerSize) {
        Clear();
        return kCutShort;
    }
    value_ = bytes.subspan(headerSize, length);
    isEmpty_ = false;
    return kSuccess;
}

} // namespace TamrelMxf
