#include "mxf/avc/NalUnit.h"

#include <cstring>

namespace TamrelMxf {

std::size_t FindStartCode(std::span<const std::uint8_t> bytes, std::size_t from)
{
    // The 1 is the rarest of the three bytes in most streams, and the other two are beside it.
    for (std::size_t at = from + 2; at < bytes.size(); at += 3) {
        const void* found = std::memchr(bytes.data() + at, 1, bytes.size() - at);
        if (found == nullptr) break;
        at = static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - bytes.data());
        if (bytes[at - 1] == 0 && bytes[at - 2] == 0) return at - 2;
    }
    return bytes.size();
}

bool CNalReader::Next()
{
    return lengthSize_ == 0 ? NextBehindStartCode() : NextBehindLength();
}

bool CNalReader::NextBehindStartCode()
{
    std::size_t code = isEndKnown_ ? end_ : FindStartCode(bytes_, begin_);
    isEndKnown_ = false;
    while (code < bytes_.size()) {
        begin_ = code + 3;
        offset_ = code > 0 && bytes_[code - 1] == 0 ? code - 1 : code;
        const bool isEmpty = bytes_.size() - begin_ < 1 ||
                             (bytes_.size() - begin_ >= 3 && FindStartCode(bytes_.subspan(begin_, 3), 0) == 0);
        if (!isEmpty) return true;
        code = FindStartCode(bytes_, begin_);
    }
    begin_ = bytes_.size();
    return false;
}

bool CNalReader::NextBehindLength()
{
    std::size_t at = isEndKnown_ ? end_ : 0;
    isEndKnown_ = true;
    end_ = bytes_.size();
    while (bytes_.size() - at >= lengthSize_) {
        std::size_t length = 0;
        for (unsigned i = 0; i < lengthSize_; ++i)
            length = (length << 8) | bytes_[at + i];
        offset_ = at;
        at += lengthSize_;
        if (length == 0) continue;
        isCutShort_ = length > bytes_.size() - at;
        if (isCutShort_) length = bytes_.size() - at;
        begin_ = at;
        end_ = at + length;
        return length > 0;
    }
    isCutShort_ = isCutShort_ || at != bytes_.size();
    return false;
}

std::span<const std::uint8_t> CNalReader::Whole()
{
    if (!isEndKnown_) {
        end_ = FindStartCode(bytes_, begin_);
        isEndKnown_ = true;
    }
    std::size_t end = end_;
    while (end > begin_ + 1 && bytes_[end - 1] == 0)
        --end;
    return bytes_.subspan(begin_, end - begin_);
}

} // namespace TamrelMxf
