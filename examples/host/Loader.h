#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <qor/Condition.h>
#include <qor/Mutex.h>
#include <qor/Task.h>
#include <qor/Thread.h>
#include <qor/XMLElement.h>

/// Loads a document on a thread of its own. All calls come from the thread that owns the loader.
/// Meanwhile nobody else may load, parse or save, for the sake of the library's one text about the
/// last failure.
class Loader : private qor::Task
{
public:
    struct TProgress {
        bool isDone = false;
        bool isParsing = false;
        std::uint64_t bytesRead = 0;
        std::uint64_t size = 0; ///< of the file; 0 if it cannot be told
    };

    struct TResult {
        qor::XMLElement document{""};
        int code = 0;       ///< as of XMLElement::load
        std::string reason; ///< if the code is negative
    };

    Loader() = default;
    Loader(const Loader&) = delete;
    Loader& operator=(const Loader&) = delete;

    /// Gives up a load that is under way, as soon as the thread looks.
    ~Loader() override;

    /// @return false if a document is being loaded, or if there is no thread to be had
    bool start(const std::string& filename);

    bool isBusy() const { return m_IsBusy; }
    const std::string& getFilename() const { return m_Filename; }

    TProgress getProgress();

    /// Waits until the thread has done a bit more, but not for longer than so many milliseconds.
    void waitForProgress(unsigned int timeOut);

    /// Ends a load that is done. The loader is ready for the next one then.
    TResult takeResult();

private:
    void run() override;
    std::optional<std::string> readSource();
    bool tellProgress(const TProgress& progress);

    bool m_IsBusy = false;
    std::string m_Filename;
    qor::Thread m_Thread;
    TResult m_Result; ///< the thread's own until it is done

    qor::Mutex m_Mutex; ///< guards what follows
    qor::Condition m_HasProgress;
    TProgress m_Progress;
    bool m_IsGivenUp = false;
};
