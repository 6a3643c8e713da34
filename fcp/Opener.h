#pragma once

#include <string>
#include <vector>

namespace zanfcp {

/// Starts a program without a shell and returns at once. The program reads from /dev/null, is the head of a session of
/// its own, and leaves no zombie behind. Nothing happens when it cannot be started.
/// \param command  the program, found through PATH when it has no slash, and its first arguments
/// \param path     the last argument
void startOpener(const std::vector<std::string>& command, const std::string& path);

} // namespace zanfcp
