// SPDX-License-Identifier: MIT
#include "Screen.h"

#include <cstdint>

// The last header defines macros such as `lines` and `columns`.
#include <curses.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <term.h>

bool hasScreen()
{
    constexpr int MIN_COLUMNS = 20;
    constexpr int MIN_LINES = 5;
    int error = 0;
    if (setupterm(nullptr, STDOUT_FILENO, &error) != OK) {
        return false;
    }
    char capability[] = "cup";
    const char* const moveCursor = tigetstr(capability);
    const bool canMoveCursor = moveCursor && reinterpret_cast<std::intptr_t>(moveCursor) != -1;
    del_curterm(cur_term);
    winsize size = {};
    const bool hasSize = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return canMoveCursor && (!hasSize || (size.ws_col >= MIN_COLUMNS && size.ws_row >= MIN_LINES));
}
