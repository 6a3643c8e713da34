#pragma once

#include "../../platform/FourCC.h"
#include "Window.h"

#include <algorithm>
#include <optional>
#include <span>

namespace zanfcp::quicktime {

/// One box ("atom") of a movie file: a size, a type and a body.
struct Box {
    FourCC type;
    std::uint64_t offset = 0;  ///< of its header
    Extent body;               ///< cut to the parent when the box claims more
    std::uint64_t missing = 0; ///< bytes that it claims beyond its parent
    bool fits = true;          ///< it holds its own header and ends inside its parent

    std::uint64_t end() const { return body.end(); }
};

/// Reads the header of the first box in `rest`.
/// Layout: ISO/IEC 14496-12, 4.2. A size of 1 announces a 64-bit size, 0 means "to the end".
/// \return nothing when fewer bytes are left than a header has: QuickTime ends some lists with a 32-bit zero.
Result<std::optional<Box>> readBox(Window& window, Extent rest);

/// The four bytes can be the type of a box: printable, or the copyright sign that starts user data types.
bool isPlausibleType(FourCC type);

/// Whether a walk over boxes goes on.
enum class Walk { on, stop };

/// Calls `visit(box)` for each box in `parent` whose type is among `wanted`, in file order, until it answers
/// Walk::stop or fails. Other boxes are stepped over.
/// A wanted box that does not fit its parent is malformed. Another one that does not fit ends the walk in silence, so
/// that broken user data costs nothing but itself, unless its type shows that these bytes are no box at all.
template <typename Visit> Status forEachBox(Window& window, Extent parent, std::span<const FourCC> wanted, Visit visit)
{
    Extent rest = parent;
    for (std::uint64_t count = 0; rest.size > 0; ++count) {
        if (count == kMaxBoxesPerContainer)
            return Error{Fault::limit, "more than " + std::to_string(count) + " boxes in one", rest.offset};
        Result<std::optional<Box>> read = readBox(window, rest);
        if (!read) return Error{read.error()};
        if (!*read) return {};
        const Box& box = **read;
        const bool isWanted = std::ranges::find(wanted, box.type) != wanted.end();
        if (!box.fits && !isWanted && isPlausibleType(box.type)) return {};
        if (!box.fits) return Error{Fault::malformed, "box does not fit its parent", box.offset, box.type.text()};
        if (isWanted) {
            Result<Walk> next = visit(box);
            if (!next) return Error{std::move(next).error()}.under(box.type.text());
            if (*next == Walk::stop) return {};
        }
        rest = rest.after(box.end() - rest.offset);
    }
    return {};
}

} // namespace zanfcp::quicktime
