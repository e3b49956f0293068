#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>
#include <stdlib.h>

/// Gives each test case an empty folder of its own, which is the current one until it goes with all
/// in it at the end.
class TemporaryFolder : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string folder = (std::filesystem::temp_directory_path() / "qortk-XXXXXX").string();
        ASSERT_NE(mkdtemp(folder.data()), nullptr);
        m_Folder = folder;
        std::filesystem::current_path(folder);
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
