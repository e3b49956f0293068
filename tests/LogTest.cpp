// SPDX-License-Identifier: MIT
// Some system headers define these words as macros.
#define ERROR 17
#define DEBUG
#include "qor/Log.h"
static_assert(ERROR == 17, "the macro is restored");
#ifndef DEBUG
#error "the macro is not restored"
#endif
#undef ERROR
#undef DEBUG

#include <cstdio>
#include <ctime>
#include <map>

#include "Concurrency.h"
#include "LogReader.h"
#include "TestData.h"

using qor::Log;

namespace
{

using LogTest = LogReader;

void logAll()
{
    Log::error("e%d", 1);
    Log::info("i%d", 2);
    Log::debug("d%d", 3);
    Log::error(std::string("te%n"));
    Log::info(std::string("ti%n"));
    Log::debug(std::string("td%n"));
}

TEST_F(LogTest, FiltersRecordsByLevel)
{
    const struct {
        int level;
        TLines expected;
    } cases[] = {
        {0, {"X Log level set to NONE"}},
        {1, {"X Log level set to ERROR", "E e1", "E te%n"}},
        {2, {"X Log level set to INFO", "E e1", "I i2", "E te%n", "I ti%n"}},
        {3, {"X Log level set to DEBUG", "E e1", "I i2", "D d3", "E te%n", "I ti%n", "D td%n"}},
        {7, {"E e1", "I i2", "D d3", "E te%n", "I ti%n", "D td%n"}},
        {-1, {}},
    };
    for (const auto& test : cases) {
        Log::setLevel(static_cast<Log::Level>(test.level));
        logAll();
        EXPECT_EQ(takeRecords(), test.expected) << test.level;
    }
}

TEST_F(LogTest, OpensAppendsAndCloses)
{
    Log::setLevel(Log::NONE);
    Log::close();
    Log::close();
    logAll();
    Log::setLevel(Log::ERROR);
    const TLines first = {"X Log opened", "X Log level set to NONE", "X Log closed"};
    EXPECT_EQ(readRecords(m_LogFile), first);

    ASSERT_TRUE(Log::open(m_LogFile.c_str(), true));
    Log::debug("more");
    // The first log is still open.
    const std::string second = path("second.log");
    ASSERT_TRUE(Log::open(second.c_str(), false));
    TLines appended = first;
    appended.insert(appended.end(), {"X Log opened", "D more", "X Log closed"});
    EXPECT_EQ(readRecords(m_LogFile), appended);

    ASSERT_TRUE(Log::open(m_LogFile.c_str(), false));
    EXPECT_EQ(readRecords(m_LogFile), TLines{"X Log opened"});
    EXPECT_EQ(readRecords(second), (TLines{"X Log opened", "X Log closed"}));

    for (const char* name : {"missing/a.log", static_cast<const char*>(nullptr)}) {
        ASSERT_TRUE(Log::open(m_LogFile.c_str(), false));
        EXPECT_FALSE(Log::open(name, true));
        logAll();
        EXPECT_EQ(readRecords(m_LogFile), (TLines{"X Log opened", "X Log closed"}));
    }
}

TEST_F(LogTest, TruncatesFormattedMessagesOnly)
{
    const std::string longest(1023, 'a');
    Log::info("%s", longest.c_str());
    Log::info("%s", (longest + "b").c_str());
    Log::info(std::string("before\0behind", 13));
    Log::info(static_cast<const char*>(nullptr));
    Log::info(std::string("100%s %n"));
    EXPECT_EQ(takeRecords(),
              (TLines{"I " + longest, "I " + longest, "I before", "I ", "I 100%s %n"}));
    for (const std::size_t size : {1023u, 1024u, 1025u, 1040u, 1100u, 2000u, 4096u, 50000u}) {
        Log::info(std::string(size, 'c'));
        EXPECT_EQ(takeRecords(), TLines{"I " + std::string(size, 'c')});
    }
}

/// Returns the current local time in the form of the log, in which later times compare greater.
std::string getStamp()
{
    using namespace std::chrono;
    const auto now = system_clock::now().time_since_epoch() / milliseconds(1);
    const std::time_t second = now / 1000;
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", std::localtime(&second));
    return text + ('.' + std::to_string(1000 + now % 1000).substr(1));
}

TEST_F(LogTest, StampsLocalTime)
{
    // Covers the change of a second.
    for (int i = 0; i < 16; ++i) {
        const std::string before = getStamp();
        Log::info("now");
        const std::string after = getStamp();
        const std::string text = read(m_LogFile);
        const std::string stamp = text.substr(text.rfind("I ") + 2, before.size());
        EXPECT_LE(before, stamp);
        EXPECT_LE(stamp, after);
        sleepMs(67);
    }
}

TEST_F(LogTest, SharesFileWithOtherPrograms)
{
    Log::info("first");
    std::filesystem::resize_file(m_LogFile, 0);
    Log::info("second");
    EXPECT_EQ(readRecords(m_LogFile), TLines{"I second"});
    const std::string moved = path("moved.log");
    std::filesystem::rename(m_LogFile, moved);
    Log::info("third");
    EXPECT_EQ(readRecords(moved), (TLines{"I second", "I third"}));
}

TEST_F(LogTest, KeepsLinesOfThreadsSeparate)
{
    constexpr int COUNT = 400;
    std::atomic<bool> isEnding = false;
    const std::future<void> changer = onThread([&isEnding] {
        while (!isEnding) {
            Log::setLevel(Log::INFO);
            Log::setLevel(Log::DEBUG);
        }
    });
    std::vector<std::future<void>> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.push_back(onThread([thread] {
            for (int i = 0; i < COUNT; ++i) {
                Log::info("%d %d %s", thread, i, std::string(100, 'x').c_str());
                Log::debug("maybe");
            }
        }));
    }
    threads.clear(); // Waits until they end.
    isEnding = true;
    changer.wait();

    std::map<int, int> counts;
    for (const std::string& record : takeRecords()) {
        int thread = 0, number = -1;
        if (std::sscanf(record.c_str(), "I %d %d", &thread, &number) == 2) {
            EXPECT_EQ(number, counts[thread]++);
            EXPECT_EQ(record.size() - record.find('x'), 100u) << record;
        }
    }
    for (int thread = 0; thread < 8; ++thread) {
        EXPECT_EQ(counts[thread], COUNT);
    }
}

} // namespace
