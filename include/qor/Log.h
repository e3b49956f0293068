#pragma once

#include <atomic>
#include <cstdarg>
#include <string>

#include "qor/Export.h"

// Headers of some systems make macros of these words. They are put back at the end.
#pragma push_macro("NONE")
#pragma push_macro("ERROR")
#pragma push_macro("INFO")
#pragma push_macro("DEBUG")
#undef NONE
#undef ERROR
#undef INFO
#undef DEBUG

namespace qor
{

class Mutex;

namespace platform
{
class OutputFile;
}

/// The process's one text log: a line of the file for each record.
///
/// A line is a prefix, a blank, the local time, a blank and the message:
///
///     X 2021-03-04 05:06:07.089 Log opened
///
/// The prefix is E, I or D for `error`, `info` and `debug`, and X for the log's own records, which
/// pass whatever the level. A line feed in a message goes into the file too.
///
/// While no log is open, all calls do nothing, so any code may log without asking. Any thread may
/// log, and the level may be set meanwhile; lines never mix. A line is taken by the system before
/// the call returns. A line that the system refuses, say for a full disk, is dropped silently, and
/// the next one is tried afresh. The host calls `open` before other threads log, and `close` after
/// they have stopped.
///
/// Nothing is thrown but `std::bad_alloc`, by `open` and for texts of more than about a thousand
/// characters.
///
/// Other programs may read, cut and move the file while the log is open. Programs that the host
/// starts do not get it.
///
/// @code
/// qor::Log::open("host.log", false);
/// qor::Log::setLevel(qor::Log::INFO);
/// qor::Log::info("%d documents in %.1f s", 12, 0.25); // I 2021-03-04 05:06:07.089 12 documents
/// ... qor::Log::error(std::string("100%"));                // any text, just as it stands
/// qor::Log::close();
/// @endcode
class QORTK_API Log
{
public:
    /// What passes: all records up to the level's number. Any number may be stored: a negative one
    /// lets nothing pass, a greater one everything.
    enum Level : int { NONE = 0, ERROR = 1, INFO = 2, DEBUG = 3 };

    Log() = delete;

    /// Opens the log and sets the level to DEBUG. A log that is open is closed first.
    /// @param path   the log file; null cannot be opened
    /// @param append whether what the file holds stays, with new lines behind it
    /// @return false if the file cannot be opened; the log is closed then
    static bool open(const char* path, bool append);

    /// Closes the log. The level stays until the next `open`.
    static void close();

    /// Sets the level, and records that for the four named ones. It may be called while no log is
    /// open, but `open` sets the level, too.
    static void setLevel(Level level);

    /// Writes a message if the level lets it pass; otherwise nothing is formatted.
    /// @param format as for printf, with numbers as in the classic locale. The message is cut to
    ///               1023 characters. Null is an empty message; a format that the system cannot
    ///               follow stands in the line itself.
    /// @{
    static void error(const char* format, ...) QORTK_PRINTF(1, 2);
    static void info(const char* format, ...) QORTK_PRINTF(1, 2);
    static void debug(const char* format, ...) QORTK_PRINTF(1, 2);
    /// @}

    /// Writes a text of any length, up to its first zero byte, if the level lets it pass. Nothing
    /// in it is a format.
    /// @{
    static void error(const std::string& text)
    {
        if (passes(ERROR)) {
            write('E', text.c_str());
        }
    }
    static void info(const std::string& text)
    {
        if (passes(INFO)) {
            write('I', text.c_str());
        }
    }
    static void debug(const std::string& text)
    {
        if (passes(DEBUG)) {
            write('D', text.c_str());
        }
    }
    /// @}

private:
    static bool passes(Level level)
    {
        return m_LogStream && m_LogLevel.load(std::memory_order_relaxed) >= level;
    }

    static void writeFormatted(char prefix, const char* format, va_list arguments);
    static void write(char prefix, const char* text);

    static std::atomic<Level> m_LogLevel;
    static platform::OutputFile* m_LogStream; ///< null: no log is open
    static Mutex* m_LogMutex;
};

} // namespace qor

#pragma pop_macro("NONE")
#pragma pop_macro("ERROR")
#pragma pop_macro("INFO")
#pragma pop_macro("DEBUG")
