#pragma once

#include "../platform/FileDescriptor.h"
#include "../platform/Result.h"
#include "EventMessage.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <sys/types.h>
#include <unistd.h>
#include <vector>

namespace zanfcp {

/// Listens on a Unix-domain socket and answers events, one at a time, for many clients at once. A client that is slow,
/// silent or does not read waits for itself alone. Only clients of one user are let in.
class EventServer {
public:
    struct Settings {
        std::string socketPath;    ///< its folder is made with mode 0700 when it is missing
        std::size_t clients = 512; ///< connected at once; more wait in the system's queue
        std::chrono::milliseconds idle = std::chrono::seconds(60); ///< a connection without progress is closed after it
        std::chrono::milliseconds grace = std::chrono::seconds(5); ///< for finished replies, once told to stop
        std::size_t bufferedBytes = 2048ULL << 20U;                ///< of all unfinished events together
        uid_t user = ::geteuid();                                  ///< whose clients are let in
        EventLimits limits = {};
    };
    /// Answers one event with the parameters of its reply. Called on the thread of `run`.
    using Handler = std::function<std::vector<EventMessage::Parameter>(const EventMessage& event)>;

    /// Starts listening. A socket file that nobody listens on any more is replaced.
    /// \return the server, or an Error: io (the folder is not the user's alone, somebody listens there already, what
    ///         is there is no socket, or the operating system refuses), limit (the path is too long for a socket)
    static Result<std::unique_ptr<EventServer>> open(Settings settings, Handler handler);
    /// Removes the socket file.
    ~EventServer();
    EventServer(const EventServer&) = delete;
    EventServer& operator=(const EventServer&) = delete;

    /// Answers events until told to stop: an event that has arrived whole is still answered, one that has not is
    /// dropped with its connection. Call once.
    /// \return an Error (io) when the operating system does not let it go on
    Status run();
    /// Makes `run` return. May be called from any thread and from a signal handler, before and during `run`.
    void stop() noexcept;

private:
    struct Client;

    explicit EventServer(Settings settings, Handler handler);
    Status listenOn();
    void acceptClients();
    void receive(Client& client);
    void process(Client& client);
    void answer(Client& client, EventMessage reply);
    void flush(Client& client);
    void refuse(Client& client, OSStatus code);

    Settings settings_;
    Handler handler_;
    FileDescriptor wake_; ///< an eventfd: writing to it is safe in a signal handler
    FileDescriptor lock_; ///< held while the socket file is this server's
    FileDescriptor listener_;
    dev_t socketDevice_ = 0;
    ino_t socketInode_ = 0;
    std::list<Client> clients_;
    std::unique_ptr<char[]> block_; ///< what small messages are read into
    bool acceptPaused_ = false;     ///< the process has no descriptor left for another client
};

} // namespace zanfcp
