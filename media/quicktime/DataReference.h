#pragma once

#include "Window.h"

namespace zanfcp::quicktime {

/// Whether media data lies in the file itself.
enum class DataPlace { thisFile, elsewhere };

/// \param body   of a data information box ('dinf')
/// \param index  1-based entry of its data references
/// \return thisFile too where the references are missing or broken: most writers have nothing else in mind
/// Source: ISO/IEC 14496-12, 8.7.1 and 8.7.2; Apple, QuickTime File Format, "Data Reference Atoms".
DataPlace findDataPlace(Window& window, Extent body, std::uint32_t index);

} // namespace zanfcp::quicktime
