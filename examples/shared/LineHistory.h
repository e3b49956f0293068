// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <string>

/// The lines that a user entered, for the keys up and down.
class LineHistory
{
public:
    /// @param maxLines how many lines are kept; the oldest one is dropped first
    explicit LineHistory(std::size_t maxLines = 500) : m_MaxLines(maxLines) {}

    /// Appends an entered line and ends the browsing. An empty line and a repetition of
    /// the newest line are not stored.
    void add(const std::string& line);

    /// Moves to the line before the current one. The oldest line stays current.
    /// @param typed the line that is being typed; moveToNewer() returns it after the newest line
    /// @return the line to show; `typed` if there is no line
    const std::string& moveToOlder(const std::string& typed);

    /// Moves to the line after the current one.
    /// @param typed the line that is being typed
    /// @return the line to show; after the newest line, the one that was being typed
    const std::string& moveToNewer(const std::string& typed);

private:
    const std::size_t m_MaxLines;
    std::deque<std::string> m_Lines; ///< oldest first
    std::string m_Typed;
    std::size_t m_Position = 0; ///< index of the current line; m_Lines.size() for m_Typed
};
