#include "mxf/metadata/Identifiers.h"

#include <span>

namespace TamrelMxf {
namespace {

void AppendHex(std::string& out, std::uint8_t byte, const char* digits)
{
    out += digits[byte >> 4];
    out += digits[byte & 0x0F];
}

constexpr const char* kUpper = "0123456789ABCDEF";
constexpr const char* kLower = "0123456789abcdef";

} // namespace

std::string ToText(const SUl& label)
{
    std::string out;
    out.reserve(47);
    for (const std::uint8_t byte : label.bytes) {
        if (!out.empty()) out += '.';
        AppendHex(out, byte, kUpper);
    }
    return out;
}

std::string ToText(const SUUID& uuid)
{
    std::string out;
    out.reserve(36);
    for (std::size_t i = 0; i < SUUID::kSize; ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) out += '-';
        AppendHex(out, uuid.bytes[i], kLower);
    }
    return out;
}

std::string ToText(const SUmid& umid)
{
    std::string out;
    out.reserve(65);
    for (std::size_t i = 0; i < SUmid::kSize; ++i) {
        if (i == 16) out += '.';
        AppendHex(out, umid.bytes[i], kUpper);
    }
    return out;
}

} // namespace TamrelMxf
