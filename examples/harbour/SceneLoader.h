// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <string>

#include <qor/Task.h>
#include <qor/Thread.h>

#include "Scene.h"

/// Loads a scene on a thread. While it is busy, no other code may load, save or validate XML: the
/// text of the last XML error belongs to the process.
class SceneLoader : private qor::Task
{
public:
    struct TResult {
        Scene scene;
        std::string error; ///< empty if the scene is loaded; else file, line, column and reason
    };

    /// @param pattern the template of all scenes; not owned
    explicit SceneLoader(const qor::XMLElement& pattern) : m_Pattern(pattern), m_IsDone(false) {}
    SceneLoader(const SceneLoader&) = delete;
    SceneLoader& operator=(const SceneLoader&) = delete;
    ~SceneLoader() override { m_Thread.wait(); }

    /// @return false if a scene is being loaded, or the system has no thread
    bool start(const std::string& filename);

    bool isBusy() const { return m_IsBusy; }
    bool isDone() const { return m_IsDone; }
    const std::string& getFilename() const { return m_Filename; }

    /// Waits for the end of the load. The loader can be started again after that.
    TResult takeResult();

private:
    void run() override;
    void fail(const std::string& source, std::size_t position, const std::string& reason);

    const qor::XMLElement& m_Pattern;
    std::string m_Filename;
    qor::Thread m_Thread;
    TResult m_Result; ///< belongs to the thread until it is done
    bool m_IsBusy = false;
    std::atomic<bool> m_IsDone;
};
