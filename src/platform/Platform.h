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

/// A moment of the wall clock.
struct TWallClock {
    std::int64_t second; ///< since the start of 1970 in UTC
    int millisecond;
};

/// A date and a time of day in the user's zone; months and days are counted from 1.
struct TLocalTime {
    int year, month, day, hour, minute, second;
};

TWallClock getWallClock();

/// Tells local time without reading the system's zone anew at each call.
TLocalTime getLocalTime(std::int64_t second);

/// Milliseconds since the system started, modulo 2 to the power of 32. No setting of the wall clock
/// changes the count, and the time that the system was asleep is in it where the system knows that.
unsigned int getTickCount();

/// @}
/// @name Locks, events and threads
/// Objects are made by the function `create...` and belong to the caller until the function
/// `destroy...`. Too little memory shows as `std::bad_alloc`.
/// @{

/// A recursive lock.
struct TLock;

TLock* createLock();

/// The lock must be free.
void destroyLock(TLock* lock);

/// Waits until the calling thread holds the lock, which takes no time if it does already.
void acquire(TLock& lock);

/// Gives one level of the lock back. Does nothing for a thread that does not hold it.
void release(TLock& lock);

/// Makes the lock usable in forked child processes: a fork waits until no other thread holds the
/// lock, and in the child process no thread holds it. The lock may be destroyed as any other. Does
/// nothing on systems that do not fork processes.
void makeForkSafe(TLock& lock);

/// An event that resets itself. At first it is not set.
struct TEvent;

TEvent* createEvent();

/// No thread may be waiting.
void destroyEvent(TEvent* event);

/// Releases the thread that has waited longest; if there is none, sets the event.
void set(TEvent& event);

constexpr unsigned int NO_TIME_LIMIT = 0;

/// Takes one level of the lock from the calling thread, waits for the event, and takes the lock
/// back. The thread counts as waiting before anyone else can have the lock. It goes on when it is
/// released, at once if the event is set, which resets it, and at the latest after so many
/// milliseconds.
void waitForEvent(TEvent& event, TLock& lock, unsigned int timeLimit);

/// A thread, running or not.
struct TThread;

TThread* createThread();

/// Starts the thread, once, with the usual stack size: it calls `work(argument)` and ends.
/// @return false if the system refuses
bool startThread(TThread& thread, void (*work)(void* argument), void* argument);

/// Waits until the thread has ended. Any number of threads may do so, any number of times.
/// @return false at once for a thread that would wait for itself
bool join(TThread& thread);

/// Gives the object back. A thread that still runs goes on until its work is done.
void destroyThread(TThread* thread);

void yieldThread();
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

/// Returns the directory below which programs keep the user's data; empty if there is none.
std::string getUserDataDirectory();

/// @}
/// @name Files
/// @{

enum class PathKind { NONE, FILE, DIRECTORY };

/// Returns NONE for a path that does not exist or cannot be examined, FILE for anything that is not
/// a directory.
PathKind getPathKind(const std::string& path);

/// Who may use a new directory.
enum class Access {
    EVERYONE,  ///< as the process's file mode creation mask allows
    USER_ONLY, ///< the user alone
};

/// Creates one directory.
/// @return an error code, also if the path exists already
int createDirectory(const std::string& path, Access access);

/// An existing file, opened for reading. Opening it never waits for another program: a pipe that no
/// program has opened for writing reads as empty. Child processes do not inherit the handle.
class InputFile
{
public:
    enum class Kind {
        ATTRIBUTES, ///< only its time and size are queried
        BINARY,     ///< read byte by byte
        TEXT,       ///< read with the system's line ends turned into line feeds
    };

    /// Opens the file. A directory is an error.
    InputFile(const std::string& path, Kind kind);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    /// Returns whether there is something to read or to query. A directory is open where the system
    /// opens directories, but `getError` returns an error for it and reading it fails.
    bool isOpen() const;

    /// Returns the error code of the failed opening or reading; 0 if neither has failed.
    int getError() const { return m_Error; }

    /// Reads until the buffer is full or the file ends. A signal does not end it early.
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
/// at once, and a write to a pipe whose reader has closed it fails without a signal. Child
/// processes do not inherit the handle.
class OutputFile
{
public:
    enum class Kind {
        BINARY,      ///< truncated
        TEXT,        ///< truncated; line feeds become the system's line ends
        APPEND_TEXT, ///< as TEXT, but the file's content is kept
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
/// failure or a crash it has either the old content or the new one. Where the system cannot do that
/// without losing a property of the file, it is written in place. A write error is not reported.
/// @return false if the file cannot be opened for writing
bool replaceFile(const std::string& path, const char* bytes, std::size_t size);

/// @}
/// @name Desktop
/// @{

/// Shows an error in a box and waits until the user has closed it. Neither text is ever taken for
/// anything but text.
/// @return false if the user has not seen it for certain
bool showErrorBox(const char* text, const char* caption);

/// Opens an address with the program that the desktop has for it, and does not wait for that. An
/// address that the desktop could take for an option is not opened.
void openAddress(const char* address);

/// @}

} // namespace qor::platform
