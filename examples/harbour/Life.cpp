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

bool Life::leave(const TPlace& place, unsigned int event)
{
    const auto found = place.targets.find(event);
    if (found == place.targets.end()) {
        return false;
    }
    std::string target = found->second == "back" ? m_Previous : found->second;
    if (target == "leaving" && !m_IsChanged()) {
        target = "over";
    } else if (isIn("leaving") && event == YES && !m_Save()) {
        target = "console"; // which shows why
    }
    if (isIn("sailing") || isIn("paused")) {
        m_Previous = getCurrentState()->getName();
    }
    return transition(target);
}
