#include "cli/ValidatorMessages.h"

#include "cli/Text.h"

#include <algorithm>

namespace zanfcp::cli {

std::string validatorMessages(std::string_view output, std::string_view name)
{
    constexpr int kMaxLines = 50;
    constexpr std::size_t kMaxLineBytes = 500; // a document may be one line of megabytes, quoted in the message
    std::string out;
    int lines = 0;
    while (!output.empty()) {
        if (++lines > kMaxLines) return out + "…\n";
        const std::size_t end = std::min(output.find('\n'), output.size());
        std::string line{output.substr(0, std::min(end, kMaxLineBytes))};
        output.remove_prefix(std::min(end + 1, output.size()));
        if (line.starts_with("-:"))
            line.replace(0, 1, name);
        else if (line == "Document - does not validate against" || line.starts_with("Document - "))
            line.replace(line.find('-'), 1, name);
        out += printable(line) + "\n";
    }
    return out;
}

} // namespace zanfcp::cli
