#include "cli/Commands.h"

#include <csignal>

int main(int argc, char** argv)
{
    std::signal(SIGXFSZ, SIG_IGN); // a file over the limit is a failed write with a message, not the end
    return zanfcp::cli::runProgram(argc, argv);
}
