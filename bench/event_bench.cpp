// Round trips of empty events beside round trips of as many plain bytes over a socket of the same kind, and a large
// document through the channel beside a plain copy of the same bytes through a socket.

#include "bench/Measure.h"
#include "fcp/EventCodec.h"
#include "fcp/EventServer.h"
#include "fcp/UnixSocketChannel.h"
#include "platform/FileDescriptor.h"

#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <vector>

namespace {

using namespace bench;

using zanfcp::EventCode::finalCutPro;
constexpr std::size_t kDocumentBytes = 100'000'000;
constexpr int kEvents = 5'000; ///< in a round

void require(bool condition, const char* what)
{
    if (!condition) fail(what);
}

zanfcp::EventMessage event()
{
    return zanfcp::EventMessage::event(finalCutPro, zanfcp::EventCode::importXML,
                                       zanfcp::EventDescriptor::applicationAddress(finalCutPro));
}

/// Bytes of an empty event, and of its empty reply, on the wire.
std::size_t eventBytes()
{
    const zanfcp::EventMessage message = event();
    return zanfcp::EventMessageWriter{message, zanfcp::MessageKind::event}.remaining();
}
std::size_t replyBytes()
{
    const zanfcp::EventMessage message = zanfcp::EventMessage::reply(1);
    return zanfcp::EventMessageWriter{message, zanfcp::MessageKind::reply}.remaining();
}

/// Answers each connection with as many bytes as a reply has, once as many as an event has have come in.
class PlainServer {
public:
    explicit PlainServer(const std::string& path)
    {
        require(path.size() < sizeof address_.sun_path, "the path of the scratch folder is too long for a socket");
        path.copy(address_.sun_path, path.size());
        require(::bind(listener_.value(), address(), sizeof address_) == 0 && ::listen(listener_.value(), 16) == 0,
                "no plain server");
        thread_ = std::thread([this] {
            for (bool goesOn = true; goesOn;) {
                const zanfcp::FileDescriptor connection{::accept4(listener_.value(), nullptr, nullptr, SOCK_CLOEXEC)};
                std::array<char, 4096> buffer{};
                goesOn = ::recv(connection.value(), buffer.data(), eventBytes_, MSG_WAITALL) > 0;
                if (goesOn) (void)::send(connection.value(), buffer.data(), replyBytes_, MSG_NOSIGNAL);
            }
        });
    }
    ~PlainServer()
    {
        (void)connect();
        thread_.join();
    }
    PlainServer(const PlainServer&) = delete;
    PlainServer& operator=(const PlainServer&) = delete;

    void roundTrip() const
    {
        const zanfcp::FileDescriptor connection = connect();
        std::array<char, 4096> buffer{};
        require(::send(connection.value(), buffer.data(), eventBytes_, MSG_NOSIGNAL) > 0 &&
                    ::recv(connection.value(), buffer.data(), replyBytes_, MSG_WAITALL) > 0,
                "plain round trip: no answer");
    }

private:
    const sockaddr* address() const { return reinterpret_cast<const sockaddr*>(&address_); }
    zanfcp::FileDescriptor connect() const
    {
        zanfcp::FileDescriptor connection{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
        require(::connect(connection.value(), address(), sizeof address_) == 0, "plain server: no connection");
        return connection;
    }

    const std::size_t eventBytes_ = eventBytes(), replyBytes_ = replyBytes();
    sockaddr_un address_{.sun_family = AF_UNIX, .sun_path = {}};
    zanfcp::FileDescriptor listener_{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    std::thread thread_;
};

/// The bytes once through a socket pair, into memory that the receiver makes for them; an answer of one byte.
void plainCopy(const std::string& bytes)
{
    int both[2];
    require(::socketpair(AF_UNIX, SOCK_STREAM, 0, both) == 0, "no socket pair");
    const zanfcp::FileDescriptor near{both[0]};
    const zanfcp::FileDescriptor far{both[1]};
    std::thread receiver([&] {
        const auto copy = std::make_unique_for_overwrite<char[]>(bytes.size());
        for (std::size_t filled = 0; filled < bytes.size();) {
            const ssize_t count = ::recv(far.value(), copy.get() + filled, bytes.size() - filled, 0);
            require(count > 0, "plain copy: nothing received");
            filled += static_cast<std::size_t>(count);
        }
        require(::send(far.value(), copy.get(), 1, MSG_NOSIGNAL) == 1, "plain copy: no answer");
    });
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(near.value(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        require(count > 0, "plain copy: nothing sent");
        sent += static_cast<std::size_t>(count);
    }
    char answer = 0;
    require(::recv(near.value(), &answer, 1, 0) == 1, "plain copy: no answer");
    receiver.join();
}

} // namespace

int main()
{
    const std::string socket = scratchFile("socket");
    std::size_t received = 0;
    auto server = zanfcp::EventServer::open({.socketPath = socket}, [&](const zanfcp::EventMessage& message) {
        const auto* document = message.find(zanfcp::EventCode::xmlData);
        received = document == nullptr ? 0 : document->bytes.size();
        return std::vector<zanfcp::EventMessage::Parameter>();
    });
    require(server.has_value(), "no server");
    std::thread thread([&] { (void)(*server)->run(); });
    zanfcp::UnixSocketChannel channel{socket};
    const PlainServer plainServer{scratchFile("plain")};

    std::printf("Both ends in one process, a thread each; empty events of %zu bytes with replies of %zu, a connection "
                "each;\na document of 100 MB with an empty reply. Plain: the same bytes over the same kind of socket, "
                "without meaning.\n\n",
                eventBytes(), replyBytes());
    std::vector<Contestant> trips{{"",
                                   [&] {
                                       return kEvents / seconds([&] {
                                                  for (int i = 0; i < kEvents; ++i)
                                                      require(channel.send(event()).status == 0,
                                                              "an event was not answered");
                                              });
                                   }},
                                  {"", [&] {
                                       return kEvents / seconds([&] {
                                                  for (int i = 0; i < kEvents; ++i)
                                                      plainServer.roundTrip();
                                              });
                                   }}};
    race(trips, 9);

    zanfcp::EventMessage large = event();
    require(large.add(zanfcp::EventCode::xmlData, zanfcp::EventDescriptor::utf8(std::string(kDocumentBytes, 'x'))) == 0,
            "the document is too large");
    const std::string& bytes = large.parameters.front().descriptor.bytes;
    const double megabytes = kDocumentBytes / 1e6;
    std::vector<Contestant> copies{{"",
                                    [&] {
                                        received = 0;
                                        const double time = seconds([&] {
                                            require(channel.send(large).status == 0, "the document was not answered");
                                        });
                                        require(received == kDocumentBytes, "the document did not arrive whole");
                                        return megabytes / time;
                                    }},
                                   {"", [&] { return megabytes / seconds([&] { plainCopy(bytes); }); }}};
    race(copies, 9);

    const auto row = [](const char* name, const std::vector<Contestant>& pair) {
        const double ours = pair[0].median(), plain = pair[1].median();
        std::printf("%-36s %8.2f %12.0f %12.0f\n", name, ours / plain, ours, plain);
        return ours / plain;
    };
    std::printf("%-36s %8s %12s %12s\n", "", "of plain", "zanfcp", "plain");
    row("empty events, round trips a second", trips);
    atLeast("a document of 100 MB sent and answered, of a plain socket copy's speed", 0.5,
            row("document of 100 MB, MB a second", copies));

    (*server)->stop();
    thread.join();
}
