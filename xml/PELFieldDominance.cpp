#include "xml/PELFieldDominance.h"

namespace zanfcp {

std::optional<std::string> PEL_StringFromPELFieldDominance(PELFieldDominance dominance)
{
    switch (dominance) {
    case PELFieldDominance::none: return "none";
    case PELFieldDominance::upper: return "upper";
    case PELFieldDominance::lower: return "lower";
    case PELFieldDominance::undecided: break;
    }
    return std::nullopt;
}

std::string NSStringFromPELFieldDominance(PELFieldDominance dominance)
{
    return PEL_StringFromPELFieldDominance(dominance).value_or("<unknown>");
}

PELFieldDominance PELFieldDominanceFromString(std::string_view name)
{
    for (const auto dominance : {PELFieldDominance::none, PELFieldDominance::upper, PELFieldDominance::lower})
        if (PEL_StringFromPELFieldDominance(dominance) == name) return dominance;
    return PELFieldDominance::undecided;
}

} // namespace zanfcp
