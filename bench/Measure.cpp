#include "bench/Measure.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

ProgramRun runProgram(const std::vector<std::string>& command)
{
    std::vector<char*> arguments;
    for (const std::string& each : command)
        arguments.push_back(const_cast<char*>(each.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    for (const int descriptor : {0, 1, 2})
        posix_spawn_file_actions_addopen(&files, descriptor, "/dev/null", O_RDWR, 0);
    ProgramRun run;
    int status = 0;
    rusage usage{};
    run.seconds = seconds([&] {
        pid_t child = 0;
        if (posix_spawnp(&child, arguments[0], &files, nullptr, arguments.data(), environ) != 0)
            fail("could not run " + command.front());
        wait4(child, &status, 0, &usage);
    });
    posix_spawn_file_actions_destroy(&files);
    if (status != 0) fail(command.front() + " failed");
    run.peakMegabytes = static_cast<double>(usage.ru_maxrss) / 1024;
    return run;
}

} // namespace bench
