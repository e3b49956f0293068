// SPDX-License-Identifier: MIT
#include "Terminal.h"

#include <csignal>
#include <cstdio>

#include <unistd.h>

bool isInteractive()
{
    return isatty(STDIN_FILENO) && isatty(STDOUT_FILENO);
}

bool isOutputTerminal()
{
    return isatty(STDOUT_FILENO);
}

void catchInterrupts()
{
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    // Without SA_RESTART, so that a blocked read returns.
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
}

void resetInput()
{
    std::clearerr(stdin);
}
