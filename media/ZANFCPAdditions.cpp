#include "media/ZANFCPAdditions.h"

namespace zanfcp::ZANFCPAdditions {

std::string stringWithFourCharCode(FourCC code)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto byte = static_cast<unsigned char>(code.value >> shift);
        if (byte < 0x80)
            text += static_cast<char>(byte);
        else
            text += "\xEF\xBF\xBD";
    }
    return text;
}

} // namespace zanfcp::ZANFCPAdditions
