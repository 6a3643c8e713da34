#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zanfcp::test {

/// A growing row of bytes, numbers big-endian: `Bytes{}.u32(1).text("moov")`.
class Bytes {
public:
    Bytes() = default;
    explicit Bytes(std::string content) : content_{std::move(content)} {}

    Bytes& u8(std::uint8_t value) { return number(value); }
    Bytes& u16(std::uint16_t value) { return number(value); }
    Bytes& u32(std::uint32_t value) { return number(value); }
    Bytes& u64(std::uint64_t value) { return number(value); }
    Bytes& text(std::string_view value)
    {
        content_ += value;
        return *this;
    }
    Bytes& zeros(std::size_t count)
    {
        content_.append(count, '\0');
        return *this;
    }
    Bytes& add(const Bytes& other) { return text(other.content_); }

    std::size_t size() const { return content_.size(); }
    const std::string& str() const { return content_; }
    std::span<const std::byte> span() const { return std::as_bytes(std::span{content_}); }

    /// Copies with one change.
    Bytes withU8(std::size_t at, std::uint8_t value) const { return with(at, Bytes{}.u8(value)); }
    Bytes withU32(std::size_t at, std::uint32_t value) const { return with(at, Bytes{}.u32(value)); }
    Bytes with(std::size_t at, const Bytes& value) const
    {
        Bytes copy = *this;
        copy.content_.replace(at, value.size(), value.content_);
        return copy;
    }
    Bytes first(std::size_t count) const { return Bytes{content_.substr(0, count)}; }

private:
    template <std::unsigned_integral T> Bytes& number(T value)
    {
        for (std::size_t shift = sizeof(T) * 8; shift > 0; shift -= 8)
            content_ += static_cast<char>(static_cast<unsigned char>(value >> (shift - 8)));
        return *this;
    }

    std::string content_;
};

} // namespace zanfcp::test
