#include <algorithm>
#include <csignal>
#include <filesystem>
#include <future>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "LogReader.h"
#include "PixelData.h"
#include "qor/qor.h"

using qor::Configuration, qor::File, qor::Image, qor::Log, qor::XMLElement;

namespace
{

/// At which step something fails.
enum Answer { NOT_OPENED, NOT_READ, NOT_WRITTEN, OTHER_TYPE };

class DiskFaultTest : public LogReader
{
protected:
    void SetUp() override
    {
        LogReader::SetUp();
        table.addIntegerParameter("n", 1, 0, 9, 0);
        ASSERT_EQ(mkfifo("fifo", 0600), 0);
    }

    void expectLoads(const std::string& place, Answer document, Answer picture, bool exists)
    {
        XMLElement tree("old");
        tree.createChild("old");
        EXPECT_EQ(tree.load(place), -1);
        EXPECT_EQ(XMLElement::getLastError(), std::string("Unable to ") +
                                                  (document == NOT_OPENED ? "open" : "read") +
                                                  " source file '" + place + "'");
        EXPECT_EQ(tree.toString(), "<></>");
        EXPECT_EQ(table.load(place), !exists) << "no failure if there is no file";
        EXPECT_EQ(table.getInteger("n"), 1);
        Image image = makeImage(1, 1, {42});
        const int result = picture == NOT_OPENED ? -1 : picture == NOT_READ ? -2 : -4;
        EXPECT_EQ(image.loadTGA(place.c_str()), result);
        EXPECT_EQ(pixelsOf(image), Pixels{42});
    }

    void expectSaves(const std::string& place, Answer answer)
    {
        const bool isOpened = answer != NOT_OPENED;
        EXPECT_EQ(makeImage(1, 1, {42}).saveTGA(place.c_str(), 24), isOpened ? -3 : -2);
        XMLElement("").parse("<last></error>");
        EXPECT_EQ(XMLElement("a").save(place, false), isOpened ? 7 : -1);
        EXPECT_EQ(XMLElement::getLastError() == "Unable to open target file '" + place + "'",
                  !isOpened);
        EXPECT_EQ(table.save(place), isOpened);
        EXPECT_FALSE(table.load(place) && table.save());
        EXPECT_EQ(Log::open(place.c_str(), true), isOpened);
        Log::info("nowhere");
        EXPECT_EQ(Log::open(place.c_str(), false), isOpened);
    }

    Configuration table{1};
};

} // namespace

TEST_F(DiskFaultTest, PlacesThatHoldNoFile)
{
    const std::string file = write("file", "<a></a>");
    std::filesystem::create_symlink("loop", path("loop"));
    std::filesystem::create_symlink("fifo", path("link"));
    const struct {
        std::string place;
        bool exists = false;
        Answer document = NOT_OPENED, picture = NOT_OPENED, saving = NOT_OPENED;
    } cases[] = {{path("no/file")},
                 {path(std::string(300, 'n'))},
                 {path(std::string(9000, '/') + "file")},
                 {file + "/x"},
                 {path("loop")},
                 {""},
                 {"/proc/none"}, // Nobody at all may create files there.
                 {path(""), false, NOT_READ, NOT_READ},
                 {"fifo", true, NOT_READ, NOT_READ},
                 {path("link"), true, NOT_READ, NOT_READ},
                 {"/dev/full", true, NOT_READ, OTHER_TYPE, NOT_WRITTEN}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.place.substr(0, 100));
        expectLoads(test.place, test.document, test.picture, test.exists);
        expectSaves(test.place, test.saving);
        EXPECT_EQ(File::fileExists(test.place), test.exists);
        EXPECT_FALSE(File::createDirectory(test.place));
        EXPECT_EQ(File::fileSize(test.place), 0u);
        if (!test.exists) {
            EXPECT_EQ(File::fileTime(test.place), 0u);
            EXPECT_EQ(File::deleteFile(test.place), test.place == path("loop"));
            EXPECT_FALSE(File::renameFile(path("no"), test.place));
        }
        EXPECT_EQ(read(file), "<a></a>");
    }
}

