#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string>

/// What the library needs of the operating system, and all that it asks of it beyond the standard
/// library. Each folder beside this header implements all of it for one system, and the build takes
/// one of them.
///
/// A path is a byte string in the system's narrow character set; a path with a zero byte in it
/// names nothing. A result of type `int` that is called an error is 0 on success, and else the
/// system's own number of what went wrong, which `getErrorText` puts into words. All functions may
/// be called from any thread.
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

TWallClock getWallClock();

/// Converts seconds since the start of 1970 in UTC to local time. Each call notices a changed time
/// zone of the system, which can cost a system call.
TLocalTime getLocalTime(std::int64_t second);

/// Returns the milliseconds since the system started, modulo 2 to the power of 32. Changes of the
/// wall clock do not affect the count. It includes the time in which the system was suspended, where
/// the system counts that.
unsigned int getTickCount();

/// @}
/// @name Locks, events and threads
/// The caller owns an object from the function `create...` to the function `destroy...`. Out of
/// memory is reported as `std::bad_alloc` by the functions `create...` and by `startThread`.
/// @{

/// A recursive lock.
struct TLock;

TLock* createLock();

/// No thread may hold the lock.
void destroyLock(TLock* lock);

/// Waits until the calling thread holds the lock, and adds a level to it.
void acquire(TLock& lock);

/// Removes a level from the lock. Has no effect if the calling thread does not hold it.
void release(TLock& lock);

/// Makes the lock usable in forked child processes: a fork waits until no other thread holds the
/// lock, and in the child process no thread holds it. The lock is destroyed as any other. Does
/// nothing on systems that do not fork processes.
void makeForkSafe(TLock& lock);

/// An auto-reset event, not set at first.
struct TEvent;

TEvent* createEvent();

/// No thread may be waiting. A thread that was waiting may call it as soon as `waitForEvent` has
/// returned, even if the call of `set` that released it has not returned yet.
void destroyEvent(TEvent* event);

/// Releases exactly one of the waiting threads, the one that has waited longest where the system
/// keeps that order. If no thread is waiting, sets the event.
void set(TEvent& event);

constexpr unsigned int NO_TIME_LIMIT = 0;

/// Releases one level of the lock, waits for the event, and acquires the lock again. The thread
/// counts as waiting before another thread can acquire the lock. The wait ends when `set` releases
/// the thread, at once if the event is set, which resets it, or after the time limit in
/// milliseconds.
void waitForEvent(TEvent& event, TLock& lock, unsigned int timeLimit);

/// A thread, running or not.
struct TThread;

TThread* createThread();

/// Starts the thread, with the default stack size. It calls `work(argument)` and ends. The function
/// is called at most once per object.
/// @return false if the system refuses
bool startThread(TThread& thread, void (*work)(void* argument), void* argument);

/// Waits until the thread has ended. Any number of threads may call it, any number of times.
/// @return false at once if the thread itself calls it
bool join(TThread& thread);

/// Destroys the object. A running thread continues until its work is done.
void destroyThread(TThread* thread);

void yieldThread();

/// Suspends the calling thread, also if signal handlers run meanwhile.
void sleepThread(unsigned int milliseconds);

/// @}
/// @name Text
/// @{

/// Formats like C99's vsnprintf, always with the decimal point of the "C" locale and without digit
/// grouping, whatever locale the host has set.
/// @return the length of the whole text without the terminating zero, even where the buffer is
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

/// Returns NONE for a path that does not exist or cannot be examined, and FILE for everything that
/// is not a directory.
PathKind getPathKind(const std::string& path);

/// The users who may access a new directory.
enum class Access {
    EVERYONE,  ///< as the process's file mode creation mask permits
    USER_ONLY, ///< only the user of the process
};

/// Creates one directory.
/// @return an error code; not 0 if the path already exists
int createDirectory(const std::string& path, Access access);

/// An existing file, opened for reading. Opening does not wait for the other end of a pipe: a pipe
/// that no process has opened for writing reads as empty. It does wait until another process gives
/// up a lease on the file. Child processes do not inherit the handle, and it never takes the place
/// of a closed standard stream.
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

    /// Returns whether the file can be read or queried. On some systems a directory is open, too,
    /// but `getError` returns an error for it and `read` fails.
    bool isOpen() const;

    /// Returns the error code if opening or reading has failed, otherwise 0.
    int getError() const { return m_Error; }

    /// Reads until the buffer is full or the file ends, and continues after signals.
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
    [[maybe_unused]] int m_State = 0; ///< defined by each system
};

/// A file opened for writing, created if it does not exist. Opening a pipe without a reader fails
/// at once, and a write to a pipe whose reader has closed it fails without a signal. Opening waits
/// until another process gives up a lease on the file. Child processes do not inherit the handle,
/// and it never takes the place of a closed standard stream.
class OutputFile
{
public:
    enum class Kind {
        BINARY,      ///< truncated
        TEXT,        ///< truncated; line feeds are converted to the system's line ends
        APPEND_TEXT, ///< as TEXT, but not truncated
    };

    /// Opens the file. Text is always written at the current end of the file: other programs may
    /// read, append to, truncate or rename it while it is open.
    OutputFile(const std::string& path, Kind kind);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    bool isOpen() const;

    /// Passes bytes to the system, in one call if the system accepts them all.
    /// @return the number of bytes of `bytes` that were accepted; fewer than `size` on failure
    std::size_t write(const char* bytes, std::size_t size);

private:
    std::intptr_t m_Handle;
    int m_State = 0; ///< the kind of the file, in the system's own terms
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

/// Opens an address with the desktop's program for it, and does not wait for that program. An
/// address that the desktop could read as an option is not opened.
void openAddress(const char* address);

/// @}

} // namespace qor::platform
