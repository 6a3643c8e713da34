#include "platform/Result.h"

namespace zanfcp {

std::string_view toString(Fault fault)
{
    switch (fault) {
    case Fault::io: return "io";
    case Fault::notFound: return "notFound";
    case Fault::truncated: return "truncated";
    case Fault::malformed: return "malformed";
    case Fault::unsupported: return "unsupported";
    case Fault::limit: return "limit";
    }
    return "unknown";
}

std::string Error::text() const
{
    std::string line = path;
    if (offset != 0 || !path.empty()) {
        if (!line.empty()) line += ", ";
        line += "byte " + std::to_string(offset) + ": ";
    }
    return line + what;
}

} // namespace zanfcp
