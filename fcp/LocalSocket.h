#pragma once

#include "../platform/FileDescriptor.h"

#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <sys/un.h>

namespace zanfcp {

class EventMessageWriter;

/// The address of a path; nothing when the path is empty, too long or holds a NUL.
std::optional<sockaddr_un> localAddress(std::string_view path);

/// The user on the other end of a connected socket, as the kernel noted it; nothing when it cannot say.
std::optional<uid_t> peerUser(int socket);

/// Sends as much as the socket takes at once.
/// \return the number of bytes, which the writer has counted; -1 with errno set
ssize_t sendSome(int socket, EventMessageWriter& writer);

} // namespace zanfcp
