// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <qor/Console.h>
#include <qor/Log.h>

#include "Command.h"
#include "Document.h"
#include "HostStateMachine.h"
#include "Loader.h"
#include "Picture.h"
#include "Settings.h"

/// The console, the document and the settings, which all commands share.
class Host
{
public:
    /// Before changes are lost, the host asks the user in the modes LINE_BY_LINE and FULL_SCREEN;
    /// in the mode SCRIPT the command fails.
    enum class Mode { SCRIPT, LINE_BY_LINE, FULL_SCREEN };

    /// A line of the console as it is shown.
    struct TOutputLine {
        std::string text;                     ///< without control characters
        const TPictureRow* picture = nullptr; ///< null: the line is text
        bool isError = false;
    };

    explicit Host(Mode mode);
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Returns the path of a file in the user's data directory, after creating that directory.
    /// @return an empty path if the directory is unknown or cannot be created
    static std::string getUserFile(const std::string& name);

    Mode getMode() const { return m_Mode; }
    qor::Console& getConsole() { return m_Console; }
    HostStateMachine& getStates() { return m_States; }
    Settings& getSettings() { return m_Settings; }
    const Settings& getSettings() const { return m_Settings; }
    Document& getDocument() { return m_Document; }
    const Document& getDocument() const { return m_Document; }

    /// Returns the text before the command line.
    std::string getPrompt();

    /// Runs an entered line. It is the answer if the host has asked a question, otherwise a
    /// command.
    void enterLine(const std::string& line);

    /// Returns whether a line failed.
    bool hasFailed() const { return m_HasFailed; }

    /// Stores whether the current line succeeded.
    void setCommandResult(bool hasSucceeded) { m_CommandResult = hasSucceeded; }

    /// Prints "Error: " and the reason, and logs the reason.
    /// @return false
    bool fail(const std::string& reason);

    /// @name Output
    /// @{

    /// Returns console lines, newest first.
    /// @param lineCount the maximum number of lines
    /// @param skipCount how many of the newest lines to skip
    std::vector<TOutputLine> getOutput(int lineCount, int skipCount) const;

    /// Prints a line of a picture.
    void printPicture(TPictureRow row);

    /// Returns the colors that the user wants and the output can show.
    ColorMode getColorMode() const;

    /// The number of columns of the output.
    /// @{
    int getWidth() const { return m_Width; }
    void setWidth(int columns) { m_Width = columns; }
    /// @}

    /// Draws the printed lines before the running command ends.
    /// @{
    void refresh() const;
    void setRefresher(std::function<void()> refresher) { m_Refresher = std::move(refresher); }
    /// @}

    /// @}
    /// @name Commands
    /// @{

    /// Starts a group: the heading in the help of the commands that are added next.
    void beginGroup(const std::string& name) { m_Group = name; }

    /// Constructs a command from the host, the description and the arguments, and registers it.
    template<class TCommand, class... TArguments>
    void addCommand(const Command::TDescription& description, TArguments&&... arguments)
    {
        registerCommand(
            std::make_unique<TCommand>(*this, description, std::forward<TArguments>(arguments)...));
    }

    /// Adds the description of a command that every console has.
    void addDescription(Command::TDescription description);

    /// Returns the descriptions of all commands in the order of registration.
    const std::vector<Command::TDescription>& getDescriptions() const { return m_Descriptions; }

    /// Returns the description of a command, or null if it does not exist.
    const Command::TDescription* findDescription(const std::string& name) const;

    /// @}
    /// @name Files
    /// @{

    /// Replaces the document by that of a file. After a failure the document is unchanged, and an
    /// error was printed. In the mode FULL_SCREEN this only starts the load, and `update` finishes
    /// it.
    /// @return false if the load failed or could not be started
    bool loadDocument(const std::string& filename);

    /// Saves the document. After a failure, an error was printed.
    /// @return false if it was not saved
    bool saveDocument(const Document::TSaveOptions& options);

    /// Returns whether a document is being loaded.
    bool isLoading() const { return m_Loader.isBusy(); }

    /// Shows the progress of a load, and replaces the document at its end.
    void update();

    /// Checks that no document is being loaded. During a load, only the loader may use the last
    /// error of qor::XMLElement, and the document must not change.
    /// @return false if a document is being loaded; an error was printed
    bool requireIdleLoader();

    /// Returns the milliseconds between two lines of progress.
    unsigned int getProgressInterval() const;

    /// @}
    /// @name Session
    /// @{

    qor::Log::Level getLogLevel() const { return m_LogLevel; }
    void setLogLevel(qor::Log::Level level);

    /// Whether the session ends after the current line. This drops unsaved changes;
    /// HostStateMachine::quit asks first.
    /// @{
    bool isQuitting() const { return m_IsQuitting; }
    void endSession() { m_IsQuitting = true; }
    /// @}

    /// @}

private:
    void registerCommand(std::unique_ptr<Command> command);
    void runLine(const std::string& line);
    void runCommand(const std::string& line);
    bool hasLineFailed(unsigned int outputModCountBefore) const;
    bool isUsageError() const;
    void showProgress(const Loader::TProgress& progress);
    bool takeDocument();

    /// Closes the log. As the first member it is destroyed last, after the loader's thread has
    /// ended.
    struct LogCloser {
        ~LogCloser() { qor::Log::close(); }
    };

    const LogCloser m_LogCloser;
    const Mode m_Mode;
    int m_Width = 80;
    Document m_Document;
    qor::Log::Level m_LogLevel = qor::Log::DEBUG;
    Loader m_Loader;
    unsigned int m_ProgressTime = 0; ///< the last time that progress was shown
    bool m_IsQuitting = false;
    bool m_HasFailed = false;
    std::optional<bool> m_CommandResult; ///< empty if the line ran none of the host's commands
    std::string m_Group;
    std::vector<Command::TDescription> m_Descriptions;
    std::vector<std::unique_ptr<Command>> m_Commands;
    qor::Console m_Console;                            ///< refers to members above
    std::map<unsigned int, TPictureRow> m_PictureRows; ///< by the number of the console's line
    std::function<void()> m_Refresher;                 ///< empty except on a full screen
    HostStateMachine m_States;
    Settings m_Settings; ///< refers to this host and its console
};
