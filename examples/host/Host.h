// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "HostStateMachine.h"
#include "Picture.h"
#include "shared/Session.h"
#include "shared/Stats.h"

/// A session that works on any document, in a terminal or with a script.
class Host : public Session
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

    Mode getMode() const { return m_Mode; }
    HostStateMachine& getStates() { return m_States; }

    /// Returns the times that commands took.
    const Stats& getStats() const { return m_Stats; }

    std::string getPrompt() override;

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
    int getWidth() const override { return m_Width; }
    void setWidth(int columns) { m_Width = columns; }
    /// @}

    /// Draws the printed lines before the running command ends.
    /// @{
    void refresh() const;
    void setRefresher(std::function<void()> refresher) { m_Refresher = std::move(refresher); }
    /// @}

    /// @}

    using Session::addCommand;

    /// Constructs a command from the host, the description and the arguments, and registers it.
    template<class TCommand, class... TArguments>
    void addCommand(const Command::TDescription& description, TArguments&&... arguments)
    {
        Session::addCommand(
            std::make_unique<TCommand>(*this, description, std::forward<TArguments>(arguments)...));
    }

    /// Replaces the document by that of a file. After a failure the document is unchanged, and an
    /// error was printed. In the mode FULL_SCREEN this only starts the load, and `update` finishes
    /// it.
    /// @return false if the load failed or could not be started
    bool loadDocument(const std::string& filename);

    /// Whether the session ends after the current line. This drops unsaved changes;
    /// HostStateMachine::quit asks first.
    /// @{
    bool isQuitting() const { return m_IsQuitting; }
    void endSession() { m_IsQuitting = true; }
    /// @}

private:
    void addSettings();
    void runLine(const std::string& line) override;
    void documentFileChanged() override;

    const Mode m_Mode;
    int m_Width = 80;
    bool m_IsQuitting = false;
    std::map<unsigned int, TPictureRow> m_PictureRows; ///< by the number of the console's line
    std::function<void()> m_Refresher;                 ///< empty except on a full screen
    HostStateMachine m_States;
    Stats m_Stats;
};
