// Round trips of empty events, and a large document through the channel beside a plain copy of the same bytes through
// a socket, in the same run.

#include "bench/Measure.h"
#include "fcp/EventServer.h"
#include "fcp/UnixSocketChannel.h"
#include "platform/FileDescriptor.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <vector>

namespace {

using namespace bench;

using zanfcp::EventCode::finalCutPro;
constexpr std::size_t kDocumentBytes = 100'000'000;
constexpr int kRounds = 7;

void require(bool condition, const char* what)
{
    if (condition) return;
    std::fprintf(stderr, "bench_event: %s\n", what);
    std::exit(1);
}

zanfcp::EventMessage event()
{
    return zanfcp::EventMessage::event(finalCutPro, zanfcp::EventCode::importXML,
                                       zanfcp::EventDescriptor::applicationAddress(finalCutPro));
}

/// The bytes once through a socket pair, into memory that the receiver makes for them; an answer of one byte.
void plainCopy(const std::string& bytes)
{
    int both[2];
    require(::socketpair(AF_UNIX, SOCK_STREAM, 0, both) == 0, "no socket pair");
    const zanfcp::FileDescriptor near{both[0]};
    const zanfcp::FileDescriptor far{both[1]};
    std::thread receiver([&] {
        std::string copy(bytes.size(), '\0');
        for (std::size_t filled = 0; filled < copy.size();) {
            const ssize_t count = ::recv(far.value(), copy.data() + filled, copy.size() - filled, 0);
            require(count > 0, "plain copy: nothing received");
            filled += static_cast<std::size_t>(count);
        }
        require(::send(far.value(), copy.data(), 1, MSG_NOSIGNAL) == 1, "plain copy: no answer");
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
    std::string folder = (std::filesystem::temp_directory_path() / "zanfcp-bench-XXXXXX").string();
    require(::mkdtemp(folder.data()) != nullptr, "no temporary folder");
    const std::string socket = folder + "/socket";
    std::size_t received = 0;
    auto server = zanfcp::EventServer::open({.socketPath = socket}, [&](const zanfcp::EventMessage& message) {
        const auto* document = message.find(zanfcp::EventCode::xmlData);
        received = document == nullptr ? 0 : document->bytes.size();
        return std::vector<zanfcp::EventMessage::Parameter>();
    });
    require(server.has_value(), "no server");
    std::thread thread([&] { (void)(*server)->run(); });
    zanfcp::UnixSocketChannel channel{socket};

    constexpr int kEvents = 10'000;
    std::vector<double> trips;
    for (int round = 0; round < kRounds; ++round)
        trips.push_back(kEvents / seconds([&] {
                            for (int i = 0; i < kEvents; ++i)
                                require(channel.send(event()).status == 0, "an event was not answered");
                        }));
    std::printf("empty events              %10.0f round trips per second\n", median(trips));

    zanfcp::EventMessage large = event();
    require(large.add(zanfcp::EventCode::xmlData, zanfcp::EventDescriptor::utf8(std::string(kDocumentBytes, 'x'))) == 0,
            "the document is too large");
    const std::string& bytes = large.parameters.front().descriptor.bytes;
    std::vector<double> ours;
    std::vector<double> plain;
    for (int round = 0; round < kRounds; ++round) { // in turn, so that both meet the same machine
        plain.push_back(seconds([&] { plainCopy(bytes); }));
        ours.push_back(seconds([&] { require(channel.send(large).status == 0, "the document was not answered"); }));
        require(received == kDocumentBytes, "the document did not arrive whole");
    }
    const double megabytes = kDocumentBytes / 1e6;
    std::printf("document of 100 MB        %10.0f MB/s\n", megabytes / median(ours));
    std::printf("plain socket copy         %10.0f MB/s\n", megabytes / median(plain));
    std::printf("ratio                     %10.2f (target: at least 0.5)\n", median(plain) / median(ours));

    (*server)->stop();
    thread.join();
    server = zanfcp::Error{};
    std::filesystem::remove_all(folder);
    return 0;
}
