// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <qor/Console.h>
#include <qor/Log.h>

#include "shared/Command.h"
#include "shared/Document.h"
#include "shared/Loader.h"
#include "shared/Settings.h"

/// What a program with a console, a document and settings shares with its commands.
class Session
{
public:
    /// @param program the name of the program and of its directory in the user's data
    /// @param maxOutputLines how many lines the console keeps; negative: all
    Session(const std::string& program, int maxOutputLines);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    virtual ~Session() = default;

    const std::string& getProgram() const { return m_Program; }

    /// Returns the path of a file in the user's data directory, after creating that directory.
    /// @return an empty path if the directory is unknown or cannot be created
    std::string getUserFile(const std::string& name) const;

    /// Opens the log and prints its file name, or a warning.
    /// @param filename the log file; empty for the one in the user's data directory
    /// @return the open file; empty if no file could be opened
    std::string openLog(const std::string& filename);

    qor::Console& getConsole() { return m_Console; }
    const qor::Console& getConsole() const { return m_Console; }
    Settings& getSettings() { return m_Settings; }
    const Settings& getSettings() const { return m_Settings; }
    Document& getDocument() { return m_Document; }
    const Document& getDocument() const { return m_Document; }

    /// Returns the text before the command line.
    virtual std::string getPrompt() { return "> "; }

    /// Returns the number of columns of the output.
    virtual int getWidth() const = 0;

    /// Runs an entered line.
    void enterLine(const std::string& line);

    /// Returns whether a line failed.
    bool hasFailed() const { return m_HasFailed; }

    /// Stores whether the current line succeeded.
    void setCommandResult(bool hasSucceeded) { m_CommandResult = hasSucceeded; }

    /// Prints "Error: " and the reason, and logs the reason.
    /// @return false
    bool fail(const std::string& reason);

    /// Returns whether a line of the console is one that fail() printed.
    static bool isFailure(const std::string& line);

    /// @name Commands
    /// @{

    /// Starts a group: the heading in the help of the commands that are added next.
    void beginGroup(const std::string& name) { m_Group = name; }

    /// Adds a command.
    /// @{
    void addCommand(std::unique_ptr<Command> command);
    void addCommand(const Command::TDescription& description, FunctionCommand::TFunction function);
    /// @}

    /// Adds the description of a command that every console has.
    void addDescription(Command::TDescription description);

    /// Returns the descriptions of all commands in the order of registration.
    const std::vector<Command::TDescription>& getDescriptions() const { return m_Descriptions; }

    /// Returns the description of a command, or null if it does not exist.
    const Command::TDescription* findDescription(const std::string& name) const;

    /// @}
    /// @name Files
    /// @{

    /// Starts to load a document. The program calls `update` until `isLoading` returns false.
    /// @return false after an error was printed
    bool startLoading(const std::string& filename);

    /// Returns whether a document is being loaded.
    bool isLoading() const { return m_Loader.isBusy(); }

    /// Shows the progress of a load. At its end, replaces the document, or prints the error; the
    /// document is unchanged then.
    /// @return false if loading failed
    bool update();

    /// Waits until a load ends, and shows its progress.
    /// @return false if loading failed
    bool finishLoading();

    /// Checks that no document is being loaded. During a load, only the loader may use the last
    /// error of qor::XMLElement, and the document must not change.
    /// @return false if a document is being loaded; an error was printed
    bool requireIdleLoader();

    /// Saves the document. After a failure, an error was printed.
    /// @return false if it was not saved
    bool saveDocument(const Document::TSaveOptions& options);

    /// Returns the milliseconds between two lines of progress.
    unsigned int getProgressInterval() const;

    /// @}

protected:
    /// Runs a line as a command. A line that begins with `#` is a comment.
    virtual void runLine(const std::string& line);

private:
    /// Checks a loaded document. If it is accepted, it replaces the present one.
    /// @return an error message; empty if the document is accepted
    virtual std::string acceptDocument(const std::string&, const Loader::TResult&) { return ""; }

    /// Called after another document was loaded, or the document was saved to a file.
    virtual void documentFileChanged() {}

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
    const std::string m_Program;
    Document m_Document;
    Loader m_Loader;
    unsigned int m_ProgressTime = 0; ///< the last time that progress was shown
    bool m_HasFailed = false;
    std::optional<bool> m_CommandResult; ///< empty if the line ran no Command
    std::string m_Group;
    std::vector<Command::TDescription> m_Descriptions;
    std::vector<std::unique_ptr<Command>> m_Commands;
    qor::Console m_Console; ///< refers to members above
    Settings m_Settings;    ///< refers to this session and its console
};
