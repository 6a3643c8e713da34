#pragma once

#include "platform/Result.h"

#include <cstddef>
#include <string>

namespace zanfcp::cli {

/// The whole content of a file; a pipe such as /dev/stdin is read to its end.
/// \return the bytes, or an Error whose `what` is for a person: notFound, io (no permission, a folder), limit (more
///   than `maxBytes`)
Result<std::string> readWholeFile(const std::string& path, std::size_t maxBytes);

/// Whether both paths lead to the same regular file, through links too, /dev/stdin for what standard input reads. False
/// when one of them does not exist.
bool isSameFile(const std::string& a, const std::string& b);

} // namespace zanfcp::cli
