// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include <qor/State.h>
#include <qor/StateMachine.h>

class Host;

/// Decides what an entered line means: a command, a new value, or an answer to a question. Each
/// state has its own prompt.
class HostStateMachine : public qor::StateMachine
{
public:
    /// Replaces or leaves the document, and returns whether that succeeded.
    using Action = std::function<bool()>;

    explicit HostStateMachine(Host& host);

    /// Asks for the value of an existing element.
    void edit(const std::string& path);

    /// Runs an action that drops the document. With unsaved changes it asks first, or fails in a
    /// script.
    /// @param command the name of the running command, for the message in a script; the command
    ///        that does not ask has this name and `!`
    /// @return false if the action failed or was refused
    bool dropDocument(const std::string& command, Action action);

    /// Leaves the host. With unsaved changes it asks first, or fails in a script.
    bool quit();

    /// Leaves the host without asking.
    bool quitNow() { return sendEvent(QUIT); }

    /// Returns whether the current state handles the next line. Otherwise the console does.
    bool takesLine() { return !getPrompt().empty(); }

    /// Sends an entered line to the current state.
    void enterLine(const std::string& line);

    /// Returns the prompt of the current state; empty for the console's prompt.
    std::string getPrompt();

    /// Returns the names of the states from the root to the current one.
    std::string getPath();

private:
    enum Event : unsigned int { EDIT, ASK, QUIT, LINE };

    class HostState : public qor::State
    {
    public:
        HostState(HostStateMachine& machine, qor::State& parent, const std::string& name,
                  const std::string& prompt);

        const std::string& getPrompt() const { return m_Prompt; }

    protected:
        HostStateMachine& m_Machine;

    private:
        const std::string m_Prompt;
    };

    /// Encloses all states except `Quitting`.
    class Running : public HostState
    {
    public:
        using HostState::HostState;

    private:
        bool onEvent(unsigned int event) override;
    };

    class Browsing : public HostState
    {
    public:
        using HostState::HostState;

    private:
        bool onEvent(unsigned int event) override;
    };

    class Editing : public HostState
    {
    public:
        using HostState::HostState;

    private:
        void onEntry(qor::State* source) override;
        bool onEvent(unsigned int event) override;
        bool setValue(const std::string& value);
    };

    class AskingToSave : public HostState
    {
    public:
        using HostState::HostState;

    private:
        void onEntry(qor::State* source) override;
        bool onEvent(unsigned int event) override;
    };

    class Quitting : public HostState
    {
    public:
        using HostState::HostState;

    private:
        void onEntry(qor::State* source) override;
    };

    Host& m_Host;
    std::string m_EditedPath;
    std::string m_Line;       ///< the line of the event LINE
    Action m_PendingAction;   ///< runs if the user confirms
    Action m_ConfirmedAction; ///< runs after the current event
    Running m_Running;
    Browsing m_Browsing;
    Editing m_Editing;
    AskingToSave m_AskingToSave;
    Quitting m_Quitting;
};
