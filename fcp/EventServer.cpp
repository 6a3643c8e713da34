#include "fcp/EventServer.h"

#include "fcp/EventCodec.h"
#include "fcp/LocalSocket.h"
#include "platform/Log.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace zanfcp {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kBlockBytes = 64U << 10U;
constexpr int kBlocksAtOnce = 16; ///< read from one client before the others have their turn
constexpr std::chrono::milliseconds kAcceptPause{100};

Error refused(const std::string& what, const std::string& path, int code)
{
    return Error{.fault = Fault::io, .what = what + " " + path + ": " + std::strerror(code)};
}

/// The folder of a socket must keep all other users out: between them, the socket's own mode is not heeded everywhere.
Status preparePrivateFolder(const std::string& folder)
{
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) return refused("could not make", folder, errno);
    struct stat found {};
    if (::stat(folder.c_str(), &found) != 0) return refused("could not look at", folder, errno);
    if (!S_ISDIR(found.st_mode)) return refused("could not use", folder, ENOTDIR);
    if (found.st_uid != ::geteuid() || (found.st_mode & 077) != 0)
        return Error{.fault = Fault::io,
                     .what = "the folder " + folder + " can be entered by others; it needs mode 0700"};
    return {};
}

bool somebodyListens(const sockaddr_un& address)
{
    const FileDescriptor probe{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)};
    if (!probe) return true;
    if (::connect(probe.value(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return true;
    return errno != ECONNREFUSED && errno != ENOENT; // a full queue is a live one
}

} // namespace

struct EventServer::Client {
    struct Answer {
        explicit Answer(EventMessage reply) : message{std::move(reply)}, writer{message, MessageKind::reply} {}
        EventMessage message;
        EventMessageWriter writer;
    };

    FileDescriptor connection;
    EventMessageReader reader;
    std::string pending = {}; ///< arrived behind the event that is being answered
    std::unique_ptr<Answer> answer = {};
    bool closing = false; ///< when its answer is sent
    Clock::time_point progress = Clock::now();
};

EventServer::EventServer(Settings settings, Handler handler)
    : settings_{std::move(settings)}, handler_{std::move(handler)}, block_{std::make_unique<char[]>(kBlockBytes)}
{}

EventServer::~EventServer()
{
    struct stat found {};
    if (listener_ && ::lstat(settings_.socketPath.c_str(), &found) == 0 && found.st_dev == socketDevice_ &&
        found.st_ino == socketInode_)
        ::unlink(settings_.socketPath.c_str());
}

Result<std::unique_ptr<EventServer>> EventServer::open(Settings settings, Handler handler)
{
    std::unique_ptr<EventServer> server{new EventServer(std::move(settings), std::move(handler))};
    if (Status listening = server->listenOn(); !listening) return listening.error();
    return server;
}

Status EventServer::listenOn()
{
    const std::string& path = settings_.socketPath;
    const std::string early = path + ".new";
    const auto address = localAddress(path), earlyAddress = localAddress(early);
    if (!address || !earlyAddress)
        return Error{.fault = Fault::limit, .what = "\"" + path + "\" cannot be the path of a socket"};
    const std::string folder = std::filesystem::path(path).parent_path().string();
    if (Status prepared = preparePrivateFolder(folder.empty() ? "." : folder); !prepared) return prepared;

    wake_.reset(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!wake_) return refused("could not make an eventfd for", path, errno);
    const Error live{.fault = Fault::io, .what = "somebody listens on " + path + " already"};
    // The lock decides between two that start at once; it is left behind, because removing it would race.
    lock_.reset(::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!lock_) return refused("could not lock", path, errno);
    if (::flock(lock_.value(), LOCK_EX | LOCK_NB) != 0) return live;

    struct stat found {};
    if (::lstat(path.c_str(), &found) == 0) {
        if (!S_ISSOCK(found.st_mode)) return Error{.fault = Fault::io, .what = path + " is there and is no socket"};
        if (somebodyListens(*address)) return live;
    }
    FileDescriptor listener{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)};
    if (!listener) return refused("could not make a socket for", path, errno);
    // Linux gives the file the mode of the socket, so it is never there with a wider one.
    if (::fchmod(listener.value(), 0600) != 0) return refused("could not set the mode of", path, errno);
    // It gets its name when it listens already: whoever sees it can connect. The lock covers the first name too.
    ::unlink(early.c_str());
    if (::bind(listener.value(), reinterpret_cast<const sockaddr*>(&*earlyAddress), sizeof *earlyAddress) != 0)
        return refused("could not bind", early, errno);
    if (::listen(listener.value(), SOMAXCONN) != 0 || ::lstat(early.c_str(), &found) != 0 ||
        ::rename(early.c_str(), path.c_str()) != 0) {
        const int number = errno;
        ::unlink(early.c_str());
        return refused("could not listen on", path, number);
    }
    socketDevice_ = found.st_dev;
    socketInode_ = found.st_ino;
    listener_ = std::move(listener);
    return {};
}

void EventServer::stop() noexcept
{
    const std::uint64_t one = 1;
    const int before = errno;
    (void)!::write(wake_.value(), &one, sizeof one);
    errno = before;
}

