// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

/// The arguments of a program: options, and at most one file.
class Arguments
{
public:
    /// Returns whether an option was given.
    bool has(const std::string& option) const { return m_Values.count(option) > 0; }

    /// Returns the last value of an option; empty without one.
    std::string get(const std::string& option) const;

    /// Returns all values of an option, in their order.
    std::vector<std::string> getAll(const std::string& option) const;

    /// Returns the file; empty without one.
    const std::string& getFile() const { return m_File; }

    /// Reads the arguments.
    /// @param flags the options without a value
    /// @param options the options with a value
    /// @return false if the arguments are wrong
    bool read(const std::vector<std::string>& arguments, const std::vector<std::string>& flags,
              const std::vector<std::string>& options);

private:
    std::map<std::string, std::vector<std::string>> m_Values;
    std::string m_File;
};

/// A program with arguments.
struct TProgram {
    const char* name;
    const char* usage;
    std::vector<std::string> flags, options;
    int (*run)(const Arguments& arguments); ///< returns the exit status
};

/// Reads the arguments and runs the program. Prints the usage for `--help` or wrong arguments, and
/// the message of an exception.
/// @return the exit status
int runProgram(const TProgram& program, int argumentCount, char** argumentValues);
