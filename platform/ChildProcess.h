#pragma once

#include "Result.h"

#include <string>
#include <string_view>
#include <vector>

namespace zanfcp {

/// What a child process left behind.
struct ChildResult {
    int exitStatus = 0;         ///< as exit(3) gave it; 128 + signal number when a signal ended it
    std::string standardOutput; ///< bytes as written
    std::string standardError;  ///< bytes as written
};

/// Runs a program without a shell and waits for its end. The input is written and both outputs are read at the same
/// time, so neither side can block the other; a child that stops reading early is not an error.
/// \param executable  path of the program; the PATH is not searched
/// \param arguments   without the program's own name
/// \param input       written to its standard input, which is then closed; borrowed for the call
/// \return the result, or an Error: notFound (no such program, or not executable), io (it could not be started)
[[nodiscard]] Result<ChildResult>
runChildProcess(const std::string& executable, const std::vector<std::string>& arguments, std::string_view input = {});

} // namespace zanfcp
