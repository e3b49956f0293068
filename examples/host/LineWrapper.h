// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Returns the number of columns that a text without control characters fills on the terminal.
int measureColumns(const std::string& text);

/// Breaks a text into rows of at most `columns` columns, if possible after a blank.
std::vector<std::string> splitRows(const std::string& text, int columns);
