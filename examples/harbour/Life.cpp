// SPDX-License-Identifier: MIT
#include "Life.h"

#include <utility>

Life::Life(std::function<bool()> isChanged, std::function<bool()> save)
    : m_IsChanged(std::move(isChanged)), m_Save(std::move(save)),
      m_Running(*this, *this, "running", {{QUIT, "leaving"}, {ESCAPE, "leaving"}}),
      m_Intro(*this, m_Running, "intro",
              {{CONTINUE, "sailing"}, {CONSOLE, "console"}, {PAUSE, "sailing"}}),
      m_Sailing(*this, m_Running, "sailing", {{CONSOLE, "console"}, {PAUSE, "paused"}}),
      m_Paused(*this, m_Running, "paused",
               {{CONSOLE, "console"}, {PAUSE, "sailing"}, {CONTINUE, "sailing"}}),
      m_Console(*this, m_Running, "console", {{CONSOLE, "back"}, {ESCAPE, "back"}}),
      m_Leaving(*this, *this, "leaving",
                {{YES, "over"}, {NO, "over"}, {ESCAPE, "back"}, {CONSOLE, "console"}}),
      m_Over(*this, *this, "over", {})
{
    start();
}

void Life::Place::onEntry(qor::State* source)
{
    m_Life.m_Name = getName();
    // A console that was opened at the question closes to the state before.
    if (source->getName() != "leaving") {
        m_Source = source->getName();
    }
}

bool Life::Place::onEvent(unsigned int event)
{
    const auto found = m_Targets.find(event);
    if (found == m_Targets.end()) {
        return false;
    }
    std::string target = found->second == "back" ? m_Source : found->second;
    if (target == "leaving" && !m_Life.m_IsChanged()) {
        target = "over";
    } else if (getName() == "leaving" && event == YES && !m_Life.m_Save()) {
        target = "console"; // which shows why
    }
    return m_Life.transition(target);
}
