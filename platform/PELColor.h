#pragma once

namespace zanfcp {

/// A colour as four fractions from 0 to 1.
struct PELColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    friend bool operator==(const PELColor&, const PELColor&) = default;
};

} // namespace zanfcp
