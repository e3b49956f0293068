// SPDX-License-Identifier: MIT
#include "shared/Session.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>
#include <utility>

#include <qor/File.h>
#include <qor/Thread.h>

#include "shared/Text.h"

namespace
{

constexpr const char* FAILURE = "Error: ";

// The codes of Console::putChar that are not printable characters.
constexpr char ENTER = 13;
constexpr char DELETE_LAST = 10;

/// Creates a directory and its missing parents, for this user alone, as the XDG base directory
/// standard requires.
void createPrivateDirectories(const std::filesystem::path& path)
{
    std::error_code error;
    if (path.empty() || std::filesystem::exists(path, error)) {
        return;
    }
    createPrivateDirectories(path.parent_path());
    if (std::filesystem::create_directory(path, error)) {
        std::filesystem::permissions(path, std::filesystem::perms::owner_all, error);
    }
}

/// Returns the position of the first byte that a console ignores; npos if there is none.
std::size_t findUntypable(const std::string& line)
{
    const auto found =
        std::find_if(line.begin(), line.end(), [](char byte) { return byte < ' ' || byte > '~'; });
    return found == line.end() ? std::string::npos : static_cast<std::size_t>(found - line.begin());
}

} // namespace

Session::Session(const std::string& program, int maxOutputLines)
    : m_LogCloser(), m_Program(program), m_Console(maxOutputLines), m_Settings(*this, program)
{
}

std::string Session::getUserFile(const std::string& name) const
{
    const std::filesystem::path path = qor::File::getUserDataDirectory(m_Program, false);
    createPrivateDirectories(path.parent_path());
    const std::string directory = qor::File::getUserDataDirectory(m_Program, true);
    return directory.empty() ? directory : qor::File::filePath(directory, name);
}

std::string Session::openLog(const std::string& filename)
{
    std::string file = filename.empty() ? getUserFile(m_Program + ".log") : filename;
    if (file.empty()) {
        m_Console.print(
            "Warning: the user's data directory cannot be created. Use --log FILE to log");
        return file;
    }
    if (!qor::Log::open(file.c_str(), true)) {
        m_Console.print("Warning: cannot write the log " + quote(file));
        return "";
    }
    m_Console.print("Log: " + file);
    return file;
}

void Session::addCommand(std::unique_ptr<Command> command)
{
    const Command::TDescription& description = command->getDescription();
    m_Console.addCommand(description.name, description.help, description.minParameters,
                         description.maxParameters, command.get());
    addDescription(description);
    m_Commands.push_back(std::move(command));
}

void Session::addCommand(const Command::TDescription& description,
                         FunctionCommand::TFunction function)
{
    addCommand(std::make_unique<FunctionCommand>(*this, description, std::move(function)));
}

void Session::addDescription(Command::TDescription description)
{
    description.group = m_Group;
    m_Descriptions.push_back(std::move(description));
}

const Command::TDescription* Session::findDescription(const std::string& name) const
{
    const auto found = std::find_if(
        m_Descriptions.begin(), m_Descriptions.end(),
        [&name](const Command::TDescription& description) { return description.name == name; });
    return found == m_Descriptions.end() ? nullptr : &*found;
}

void Session::enterLine(const std::string& line)
{
    m_CommandResult.reset();
    const unsigned int outputModCount = m_Console.getOutputModCount();
    if (m_Settings.getTable().getBoolean("log/commands")) {
        qor::Log::debug(toPrintable(getPrompt() + line));
    }
    runLine(line);
    m_Settings.takeVariables();
    if (!hasLineFailed(outputModCount)) {
        return;
    }
    m_HasFailed = true;
    if (!isUsageError()) {
        return;
    }
    const Command::TDescription* const description =
        findDescription(line.substr(0, line.find(' ', line.find_first_not_of(' '))));
    if (description) {
        m_Console.print("Usage: " + description->getUsage());
    }
}

void Session::runLine(const std::string& line)
{
    const std::size_t begin = line.find_first_not_of(' ');
    if (begin == std::string::npos) {
        return;
    }
    if (line[begin] == '#') {
        m_Console.print(line);
    } else {
        runCommand(line);
    }
}

