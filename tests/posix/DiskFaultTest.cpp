// SPDX-License-Identifier: MIT
// This program replaces read(), which fortified system headers define.
#undef _FORTIFY_SOURCE

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <numeric>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <unistd.h>
#ifdef QORTK_HAS_XATTR
#include <sys/xattr.h>
#endif

#include "Concurrency.h"
#include "LogReader.h"
#include "PixelData.h"
#include "posix/FileSizeLimit.h"
#include "qor/qor.h"

using qor::Configuration, qor::File, qor::Image, qor::Log, qor::XMLElement;

namespace
{

std::size_t readableBytes = std::string::npos; ///< number after which reading of files fails

} // namespace

/// Takes the place of the system's function in this program.
extern "C" ssize_t read(int descriptor, void* bytes, std::size_t size)
{
    if (readableBytes == 0) {
        errno = EIO;
        return -1;
    }
    const iovec part = {bytes, std::min(size, readableBytes)};
    const ssize_t count = ::readv(descriptor, &part, 1);
    if (readableBytes != std::string::npos) {
        readableBytes -= static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    return count;
}

namespace
{

/// Fills a text from a pipe, or a pipe from a text, slowly by the system's function `call`. Then
/// closes the pipe.
template<typename TCall>
std::string transfer(TCall call, int pipe, std::string text)
{
    for (std::size_t done = 0; done < text.size();) {
        const std::size_t size = std::min<std::size_t>(text.size() - done, 50000);
        done += static_cast<std::size_t>(std::max<ssize_t>(call(pipe, &text[done], size), 0));
        sleepMs(5);
    }
    ::close(pipe);
    return text;
}

/// The step that fails.
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

    /// Returns the sorted names of the files in a directory, including hidden ones.
    static TLines listFolder(const std::string& folder = ".")
    {
        TLines names;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    Configuration table{1};
};

} // namespace

TEST_F(DiskFaultTest, LoadsPicturesFromPipesAndFailingFiles)
{
    // Images of less than 32 columns are read in another way.
    for (const unsigned long width : {3ul, 32ul}) {
        Pixels pixels(width * 3);
        std::iota(pixels.begin(), pixels.end(), 1u);
        const int count = static_cast<int>(pixels.size());
        ASSERT_EQ(makeImage(width, 3, pixels).saveTGA("whole", 24), count);
        const std::string bytes = read("whole");
        const int pipe = ::open("fifo", O_RDWR | O_NONBLOCK);
        ASSERT_EQ(::write(pipe, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        Image whole, piped;
        EXPECT_EQ(whole.loadTGA("whole"), count);
        EXPECT_EQ(piped.loadTGA("fifo"), count);
        EXPECT_EQ(pixelsOf(piped), pixelsOf(whole));
        ::close(pipe);
        for (std::size_t size = 18; size < bytes.size(); ++size) {
            Image failed = makeImage(width, 3, pixels), truncated;
            readableBytes = size;
            EXPECT_EQ(failed.loadTGA("whole"), -6);
            readableBytes = std::string::npos;
            EXPECT_EQ(truncated.loadTGA(write("cut", bytes.substr(0, size)).c_str()), -6);
            EXPECT_EQ(pixelsOf(failed), pixelsOf(truncated)) << size;
        }
    }
}

TEST_F(DiskFaultTest, RejectsPathsWithoutRegularFile)
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
                 {"/proc/none"}, // Even the superuser cannot create files there.
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

TEST_F(DiskFaultTest, HandlesFilesChangedBetweenCalls)
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
}

TEST_F(DiskFaultTest, KeepsOldDocumentOnFullDisk)
{
    constexpr std::size_t ROOM = 50000;
    XMLElement tree("a");
    tree.setValue(std::string(100000, 'x'));
    Image image(112, 112); // Its last block of bytes is cut.
    const FileSizeLimit limit(ROOM);
    EXPECT_EQ(image.saveTGA("file", 32), -3);
    EXPECT_EQ(File::fileSize("file"), ROOM);
    EXPECT_EQ(Image(1, 1).loadTGA("file"), -6);
    const std::string picture = read("file");
    for (const std::string name : {"file", "new"}) {
        EXPECT_EQ(tree.save(name, false), 100007) << "as only opening is checked";
    }
    EXPECT_EQ(read("file"), picture);
    EXPECT_EQ(listFolder(), (TLines{"fifo", "file", "test.log"}));
}

TEST_F(DiskFaultTest, SurvivesPipesClosedByReader)
{
    constexpr unsigned long SIZE = 400; // More than a pipe's buffer.
    constexpr std::size_t READ_SIZE = 70000;
    const Image image = makeImage(SIZE, SIZE, Pixels(SIZE * SIZE));
    XMLElement tree("a");
    tree.setValue(std::string(SIZE * SIZE, 'x'));
    for (const bool isPicture : {true, false}) {
        const int reader = ::open("fifo", O_RDONLY | O_NONBLOCK);
        fcntl(reader, F_SETFL, 0);
        const std::future<std::string> reading =
            onThread([=] { return transfer(::read, reader, std::string(READ_SIZE, '\0')); });
        EXPECT_EQ(isPicture ? image.saveTGA("fifo", 24) : tree.save("fifo", false),
                  isPicture ? -3 : static_cast<int>(SIZE * SIZE) + 7);
    }
    sigset_t signals, blocked, pending;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    EXPECT_EQ(sigismember(&blocked, SIGPIPE), 0);
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    for (const bool isPending : {false, true}) {
        if (isPending) {
            pthread_kill(pthread_self(), SIGPIPE);
        }
        std::future<std::string> reader =
            onThread([] { return transfer(::read, ::open("fifo", O_RDONLY), "1"); });
        while (tree.save("fifo", false) < 0) {
        }
        EXPECT_EQ(reader.get(), "<");
        sigpending(&pending);
        EXPECT_EQ(sigismember(&pending, SIGPIPE), isPending);
    }
    int number = 0;
    sigwait(&signals, &number);
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

TEST_F(DiskFaultTest, ContinuesAfterSignals)
{
    XMLElement tree("a"), copy("");
    tree.setValue(std::string(200000, 'x'));
    struct sigaction action = {}, former = {};
    action.sa_handler = [](int) {}; // Without SA_RESTART, calls of the system are interrupted.
    sigaction(SIGALRM, &action, &former);
    const itimerval often = {{0, 1000}, {0, 1000}}, never = {};
    sigset_t alarms;
    sigemptyset(&alarms);
    sigaddset(&alarms, SIGALRM);
    const int pipe = ::open("fifo", O_RDWR | O_NONBLOCK);
    fcntl(pipe, F_SETFL, 0);
    // The threads at the other end, which are slow, must not get the signals.
    pthread_sigmask(SIG_BLOCK, &alarms, nullptr);
    std::future<std::string> copying =
        onThread([pipe] { return transfer(::read, dup(pipe), std::string(200007, '\0')); });
    pthread_sigmask(SIG_UNBLOCK, &alarms, nullptr);
    setitimer(ITIMER_REAL, &often, nullptr);
    EXPECT_EQ(tree.save("fifo", false), 200007);
    const std::string text = copying.get();
    EXPECT_EQ(text, tree.toString());
    pthread_sigmask(SIG_BLOCK, &alarms, nullptr);
    const std::future<std::string> giving =
        onThread([pipe, &text] { return transfer(::write, pipe, text); });
    pthread_sigmask(SIG_UNBLOCK, &alarms, nullptr);
    EXPECT_EQ(copy.load("fifo"), 200007);
    setitimer(ITIMER_REAL, &never, nullptr);
    giving.wait();
    sigaction(SIGALRM, &former, nullptr);
    EXPECT_EQ(copy.toString(), text);
}

TEST_F(DiskFaultTest, LeavesClosedStandardStreamsFree)
{
    const int copy = dup(STDERR_FILENO);
    ::close(STDERR_FILENO);
    Log::open("log", false);
    const bool isFree = fcntl(STDERR_FILENO, F_GETFD) < 0;
    dup2(copy, STDERR_FILENO);
    ::close(copy);
    EXPECT_TRUE(isFree);
    Log::info("text");
    EXPECT_EQ(readRecords("log").back(), "I text");
}

#ifdef F_SETLEASE
TEST_F(DiskFaultTest, WaitsForLeases)
{
    XMLElement tree("a");
    const std::string file = write("file", "<a></a>");
    const auto handler = std::signal(SIGIO, SIG_IGN);
    for (const bool isLoad : {false, true}) {
        const int holder = ::open(file.c_str(), isLoad ? O_RDWR : O_RDONLY);
        fcntl(holder, F_SETLEASE, isLoad ? F_WRLCK : F_RDLCK);
        std::future<void> releasing = onThread([holder] {
            sleepMs(30);
            ::close(holder);
        });
        EXPECT_EQ(isLoad ? tree.load(file) : tree.save(file, false), 7) << isLoad;
    }
    std::signal(SIGIO, handler);
}
#endif

TEST_F(DiskFaultTest, ReplacesSavedFileAndKeepsProperties)
{
    const XMLElement tree("b");
    std::filesystem::create_directory("folder");
    std::filesystem::create_symlink("file", "folder/link");
    std::filesystem::create_symlink("folder/link", "link");
    std::filesystem::create_symlink("folder/missing", "dangling");
    const std::string longName(255, 'n');
    for (const std::string name : {"file", "folder/file", "hard", longName.c_str()}) {
        chmod(write(name, "<old></old>").c_str(), 02640);
    }
    std::filesystem::create_hard_link("hard", "hard2");
    const struct {
        std::string path, file;
        bool isReplaced;
    } cases[] = {{"file", "file", true},        {path("file"), "file", true},
                 {"link", "folder/file", true}, {"hard", "hard2", false},
                 {longName, longName, true},    {"/dev/fd/37", "file", false}};
    for (const auto& test : cases) {
        const int fd = ::open("file", O_RDONLY);
        dup2(fd, 37);
        ::close(fd);
        struct stat before = {}, after = {};
        stat(test.file.c_str(), &before);
        EXPECT_EQ(tree.save(test.path, false), 7) << test.path;
        EXPECT_EQ(read(test.file), "<b></b>") << test.path;
        stat(test.file.c_str(), &after);
        EXPECT_EQ(before.st_ino != after.st_ino, test.isReplaced) << test.path;
        EXPECT_EQ(after.st_mode & 07777, 02640u) << test.path;
    }
    ::close(37);
#ifdef QORTK_HAS_XATTR
    char value[2] = "";
    if (setxattr("file", "user.test", "v", 1, 0) == 0) {
        EXPECT_EQ(tree.save("file", false), 7);
        EXPECT_EQ(getxattr("file", "user.test", value, 1), 1);
        EXPECT_STREQ(value, "v");
    }
#endif
    EXPECT_EQ(tree.save("dangling", false), 7);
    EXPECT_EQ(read("folder/missing"), "<b></b>");
    EXPECT_TRUE(std::filesystem::is_symlink("link") && std::filesystem::is_symlink("dangling"));
    EXPECT_EQ(listFolder("folder"), (TLines{"file", "link", "missing"}));
    EXPECT_EQ(listFolder().size(), 9u) << "no temporary file is left";
}
