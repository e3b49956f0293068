// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include <gtest/gtest.h>

/// Fixture with an empty temporary directory, which is the current directory until it is removed
/// with its content after the test.
class TemporaryFolder : public testing::Test
{
protected:
    void SetUp() override
    {
        const std::string name = "qortk-" + std::to_string(std::random_device()());
        m_Folder = (std::filesystem::temp_directory_path() / name).generic_string();
        ASSERT_TRUE(std::filesystem::create_directory(m_Folder));
        std::filesystem::current_path(m_Folder);
    }

    void TearDown() override
    {
        std::filesystem::current_path(m_Former);
        std::filesystem::remove_all(m_Folder);
    }

    std::string path(const std::string& name) const { return m_Folder + "/" + name; }

    std::string write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }

    static std::string read(const std::string& filename)
    {
        std::ifstream file(filename, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    const std::filesystem::path m_Former = std::filesystem::current_path();
    std::string m_Folder;
};
