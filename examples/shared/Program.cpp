// SPDX-License-Identifier: MIT
#include "shared/Program.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <iostream>

#include "shared/Text.h"

namespace
{

bool contains(const std::vector<std::string>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace

std::string Arguments::get(const std::string& option) const
{
    const auto found = m_Values.find(option);
    return found == m_Values.end() ? "" : found->second.back();
}

std::vector<std::string> Arguments::getAll(const std::string& option) const
{
    const auto found = m_Values.find(option);
    return found == m_Values.end() ? std::vector<std::string>() : found->second;
}

bool Arguments::read(const std::vector<std::string>& arguments,
                     const std::vector<std::string>& flags, const std::vector<std::string>& options)
{
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (contains(flags, argument)) {
            m_Values[argument].emplace_back();
        } else if (contains(options, argument) && i + 1 < arguments.size()) {
            m_Values[argument].push_back(arguments[++i]);
        } else if (argument.empty() || argument.front() == '-' || !m_File.empty()) {
            return false;
        } else {
            m_File = argument;
        }
    }
    return true;
}

int runProgram(const TProgram& program, int argumentCount, char** argumentValues)
try {
    constexpr int USAGE_ERROR = 2;
    std::vector<std::string> flags = program.flags;
    flags.emplace_back("--help");
    Arguments arguments;
    if (!arguments.read({argumentValues + 1, argumentValues + argumentCount}, flags,
                        program.options)) {
        std::cerr << program.usage;
        return USAGE_ERROR;
    }
    if (arguments.has("--help")) {
        std::cout << program.usage;
        return EXIT_SUCCESS;
    }
    return program.run(arguments);
} catch (const std::exception& exception) {
    std::cerr << program.name << ": " << toPrintable(exception.what()) << '\n';
    return EXIT_FAILURE;
}
