#include "fcp/LocalSocket.h"

#include "fcp/EventCodec.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>

namespace zanfcp {

std::optional<sockaddr_un> localAddress(std::string_view path)
{
    sockaddr_un address{};
    if (path.empty() || path.size() >= sizeof address.sun_path || path.find('\0') != std::string_view::npos)
        return std::nullopt;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.data(), path.size());
    return address;
}

std::optional<uid_t> peerUser(int socket)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return std::nullopt;
    return peer.uid;
}

ssize_t sendSome(int socket, EventMessageWriter& writer)
{
    std::array<iovec, 64> room{};
    const std::span<iovec> pieces = writer.next(room);
    msghdr message{};
    message.msg_iov = pieces.data();
    message.msg_iovlen = pieces.size();
    ssize_t sent = 0;
    do
        sent = ::sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
    while (sent < 0 && errno == EINTR);
    if (sent > 0) writer.advance(static_cast<std::size_t>(sent));
    return sent;
}

} // namespace zanfcp
