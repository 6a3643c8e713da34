#pragma once

#include "platform/PELValue.h"
#include "platform/Result.h"

#include <string_view>

namespace zanfcp::cli {

inline constexpr std::size_t kMaxJsonBytes = std::size_t{16} << 20;
inline constexpr std::size_t kMaxJsonDepth = 16;       ///< objects and lists inside one another
inline constexpr std::size_t kMaxKeysPerObject = 1000; ///< no object of ours comes near

/// Reads a JSON text (RFC 8259) as it stands, without knowing what its keys mean. Whole numbers beyond 64 bits become
/// floating-point ones.
/// \return the value, or an Error whose `path` is the key it concerns, where there is one:
///   malformed  no JSON (`what` has line and column), a key given twice, or null, which no option can be
///   limit      larger, deeper or wider than the limits above
Result<PELValue> parseJson(std::string_view text);

} // namespace zanfcp::cli
