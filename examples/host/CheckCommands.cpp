// SPDX-License-Identifier: MIT
#include "CheckCommands.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <qor/CRC32.h>
#include <qor/MD5.h>
#include <qor/Thread.h>
#include <qor/XMLElement.h>

#include "HostCommand.h"
#include "shared/ElementFile.h"
#include "shared/FileChecksum.h"
#include "shared/SourceCheck.h"
#include "shared/Text.h"

namespace
{

/// Returns where an element is in the document's file; an empty text for a changed document.
std::string describePlace(const Document& document, const TElementNumbers& numbers)
{
    const std::string source = document.isChanged() ? "" : readText(document.getFilename());
    if (source.empty()) {
        return "";
    }
    const TTextPlace place = findPlace(source, findElement(source, numbers));
    return " (line " + std::to_string(place.line) + ", column " + std::to_string(place.column) +
           ")";
}

class ValidateCommand : public HostCommand
{
public:
    using HostCommand::HostCommand;

private:
    bool run(const TTokens& tokens) override
    {
        if (!m_Host.requireIdleLoader()) {
            return false;
        }
        qor::XMLElement templateRoot("");
        const std::string error = loadElement(tokens[1], templateRoot);
        if (!error.empty()) {
            return fail(error);
        }
        const Document& document = m_Host.getDocument();
        if (!document.getRoot().validate(&templateRoot)) {
            const TElementNumbers numbers = findMismatch(document.getRoot(), templateRoot);
            return fail("The document does not match " + quote(tokens[1]) + ": " +
                        qor::XMLElement::getLastError() + describePlace(document, numbers));
        }
        print("The document matches " + quote(tokens[1]));
        return true;
    }
};

/// Prints how much of a file was read, at most once per interval.
struct ProgressPrinter {
    void operator()(std::uint64_t bytesRead)
    {
        if (qor::Thread::timer() - shown >= host.getProgressInterval()) {
            shown = qor::Thread::timer();
            host.getConsole().print(filename + ": " + std::to_string(bytesRead >> 20) +
                                    " MiB so far");
            host.refresh();
        }
    }

    Host& host;
    const std::string& filename;
    unsigned int shown = qor::Thread::timer();
};

class ChecksumCommand : public HostCommand
{
public:
    using Finisher = std::string (*)(qor::Checksum& checksum);

    /// @param checksum the checksum that the command uses
    ChecksumCommand(Host& host, const TDescription& description,
                    std::unique_ptr<qor::Checksum> checksum, Finisher finish)
        : HostCommand(host, description), m_Checksum(std::move(checksum)), m_Finish(finish)
    {
    }

private:
    bool run(const TTokens& tokens) override
    {
        m_Checksum->reset();
        if (tokens.size() == 1) {
            m_Host.getDocument().getRoot().calculateChecksum(*m_Checksum);
        } else if (!addFile(*m_Checksum, tokens[1], ProgressPrinter{m_Host, tokens[1]})) {
            return fail("Cannot read " + quote(tokens[1]));
        }
        print(m_Finish(*m_Checksum));
        return true;
    }

    const std::unique_ptr<qor::Checksum> m_Checksum;
    const Finisher m_Finish;
};

} // namespace

void addCheckCommands(Host& host)
{
    host.beginGroup("Checks");
    constexpr unsigned int ALL_BITS = 0xFFFFFFFF;
    host.addCommand<ValidateCommand>(
        {"validate", "TEMPLATE", "Validate the document against a template file", 1, 1});
    host.addCommand<ChecksumCommand>(
        {"crc32", "[FILE]", "Show the CRC-32 of the document or of a file", 0, 1},
        std::make_unique<qor::CRC32>(ALL_BITS), finishCRC32);
    host.addCommand<ChecksumCommand>(
        {"md5", "[FILE]", "Show the MD5 of the document or of a file", 0, 1},
        std::make_unique<qor::MD5>(), finishMD5);
}
