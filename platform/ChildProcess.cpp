#include "platform/ChildProcess.h"

#include "platform/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ; // NOLINT: POSIX declares it without a header

namespace zanfcp {
namespace {

Error systemError(const std::string& what, int code)
{
    const Fault fault = code == ENOENT || code == EACCES || code == ENOTDIR ? Fault::notFound : Fault::io;
    return Error{.fault = fault, .what = what + ": " + std::strerror(code)};
}

struct Ends {
    FileDescriptor parent;
    FileDescriptor child;
};

/// A socket pair for the child's input: unlike a pipe, it can be written to without risking SIGPIPE.
bool makeInput(Ends& ends)
{
    int both[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, both) != 0) return false;
    ends = {.parent = FileDescriptor{both[0]}, .child = FileDescriptor{both[1]}};
    return ::fcntl(both[0], F_SETFL, O_NONBLOCK) == 0; // the child's own end keeps blocking
}

bool makeOutput(Ends& ends)
{
    int both[2];
    if (::pipe2(both, O_CLOEXEC) != 0) return false;
    ends = {.parent = FileDescriptor{both[0]}, .child = FileDescriptor{both[1]}};
    return true;
}

/// Sends what the child will take; closes the input when all is sent or the child no longer listens.
void feed(FileDescriptor& input, std::string_view& left)
{
    while (!left.empty()) {
        const ssize_t sent = ::send(input.value(), left.data(), left.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent < 0 && errno == EAGAIN) return;
        if (sent < 0) break;
        left.remove_prefix(static_cast<std::size_t>(sent));
    }
    input.reset();
}

void drain(FileDescriptor& output, std::string& into)
{
    std::array<char, 16384> block; // NOLINT: filled by read
    const ssize_t count = ::read(output.value(), block.data(), block.size());
    if (count > 0)
        into.append(block.data(), static_cast<std::size_t>(count));
    else if (count == 0 || (errno != EINTR && errno != EAGAIN))
        output.reset();
}

int waitFor(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
        if (errno != EINTR) return -1;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

Result<ChildResult> runChildProcess(const std::string& executable, const std::vector<std::string>& arguments,
                                    std::string_view input)
{
    Ends in, out, err;
    if (!makeInput(in) || !makeOutput(out) || !makeOutput(err))
        return systemError("could not make pipes for " + executable, errno);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, in.child.value(), STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, out.child.value(), STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, err.child.value(), STDERR_FILENO);
    std::vector<char*> words{const_cast<char*>(executable.c_str())};
    for (const std::string& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    pid_t child = 0;
    const int code = ::posix_spawn(&child, executable.c_str(), &actions, nullptr, words.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (code != 0) return systemError("could not start " + executable, code);
    in.child.reset();
    out.child.reset();
    err.child.reset();

    ChildResult result;
    feed(in.parent, input);
    while (in.parent || out.parent || err.parent) {
        std::array<pollfd, 3> waits{{{in.parent.value(), POLLOUT, 0},
                                     {out.parent.value(), POLLIN, 0},
                                     {err.parent.value(), POLLIN, 0}}}; // poll ignores negative descriptors
        if (::poll(waits.data(), waits.size(), -1) < 0 && errno != EINTR) break;
        if (in.parent && waits[0].revents != 0) feed(in.parent, input);
        if (out.parent && waits[1].revents != 0) drain(out.parent, result.standardOutput);
        if (err.parent && waits[2].revents != 0) drain(err.parent, result.standardError);
        // A child that has closed both outputs will never answer: do not wait for it to read the rest.
        if (!out.parent && !err.parent) in.parent.reset();
    }
    result.exitStatus = waitFor(child);
    return result;
}

} // namespace zanfcp
