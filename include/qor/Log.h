// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdarg>
#include <string>

#include "qor/Export.h"

// Some system headers define these words as macros. They are restored at the end.
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

/// The text log of the process: a file with one line per record.
///
/// A line has a prefix, a blank, the local time, a blank and the message:
///
///     X 2021-03-04 05:06:07.089 Log opened
///
/// The prefix is E, I or D for `error`, `info` and `debug`. It is X for the log's own records,
/// which are written at every level. While no log is open, all calls except `open` write nothing.
///
/// Each line is passed to the system before the call returns, so a crash of the program loses no
/// record. A line that the system does not accept, for example because the disk is full, is dropped
/// without a report. If the system accepts a part of a line, that part remains in the file. Logging
/// continues with the next record, on a line of its own. Other programs may read, truncate and
/// rename the file while the log is open. Child processes do not inherit the file descriptor.
///
/// @warning Messages are written unchanged, except that they end at a zero byte. A line feed in a
/// message starts a new line, which can look like another record, and a control character can
/// change what a terminal shows. Remove both from text of unknown origin before you log it. The
/// library's own records contain the paths and names of parameters that `File` and `Configuration`
/// get, also unchanged. Refuse such paths and names before you call these classes.
///
/// **Thread safety**: any thread may call `error`, `info`, `debug` and `setLevel`; lines do not
/// mix. Two lines that are written at nearly the same moment may be in the reverse order of their
/// times. Call `open` before other threads log, and `close` after they have stopped. A forked child
/// process may log even if another thread was logging during the fork.
///
/// **Error handling**: only `open` reports failures. The class throws nothing except
/// `std::bad_alloc`.
///
/// @code
/// qor::Log::open("host.log", false);
/// qor::Log::setLevel(qor::Log::INFO);
/// qor::Log::info("%d documents in %.1f s", 12, 0.25);
/// qor::Log::error(std::string("100% of the text is written unchanged"));
/// qor::Log::close();
/// @endcode
class QORTK_API Log
{
public:
    /// The records that are written. Other numbers are allowed: a negative level is the same as
    /// NONE, a level above 3 the same as DEBUG.
    enum Level : int {
        NONE = 0,  ///< no records of `error`, `info` and `debug`
        ERROR = 1, ///< records of `error`
        INFO = 2,  ///< records of `error` and `info`
        DEBUG = 3, ///< all records
    };

    Log() = delete;

    /// Opens the log and sets the level to DEBUG. Closes an open log first. An existing file keeps
    /// its permissions. On POSIX systems, everyone may read and write a new file as far as the file
    /// mode creation mask permits (0666 less the mask). On Windows, a new file inherits the
    /// permissions of its directory.
    /// @param path   path of the log file, which is created if it does not exist; null cannot be
    ///               opened
    /// @param append `true` appends to an existing file, `false` truncates it
    /// @return true on success; false if the file cannot be opened; no log is open then
    /// @throws std::bad_alloc if there is not enough memory; no log is open then
    static bool open(const char* path, bool append);

    /// Writes the record "Log closed" and closes the file. Does nothing while no log is open. The
    /// level does not change.
    static void close();

    /// Sets the level. If it is one of the four named levels, writes a record of the change. `open`
    /// sets the level to DEBUG again.
    /// @param level the new level
    static void setLevel(Level level);

    /// Formats a message and writes it if the level permits that. Otherwise the call takes only a
    /// comparison, and the arguments are not formatted. Messages are truncated to 1023 bytes.
    /// @param format format as for `printf`, which the compiler checks against the arguments.
    ///               Numbers are formatted as in the "C" locale, independent of the host's locale.
    ///               Null is an empty message. If the system cannot format the arguments, the
    ///               format is the message.
    /// @param ...    the arguments of the format
    /// @{
    static void error(const char* format, ...) QORTK_PRINTF(1, 2);
    static void info(const char* format, ...) QORTK_PRINTF(1, 2);
    static void debug(const char* format, ...) QORTK_PRINTF(1, 2);
    /// @}

    /// Writes a text unchanged if the level permits that.
    /// @param text the message, of any length, up to its first zero byte
    /// @throws std::bad_alloc if there is not enough memory for a text of more than 1000 bytes
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
    static platform::OutputFile* m_LogStream; ///< null while no log is open
    static Mutex* m_LogMutex;
};

} // namespace qor

#pragma pop_macro("NONE")
#pragma pop_macro("ERROR")
#pragma pop_macro("INFO")
#pragma pop_macro("DEBUG")
