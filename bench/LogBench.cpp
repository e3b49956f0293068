// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "qor/Log.h"

#ifdef HAVE_SPDLOG
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#endif

// Compares logging with a logger that also flushes each record, and with bare calls of write(). The
// records pass the level or are filtered out, and come from one thread or several.

namespace
{

const std::string TEXT = "The document was saved, and the next one is waiting to be loaded";

/// A directory for the log files, which is removed at the end.
class TemporaryDirectory
{
public:
    TemporaryDirectory()
    {
        std::string name = (std::filesystem::temp_directory_path() / "qortk-XXXXXX").string();
        if (!mkdtemp(name.data())) {
            std::abort();
        }
        m_Path = name;
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() { std::filesystem::remove_all(m_Path); }

    std::string file(const std::string& name) const { return (m_Path / name).string(); }

private:
    std::filesystem::path m_Path;
};

const TemporaryDirectory& getDirectory()
{
    static const TemporaryDirectory directory;
    return directory;
}

void openOwn(const benchmark::State&)
{
    qor::Log::open(getDirectory().file("own.log").c_str(), false);
}

void openOwnQuiet(const benchmark::State& state)
{
    openOwn(state);
    qor::Log::setLevel(qor::Log::ERROR);
}

void closeOwn(const benchmark::State&)
{
    qor::Log::close();
}

void writeText(benchmark::State& state)
{
    for (auto _ : state) {
        qor::Log::debug(TEXT);
    }
}

void writeFormatted(benchmark::State& state)
{
    int number = 0;
    for (auto _ : state) {
        qor::Log::debug("%d documents of %s, %.2f s", ++number, "harbour", 0.25);
    }
}

void writeBare(benchmark::State& state)
{
    const std::string line = "D 2021-03-04 05:06:07.089 " + TEXT + "\n";
    const int file = open(getDirectory().file("bare.log").c_str(),
                          O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0666);
    for (auto _ : state) {
        benchmark::DoNotOptimize(write(file, line.data(), line.size()));
    }
    close(file);
}

BENCHMARK(writeText)->Name("log/text/qortk")->Setup(openOwn)->Teardown(closeOwn);
BENCHMARK(writeBare)->Name("log/text/write");
BENCHMARK(writeFormatted)->Name("log/formatted/qortk")->Setup(openOwn)->Teardown(closeOwn);
BENCHMARK(writeText)->Name("filtered/text/qortk")->Setup(openOwnQuiet)->Teardown(closeOwn);
BENCHMARK(writeFormatted)
    ->Name("filtered/formatted/qortk")
    ->Setup(openOwnQuiet)
    ->Teardown(closeOwn);
BENCHMARK(writeText)
    ->Name("log/text, 2 threads/qortk")
    ->Setup(openOwn)
    ->Teardown(closeOwn)
    ->Threads(2)
    ->UseRealTime();
BENCHMARK(writeText)
    ->Name("log/text, 8 threads/qortk")
    ->Setup(openOwn)
    ->Teardown(closeOwn)
    ->Threads(8)
    ->UseRealTime();

#ifdef HAVE_SPDLOG

std::shared_ptr<spdlog::logger> peer;

void openPeer(const benchmark::State&)
{
    peer = spdlog::basic_logger_mt("peer", getDirectory().file("peer.log"), true);
    peer->set_level(spdlog::level::debug);
    peer->flush_on(spdlog::level::debug);
    peer->set_pattern("%L %Y-%m-%d %H:%M:%S.%e %v");
}

void openPeerQuiet(const benchmark::State& state)
{
    openPeer(state);
    peer->set_level(spdlog::level::err);
}

void closePeer(const benchmark::State&)
{
    spdlog::drop_all();
    peer.reset();
}

void writePeerText(benchmark::State& state)
{
    for (auto _ : state) {
        peer->debug(TEXT);
    }
}

void writePeerFormatted(benchmark::State& state)
{
    int number = 0;
    for (auto _ : state) {
        peer->debug("{} documents of {}, {:.2f} s", ++number, "harbour", 0.25);
    }
}

BENCHMARK(writePeerText)->Name("log/text/spdlog")->Setup(openPeer)->Teardown(closePeer);
BENCHMARK(writePeerFormatted)->Name("log/formatted/spdlog")->Setup(openPeer)->Teardown(closePeer);
BENCHMARK(writePeerText)->Name("filtered/text/spdlog")->Setup(openPeerQuiet)->Teardown(closePeer);
BENCHMARK(writePeerFormatted)
    ->Name("filtered/formatted/spdlog")
    ->Setup(openPeerQuiet)
    ->Teardown(closePeer);
BENCHMARK(writePeerText)
    ->Name("log/text, 2 threads/spdlog")
    ->Setup(openPeer)
    ->Teardown(closePeer)
    ->Threads(2)
    ->UseRealTime();
BENCHMARK(writePeerText)
    ->Name("log/text, 8 threads/spdlog")
    ->Setup(openPeer)
    ->Teardown(closePeer)
    ->Threads(8)
    ->UseRealTime();

#endif

} // namespace

BENCHMARK_MAIN();