TEST_F(DiskFaultTest, FilesThatChangeBetweenCalls)
{
    std::filesystem::create_directory(path("folder"));
    const std::string file = path("folder/file"), other = path("other");
    XMLElement tree("a");
    Image image = makeImage(1, 1, {42});
    const auto expectSaved = [&](bool isFine) {
        EXPECT_EQ(table.save(), isFine);
        EXPECT_EQ(tree.save(file, false), isFine ? 7 : -1);
        EXPECT_EQ(image.saveTGA(file.c_str(), 32), isFine ? 1 : -2);
        EXPECT_EQ(File::fileSize(file), isFine ? 22u : 0u);
        EXPECT_EQ(File::renameFile(file, other), isFine);
    };
    EXPECT_TRUE(table.load(file));
    expectSaved(true);
    expectLoads(file, NOT_OPENED, NOT_OPENED, false);
    expectSaved(true);
    std::filesystem::remove(path("folder"));
    expectSaved(false);
    std::filesystem::create_directory(path("folder"));
    std::filesystem::create_directory(file);
    expectLoads(file, NOT_READ, NOT_READ, false);
    EXPECT_FALSE(table.save());
    std::filesystem::remove(file);
    expectSaved(true);
    // The log goes on in a file that has lost its name.
    EXPECT_TRUE(File::renameFile(m_LogFile, other));
    Log::info("moved");
    EXPECT_EQ(readRecords(other).back(), "I moved");
    EXPECT_TRUE(File::deleteFile(other));
    Log::info("deleted");
    Log::close();
    EXPECT_FALSE(File::fileExists(other) || File::fileExists(m_LogFile));
}

TEST_F(DiskFaultTest, DisksThatFillUpOnTheWay)
{
    constexpr std::size_t ROOM = 50000, LINE = sizeof "I 2000-01-01 00:00:00.000 ";
    // Leaves room for four letters of the next message.
    Log::info(std::string(ROOM - 2 * LINE - 3 - read(m_LogFile).size(), 'x'));
    takeRecords();
    XMLElement tree("a");
    tree.setValue(std::string(100000, 'x'));
    Image image(112, 112); // Its last block of bytes is cut.
    rlimit former = {};
    getrlimit(RLIMIT_FSIZE, &former);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {ROOM, former.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_EQ(image.saveTGA("file", 32), -3);
    EXPECT_EQ(File::fileSize("file"), ROOM);
    EXPECT_EQ(Image(1, 1).loadTGA("file"), -6);
    EXPECT_EQ(tree.save("file", false), 100007) << "as only opening is checked";
    EXPECT_EQ(File::fileSize("file"), ROOM);
    Log::info("torn within");
    Log::info("dropped");
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, handler);
    Log::info("there is room");
    Log::info("and more");
    EXPECT_EQ(takeRecords(), (TLines{"I torn", "I there is room", "I and more"}));
}

TEST_F(DiskFaultTest, PipesWhoseReaderGoes)
{
    constexpr unsigned long SIZE = 400; // Far more than a pipe takes at once.
    constexpr std::size_t READ_SIZE = 70000;
    const Image image = makeImage(SIZE, SIZE, Pixels(SIZE * SIZE));
    XMLElement tree("a");
    tree.setValue(std::string(SIZE * SIZE, 'x'));
    for (const bool isPicture : {true, false}) {
        const int reader = ::open("fifo", O_RDONLY | O_NONBLOCK);
        fcntl(reader, F_SETFL, 0);
        // Waits until something comes, and then for as long as something comes.
        std::future<std::size_t> reading = std::async(std::launch::async, [reader] {
            std::size_t size = 0;
            char bytes[1000];
            for (ssize_t count = 0; size < READ_SIZE && (size == 0 || count > 0);) {
                count = ::read(reader, bytes, sizeof bytes);
                size += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
            }
            ::close(reader);
            return size;
        });
        EXPECT_EQ(isPicture ? image.saveTGA("fifo", 24) : tree.save("fifo", false),
                  isPicture ? -3 : static_cast<int>(SIZE * SIZE) + 7);
        EXPECT_GE(reading.get(), READ_SIZE);
    }
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    EXPECT_EQ(sigismember(&blocked, SIGPIPE), 0);
}
