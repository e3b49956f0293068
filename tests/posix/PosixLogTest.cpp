// SPDX-License-Identifier: MIT
#include <clocale>
#include <ctime>

#include <sys/wait.h>
#include <unistd.h>

#include "Concurrency.h"
#include "LogReader.h"
#include "TestData.h"
#include "posix/FileSizeLimit.h"
#include "qor/XMLElement.h"

using qor::Log;

namespace
{

using PosixLogTest = LogReader;

TEST_F(PosixLogTest, WritesNumbersInClassicLocale)
{
    const std::string format = "%.2f %g %'d %lc"; // As a literal, the compiler warns of it.
    for (const std::string locale : {"de_DE", "en_US"}) {
        const std::string create = "localedef -i " + locale + " -f UTF-8 ./" + locale;
        ASSERT_EQ(std::system((create + " >errors 2>&1").c_str()), 0)
            << create << ", from Debian's packages libc-bin and locales\n"
            << read("errors");
        setenv("LOCPATH", path("").c_str(), 1);
        ASSERT_TRUE(std::setlocale(LC_ALL, locale.c_str()));
        unsetenv("LOCPATH"); // With it, glibc's newlocale() leaks memory, once per process here.
        Log::info(format.c_str(), 1234.5, 0.5, 12345, static_cast<wint_t>(L'\u00fc'));
        EXPECT_EQ(std::to_string(1.5), locale == "de_DE" ? "1,500000" : "1.500000");
        EXPECT_EQ(takeRecords(), TLines{"I 1234.50 0.5 12345 \u00fc"});
    }
    std::setlocale(LC_ALL, "C");
}

TEST_F(PosixLogTest, UsesChangedTimeZone)
{
    const std::string zone = std::getenv("TZ") ? std::getenv("TZ") : "";
    const auto getHourInNextSecond = [this](const char* newZone) {
        setenv("TZ", newZone, 1);
        const std::time_t second = std::time(nullptr);
        while (std::time(nullptr) == second) {
            sleepMs(1);
        }
        Log::info("now");
        const std::string text = read(m_LogFile);
        return std::stoi(text.substr(text.rfind("I ") + 13, 2));
    };
    const int before = getHourInNextSecond("UTC0"), hour = getHourInNextSecond("ABC-12");
    const int after = getHourInNextSecond("UTC0");
    setenv("TZ", zone.c_str(), 1);
    EXPECT_TRUE(hour == (before + 12) % 24 || hour == (after + 12) % 24) << before << " " << hour;
}

TEST_F(PosixLogTest, StartsNewLineAfterFullDisk)
{
    constexpr std::size_t ROOM = 10000, LINE = sizeof "I 2000-01-01 00:00:00.000 ";
    // How much of the message "torn" and its line feed the disk takes.
    for (const std::size_t taken : {0u, 1u, 4u, 5u}) {
        ASSERT_TRUE(Log::open(m_LogFile.c_str(), false));
        Log::info(std::string(ROOM - 2 * LINE - taken - read(m_LogFile).size() + 1, 'x'));
        const std::size_t size = read(m_LogFile).size();
        {
            const FileSizeLimit limit(ROOM);
            Log::info("torn");
            limit.set(ROOM + 1);
            Log::info("dropped");
        }
        Log::info("room");
        const std::string text = read(m_LogFile).substr(size);
        EXPECT_EQ(text.find("\n\n"), std::string::npos) << taken << text;
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), taken < 5 ? 2 : 3) << taken << text;
        EXPECT_EQ(text.substr(text.size() - 6), " room\n");

        // The next file has nothing to complete.
        {
            const FileSizeLimit limit(ROOM);
            Log::info(std::string(ROOM, 'x'));
            ASSERT_TRUE(Log::open(path("next.log").c_str(), false));
        }
        EXPECT_EQ(readRecords("next.log"), TLines{"X Log opened"});
    }
}

TEST_F(PosixLogTest, WorksInForkedChildren)
{
    std::atomic<bool> isEnding = false;
    std::vector<std::future<void>> threads;
    for (int i = 0; i < 3; ++i) {
        threads.push_back(onThread([&isEnding, i] {
            while (!isEnding) {
                Log::info("parent");
                qor::XMLElement("").parse(i == 0 ? "" : "<last></error>");
                EXPECT_FALSE(qor::XMLElement::getLastError().empty());
            }
        }));
    }
    for (int i = 0; i < 200; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(20); // Ends a child that waits for a lock.
            Log::info("child");
            qor::XMLElement("").parse("<?xml");
            _exit(qor::XMLElement::getLastError() == "Unterminated XML declaration" ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0);
    }
    isEnding = true;
    threads.clear();
    const TLines records = takeRecords();
    EXPECT_EQ(std::count(records.begin(), records.end(), "I child"), 200);
}

TEST_F(PosixLogTest, WritesEachLineWithOneSystemCall)
{
    const auto countWrites = [] {
        return std::atol(split(read("/proc/self/io"), "syscw: ").back().c_str());
    };
    countWrites(); // Sanitizers write, too, when they meet something first.
    const long before = countWrites();
    if (before == 0) {
        GTEST_SKIP() << "the system does not count write calls";
    }
    for (int i = 0; i < 50; ++i) {
        Log::info(std::string(20000, 'x'));
        Log::info("%d", i);
    }
    EXPECT_EQ(countWrites() - before, 100);
    EXPECT_EQ(takeRecords().size(), 100u);
}

TEST_F(PosixLogTest, ChildProcessesDoNotInheritFile)
{
    // A child would show the file among its open ones.
    ASSERT_EQ(std::system("ls -l /proc/self/fd/ > open 2>&1"), 0);
    EXPECT_EQ(read("open").find("test.log"), std::string::npos);
}

TEST_F(PosixLogTest, WritesFormatIfArgumentIsUnconvertible)
{
    Log::info("%s %lc", "no such character:", static_cast<wint_t>(0x7fffffff));
    EXPECT_EQ(takeRecords(), TLines{"I %s %lc"});
}

} // namespace
