#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
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

/// As std::vsnprintf, but numbers look as in the classic locale, whatever locale the host has set.
int formatText(char* buffer, std::size_t size, const char* format, va_list arguments);

/// @return the system's words for an error; empty if it has none
std::string getErrorText(int error);

/// @}
/// @name Files
/// @{

enum class PathKind { NONE, FILE, DIRECTORY };

/// @return NONE for what does not exist or cannot be looked at, FILE for all that is no directory
PathKind getPathKind(const std::string& path);

/// Creates one directory, with the permissions that are usual.
/// @return an error; it is one if there is something of that name
int createDirectory(const std::string& path);

/// An existing file, opened for reading. No other program can make the opening or the questions
/// wait, and the handle is not passed on to programs that the host starts.
class InputFile
{
public:
    /// A directory is no file.
    explicit InputFile(const std::string& path);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    /// @return why the file could not be opened; an error
    int getError() const { return m_Error; }

    /// Tells the last-write time in seconds since the start of 1970 in UTC.
    /// @return an error
    int getWriteTime(std::int64_t& second) const;

    /// Tells the size in bytes.
    /// @return an error
    int getSize(std::uint64_t& size) const;

private:
    std::intptr_t m_Handle;
    int m_Error = 0;
};

struct TFileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

using TFileStream = std::unique_ptr<std::FILE, TFileCloser>;

/// Opens an existing file for reading as std::fopen does in that mode, but waits for no other
/// program: a pipe that nobody writes into is empty. Programs that the host starts do not get it.
/// @return null if the file cannot be opened
TFileStream openToRead(const char* path, const char* mode);

/// A file opened for writing, which is created where there is none. A pipe that nobody reads cannot
/// be opened, and is not waited for. One whose reader has gone takes nothing, and no signal tells
/// of that. The handle is not passed on to programs that the host starts.
class OutputFile
{
public:
    enum class Kind {
        BINARY,    ///< replaced
        TEXT,      ///< replaced, with line feeds as the system's line ends, and written at its end
        MORE_TEXT, ///< the same, but what the file holds stays
    };

    /// A text is written at the file's end, wherever that is when it arrives: other programs may
    /// read, write, cut or rename the file meanwhile.
    OutputFile(const char* path, Kind kind);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    bool isOpen() const;

    /// Hands bytes to the system, in one piece if the system takes them so.
    /// @return how many were taken; fewer than `size` on failure
    std::size_t write(const char* bytes, std::size_t size);

private:
    std::intptr_t m_Handle;
    bool m_IsPipe = false;
};

/// @return the folder below which programs keep the user's data; empty if it cannot be told
std::string getUserDataFolder();

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
