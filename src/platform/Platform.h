// SPDX-License-Identifier: MIT
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string>

/// The interface between the library and the operating system. The library calls the system only
/// through this header and the standard library. Each subdirectory implements the whole header for
/// one system; the build selects one subdirectory.
///
/// A path is a byte string in the system's narrow character set. A path with a zero byte does not
/// name a file. An error code is 0 on success, otherwise the system's number of the error, which
/// `getErrorText` converts to a message. Any thread may call any function.
namespace qor::platform
{

/// @name Time
/// @{

/// A time of the wall clock.
struct TWallClock {
    std::int64_t second; ///< since the start of 1970 in UTC
    int millisecond;
};

/// A date and time of day in the user's time zone; months and days are counted from 1.
struct TLocalTime {
    int year, month, day, hour, minute, second;
};

/// Returns the current time.
TWallClock getWallClock();

/// Converts seconds since the start of 1970 in UTC to local time. Each call reads the time zone
/// again if it has changed, which can take a system call.
TLocalTime getLocalTime(std::int64_t second);

/// Returns the milliseconds since the system started, modulo 2 to the power of 32. Changes of the
/// wall clock do not affect the result. The time during which the system was suspended is included
/// if the system counts it.
unsigned int getTickCount();

/// @}
/// @name Locks, events and threads
/// The caller owns the objects that the functions `create...` return, and destroys them by the
/// functions `destroy...`. The functions `create...` and `startThread` throw `std::bad_alloc` if
/// there is not enough memory.
/// @{

/// A recursive lock.
struct TLock;

/// Creates a lock that no thread holds.
TLock* createLock();

/// No thread may hold the lock.
void destroyLock(TLock* lock);

/// Waits until no other thread holds the lock, and increments its recursion count.
void acquire(TLock& lock);

/// Decrements the recursion count of the lock. Has no effect if the calling thread does not hold
/// it.
void release(TLock& lock);

/// Makes the lock usable in forked child processes: a fork waits until no other thread holds the
/// lock, and in the child process no thread holds it. Has no effect on systems without `fork`.
void makeForkSafe(TLock& lock);

/// An auto-reset event.
struct TEvent;

/// Creates an event that is not set.

TEvent* createEvent();

/// No thread may be waiting. A thread that was waiting may call it as soon as `waitForEvent` has
/// returned, even if the call of `set` that released it has not returned yet.
void destroyEvent(TEvent* event);

/// Releases exactly one of the waiting threads. It is the one that has waited longest, if the
/// system maintains that order. If no thread is waiting, sets the event.
void set(TEvent& event);

constexpr unsigned int NO_TIME_LIMIT = 0;

/// Decrements the recursion count of the lock, waits for the event, and acquires the lock again.
/// The first two steps are atomic: if another thread acquires the lock and calls `set`, the calling
/// thread is waiting already. The wait ends when `set` releases the thread or the time limit has
/// passed. If the event is set, the function resets it and does not wait.
/// @param timeLimit milliseconds, or NO_TIME_LIMIT
void waitForEvent(TEvent& event, TLock& lock, unsigned int timeLimit);

/// A thread, running or not.
struct TThread;

/// Creates an object for a thread, without starting the thread.

TThread* createThread();

/// Starts the thread, with the default stack size. The thread calls `work(argument)` and ends. Call
/// this function at most once per object.
/// @return false if the system cannot start a thread
bool startThread(TThread& thread, void (*work)(void* argument), void* argument);

/// Waits until the thread has ended. Any number of threads may call it, any number of times.
/// @return false at once if the thread itself calls it
bool join(TThread& thread);

/// Destroys the object. A running thread continues until its work is done.
void destroyThread(TThread* thread);

void yieldThread();

/// Suspends the calling thread. Signal handlers do not shorten the time.
void sleepThread(unsigned int milliseconds);

/// @}
/// @name Text
/// @{

/// Formats as vsnprintf of C99 does, with the numbers of the "C" locale, independent of the host's
/// locale.
/// @return the length of the whole text without the terminating zero, even if the buffer is
///         shorter; negative if the format or an argument cannot be converted
int formatText(char* buffer, std::size_t size, const char* format, va_list arguments);

/// Returns the system's message for an error code of this header, on one line; empty if the system
/// has no message.
std::string getErrorText(int error);

/// Returns the C library's message for a value of `errno`.
std::string getErrnoText(int error);

/// @}
/// @name Environment
/// @{

/// Returns the value of an environment variable, owned by the environment; null if it is not set.
/// In a program that runs with other privileges than its caller (setuid, setgid), every variable
/// counts as not set.
const char* getEnvironmentVariable(const char* name);

/// Returns the directory in which programs create their directories for the user's data; empty if
/// it cannot be determined.
std::string getUserDataDirectory();

/// @}
/// @name Files
/// @{

enum class PathKind { NONE, FILE, DIRECTORY };

/// Returns the kind of a path: NONE if it does not exist or cannot be examined, DIRECTORY for a
/// directory, FILE for everything else.
PathKind getPathKind(const std::string& path);

/// The users who may access a new directory.
enum class Access {
    EVERYONE,  ///< as the process's file mode creation mask permits
    USER_ONLY, ///< only the user of the process
};

/// Creates one directory.
/// @return an error code; not 0 if the path already exists
int createDirectory(const std::string& path, Access access);

/// An existing file, opened for reading. A pipe without a writer is read as an empty file; opening
/// it does not wait for a writer. If another process has a lease on the file, opening waits until
/// the lease is released. Child processes do not inherit the handle. The handle is never one that a
/// closed standard stream had.
class InputFile
{
public:
    enum class Kind {
        ATTRIBUTES, ///< only its time and size are queried
        BINARY,     ///< read byte by byte
        TEXT,       ///< read with the system's line ends converted to line feeds
    };

