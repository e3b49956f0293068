#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <qor/Console.h>
#include <qor/Log.h>
#include <qor/XMLElement.h>

#include "Command.h"
#include "HostLife.h"
#include "Loader.h"
#include "Settings.h"

/// What all commands share: the console and the document that is worked on.
class Host
{
public:
    /// What Console::putChar understands beyond printable characters.
    static constexpr char ENTER = 13;
    static constexpr char DELETE_LAST = 10;

    enum class Mode { SCRIPT, FULL_SCREEN };

    explicit Host(Mode mode);
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// @return the path of a file in the user's data directory; empty if there is no such place
    static std::string getUserFile(const std::string& name);

    Mode getMode() const { return m_Mode; }
    qor::Console& getConsole() { return m_Console; }
    std::string getPrompt();

    HostLife& getLife() { return m_Life; }

    Settings& getSettings() { return m_Settings; }
    const Settings& getSettings() const { return m_Settings; }

    /// Whether the output may have colours.
    bool usesColours() const;

    /// Reads the settings from a file, if there is one. If it cannot be read, they stay as they
    /// are, and an error is printed.
    /// @return whether it succeeded
    bool loadSettings(const std::string& filename);

    /// Makes a command and registers it; its constructor gets the host, the description and then
    /// the arguments.
    template<class TCommand, class... TArguments>
    void addCommand(const Command::TDescription& description, TArguments&&... arguments)
    {
        registerCommand(
            std::make_unique<TCommand>(*this, description, std::forward<TArguments>(arguments)...));
    }

    /// @return what is known of all commands, by name, those that the console brings along included
    const std::map<std::string, Command::TDescription>& getDescriptions() const;

    /// Gives one typed character to the console and, at the end of a line, looks how that went.
    void putChar(char character);

    /// @return whether any line failed so far
    bool hasFailed() const { return m_HasFailed; }

    /// Takes down how a command of the host went.
    void noteResult(bool succeeded) { m_Result = succeeded; }

    /// Prints "Error: " and the reason.
    /// @return false
    bool fail(const std::string& reason);

    qor::XMLElement& getDocument() { return m_Document; }
    const qor::XMLElement& getDocument() const { return m_Document; }

    /// Starts an empty document without a file.
    void newDocument(const std::string& name);

    /// Replaces the document by that of a file. On failure it stays, and the reason is printed. On
    /// a full screen this begins the work, and `update` goes on with it.
    /// @return whether it succeeded, or has begun
    bool loadDocument(const std::string& filename);

    /// Whether a document is being loaded. Nothing else may load, parse or save then.
    bool isLoading() const { return m_Loader.isBusy(); }

    /// Shows how far the loading is, and takes the document over when it is there.
    void update();

    /// Prints an error if a document is being loaded.
    /// @return false then
    bool mayUseFiles();

    /// Writes the document to a file. If that fails or there is no name, the reason is printed.
    /// @return whether it succeeded
    bool saveDocument(const std::string& filename, bool formatted);

    /// @return the file that the document was loaded from; empty if there is none
    const std::string& getFilename() const { return m_Filename; }

    /// Whether the document has changes that no file has.
    /// @{
    bool isChanged() const { return m_IsChanged; }
    void setChanged(bool isChanged) { m_IsChanged = isChanged; }
    /// @}

    /// The level of the log.
    /// @{
    qor::Log::Level getLogLevel() const { return m_LogLevel; }
    void setLogLevel(qor::Log::Level level);
    /// @}

    /// Whether the session is at its end. The host's life sees to that: see HostLife::quit.
    /// @{
    bool isQuitting() const { return m_IsQuitting; }
    void leave() { m_IsQuitting = true; }
    /// @}

    /// Shows at once what was printed, while a command is still at work.
    /// @{
    void refresh() const;
    void setRefresher(std::function<void()> refresher) { m_Refresher = std::move(refresher); }
    /// @}

    /// @return how many milliseconds to wait before progress is shown once more
    unsigned int getProgressInterval() const;

private:
    void registerCommand(std::unique_ptr<Command> command);
    void runLine();
    bool hasLineFailed(unsigned int outputModCountBefore) const;
    void showProgress(const Loader::TProgress& progress);
    bool takeDocument();

    /// Closes the log when all else has ended, the loader's thread too.
    struct TLogCloser {
        ~TLogCloser() { qor::Log::close(); }
    };

    const TLogCloser m_LogCloser;
    const Mode m_Mode;
    qor::XMLElement m_Document;
    std::string m_Filename;
    bool m_IsChanged = false;
    qor::Log::Level m_LogLevel = qor::Log::DEBUG;
    Loader m_Loader;
    unsigned int m_ProgressTime = 0; ///< when progress was shown last, as of Thread::timer
    bool m_IsQuitting = false;
    bool m_HasFailed = false;
    std::optional<bool> m_Result; ///< of the line's command, if one of the host ran
    std::map<std::string, Command::TDescription> m_Descriptions;
    std::map<std::string, std::unique_ptr<Command>> m_Commands;
    qor::Console m_Console;            ///< refers to members above
    std::function<void()> m_Refresher; ///< none in a script
    HostLife m_Life;
    Settings m_Settings; ///< refers to this host and its console
};
