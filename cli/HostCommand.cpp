#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/HostConnection.h"
#include "fcp/ZANFCPProjectHost.h"

#include <atomic>
#include <csignal>
#include <memory>
#include <optional>

namespace zanfcp::cli {
namespace {

struct Arguments {
    std::string projects;
    std::string socket = defaultSocketPath();
};

std::atomic<ZANFCPProjectHost*> runningHost = nullptr; // what the signal handler can reach
static_assert(std::atomic<ZANFCPProjectHost*>::is_always_lock_free);

constexpr int kStopSignals[] = {SIGTERM, SIGINT, SIGHUP}; // the last one when the terminal was closed

void stopHost(int)
{
    if (ZANFCPProjectHost* host = runningHost.load()) host->stop();
}

/// Holds back the signals that stop the host, until there is one to be stopped.
class StopSignalsBlocked {
public:
    StopSignalsBlocked()
    {
        sigset_t signals;
        ::sigemptyset(&signals);
        for (const int number : kStopSignals)
            ::sigaddset(&signals, number);
        ::pthread_sigmask(SIG_BLOCK, &signals, &before_);
    }
    ~StopSignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    StopSignalsBlocked(const StopSignalsBlocked&) = delete;
    StopSignalsBlocked& operator=(const StopSignalsBlocked&) = delete;

private:
    sigset_t before_{};
};

ExitCode host(const Arguments& arguments, Console& console)
{
    // Its socket shows that it runs, so from then on a signal must end it as it should be ended.
    std::optional<StopSignalsBlocked> blocked{std::in_place};
    console.setVerbose(true); // what it opens again shows, and refusals as they come
    auto opened = ZANFCPProjectHost::open({.socketPath = arguments.socket, .projectsFolder = arguments.projects});
    if (!opened) {
        console.error(opened.error().what);
        return kFailed;
    }
    runningHost = opened->get();
    struct sigaction stop {};
    stop.sa_handler = stopHost;
    for (const int number : kStopSignals)
        ::sigaction(number, &stop, nullptr);
    blocked.reset();
    // A limit on file sizes is answered like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);

    console.note("keeping projects in " + arguments.projects + ", listening on " + arguments.socket + "\n");
    const Status ended = (*opened)->run();
    runningHost = nullptr;
    if (!ended) console.error(ended.error().what);
    return ended ? kDone : kFailed;
}

} // namespace

Command addHost(CLI::App& parent)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = parent.add_subcommand("host", "Keep projects in a folder for the commands that send and get them");
    app->add_option("--projects", arguments->projects, "the folder with the project documents")
        ->required()
        ->type_name("DIR")
        ->check(notEmpty());
    addSocketOption(*app, arguments->socket);
    return {
        .app = app,
        .details = "Stands in for the editing application on a machine without it: answers its events for send, get, "
                   "open, save and close, for this user alone. Runs until it is interrupted or terminated. What was "
                   "imported and not saved yet is kept in the folder and is there again at the next start. Each "
                   "request that is refused shows as one line.",
        .examples = {{"zanfcp host --projects ~/projects", "start it, and leave it running"}},
        .run = [arguments](Console& console) { return host(*arguments, console); },
    };
}

} // namespace zanfcp::cli
