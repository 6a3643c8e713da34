#pragma once

#include "HeaderModel.h"

#include <cstddef>

namespace TamrelMxf {

/// What became of the sets of a later copy of the header metadata.
struct SUpdateReport {
    struct SCount {
        std::size_t updated = 0;
        std::size_t failed = 0;   ///< sets that say nothing that could be applied
        std::size_t notFound = 0; ///< sets without a counterpart in the model
    };
    SCount tracks, sequences, descriptors;
};

/// Brings a model that was read from an open header partition up to date from a later copy of the header metadata,
/// mostly that of the footer: each track, sequence and file descriptor there is read again into the record with the
/// same Instance UID. Nothing is added or taken away but the clips of sequences. Pointers into the model stay good,
/// except those to clips.
SUpdateReport UpdateFromFooter(SHeaderModel& model, const SHeaderSets& footer);

} // namespace TamrelMxf
