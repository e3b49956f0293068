#include "qor/Log.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>

#include "platform/Platform.h"
#include "qor/Mutex.h"

namespace qor
{

namespace
{

constexpr std::size_t MESSAGE_SIZE = 1024; ///< of a formatted message, with the zero byte

/// The longest time stamp: a year may take all digits of an int.
constexpr std::size_t STAMP_SIZE = 32;

/// Whether the file's last line has no end, since the system did not take all of it. The log's
/// mutex guards it.
bool isLineTorn = false;

/// A time stamp up to the second, which is made once a second in each thread that logs.
struct TSecondText {
    std::int64_t second = std::numeric_limits<std::int64_t>::min();
    std::size_t size = 0;
    std::array<char, STAMP_SIZE> text = {};
};

const TSecondText& getSecondText(std::int64_t second)
{
    thread_local TSecondText kept;
    if (kept.second != second) {
        const platform::TLocalTime time = platform::getLocalTime(second);
        const int size =
            std::snprintf(kept.text.data(), kept.text.size(), "%04d-%02d-%02d %02d:%02d:%02d.",
                          time.year, time.month, time.day, time.hour, time.minute, time.second);
        kept.size = static_cast<std::size_t>(size);
        kept.second = second;
    }
    return kept;
}

/// Writes the line's beginning, up to the blank in front of the message.
/// @return behind its end
char* putHead(char* target, char prefix)
{
    const platform::TWallClock now = platform::getWallClock();
    const TSecondText& stamp = getSecondText(now.second);
    *target++ = prefix;
    *target++ = ' ';
    std::memcpy(target, stamp.text.data(), stamp.size);
    target += stamp.size;
    *target++ = static_cast<char>('0' + now.millisecond / 100);
    *target++ = static_cast<char>('0' + now.millisecond / 10 % 10);
    *target++ = static_cast<char>('0' + now.millisecond % 10);
    *target++ = ' ';
    return target;
}

class MutexHolder
{
public:
    explicit MutexHolder(Mutex& mutex) : m_Mutex(mutex) { m_Mutex.lock(); }
    MutexHolder(const MutexHolder&) = delete;
    MutexHolder& operator=(const MutexHolder&) = delete;
    ~MutexHolder() { m_Mutex.unlock(); }

private:
    Mutex& m_Mutex;
};

/// A message made of a format and its arguments.
class Message
{
public:
    Message(const char* format, va_list arguments)
    {
        if (!format) {
            m_Text[0] = '\0';
        } else if (platform::formatText(m_Text.data(), m_Text.size(), format, arguments) < 0) {
            std::snprintf(m_Text.data(), m_Text.size(), "%s", format);
        }
    }

    const char* getText() const { return m_Text.data(); }

private:
    std::array<char, MESSAGE_SIZE> m_Text;
};

} // namespace

std::atomic<Log::Level> Log::m_LogLevel = Log::DEBUG;
platform::OutputFile* Log::m_LogStream = nullptr;
Mutex* Log::m_LogMutex = nullptr;

bool Log::open(const char* path, bool append)
{
    close();
    m_LogMutex = new Mutex;
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
    isLineTorn = false;
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
    if (!passes(ERROR)) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    const Message message(format, arguments);
    va_end(arguments);
    write('E', message.getText());
}

void Log::info(const char* format, ...)
{
    if (!passes(INFO)) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    const Message message(format, arguments);
    va_end(arguments);
    write('I', message.getText());
}

void Log::debug(const char* format, ...)
{
    if (!passes(DEBUG)) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    const Message message(format, arguments);
    va_end(arguments);
    write('D', message.getText());
}

void Log::write(char prefix, const char* text)
{
    if (!m_LogStream) {
        return;
    }
    constexpr std::size_t HEAD_SIZE = STAMP_SIZE + 8;
    constexpr std::size_t END_SIZE = 1;
    const std::size_t length = std::strlen(text);
    const std::size_t size = 1 + HEAD_SIZE + length + END_SIZE;
    std::array<char, 1 + HEAD_SIZE + MESSAGE_SIZE + END_SIZE> usual;
    std::unique_ptr<char[]> unusual;
    if (length > MESSAGE_SIZE) {
        unusual.reset(new char[size]);
    }
    char* const line = unusual ? unusual.get() : usual.data();
    // Used only behind a line that has no end.
    line[0] = '\n';
    char* end = std::copy_n(text, length, putHead(line + 1, prefix));
    *end++ = '\n';

    const MutexHolder holder(*m_LogMutex);
    const char* const begin = isLineTorn ? line : line + 1;
    const std::size_t count = static_cast<std::size_t>(end - begin);
    const std::size_t taken = m_LogStream->write(begin, count);
    if (taken > 0) {
        isLineTorn = taken < count;
    }
}

} // namespace qor
