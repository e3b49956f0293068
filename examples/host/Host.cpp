#include "Host.h"

#include <vector>

#include <qor/File.h>
#include <qor/Thread.h>
#include <unistd.h>

namespace
{

constexpr int KEEP_ALL_LINES = -1;
constexpr int SCREEN_LINES = 10000;
constexpr const char* FAILURE = "Error: ";

} // namespace

Host::Host(Mode mode)
    : m_LogCloser(), m_Mode(mode), m_Document("document"),
      m_Console(mode == Mode::FULL_SCREEN ? SCREEN_LINES : KEEP_ALL_LINES), m_Life(*this),
      m_Settings(*this)
{
    // The console has these two already, but does not give their help texts out.
    m_Descriptions["get"] = {"get", "VARIABLE", "Show a console variable", 1, 1};
    m_Descriptions["set"] = {"set", "VARIABLE VALUE", "Set a console variable", 2, 2};
}

std::string Host::getUserFile(const std::string& name)
{
    const std::string directory = qor::File::getUserDataDirectory("qorhost", true);
    return directory.empty() ? directory : qor::File::filePath(directory, name);
}

std::string Host::getPrompt()
{
    const std::string prompt = m_Life.getPrompt();
    return (prompt.empty() ? m_Settings.getTable().getString("prompt") : prompt) + " ";
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
    const std::string& name = description.name;
    // As in the console, the first one to take a name keeps it.
    if (!m_Descriptions.emplace(name, description).second) {
        return;
    }
    m_Console.addCommand(name, description.help, description.minParameters,
                         description.maxParameters, command.get());
    m_Commands.emplace(name, std::move(command));
}

const std::map<std::string, Command::TDescription>& Host::getDescriptions() const
{
    return m_Descriptions;
}

void Host::putChar(char character)
{
    m_Result.reset();
    if (character != ENTER) {
        m_Console.putChar(character);
        return;
    }
    const unsigned int outputModCount = m_Console.getOutputModCount();
    runLine();
    m_Settings.takeVariables();
    if (hasLineFailed(outputModCount)) {
        m_HasFailed = true;
    }
}

/// Gives the typed line to the state that asked for it, and else to the console.
void Host::runLine()
{
    const std::string line = m_Console.getCommandLine();
    if (m_Settings.getTable().getBoolean("log/commands")) {
        qor::Log::debug(getPrompt() + line);
    }
    if (m_Life.getPrompt().empty()) {
        m_Console.putChar(ENTER);
        return;
    }
    for (std::size_t i = 0; i < line.size(); ++i) {
        m_Console.putChar(DELETE_LAST);
    }
    m_Console.print(line);
    m_Life.takeLine(line);
}

bool Host::hasLineFailed(unsigned int outputModCountBefore) const
{
    if (m_Result) {
        return !*m_Result;
    }
    // An empty line prints nothing, and the newest line is of no concern then.
    if (m_Console.getOutputModCount() == outputModCountBefore) {
        return false;
    }
    std::vector<std::string> newest;
    m_Console.getOutput(newest, 1, 0);
    return !newest.empty() && newest.front().rfind(FAILURE, 0) == 0;
}

bool Host::fail(const std::string& reason)
{
    m_Console.print(FAILURE + reason);
    qor::Log::error(reason);
    return false;
}

bool Host::usesColours() const
{
    constexpr int NEVER = 0;
    constexpr int ALWAYS = 2;
    const int wish = m_Settings.getTable().getInteger("screen/colours");
    return wish == ALWAYS || (wish != NEVER && isatty(STDOUT_FILENO));
}

bool Host::loadSettings(const std::string& filename)
{
    return m_Settings.load(filename) ||
           fail("The settings in '" + filename + "' cannot be read; the log tells why");
}

void Host::newDocument(const std::string& name)
{
    m_Document = qor::XMLElement(name);
    m_Filename.clear();
    m_IsChanged = false;
}

bool Host::loadDocument(const std::string& filename)
{
    if (!mayUseFiles()) {
        return false;
    }
    if (!m_Loader.start(filename)) {
        return fail("The system has no thread to load with");
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

bool Host::saveDocument(const std::string& filename, bool formatted)
{
    if (!mayUseFiles()) {
        return false;
    }
    if (filename.empty()) {
        return fail("The document has no file yet; name one");
    }
    const int size = m_Document.save(filename, formatted);
    if (size < 0) {
        return fail(qor::XMLElement::getLastError());
    }
    m_IsChanged = false;
    qor::Log::info("Saved '" + filename + "'");
    m_Console.print("Saved '" + filename + "' (" + std::to_string(size) + " bytes)");
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

bool Host::mayUseFiles()
{
    return !m_Loader.isBusy() || fail("Wait until '" + m_Loader.getFilename() + "' is loaded");
}

unsigned int Host::getProgressInterval() const
{
    constexpr float MILLISECONDS = 1000.0f;
    const float seconds = m_Settings.getTable().getFloat("progress/interval");
    return static_cast<unsigned int>(seconds * MILLISECONDS);
}

/// Prints how far the loading is, unless that was done a moment ago or the end is here.
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
    m_Console.print("Loading '" + m_Loader.getFilename() + "': " + stage);
}

/// Ends a load.
/// @return whether it succeeded
bool Host::takeDocument()
{
    Loader::TResult result = m_Loader.takeResult();
    const std::string& filename = m_Loader.getFilename();
    if (result.code < 0) {
        // -1 may stand for the file as a whole, all else is a position in it.
        const std::string place =
            result.code == -1 ? "code -1" : "position " + std::to_string(-result.code);
        return fail(filename + ": " + result.reason + " (" + place + ")");
    }
    m_Document = std::move(result.document);
    m_Filename = filename;
    m_IsChanged = false;
    m_Settings.getTable().setString("document/recent", filename);
    m_Console.print("Loaded '" + filename + "'");
    qor::Log::info("Loaded '" + filename + "'");
    return true;
}

void Host::setLogLevel(qor::Log::Level level)
{
    m_LogLevel = level;
    qor::Log::setLevel(level);
}
