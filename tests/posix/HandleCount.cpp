// SPDX-License-Identifier: MIT
#include "HandleCount.h"

#include <unistd.h>

int countHandles()
{
    const int lowestFree = dup(STDIN_FILENO);
    close(lowestFree);
    return lowestFree;
}
