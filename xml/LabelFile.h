#pragma once

#include "../platform/Result.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace zanfcp {

/// The names of the five labels, in the order of their colour indexes 1 to 5. A name may be empty.
using LabelNames = std::array<std::string, 5>;

/// A preferences file larger than this is not read; real ones are far below a megabyte.
inline constexpr std::size_t kMaxLabelFileBytes = std::size_t{16} << 20;
/// No name is longer; one that seems to be is no name.
inline constexpr std::size_t kMaxLabelBytes = 1024;

/// Reads the label names from the bytes of a Final Cut Pro 7 preferences file: each stands, in UTF-8 and with a NUL
/// behind it, 16 bytes after the first byte of its key "label1" to "label5", and the keys are sought in that order.
/// \return all five names, or an Error whose `offset` is the byte in `bytes` where reading stopped:
///   notFound   a key is missing
///   truncated  the bytes end before a name or inside it
///   malformed  a name is not UTF-8
///   limit      a name is longer than kMaxLabelBytes
Result<LabelNames> parseLabelNames(std::string_view bytes);

/// The same for the file at `path`. Further errors: notFound (no such file), io (it cannot be read),
/// unsupported (a folder, a FIFO, a device), limit (larger than kMaxLabelFileBytes). Never blocks on a FIFO.
Result<LabelNames> readLabelFile(const std::string& path);

} // namespace zanfcp
