// SPDX-License-Identifier: MIT
#include "shared/Document.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include <qor/File.h>

#include "shared/ElementFile.h"
#include "shared/Text.h"

void Document::create(const std::string& rootName)
{
    m_Root = qor::XMLElement(rootName);
    m_Filename.clear();
    m_Unsupported.clear();
    m_IsChanged = false;
}

void Document::take(const std::string& filename, Loader::TResult&& result)
{
    m_Root = std::move(result.document);
    m_Filename = filename;
    m_WriteTime = result.writeTime;
    m_Unsupported = std::move(result.unsupported);
    m_IsChanged = false;
}

std::string Document::save(const TSaveOptions& options, int& size)
{
    // A copy, since the member is assigned below.
    const std::string filename = options.filename.empty() ? m_Filename : options.filename;
    std::string error = getRefusal(filename, options.allowsLoss);
    if (!error.empty()) {
        return error;
    }
    const bool isOwn = isOwnFile(filename);
    error = saveElement(m_Root, filename, options.isFormatted, size);
    if (error.empty()) {
        m_Filename = filename;
        m_Unsupported.clear();
        m_IsChanged = false;
    }
    if (error.empty() || isOwn) {
        // Also after a failure, so that it can be saved again.
        m_WriteTime = getWriteTime(filename);
        // A file that was written in place may have lost its content.
        m_IsChanged = m_IsChanged || !error.empty();
    }
    return error;
}

/// Returns an error message if saving to a file must be refused, else an empty text.
std::string Document::getRefusal(const std::string& filename, bool allowsLoss) const
{
    if (filename.empty()) {
        return "Cannot save: the document has no file yet. Use 'save FILE'";
    }
    const std::string name = m_Root.getName();
    if (!name.empty() && name.front() == '!') {
        return "Cannot save " + quote(filename) +
               ": the document begins with a comment or a document type, which was read as its "
               "root. "
               "Only that would be saved";
    }
    return allowsLoss || !qor::File::fileExists(filename) ? "" : getReplacementRefusal(filename);
}

/// Returns an error message if saving would lose content of an existing file, else an empty text.
std::string Document::getReplacementRefusal(const std::string& filename) const
{
    const std::string refusal = "Cannot save over " + quote(filename) + ": ";
    const std::string advice = ". Save to another file, or use 'save!'";
    if (!isOwnFile(filename)) {
        return refusal + "it is not the document's file. Use 'save! FILE' to replace it";
    }
    if (!m_Unsupported.empty()) {
        return refusal + m_Unsupported + advice;
    }
    if (getWriteTime(filename) != m_WriteTime) {
        return refusal + "another program has changed it" + advice;
    }
    return "";
}

bool Document::isOwnFile(const std::string& filename) const
{
    std::error_code error;
    return filename == m_Filename || std::filesystem::equivalent(filename, m_Filename, error);
}
