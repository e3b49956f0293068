// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

/// Aborts the process if an invariant is violated, so that the fuzzer reports a crash.
inline void require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

/// Splits the input of a fuzz target into bytes and texts.
class FuzzInput
{
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : m_Next(data), m_End(data + size) {}

    bool isEmpty() const { return m_Next == m_End; }

    /// @return the next byte; 0 at the end
    std::uint8_t takeByte() { return isEmpty() ? std::uint8_t{0} : *m_Next++; }

    /// @return the text up to the next zero byte, which is dropped, or to the end
    std::string takeText()
    {
        const std::uint8_t* const begin = m_Next;
        m_Next = std::find(begin, m_End, std::uint8_t{0});
        const std::string text(begin, m_Next);
        takeByte();
        return text;
    }

private:
    const std::uint8_t* m_Next;
    const std::uint8_t* m_End;
};

/// A temporary file, which the destructor removes.
class FuzzFile
{
public:
    explicit FuzzFile(const std::string& bytes) { std::ofstream(name, std::ios::binary) << bytes; }
    ~FuzzFile() { std::filesystem::remove(name); }
    FuzzFile(const FuzzFile&) = delete;
    FuzzFile& operator=(const FuzzFile&) = delete;

    const std::string name =
        (std::filesystem::temp_directory_path() / ("qortk-fuzz-" + std::to_string(getpid())))
            .string();
};
