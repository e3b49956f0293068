// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

inline std::vector<std::string> split(const std::string& text, const std::string& separator)
{
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::string::npos; begin = end + separator.size()) {
        end = text.find(separator, begin);
        parts.push_back(text.substr(begin, end - begin));
    }
    return parts;
}

/// Reads the table data/NAME.txt: one case per line, its cells separated by " | ". The first "\n" in a
/// line means a line feed. Lines that begin with # are comments.
/// @throws std::runtime_error if the file cannot be read or has no cases, so that the test fails
inline std::vector<std::vector<std::string>> readTable(const std::string& name)
{
    std::vector<std::vector<std::string>> table;
    std::ifstream file(std::string(TEST_DATA) + "/" + name + ".txt");
    for (std::string line; std::getline(file, line);) {
        const std::size_t lineFeed = line.find("\\n");
        if (lineFeed != std::string::npos) {
            line.replace(lineFeed, 2, "\n");
        }
        if (line.rfind('#', 0) != 0) {
            table.push_back(split(line, " | "));
        }
    }
    if (table.empty()) {
        throw std::runtime_error("Cannot read the cases of " + name + ".txt");
    }
    return table;
}

/// @return the numbers in a cell, which are separated by spaces; none if the cell is a dash
inline std::vector<double> readNumbers(const std::string& cell)
{
    std::vector<double> numbers;
    for (const std::string& number : split(cell, " ")) {
        if (number != "-") {
            numbers.push_back(std::strtod(number.c_str(), nullptr));
        }
    }
    return numbers;
}

inline std::string repeated(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}
