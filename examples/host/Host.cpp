// SPDX-License-Identifier: MIT
#include "Host.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include <qor/File.h>
#include <qor/Thread.h>

#include "Terminal.h"
#include "shared/Text.h"

namespace
{

constexpr int KEEP_ALL_LINES = -1;
constexpr int SCREEN_LINES = 10000;
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

Host::Host(Mode mode)
    : m_LogCloser(), m_Mode(mode),
      m_Console(mode == Mode::FULL_SCREEN ? SCREEN_LINES : KEEP_ALL_LINES), m_States(*this),
      m_Settings(*this)
{
}

std::string Host::getUserFile(const std::string& name)
{
    const std::string program = "qorhost";
    const std::filesystem::path path = qor::File::getUserDataDirectory(program, false);
    createPrivateDirectories(path.parent_path());
    const std::string directory = qor::File::getUserDataDirectory(program, true);
    return directory.empty() ? directory : qor::File::filePath(directory, name);
}

std::string Host::getPrompt()
{
    const std::string prompt = m_States.getPrompt();
    return toPrintable(prompt.empty() ? m_Settings.getTable().getString("prompt") : prompt) + " ";
}

void Host::refresh() const
{
    if (m_Refresher) {
        m_Refresher();
    }
}

void Host::registerCommand(std::unique_ptr<Command> command)
{
    const Command::TDescription& description = command->getDescription();
    m_Console.addCommand(description.name, description.help, description.minParameters,
                         description.maxParameters, command.get());
    addDescription(description);
    m_Commands.push_back(std::move(command));
}

void Host::addDescription(Command::TDescription description)
{
    description.group = m_Group;
    m_Descriptions.push_back(std::move(description));
}

const Command::TDescription* Host::findDescription(const std::string& name) const
{
    const auto found = std::find_if(
        m_Descriptions.begin(), m_Descriptions.end(),
        [&name](const Command::TDescription& description) { return description.name == name; });
    return found == m_Descriptions.end() ? nullptr : &*found;
}

void Host::enterLine(const std::string& line)
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

void Host::runLine(const std::string& line)
{
    const std::size_t begin = line.find_first_not_of(' ');
    if (m_States.takesLine()) {
        m_Console.print(line);
        m_States.enterLine(line);
    } else if (begin == std::string::npos) {
        return;
    } else if (line[begin] == '#') {
        m_Console.print(line);
    } else {
        runCommand(line);
    }
}

void Host::runCommand(const std::string& line)
{
    const std::size_t untypable = findUntypable(line);
    if (untypable != std::string::npos) {
        m_Console.print(line);
        setCommandResult(fail("Cannot run the line: commands are ASCII text, but byte " +
                              std::to_string(untypable + 1) +
                              " is not. 'edit PATH' takes any value"));
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

bool Host::hasLineFailed(unsigned int outputModCountBefore) const
{
    if (m_CommandResult) {
        return !*m_CommandResult;
    }
    if (m_Console.getOutputModCount() == outputModCountBefore) {
        return false;
    }
    std::vector<std::string> newest;
    m_Console.getOutput(newest, 1, 0);
    return !newest.empty() && newest.front().rfind(FAILURE, 0) == 0;
}

/// Returns whether the console has rejected the number of parameters of the last line.
bool Host::isUsageError() const
{
    std::vector<std::string> newest;
    m_Console.getOutput(newest, 1, 0);
    return !m_CommandResult && newest.front().find("parameters for command") != std::string::npos;
}

bool Host::fail(const std::string& reason)
{
    m_Console.print(FAILURE + reason);
    qor::Log::error(toPrintable(reason));
    return false;
}

std::vector<Host::TOutputLine> Host::getOutput(int lineCount, int skipCount) const
{
    std::vector<std::string> texts;
    m_Console.getOutput(texts, lineCount, skipCount);
    std::vector<TOutputLine> lines;
    unsigned int number = m_Console.getOutputModCount() - static_cast<unsigned int>(skipCount);
    for (const std::string& text : texts) {
        const auto row = m_PictureRows.find(--number);
        lines.push_back({toPrintable(text), row == m_PictureRows.end() ? nullptr : &row->second,
                         text.rfind(FAILURE, 0) == 0});
    }
    return lines;
}

void Host::printPicture(TPictureRow row)
{
    const unsigned int number = m_Console.getOutputModCount();
    m_Console.print(formatShades(row));
    m_PictureRows[number] = std::move(row);
    if (m_PictureRows.size() > SCREEN_LINES) {
        m_PictureRows.erase(m_PictureRows.begin());
    }
}

ColorMode Host::getColorMode() const
{
    constexpr int NEVER = 0;
    constexpr int ALWAYS = 2;
    const int mode = m_Settings.getTable().getInteger("screen/colors");
    if (mode == NEVER || (mode != ALWAYS && !isOutputTerminal())) {
        return ColorMode::NONE;
    }
    const ColorMode colors = getTerminalColors();
    return mode == ALWAYS && colors == ColorMode::NONE ? ColorMode::PALETTE : colors;
}

bool Host::loadDocument(const std::string& filename)
{
    if (!requireIdleLoader()) {
        return false;
    }
    if (!m_Loader.start(filename)) {
        return fail("Cannot load " + quote(filename) + ": the system cannot start a thread");
    }
    m_ProgressTime = qor::Thread::timer();
    if (m_Mode == Mode::FULL_SCREEN) {
        return true;
    }
    while (!m_Loader.getProgress().isDone) {
        m_Loader.waitForProgress(getProgressInterval());
        showProgress(m_Loader.getProgress());
    }
    return takeDocument();
}

bool Host::saveDocument(const Document::TSaveOptions& options)
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
    m_Settings.getTable().setString("document/recent", m_Document.getFilename());
    qor::Log::info(toPrintable("Saved " + filename));
    m_Console.print("Saved " + filename + " (" + std::to_string(size) + " bytes)");
    return true;
}

void Host::update()
{
    if (!m_Loader.isBusy()) {
        return;
    }
    const Loader::TProgress progress = m_Loader.getProgress();
    showProgress(progress);
    if (progress.isDone) {
        takeDocument();
    }
}

bool Host::requireIdleLoader()
{
    return !m_Loader.isBusy() || fail("Wait until " + quote(m_Loader.getFilename()) + " is loaded");
}

unsigned int Host::getProgressInterval() const
{
    constexpr float MILLISECONDS = 1000.0f;
    const float seconds = m_Settings.getTable().getFloat("progress/interval");
    return static_cast<unsigned int>(seconds * MILLISECONDS);
}

/// Prints the progress of a load, at most once per interval.
void Host::showProgress(const Loader::TProgress& progress)
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

/// Replaces the document by the loaded one, or prints the loader's error.
/// @return false if loading failed
bool Host::takeDocument()
{
    Loader::TResult result = m_Loader.takeResult();
    if (!result.error.empty()) {
        return fail(result.error);
    }
    const std::string& filename = m_Loader.getFilename();
    m_Document.take(filename, std::move(result));
    m_Settings.getTable().setString("document/recent", filename);
    m_Console.print("Loaded " + quote(filename));
    if (!m_Document.getUnsupported().empty()) {
        m_Console.print("Warning: " + m_Document.getUnsupported());
    }
    qor::Log::info(toPrintable("Loaded " + quote(filename)));
    return true;
}

void Host::setLogLevel(qor::Log::Level level)
{
    m_LogLevel = level;
    qor::Log::setLevel(level);
}
