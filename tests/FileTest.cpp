// SPDX-License-Identifier: MIT
#include "qor/File.h"

#include <map>

#include "Concurrency.h"
#include "Environment.h"
#include "LogReader.h"
#include "TestData.h"

using qor::File;

namespace
{

class FileTest : public LogReader
{
protected:
    void SetUp() override
    {
        LogReader::SetUp();
        write("file", "12345");
        std::filesystem::create_directory("folder");
    }

    const std::string m_Cut = std::string("file\0x", 6);
};

#ifdef _WIN32
constexpr bool IS_WINDOWS = true;
#else
constexpr bool IS_WINDOWS = false;
#endif

/// Removes the error texts of the system on Windows, where they depend on the user's language.
TLines withoutSystemText(TLines records)
{
    for (std::string& record : records) {
        const std::size_t colon = record.rfind(": ");
        EXPECT_NE(colon + 2, record.size()) << record;
        record.resize(IS_WINDOWS ? colon : record.size());
    }
    return records;
}

TEST_F(FileTest, DistinguishesFilesFromDirectories)
{
    const struct {
        std::string path;
        bool isFile, isDirectory;
    } cases[] = {{"file", true, false},  {"folder", false, true},  {"folder/", false, true},
                 {"none", false, false}, {"file/x", false, false}, {m_Cut, false, false}};
    for (const auto& test : cases) {
        EXPECT_EQ(File::fileExists(test.path), test.isFile) << test.path;
        EXPECT_EQ(File::directoryExists(test.path), test.isDirectory) << test.path;
    }
}

TEST_F(FileTest, CreatesRenamesAndDeletes)
{
    EXPECT_TRUE(File::createDirectory("new"));
    EXPECT_TRUE(File::directoryExists("new"));
    EXPECT_TRUE(File::renameFile("file", "new/file"));
    EXPECT_FALSE(File::fileExists("file"));
    EXPECT_EQ(read("new/file"), "12345");
    EXPECT_TRUE(File::deleteFile("new/file"));
    EXPECT_FALSE(File::fileExists("new/file"));
    EXPECT_EQ(takeRecords(), TLines{});
}

TEST_F(FileTest, ReportsFailures)
{
    const std::map<std::string, std::function<bool(const std::string&)>> operations = {
        {"create", File::createDirectory},
        {"delete", File::deleteFile},
        {"rename", [](const std::string& path) { return File::renameFile(path, "file"); }},
        {"size", File::fileSize},
        {"time", File::fileTime},
        {"user data",
         [](const std::string& path) {
             setVariable("QOR_USER_DATA_DIR", path.c_str());
             return !File::getUserDataDirectory("host", true).empty();
         }},
    };
    for (const auto& test : readTable("file-failures")) {
        if (IS_WINDOWS && test[2].find(": ") == std::string::npos) {
            continue; // The variable cannot be empty there.
        }
        EXPECT_FALSE(operations.at(test[0])(test[1]));
        EXPECT_EQ(withoutSystemText(takeRecords()), withoutSystemText({"E " + test[2]}));
    }
    for (const auto& [name, operation] : operations) {
        EXPECT_FALSE(operation(m_Cut)) << name;
    }
    EXPECT_FALSE(File::createDirectory("folder/" + m_Cut));
    EXPECT_FALSE(File::renameFile("file", m_Cut));
    EXPECT_EQ(read("file"), "12345");
}

TEST_F(FileTest, ReturnsSize)
{
    EXPECT_EQ(File::fileSize("file"), 5u);
    EXPECT_EQ(File::fileSize(write("empty", "")), 0u);
    EXPECT_GT(File::fileTime("file"), 1700000000u);
    EXPECT_EQ(takeRecords(), TLines{});
}

TEST(FilePathTest, StandardizesAndJoins)
{
    const std::string cases[][2] = {{"a\\b\\", "a/b"}, {"a/b///", "a/b"}, {"///", ""},
                                    {"", ""},          {"C:\\", "C:"},    {"/a//../.", "/a//../."}};
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(File::standardizePath(path), expected) << path;
    }
    EXPECT_EQ(File::filePath("", "/f\\"), "/f\\");
    EXPECT_EQ(File::filePath("d/", "f"), "d//f");
}

TEST_F(FileTest, CreatesUserDataDirectory)
{
    setVariable("QOR_USER_DATA_DIR", "/a\\b//");
    EXPECT_EQ(File::getUserDataDirectory("host", false), "/a/b");
    setVariable("QOR_USER_DATA_DIR", "new/");
    for (const bool create : {false, true, true}) {
        EXPECT_EQ(File::getUserDataDirectory("host", create), "new");
        EXPECT_EQ(File::directoryExists("new"), create);
    }
    EXPECT_EQ(takeRecords(), TLines{});
}

TEST_F(FileTest, ThreadsCreateSameUserDataDirectory)
{
    for (int round = 0; round < 100; ++round) {
        setVariable("QOR_USER_DATA_DIR", ("data" + std::to_string(round)).c_str());
        std::atomic<int> waiting{4};
        std::vector<std::future<std::string>> results;
        for (int i = 0; i < 4; ++i) {
            results.push_back(onThread([&waiting] {
                for (--waiting; waiting > 0;) {
                }
                return File::getUserDataDirectory("", true);
            }));
        }
        for (std::future<std::string>& result : results) {
            EXPECT_NE(result.get(), "");
        }
    }
    EXPECT_EQ(takeRecords(), TLines{});
}

} // namespace
