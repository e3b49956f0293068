// SPDX-License-Identifier: MIT
#include "shared/Loader.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <new>
#include <system_error>
#include <utility>

#include <qor/File.h>

#include "shared/ElementFile.h"
#include "shared/SourceCheck.h"
#include "shared/Text.h"

namespace
{

constexpr std::size_t BLOCK_SIZE = std::size_t{1} << 20;

} // namespace

Loader::~Loader()
{
    m_Mutex.lock();
    m_IsCancelled = true;
    m_Mutex.unlock();
    m_Thread.wait();
}

bool Loader::start(const std::string& filename)
{
    if (m_IsBusy) {
        return false;
    }
    m_Filename = filename;
    m_Progress = {};
    m_IsBusy = m_Thread.start(this);
    return m_IsBusy;
}

Loader::TProgress Loader::getProgress()
{
    m_Mutex.lock();
    const TProgress progress = m_Progress;
    m_Mutex.unlock();
    return progress;
}

void Loader::waitForProgress(unsigned int timeOut)
{
    m_Mutex.lock();
    if (!m_Progress.isDone) {
        m_HasProgress.wait(m_Mutex, timeOut);
    }
    m_Mutex.unlock();
}

Loader::TResult Loader::takeResult()
{
    m_Thread.wait();
    m_IsBusy = false;
    return std::exchange(m_Result, TResult());
}

void Loader::run()
{
    try {
        load();
    } catch (const std::bad_alloc&) {
        m_Result.error = "Cannot load " + quote(m_Filename) + ": Out of memory";
    }
    TProgress progress;
    progress.isDone = true;
    reportProgress(progress);
}

void Loader::load()
{
    m_Result.writeTime = getWriteTime(m_Filename);
    const bool isRead = readSource();
    const std::string& source = m_Result.source;
    // For an unreadable file, XMLElement::load sets the last error.
    const int result =
        isRead ? m_Result.document.parse(source) : m_Result.document.load(m_Filename);
    if (result < 0) {
        m_Result.error = describeLoadError(m_Filename, source, result);
    } else if (isRead) {
        m_Result.unsupported = findUnsupported(source, static_cast<std::size_t>(result));
    }
}

/// Reads the file and reports the progress.
/// @return false if the file cannot be read; if the load was cancelled, the content is incomplete
bool Loader::readSource()
{
    std::error_code error;
    if (!qor::File::fileExists(m_Filename) || std::filesystem::is_fifo(m_Filename, error)) {
        // Opening a pipe waits for a writer; XMLElement::load does not wait.
        return false;
    }
    std::ifstream file(m_Filename, std::ios::binary);
    TProgress progress;
    const std::streamoff end = file.seekg(0, std::ios::end).tellg();
    progress.size = static_cast<std::uint64_t>(std::max<std::streamoff>(end, 0));
    file.clear();
    file.seekg(0);
    file.clear();
    std::string& source = m_Result.source;
    source.reserve(static_cast<std::size_t>(progress.size) + BLOCK_SIZE);
    while (file) {
        source.resize(source.size() + BLOCK_SIZE);
        file.read(&source[source.size() - BLOCK_SIZE], BLOCK_SIZE);
        source.resize(source.size() - BLOCK_SIZE + static_cast<std::size_t>(file.gcount()));
        progress.bytesRead = source.size();
        progress.isParsing = file.eof();
        if (!reportProgress(progress)) {
            source.clear();
            return true;
        }
    }
    if (!file.eof()) {
        source.clear();
    }
    return file.eof();
}

/// @return false if the load was cancelled
bool Loader::reportProgress(const TProgress& progress)
{
    m_Mutex.lock();
    m_Progress = progress;
    const bool isCancelled = m_IsCancelled;
    m_Mutex.unlock();
    m_HasProgress.signal();
    return !isCancelled;
}
