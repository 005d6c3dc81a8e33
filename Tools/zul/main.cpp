#include "session.h"

#include <cstdlib>
#include <iostream>
#include <unistd.h>

int main(int argumentCount, char** arguments)
{
    std::ios::sync_with_stdio(false);
    Session session{std::cout, std::cerr};
    session.colour = isatty(STDOUT_FILENO) == 1 && std::getenv("NO_COLOR") == nullptr;
    int const skipped = argumentCount > 0 ? 1 : 0;
    return static_cast<int>(runProgram(session, argumentCount - skipped, arguments + skipped));
}
