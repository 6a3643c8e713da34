#pragma once

#include "PELElement.h"

#include <string_view>

namespace zanfcp {

/// Where an element puts the values that make it up, and finds them again, each under a key of its own.
/// PELElement::encodeWithCoder() writes to one, PELElement(PELCoder&) reads from one.
class PELCoder {
public:
    virtual ~PELCoder() = default;

    /// Stores a text or a list of elements; an absent value stores nothing. A key is stored once per element: of
    /// several values the first counts.
    virtual void encode(const PELElementValue& value, std::string_view key) = 0;
    /// The value stored under `key`; absent for none. Each element is the same object wherever it is met.
    virtual PELElementValue decode(std::string_view key) = 0;
};

} // namespace zanfcp
