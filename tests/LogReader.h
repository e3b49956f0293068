// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "qor/Log.h"

using TLines = std::vector<std::string>;

/// @return the lines of a log file without their timestamps, whose format is checked
inline TLines readRecords(const std::string& filename)
{
    TLines records;
    std::ifstream file(filename);
    for (std::string line; std::getline(file, line);) {
        const std::string form = "P dddd-dd-dd dd:dd:dd.ddd ";
        std::string head = line.substr(0, form.size());
        records.push_back(line.substr(0, 2) + line.substr(head.size()));
        std::replace_if(
            head.begin(), head.end(), [](char c) { return c >= '0' && c <= '9'; }, 'd');
        EXPECT_EQ(head.replace(0, 1, "P"), form) << line;
    }
    return records;
}

/// Fixture with an open log in the temporary directory.
class LogReader : public TemporaryFolder
{
protected:
    void SetUp() override
    {
        TemporaryFolder::SetUp();
        m_LogFile = path("test.log");
        ASSERT_TRUE(qor::Log::open(m_LogFile.c_str(), false));
    }

    void TearDown() override
    {
        qor::Log::close();
        TemporaryFolder::TearDown();
    }

    /// @return the records since the last call, or since the log was opened
    TLines takeRecords()
    {
        TLines records = readRecords(m_LogFile);
        records.erase(records.begin(), records.begin() + m_Taken);
        m_Taken += static_cast<std::ptrdiff_t>(records.size());
        return records;
    }

    std::string m_LogFile;

private:
    std::ptrdiff_t m_Taken = 1;
};
