// SPDX-License-Identifier: MIT
#include "shared/FileCopy.h"

#include <filesystem>
#include <system_error>

#include "shared/ElementFile.h"

namespace fs = std::filesystem;

std::string FileCopy::create(const std::string& filename)
{
    std::error_code error;
    if (!fs::is_regular_file(filename, error)) {
        return "";
    }
    m_Original = filename;
    m_Text = readText(filename);
    // A directory in which no file can be created is a reason why files are emptied and written.
    if (createIn(fs::path(filename).parent_path().string()) ||
        createIn(fs::temp_directory_path(error).string())) {
        return "";
    }
    return "no copy of its old content could be made. Is the disk full?";
}

/// Makes the copy in a directory, under a name that no file has.
bool FileCopy::createIn(const std::string& folder)
{
    constexpr int MAX_NAMES = 9;
    std::string copy = (fs::path(folder) / fs::path(m_Original).filename()).string();
    std::error_code error;
    for (int i = 0; i < MAX_NAMES; ++i) {
        copy += '~';
        if (fs::symlink_status(copy, error).type() != fs::file_type::not_found) {
            continue;
        }
        if (fs::copy_file(m_Original, copy, error) && readText(copy) == m_Text) {
            m_Copy = copy;
            return true;
        }
        if (error != std::errc::file_exists) { // not created by another program
            fs::remove(copy, error);
            return false;
        }
    }
    return false;
}

std::string FileCopy::remove(bool isSaved)
{
    if (m_Copy.empty() || (!isSaved && readText(m_Original) != m_Text)) {
        return m_Copy;
    }
    std::error_code error;
    fs::remove(m_Copy, error);
    return "";
}
