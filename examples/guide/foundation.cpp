// SPDX-License-Identifier: MIT
// Reads the sizes of files on a second thread, and writes a log.
#include <deque>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include <qor/qor.h>

/// Reads the sizes of files. Another thread can take each size as soon as it is known.
class Survey : public qor::Task
{
public:
    explicit Survey(const std::vector<std::string>& files) : m_Files(files) {}

    void run() override
    {
        for (const std::string& file : m_Files) {
            // If a file cannot be opened, the library logs the reason.
            const unsigned int size = qor::File::fileSize(file);
            qor::Log::debug("%s: %u bytes", file.c_str(), size);
            m_Mutex.lock();
            m_Sizes.push_back(size);
            m_Mutex.unlock();
            m_IsMeasured.signal();
        }
    }

    /// Waits for the next result.
    unsigned int takeSize()
    {
        m_Mutex.lock();
        while (m_Sizes.empty()) {
            m_IsMeasured.wait(m_Mutex, 0);
        }
        const unsigned int size = m_Sizes.front();
        m_Sizes.pop_front();
        m_Mutex.unlock();
        return size;
    }

private:
    const std::vector<std::string> m_Files;
    qor::Mutex m_Mutex;
    qor::Condition m_IsMeasured;
    std::deque<unsigned int> m_Sizes; ///< guarded by the mutex
};

int main()
{
    const std::string directory = qor::File::standardizePath("survey\\");
    qor::Log::open("survey.log", false);
    qor::File::createDirectory(directory);
    std::ofstream(qor::File::filePath(directory, "north.txt")) << "pier";
    std::ofstream(qor::File::filePath(directory, "south.txt")) << "lighthouse";

    Survey survey({"survey/north.txt", "survey/south.txt", "survey/west.txt"});
    qor::Thread thread;
    if (!thread.start(&survey)) {
        return 1;
    }
    for (int i = 0; i < 3; ++i) {
        std::cout << "Size: " << survey.takeSize() << '\n';
    }
    thread.wait();

    qor::Log::setLevel(qor::Log::INFO);
    qor::Log::debug("Not written: %d files", 3); // filtered out before it is formatted
    qor::Log::info("Done in release " + qor::StringUtil::versionNumberToString(0x01020300));
    qor::Log::close();

    std::ifstream log("survey.log");
    for (std::string line; std::getline(log, line);) {
        std::cout << line.erase(2, 24) << '\n'; // without the time
    }
}
