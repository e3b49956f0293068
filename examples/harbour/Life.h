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
    bool isIn(const std::string& name) { return getCurrentState()->getName() == name; }

private:
    using TTargets = std::map<unsigned int, std::string>;

    /// A state whose events lead to other states; "back" is the state before.
    struct TPlace : qor::State {
        TPlace(Life& machine, qor::State& parent, const std::string& name, TTargets eventTargets)
            : State(&machine, &parent, name), life(machine), targets(std::move(eventTargets))
        {
        }
        bool onEvent(unsigned int event) override { return life.leave(*this, event); }

        Life& life;
        const TTargets targets;
    };

    bool leave(const TPlace& place, unsigned int event);

    std::function<bool()> m_IsChanged, m_Save;
    std::string m_Previous = "sailing";
    TPlace m_Running, m_Intro, m_Sailing, m_Paused, m_Console, m_Leaving, m_Over;
};
