// SPDX-License-Identifier: MIT
#include "qor/Log.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <mutex>

#include "platform/Platform.h"
#include "qor/Mutex.h"

namespace qor
{

namespace
{

constexpr std::size_t MESSAGE_SIZE = 1024; ///< maximum of a formatted message with its zero byte
constexpr std::size_t TIMESTAMP_SIZE = 32; ///< maximum, for a year of any `int` value
constexpr std::size_t MAX_FRAME_SIZE = TIMESTAMP_SIZE + 16; ///< of a line without its message

/// Whether the last line of the file has no line feed, because a write failed. Guarded by the log's
/// mutex.
bool isLastLineIncomplete = false;

/// A line to write. The constructor allocates memory only for long lines. The appended text must
/// not exceed the size that was passed to it.
class LineBuffer
{
public:
    explicit LineBuffer(std::size_t size)
        : m_HeapBuffer(size > m_StackBuffer.size() ? new char[size] : nullptr),
          m_Begin(m_HeapBuffer ? m_HeapBuffer.get() : m_StackBuffer.data()), m_End(m_Begin)
    {
    }

    void append(char character) { *m_End++ = character; }
    void append(const char* text, std::size_t size) { m_End = std::copy_n(text, size, m_End); }

    const char* getBegin() const { return m_Begin; }
    std::size_t getSize() const { return static_cast<std::size_t>(m_End - m_Begin); }

private:
    std::array<char, MAX_FRAME_SIZE + MESSAGE_SIZE> m_StackBuffer;
    std::unique_ptr<char[]> m_HeapBuffer;
    char* m_Begin;
    char* m_End;
};

/// The text of a timestamp up to the decimal point of the seconds.
struct TTimestampCache {
    std::int64_t second = std::numeric_limits<std::int64_t>::min();
    std::size_t size = 0;
    std::array<char, TIMESTAMP_SIZE> text = {};
};

/// Returns the text for a second. Each thread formats it at most once per second.
const TTimestampCache& getTimestamp(std::int64_t second, Mutex& logMutex)
{
    thread_local TTimestampCache cache;
    if (cache.second != second) {
        // The C library locks its time zone data. A fork in another thread waits for the log's
        // mutex, so a child process never gets a copy of that lock in the locked state.
        const std::lock_guard<Mutex> guard(logMutex);
        const platform::TLocalTime time = platform::getLocalTime(second);
        const int size =
            std::snprintf(cache.text.data(), cache.text.size(), "%04d-%02d-%02d %02d:%02d:%02d.",
                          time.year, time.month, time.day, time.hour, time.minute, time.second);
        cache.size = static_cast<std::size_t>(size);
        cache.second = second;
    }
    return cache;
}

/// Appends the prefix, the timestamp and the blanks between them and the message.
void writePrefix(LineBuffer& line, char prefix, Mutex& logMutex)
{
    const platform::TWallClock now = platform::getWallClock();
    const TTimestampCache& timestamp = getTimestamp(now.second, logMutex);
    line.append(prefix);
    line.append(' ');
    line.append(timestamp.text.data(), timestamp.size);
    line.append(static_cast<char>('0' + now.millisecond / 100));
    line.append(static_cast<char>('0' + now.millisecond / 10 % 10));
    line.append(static_cast<char>('0' + now.millisecond % 10));
    line.append(' ');
}

} // namespace

std::atomic<Log::Level> Log::m_LogLevel = Log::DEBUG;
platform::OutputFile* Log::m_LogStream = nullptr;
Mutex* Log::m_LogMutex = nullptr;

bool Log::open(const char* path, bool append)
{
    close();
    m_LogMutex = new Mutex;
    platform::makeForkSafe(*m_LogMutex->m_Handle);
    if (!path) {
        return false;
    }
    using platform::OutputFile;
    auto stream = std::make_unique<OutputFile>(path, append ? OutputFile::Kind::APPEND_TEXT
                                                            : OutputFile::Kind::TEXT);
    if (!stream->isOpen()) {
        return false;
    }
    m_LogStream = stream.release();
    isLastLineIncomplete = false;
    m_LogLevel = DEBUG;
    write('X', "Log opened");
    return true;
}

void Log::close()
{
    if (m_LogStream) {
        write('X', "Log closed");
        delete m_LogStream;
        m_LogStream = nullptr;
    }
    delete m_LogMutex;
    m_LogMutex = nullptr;
}

void Log::setLevel(Level level)
{
    m_LogLevel = level;
    switch (level) {
    case NONE:
        write('X', "Log level set to NONE");
        break;
    case ERROR:
        write('X', "Log level set to ERROR");
        break;
    case INFO:
        write('X', "Log level set to INFO");
        break;
    case DEBUG:
        write('X', "Log level set to DEBUG");
        break;
    }
}

void Log::error(const char* format, ...)
{
    if (passes(ERROR)) {
        va_list arguments;
        va_start(arguments, format);
        writeFormatted('E', format, arguments);
        va_end(arguments);
    }
}

void Log::info(const char* format, ...)
{
    if (passes(INFO)) {
        va_list arguments;
        va_start(arguments, format);
        writeFormatted('I', format, arguments);
        va_end(arguments);
    }
}

void Log::debug(const char* format, ...)
{
    if (passes(DEBUG)) {
        va_list arguments;
        va_start(arguments, format);
        writeFormatted('D', format, arguments);
        va_end(arguments);
    }
}

void Log::writeFormatted(char prefix, const char* format, va_list arguments)
{
    std::array<char, MESSAGE_SIZE> message;
    if (!format) {
        message[0] = '\0';
    } else if (platform::formatText(message.data(), message.size(), format, arguments) < 0) {
        std::snprintf(message.data(), message.size(), "%s", format);
    }
    write(prefix, message.data());
}

void Log::write(char prefix, const char* text)
{
    if (!m_LogStream) {
        return;
    }
    const std::size_t length = std::strlen(text);
    LineBuffer line(MAX_FRAME_SIZE + length);
    line.append('\n'); // Ends an incomplete line in the file, if there is one.
    writePrefix(line, prefix, *m_LogMutex);
    line.append(text, length);
    line.append('\n');

    const std::lock_guard<Mutex> guard(*m_LogMutex);
    const std::size_t skipped = isLastLineIncomplete ? 0 : 1;
    const char* const begin = line.getBegin() + skipped;
    const std::size_t accepted = m_LogStream->write(begin, line.getSize() - skipped);
    if (accepted > 0) {
        isLastLineIncomplete = begin[accepted - 1] != '\n';
    }
}

} // namespace qor
