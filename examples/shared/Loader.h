// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include <qor/Condition.h>
#include <qor/Mutex.h>
#include <qor/Task.h>
#include <qor/Thread.h>
#include <qor/XMLElement.h>

/// Loads an XML document on its own thread. All member functions must be called from one other
/// thread. Until the result is taken, no other part of the program may load, parse, save or
/// validate XML, because qor::XMLElement has only one last error.
class Loader : private qor::Task
{
public:
    struct TProgress {
        bool isDone = false;
        bool isParsing = false;
        std::uint64_t bytesRead = 0;
        std::uint64_t size = 0; ///< of the file; 0 if it is unknown
    };

    struct TResult {
        qor::XMLElement document{""};
        std::string error;                         ///< an error message; empty on success
        std::string unsupported;                   ///< the result of findUnsupported
        std::string source;                        ///< the content of the file
        std::filesystem::file_time_type writeTime; ///< of the file before it was read
    };

    Loader() = default;
    Loader(const Loader&) = delete;
    Loader& operator=(const Loader&) = delete;

    /// Cancels a running load and waits for its thread.
    ~Loader() override;

    /// Starts to load a file.
    /// @return false if a load is running or the system cannot start a thread
    bool start(const std::string& filename);

    /// Returns whether a load was started and its result has not been taken.
    bool isBusy() const { return m_IsBusy; }

    const std::string& getFilename() const { return m_Filename; }

    TProgress getProgress();

    /// Waits for new progress, for at most `timeOut` milliseconds.
    void waitForProgress(unsigned int timeOut);

    /// Waits for the end of the load and returns its result. The next load can start then.
    TResult takeResult();

private:
    void run() override;
    void load();
    bool readSource();
    bool reportProgress(const TProgress& progress);

    bool m_IsBusy = false;
    std::string m_Filename;
    qor::Thread m_Thread;
    TResult m_Result; ///< belongs to the thread until it is done

    qor::Mutex m_Mutex; ///< guards the members below
    qor::Condition m_HasProgress;
    TProgress m_Progress;
    bool m_IsCancelled = false;
};
