// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// A copy of a file that exists while the file is written. Some files are emptied before they are
/// written; if that fails, only the copy has the old content.
class FileCopy
{
public:
    /// Copies a regular file to a new file with `~` appended to its name or, if that is impossible,
    /// to the directory for temporary files. Does nothing if there is no regular file.
    /// @return an error message; empty on success
    std::string create(const std::string& filename);

    /// Removes the copy, unless the file has lost its old content.
    /// @param isSaved whether the file has its new content
    /// @return the name of the copy if it remains, else an empty text
    std::string remove(bool isSaved);

private:
    bool createIn(const std::string& folder);

    std::string m_Original;
    std::string m_Text; ///< content of the original
    std::string m_Copy; ///< empty without a copy
};
