#pragma once

#include "../media/PELFileElement.h"
#include "../platform/PELValue.h"
#include "../xml/PELElement.h"

#include <memory>

namespace zanfcp {

/// What a sequence takes from its template file: copies of its own, free to be changed. Not installed.
struct SequenceFormat {
    PELMovieProperties properties;                     ///< all zero without a template
    std::shared_ptr<PELElement> sampleCharacteristics; ///< null without a picture
};

SequenceFormat sequenceFormatOfFile(const std::shared_ptr<PELFileElement>& file);

/// Applies the …Override keys of Options.h to both halves. A sample characteristic that is not there is not added.
void applyOverrides(SequenceFormat& format, const PELDictionary& overrides);

} // namespace zanfcp
