#pragma once

#include <string>

#include <qor/State.h>
#include <qor/StateMachine.h>

class Host;

/// What the host is at: browsing a document, asking for a value, asking whether to save, or at its
/// end. The states know what a typed line means, and what stands in front of it.
class HostLife : public qor::StateMachine
{
public:
    explicit HostLife(Host& host);

    /// Asks for the value of an element, which is there.
    void edit(const std::string& path);

    /// Leaves, or asks first on a full screen with unsaved changes.
    void quit();

    /// Gives a typed line to the current state.
    /// @return false if that leaves it to the console
    bool takeLine(const std::string& line);

    /// @return what stands in front of the line that is being typed; empty for the usual prompt
    std::string getPrompt();

    /// @return the names of the states from the root to the current one
    std::string getPath();

private:
    enum Event : unsigned int { EDIT, QUIT, LINE };

    class LifeState : public qor::State
    {
    public:
        LifeState(HostLife& life, qor::State& parent, const std::string& name,
                  const std::string& prompt);

        const std::string& getPrompt() const { return m_Prompt; }

    protected:
        HostLife& m_Life;

    private:
        const std::string m_Prompt;
    };

    /// Around all others: here one can leave.
    class Running : public LifeState
    {
    public:
        using LifeState::LifeState;

    private:
        bool onEvent(unsigned int event) override;
    };

    class Browsing : public LifeState
    {
    public:
        using LifeState::LifeState;

    private:
        bool onEvent(unsigned int event) override;
    };

    class Editing : public LifeState
    {
    public:
        using LifeState::LifeState;

    private:
        void onEntry(qor::State* source) override;
        bool onEvent(unsigned int event) override;
    };

    class AskingToSave : public LifeState
    {
    public:
        using LifeState::LifeState;

    private:
        void onEntry(qor::State* source) override;
        bool onEvent(unsigned int event) override;
        bool answer(const std::string& line);
    };

    class Quitting : public LifeState
    {
    public:
        using LifeState::LifeState;

    private:
        void onEntry(qor::State* source) override;
    };

    Host& m_Host;
    std::string m_EditedPath;
    std::string m_Line; ///< the one that the event LINE is about
    Running m_Running;
    Browsing m_Browsing;
    Editing m_Editing;
    AskingToSave m_AskingToSave;
    Quitting m_Quitting;
};
