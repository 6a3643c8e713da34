#pragma once

#include "Window.h"

#include <optional>

namespace zanfcp::quicktime {

/// Where in its media a track begins to be shown, in units of the media's timescale: the media time of the first edit
/// that is not empty. Empty edits before it only delay the track.
/// \param body  of an edit list ('elst')
/// \return absent when all edits are empty, or the list is broken: the media is then shown from its start
/// Source: ISO/IEC 14496-12, 8.6.6; Apple, QuickTime File Format, "Edit List Atoms".
std::optional<std::uint64_t> findMediaStart(Window& window, Extent body);

} // namespace zanfcp::quicktime
