// SPDX-License-Identifier: MIT
#include "Screen.h"

bool hasScreen()
{
    return false;
}

bool runScreen(Host&)
{
    return false;
}