Status EventServer::run()
{
    std::optional<Clock::time_point> stopAt;
    std::vector<pollfd> waits;
    std::vector<std::list<Client>::iterator> waiting;
    for (;;) {
        const bool stopping = stopAt.has_value();
        const auto now = Clock::now();
        auto wakeAt = stopAt.value_or(now + std::chrono::hours(1));
        if (acceptPaused_) wakeAt = std::min(wakeAt, now + kAcceptPause);
        waits.assign(1, {stopping ? -1 : wake_.value(), POLLIN, 0});
        waits.push_back({-1, POLLIN, 0}); // the listener, once it is known whether there is room
        waiting.clear();
        for (auto client = clients_.begin(); client != clients_.end();) {
            if (!client->connection || (stopping && !client->answer)) {
                client = clients_.erase(client);
                continue;
            }
            wakeAt = std::min(wakeAt, client->progress + settings_.idle);
            waits.push_back({client->connection.value(), static_cast<short>(client->answer ? POLLOUT : POLLIN), 0});
            waiting.push_back(client++);
        }
        if (stopping && (clients_.empty() || now >= *stopAt)) break;
        if (!stopping && !acceptPaused_ && clients_.size() < settings_.clients) waits[1].fd = listener_.value();

        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(wakeAt - now).count();
        const int ready = ::poll(waits.data(), waits.size(), static_cast<int>(std::max<std::int64_t>(wait, 0)));
        if (ready < 0 && errno != EINTR) return refused("could not wait on", settings_.socketPath, errno);
        acceptPaused_ = false;
        if (ready < 0) continue;
        const auto idleSince = Clock::now() - settings_.idle;
        for (std::size_t i = 0; i < waiting.size(); ++i) {
            Client& client = *waiting[i];
            if (waits[i + 2].revents == 0) {
                // Only now: what it sent may have waited for the answer to another's event.
                if (client.progress <= idleSince) client.connection.reset();
            } else if (client.answer) {
                flush(client);
                process(client); // of what arrived behind the event that is answered now
            } else {
                receive(client);
            }
        }
        if (waits[1].revents != 0) acceptClients();
        if (waits[0].revents != 0) stopAt = Clock::now() + settings_.grace;
    }
    clients_.clear();
    return {};
}

void EventServer::acceptClients()
{
    while (clients_.size() < settings_.clients) {
        FileDescriptor connection{::accept4(listener_.value(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK)};
        if (!connection) {
            if (errno == EINTR || errno == ECONNABORTED) continue;
            acceptPaused_ = errno != EAGAIN;
            return;
        }
        const auto user = peerUser(connection.value());
        if (user != settings_.user) {
            ZAN_LOG_ERROR("EventServer: Refused a connection of user %ld", user ? static_cast<long>(*user) : -1L);
            continue;
        }
        clients_.push_back(
            {.connection = std::move(connection), .reader = EventMessageReader(MessageKind::event, settings_.limits)});
    }
}

void EventServer::receive(Client& client)
{
    for (int round = 0; round < kBlocksAtOnce && client.connection && !client.answer; ++round) {
        std::span<char> room = client.reader.space();
        const bool direct = room.size() >= kBlockBytes;
        if (!direct) room = {block_.get(), kBlockBytes};
        const ssize_t count = ::recv(client.connection.value(), room.data(), room.size(), 0);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN) return;
        if (count <= 0) {
            client.connection.reset();
            return;
        }
        client.progress = Clock::now();
        if (direct)
            client.reader.advance(static_cast<std::size_t>(count));
        else
            client.pending.append(room.data(), static_cast<std::size_t>(count));
        process(client);
    }
}

/// Feeds what has arrived to the reader, and answers an event once it is whole.
void EventServer::process(Client& client)
{
    while (client.connection && !client.answer) {
        if (!client.pending.empty()) client.pending.erase(0, client.reader.feed(client.pending));
        if (client.reader.fault() != EventStatus::noErr) return refuse(client, client.reader.fault());
        if (!client.reader.complete()) break;
        const EventMessage event = client.reader.take();
        EventMessage reply = EventMessage::reply(event.returnID);
        reply.parameters = handler_(event);
        answer(client, std::move(reply));
    }
    std::uint64_t buffered = 0;
    if (client.reader.received() > kBlockBytes)
        for (const Client& each : clients_)
            buffered += each.reader.received();
    if (buffered > settings_.bufferedBytes) refuse(client, EventStatus::paramErr);
}

/// The rest of what this client sends cannot be told apart any more, so the connection ends with the answer.
void EventServer::refuse(Client& client, OSStatus code)
{
    ZAN_LOG_ERROR("EventServer: Refused a message (%d)", static_cast<int>(code));
    EventMessage reply = EventMessage::reply(client.reader.returnID());
    (void)reply.add(EventCode::errorNumber, EventDescriptor::long32(code));
    client.reader = EventMessageReader(MessageKind::event, settings_.limits);
    client.pending.clear();
    client.closing = true;
    answer(client, std::move(reply));
}

void EventServer::answer(Client& client, EventMessage reply)
{
    client.answer = std::make_unique<Client::Answer>(std::move(reply));
    flush(client);
}

void EventServer::flush(Client& client)
{
    while (client.answer && !client.answer->writer.done()) {
        const ssize_t sent = sendSome(client.connection.value(), client.answer->writer);
        if (sent < 0 && errno == EAGAIN) return;
        if (sent < 0) {
            client.answer.reset();
            client.connection.reset();
            return;
        }
        client.progress = Clock::now();
    }
    client.answer.reset();
    if (client.closing) client.connection.reset();
}

} // namespace zanfcp
