// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include <qor/XMLElement.h>

#include "shared/Loader.h"

/// The open document, its file, and whether it has unsaved changes.
class Document
{
public:
    /// How a document is saved.
    struct TSaveOptions {
        std::string filename; ///< empty: the document's file
        bool isFormatted = true;
        bool allowsLoss = false; ///< save even if content of the file is lost
    };

    qor::XMLElement& getRoot() { return m_Root; }
    const qor::XMLElement& getRoot() const { return m_Root; }

    /// Returns the file that the document was last loaded from or saved to; empty if there is none.
    const std::string& getFilename() const { return m_Filename; }

    /// Whether the document has unsaved changes.
    /// @{
    bool isChanged() const { return m_IsChanged; }
    void setChanged() { m_IsChanged = true; }
    /// @}

    /// Starts an empty document without a file.
    void create(const std::string& rootName);

    /// Replaces the document by a loaded one.
    void take(const std::string& filename, Loader::TResult&& result);

    /// Returns a description of the content of the document's file that saving would lose; empty if
    /// saving keeps all content.
    const std::string& getUnsupported() const { return m_Unsupported; }

    /// Saves the document. On success, the file becomes the document's file.
    /// @param size receives the number of bytes written
    /// @return an error message if saving failed or was refused; empty on success
    std::string save(const TSaveOptions& options, int& size);

private:
    std::string getRefusal(const std::string& filename, bool allowsLoss) const;
    std::string getReplacementRefusal(const std::string& filename) const;
    bool isOwnFile(const std::string& filename) const;

    qor::XMLElement m_Root{"document"};
    std::string m_Filename;
    std::filesystem::file_time_type m_WriteTime; ///< of the file when it was loaded or saved
    std::string m_Unsupported;
    bool m_IsChanged = false;
};