    /// Opens the file. A directory is an error.
    InputFile(const std::string& path, Kind kind);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    /// Returns whether the file can be read or queried. On some systems this is true for a
    /// directory also, although `getError` returns an error and `read` fails.
    bool isOpen() const;

    /// Returns the error code if opening or reading has failed, otherwise 0.
    int getError() const { return m_Error; }

    /// Reads until the buffer is full or the file ends. Signals do not end it earlier.
    /// @return the number of bytes read; fewer than `size` at the end of the file or on failure
    std::size_t read(void* buffer, std::size_t size);

    /// Stores the last-write time in seconds since the start of 1970 in UTC.
    /// @return an error code
    int getWriteTime(std::int64_t& second) const;

    /// Stores the size in bytes.
    /// @return an error code
    int getSize(std::uint64_t& size) const;

private:
    std::intptr_t m_Handle;
    int m_Error = 0;
    [[maybe_unused]] int m_State = 0; ///< meaning defined by the system's implementation
};

/// A file opened for writing, created if it does not exist. Opening a pipe without a reader fails
/// at once. Writing to a pipe without a reader fails without a signal. If another process has a
/// lease on the file, opening waits until the lease is released. Child processes do not inherit the
/// handle. The handle is never one that a closed standard stream had.
class OutputFile
{
public:
    enum class Kind {
        BINARY,      ///< truncated
        TEXT,        ///< truncated; line feeds are converted to the system's line ends
        APPEND_TEXT, ///< not truncated; line feeds are converted as for TEXT
    };

    /// Opens the file. Text is always written at the current end of the file: other programs may
    /// read, append to, truncate or rename it while it is open.
    OutputFile(const std::string& path, Kind kind);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    bool isOpen() const;

    /// Passes bytes to the system, in one call if the system accepts them all.
    /// @return the number of bytes of `bytes` that the system accepted; fewer than `size` on
    ///         failure
    std::size_t write(const char* bytes, std::size_t size);

private:
    std::intptr_t m_Handle;
    int m_State = 0; ///< meaning defined by the system's implementation
};

/// Replaces the content of a file, or creates it. A regular file is replaced as a whole: after a
/// failure or a crash it has either the old content or the new one. The function waits until the
/// disk has stored the content. If the system cannot replace the file without losing one of its
/// properties, the file is written in place. A write error is not reported.
/// @return false if the file cannot be opened for writing
bool replaceFile(const std::string& path, const char* bytes, std::size_t size);

/// @}
/// @name Desktop
/// @{

/// Shows an error dialog and waits until the user has closed it. Neither text is interpreted as
/// markup or as a program's option.
/// @return false if the user may not have seen it
bool showErrorBox(const char* text, const char* caption);

/// Opens an address in the user's preferred program, and does not wait for that program. An address
/// that could be read as a program's option is ignored.
void openAddress(const char* address);

/// @}

} // namespace qor::platform
