#include "fcp/Opener.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

extern char** environ; // NOLINT: POSIX declares it without a header

namespace zanfcp {
namespace {

void waitFor(pid_t child)
{
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

} // namespace

void startOpener(const std::vector<std::string>& command, const std::string& path)
{
    if (command.empty()) return;
    std::vector<char*> words;
    for (const std::string& word : command)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(const_cast<char*>(path.c_str()));
    words.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    sigset_t none;
    ::sigemptyset(&none);
    ::posix_spawnattr_setsigmask(&attributes, &none); // a mask of the calling thread is not the opener's
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    pid_t child = 0;
    const int code = ::posix_spawnp(&child, words.front(), &actions, &attributes, words.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    if (code != 0) return;
    // A handler of SIGCHLD would be the whole process's, so a thread waits instead.
    try {
        std::thread(waitFor, child).detach();
    } catch (const std::system_error&) {
        (void)::waitpid(child, nullptr, WNOHANG);
    }
}

} // namespace zanfcp
