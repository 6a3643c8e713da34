#pragma once

#include "fcp/ZANFCPCommunicator.h"
#include "fcp/ZANFCPProjectHost.h"
#include "platform/FileDescriptor.h"
#include "tests/support/TempFolder.h"

#include <memory>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace zanfcp::test {

/// A host in a process of its own, with a projects folder and a socket in temporary folders. SIGTERM stops it.
class HostProcess {
public:
    struct Options {
        std::size_t fileBytes = 0; ///< limit on the size of files; 0 for none
        std::size_t clients = 512;
        int idleMilliseconds = 60'000;
    };
    explicit HostProcess(Options options);
    HostProcess() : HostProcess(Options{}) {}
    /// Kills it when it still runs.
    ~HostProcess();

    /// Starts the process again after `stop` or `kill`.
    void start();
    /// SIGTERM. \return what the process ended with; negative for a signal
    int stop();
    /// SIGKILL.
    void kill();

    std::string socket() const { return place_.file("run/host.socket"); }
    std::string projects() const { return place_.file("projects"); }
    FileURL project(std::string_view name) const;
    /// What the host has logged so far.
    std::string log() const;
    std::shared_ptr<EventTransport> channel() const;
    ZANFCPCommunicator communicator() const;
    /// Sends an event as it is. \return the reply's error number, 0 without one, or how sending failed
    OSStatus send(const EventMessage& event) const;

private:
    int wait();

    TempFolder place_;
    Options options_;
    pid_t process_ = -1;
};

/// A small valid document whose bin has this name.
std::string document(std::string_view bin);
/// An event of this ID for the editing application.
EventMessage event(const char (&id)[5], std::vector<EventMessage::Parameter> parameters = {});
/// A connected stream socket to a path, for bytes of any kind. Gives up on reading after ten seconds.
FileDescriptor connectTo(const std::string& socketPath);
/// Sends all bytes. \return false when the other side closed
bool sendAll(int socket, std::string_view bytes);
/// What comes until the other side closes.
std::string receiveAll(int socket);
/// The bytes of a message.
std::string bytesOf(const EventMessage& message, bool reply = false);
/// The error number in the bytes of a reply; 1 when they are no reply, 0 without a number.
OSStatus errorNumberOf(std::string_view bytes);

} // namespace zanfcp::test