void Session::runCommand(const std::string& line)
{
    const std::size_t untypable = findUntypable(line);
    if (untypable != std::string::npos) {
        m_Console.print(line);
        setCommandResult(fail("Cannot run the line: commands are ASCII text, but byte " +
                              std::to_string(untypable + 1) + " is not" +
                              (findDescription("edit") ? ". 'edit PATH' takes any value" : "")));
        return;
    }
    for (const char character : line) {
        m_Console.putChar(character);
    }
    m_Console.putChar(ENTER);
    // After std::bad_alloc, or in a console without its built-in commands, the line may remain.
    while (!m_Console.getCommandLine().empty()) {
        m_Console.putChar(DELETE_LAST);
    }
}

bool Session::hasLineFailed(unsigned int outputModCountBefore) const
{
    if (m_CommandResult) {
        return !*m_CommandResult;
    }
    if (m_Console.getOutputModCount() == outputModCountBefore) {
        return false;
    }
    std::vector<std::string> newest;
    m_Console.getOutput(newest, 1, 0);
    return !newest.empty() && isFailure(newest.front());
}

/// Returns whether the console has rejected the number of parameters of the last line.
bool Session::isUsageError() const
{
    std::vector<std::string> newest;
    m_Console.getOutput(newest, 1, 0);
    return !m_CommandResult && newest.front().find("parameters for command") != std::string::npos;
}

bool Session::fail(const std::string& reason)
{
    m_Console.print(FAILURE + reason);
    qor::Log::error(toPrintable(reason));
    return false;
}

bool Session::isFailure(const std::string& line)
{
    return line.rfind(FAILURE, 0) == 0;
}

bool Session::startLoading(const std::string& filename)
{
    if (!requireIdleLoader()) {
        return false;
    }
    if (!m_Loader.start(filename)) {
        return fail("Cannot load " + quote(filename) + ": the system cannot start a thread");
    }
    m_ProgressTime = qor::Thread::timer();
    return true;
}

bool Session::update()
{
    if (!m_Loader.isBusy()) {
        return true;
    }
    const Loader::TProgress progress = m_Loader.getProgress();
    showProgress(progress);
    return !progress.isDone || takeDocument();
}

bool Session::finishLoading()
{
    bool succeeded = true;
    while (m_Loader.isBusy()) {
        m_Loader.waitForProgress(getProgressInterval());
        succeeded = update();
    }
    return succeeded;
}

bool Session::requireIdleLoader()
{
    return !m_Loader.isBusy() || fail("Wait until " + quote(m_Loader.getFilename()) + " is loaded");
}

bool Session::saveDocument(const Document::TSaveOptions& options)
{
    if (!requireIdleLoader()) {
        return false;
    }
    int size = 0;
    const std::string error = m_Document.save(options, size);
    if (!error.empty()) {
        return fail(error);
    }
    const std::string filename = quote(m_Document.getFilename());
    documentFileChanged();
    qor::Log::info(toPrintable("Saved " + filename));
    m_Console.print("Saved " + filename + " (" + std::to_string(size) + " bytes)");
    return true;
}

unsigned int Session::getProgressInterval() const
{
    constexpr float MILLISECONDS = 1000.0f;
    const float seconds = m_Settings.getTable().getFloat("progress/interval");
    return static_cast<unsigned int>(seconds * MILLISECONDS);
}

/// Prints the progress of a load, at most once per interval.
void Session::showProgress(const Loader::TProgress& progress)
{
    const unsigned int now = qor::Thread::timer();
    if (progress.isDone || now - m_ProgressTime < getProgressInterval()) {
        return;
    }
    m_ProgressTime = now;
    std::string stage = "parsing";
    if (!progress.isParsing) {
        constexpr unsigned int HUNDRED = 100;
        stage = progress.size == 0
                    ? std::to_string(progress.bytesRead) + " bytes"
                    : std::to_string(progress.bytesRead * HUNDRED / progress.size) + " % read";
    }
    m_Console.print("Loading " + quote(m_Loader.getFilename()) + ": " + stage);
}

/// Replaces the document by the loaded one, or prints an error.
/// @return false if the document was not replaced
bool Session::takeDocument()
{
    Loader::TResult result = m_Loader.takeResult();
    const std::string& filename = m_Loader.getFilename();
    const std::string error =
        result.error.empty() ? acceptDocument(filename, result) : result.error;
    if (!error.empty()) {
        return fail(error);
    }
    m_Document.take(filename, std::move(result));
    m_Console.print("Loaded " + quote(filename));
    if (!m_Document.getUnsupported().empty()) {
        m_Console.print("Warning: " + m_Document.getUnsupported());
    }
    documentFileChanged();
    qor::Log::info(toPrintable("Loaded " + quote(filename)));
    return true;
}
