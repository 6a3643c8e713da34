#include "cli/Commands.h"

int main(int argc, char** argv)
{
    return zanfcp::cli::runProgram(argc, argv);
}
