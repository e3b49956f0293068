// SPDX-License-Identifier: MIT
#include "CheckCommands.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <qor/CRC32.h>
#include <qor/File.h>
#include <qor/MD5.h>
#include <qor/Thread.h>
#include <qor/XMLElement.h>

#include "Command.h"
#include "ElementFile.h"
#include "Host.h"
#include "shared/Text.h"

namespace
{

class ValidateCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        if (!m_Host.requireIdleLoader()) {
            return false;
        }
        qor::XMLElement templateRoot("");
        const std::string error = loadElement(tokens[1], templateRoot);
        if (!error.empty()) {
            return fail(error);
        }
        if (!m_Host.getDocument().getRoot().validate(&templateRoot)) {
            return fail("The document does not match " + quote(tokens[1]) + ": " +
                        qor::XMLElement::getLastError());
        }
        print("The document matches " + quote(tokens[1]));
        return true;
    }
};

std::string finishMD5(qor::Checksum& checksum)
{
    checksum.finalize();
    return checksum.getChecksumHex();
}

/// Returns the CRC-32 of zip archives: the complement of a checksum that started with all bits set.
std::string finishCRC32(qor::Checksum& checksum)
{
    const unsigned int crc = ~checksum.getChecksumInteger();
    constexpr int BITS_PER_DIGIT = 4;
    std::string text;
    for (int shift = 32 - BITS_PER_DIGIT; shift >= 0; shift -= BITS_PER_DIGIT) {
        text += "0123456789abcdef"[crc >> shift & 0xF];
    }
    return text;
}

class ChecksumCommand : public Command
{
public:
    using Finisher = std::string (*)(qor::Checksum& checksum);

    /// @param checksum the checksum that the command uses
    ChecksumCommand(Host& host, const TDescription& description,
                    std::unique_ptr<qor::Checksum> checksum, Finisher finish)
        : Command(host, description), m_Checksum(std::move(checksum)), m_Finish(finish)
    {
    }

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        m_Checksum->reset();
        if (tokens.size() == 1) {
            m_Host.getDocument().getRoot().calculateChecksum(*m_Checksum);
        } else if (!addFile(tokens[1])) {
            return fail("Cannot read " + quote(tokens[1]));
        }
        print(m_Finish(*m_Checksum));
        return true;
    }

    bool addFile(const std::string& filename)
    {
        constexpr std::size_t BLOCK_SIZE = std::size_t{1} << 20;
        std::error_code error;
        // Opening a pipe waits for a writer.
        if (!qor::File::fileExists(filename) || std::filesystem::is_fifo(filename, error)) {
            return false;
        }
        std::ifstream file(filename, std::ios::binary);
        std::vector<char> block(BLOCK_SIZE);
        std::uint64_t bytesRead = 0;
        unsigned int shown = qor::Thread::timer();
        while (file) {
            file.read(block.data(), static_cast<std::streamsize>(block.size()));
            const auto count = static_cast<unsigned int>(file.gcount());
            m_Checksum->addRaw(reinterpret_cast<const unsigned char*>(block.data()), count);
            bytesRead += count;
            if (qor::Thread::timer() - shown >= m_Host.getProgressInterval()) {
                shown = qor::Thread::timer();
                print(filename + ": " + std::to_string(bytesRead >> 20) + " MiB so far");
                m_Host.refresh();
            }
        }
        return file.eof();
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
