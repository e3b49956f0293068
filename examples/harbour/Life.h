// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>

#include <qor/StateMachine.h>

/// The states of the program.
class Life : public qor::StateMachine
{
public:
    enum Event : unsigned int { CONTINUE, CONSOLE, PAUSE, ESCAPE, QUIT, YES, NO };

    /// @param isChanged returns whether the scene has changes that are not saved
    /// @param save saves the scene; returns whether it succeeded
    Life(std::function<bool()> isChanged, std::function<bool()> save);

    /// Returns whether a state is the current one, such as "console".
    bool isIn(const std::string& name) const { return m_Name == name; }

private:
    /// A state whose events lead to other states; "back" is the state from which it was entered.
    class Place : public qor::State
    {
    public:
        using TTargets = std::map<unsigned int, std::string>;

        Place(Life& life, qor::State& parent, const std::string& name, TTargets targets)
            : State(&life, &parent, name), m_Life(life), m_Targets(std::move(targets))
        {
        }

    private:
        void onEntry(qor::State* source) override;
        bool onEvent(unsigned int event) override;

        Life& m_Life;
        const TTargets m_Targets;
        std::string m_Source = "sailing";
    };

    const std::function<bool()> m_IsChanged, m_Save;
    std::string m_Name; ///< of the current state
    Place m_Running, m_Intro, m_Sailing, m_Paused, m_Console, m_Leaving, m_Over;
};
