#pragma once

#include "../platform/Result.h"
#include "EventMessage.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <sys/types.h>
#include <unistd.h>

namespace zanfcp {

/// The receiving side of the events: keeps projects, as xmeml documents of version 5, in a folder, and does what
/// clients on its socket ask for. docs/event-channel.md lists what each event needs and each refusal's number.
/// Every refusal is answered with 'errn' and logged as one line. A document is checked before it is taken: it is read
/// without network, external entities and entity expansion. Files are written whole or not at all.
/// A process that hosts projects should ignore SIGXFSZ, so that a limit on file sizes is answered like a full disk.
class ZANFCPProjectHost {
public:
    struct Settings {
        std::string socketPath;     ///< in a folder that only the user can enter; made when missing
        std::string projectsFolder; ///< must exist
        std::size_t clients = 512;  ///< connected at once; more wait
        std::chrono::milliseconds idle = std::chrono::seconds(60); ///< a connection without progress is closed after it
        uid_t user = ::geteuid();                                  ///< whose clients are answered
    };

    /// Opens the folder, with all work that was not saved when it was last hosted, and starts listening.
    /// \return an Error: notFound (no such folder, libxml2), io (another host keeps it or listens there, the
    ///         socket's folder is open to others, the system refuses), limit (the socket's path is too long)
    static Result<std::unique_ptr<ZANFCPProjectHost>> open(const Settings& settings);
    /// Removes the socket file. Unsaved work stays in the folder.
    ~ZANFCPProjectHost();
    ZANFCPProjectHost(const ZANFCPProjectHost&) = delete;
    ZANFCPProjectHost& operator=(const ZANFCPProjectHost&) = delete;

    /// Answers events on the calling thread until told to stop; replies that are on their way have five seconds to
    /// be read.
    /// \return an Error (io) when the operating system does not let it go on
    Status run();
    /// Makes `run` return. May be called from any thread and from a signal handler.
    void stop() noexcept;

private:
    class Desk;

    explicit ZANFCPProjectHost(std::unique_ptr<Desk> desk);

    std::unique_ptr<Desk> desk_;
};

} // namespace zanfcp
