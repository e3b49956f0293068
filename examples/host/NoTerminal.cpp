// SPDX-License-Identifier: MIT
#include "Terminal.h"

bool isInteractive()
{
    return false;
}

bool isOutputTerminal()
{
    return false;
}

void catchInterrupts() {}

void resetInput() {}
