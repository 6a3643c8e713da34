#include "tests/fcp/HostProcess.h"

#include "fcp/EventCodec.h"
#include "fcp/LocalSocket.h"
#include "fcp/UnixSocketChannel.h"
#include "platform/Log.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zanfcp::test {
namespace {

ZANFCPProjectHost* runningHost = nullptr; // for the signal handler of the child process

} // namespace

HostProcess::HostProcess(Options options) : options_{options}
{
    std::filesystem::create_directory(projects());
    start();
}

HostProcess::~HostProcess()
{
    if (process_ > 0) kill();
}

void HostProcess::start()
{
    int ready[2];
    if (::pipe2(ready, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    process_ = ::fork();
    if (process_ == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        if (options_.fileBytes != 0) {
            const rlimit limit{options_.fileBytes, options_.fileBytes};
            ::setrlimit(RLIMIT_FSIZE, &limit);
        }
        const std::string logPath = place_.file("log");
        const int log = ::open(logPath.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
        ZANLogger::setSink([log](LogLevel, std::string_view line) {
            const std::string whole = std::string(line) + "\n";
            (void)!::write(log, whole.data(), whole.size());
        });
        auto host = ZANFCPProjectHost::open({.socketPath = socket(),
                                             .projectsFolder = projects(),
                                             .clients = options_.clients,
                                             .idle = std::chrono::milliseconds(options_.idleMilliseconds)});
        if (!host) ::_exit(9);
        runningHost = host->get();
        std::signal(SIGTERM, [](int) { runningHost->stop(); });
        (void)!::write(ready[1], "r", 1);
        const bool stopped = (*host)->run().has_value();
        host->reset();
        ::_exit(stopped ? 0 : 8);
    }
    ::close(ready[1]);
    const FileDescriptor waiting{ready[0]};
    char byte = 0;
    if (::read(ready[0], &byte, 1) != 1) throw std::runtime_error("the host did not start");
}

int HostProcess::wait()
{
    int status = 0;
    while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    process_ = -1;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

int HostProcess::stop()
{
    ::kill(process_, SIGTERM);
    return wait();
}

void HostProcess::kill()
{
    ::kill(process_, SIGKILL);
    wait();
}

FileURL HostProcess::project(std::string_view name) const
{
    return FileURL::fileURLWithPath(projects() + "/" + std::string(name));
}

std::string HostProcess::log() const
{
    return readFile(place_.file("log"));
}

std::shared_ptr<EventTransport> HostProcess::channel() const
{
    return std::make_shared<UnixSocketChannel>(socket());
}

ZANFCPCommunicator HostProcess::communicator() const
{
    return ZANFCPCommunicator::communicator(channel());
}

OSStatus HostProcess::send(const EventMessage& event) const
{
    const EventTransport::Outcome outcome = channel()->send(event);
    if (outcome.status != 0) return outcome.status;
    const EventDescriptor* number = outcome.reply.find(EventCode::errorNumber);
    return number == nullptr ? 0 : number->asLong32().value_or(1);
}

std::string document(std::string_view bin)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE xmeml>\n<xmeml version=\"5\"><bin><name>" +
           std::string(bin) + "</name></bin></xmeml>\n";
}

EventMessage event(const char (&id)[5], std::vector<EventMessage::Parameter> parameters)
{
    EventMessage message = EventMessage::event(EventCode::finalCutPro, FourCC{id},
                                               EventDescriptor::applicationAddress(EventCode::finalCutPro));
    message.parameters = std::move(parameters);
    return message;
}

FileDescriptor connectTo(const std::string& socketPath)
{
    const auto address = localAddress(socketPath);
    FileDescriptor connection{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    const timeval limit{.tv_sec = 10, .tv_usec = 0};
    ::setsockopt(connection.value(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    if (::connect(connection.value(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0)
        connection.reset();
    return connection;
}

bool sendAll(int socket, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::string receiveAll(int socket)
{
    std::string all;
    std::array<char, 4096> block; // NOLINT: filled by recv
    for (ssize_t count = 0; (count = ::recv(socket, block.data(), block.size(), 0)) > 0;)
        all.append(block.data(), static_cast<std::size_t>(count));
    return all;
}

std::string bytesOf(const EventMessage& message, bool reply)
{
    EventMessageWriter writer{message, reply ? MessageKind::reply : MessageKind::event};
    std::array<iovec, 128> room{};
    std::string bytes;
    for (const iovec& piece : writer.next(room))
        bytes.append(static_cast<const char*>(piece.iov_base), piece.iov_len);
    return bytes;
}

OSStatus errorNumberOf(std::string_view bytes)
{
    EventMessageReader reader{MessageKind::reply};
    reader.feed(bytes);
    if (!reader.complete()) return 1;
    const EventMessage reply = reader.take();
    const EventDescriptor* number = reply.find(EventCode::errorNumber);
    return number == nullptr ? 0 : number->asLong32().value_or(1);
}

} // namespace zanfcp::test
