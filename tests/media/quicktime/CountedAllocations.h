#pragma once

#include <cstdint>

namespace zanfcp::test {

/// Bytes that operator new has handed out in this program so far. Linking this file counts them.
std::uint64_t allocatedBytes();

} // namespace zanfcp::test
