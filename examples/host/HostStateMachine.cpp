// SPDX-License-Identifier: MIT
#include "HostStateMachine.h"

#include <utility>

#include "Host.h"
#include "shared/ElementPath.h"
#include "shared/Text.h"

HostStateMachine::HostStateMachine(Host& host)
    : m_Host(host), m_Running(*this, *this, "running", ""),
      m_Browsing(*this, m_Running, "browsing", ""),
      m_Editing(*this, m_Running, "editing", "value>"),
      m_AskingToSave(*this, m_Running, "asking to save", "save, drop or stay?"),
      m_Quitting(*this, *this, "quitting", "")
{
    start();
}

void HostStateMachine::edit(const std::string& path)
{
    m_EditedPath = path;
    sendEvent(EDIT);
}

bool HostStateMachine::dropDocument(const std::string& command, Action action)
{
    if (!m_Host.getDocument().isChanged()) {
        return action();
    }
    if (m_Host.getMode() == Host::Mode::SCRIPT) {
        return m_Host.fail("The document has unsaved changes. Save it, or use " +
                           quote(command + "!") + " to drop them");
    }
    m_PendingAction = std::move(action);
    return sendEvent(ASK);
}

bool HostStateMachine::quit()
{
    return dropDocument("quit", [this] { return quitNow(); });
}

void HostStateMachine::enterLine(const std::string& line)
{
    m_Line = line;
    sendEvent(LINE);
    if (m_ConfirmedAction) {
        const Action action = std::exchange(m_ConfirmedAction, nullptr);
        m_Host.setCommandResult(action());
    }
}

std::string HostStateMachine::getPrompt()
{
    const qor::State* const state = getCurrentState();
    return state == this ? "" : static_cast<const HostState*>(state)->getPrompt();
}

std::string HostStateMachine::getPath()
{
    std::string path = getCurrentState()->getName();
    for (qor::State* state = getCurrentState()->getParentState(); state;
         state = state->getParentState()) {
        path.insert(0, state->getName() + " / ");
    }
    return path;
}

HostStateMachine::HostState::HostState(HostStateMachine& machine, qor::State& parent,
                                       const std::string& name, const std::string& prompt)
    : State(&machine, &parent, name), m_Machine(machine), m_Prompt(prompt)
{
}

bool HostStateMachine::Running::onEvent(unsigned int event)
{
    if (event == ASK) {
        return m_Machine.transition("asking to save");
    }
    return event == QUIT && m_Machine.transition("quitting");
}

bool HostStateMachine::Browsing::onEvent(unsigned int event)
{
    return event == EDIT && m_Machine.transition("editing");
}

void HostStateMachine::Editing::onEntry(qor::State*)
{
    Host& host = m_Machine.m_Host;
    const ElementPath path(m_Machine.m_EditedPath);
    const qor::XMLElement* const element = path.find(host.getDocument().getRoot());
    host.getConsole().print("The value of " + quote(m_Machine.m_EditedPath) + " is " +
                            quote(element ? element->getValue() : "") +
                            ". Enter a new one; an empty line keeps it.");
}

bool HostStateMachine::Editing::onEvent(unsigned int event)
{
    if (event != LINE) {
        return false;
    }
    m_Machine.m_Host.setCommandResult(m_Machine.m_Line.empty() || setValue(m_Machine.m_Line));
    return m_Machine.transition("browsing");
}

bool HostStateMachine::Editing::setValue(const std::string& value)
{
    Host& host = m_Machine.m_Host;
    const std::string& path = m_Machine.m_EditedPath;
    qor::XMLElement* const element = ElementPath(path).find(host.getDocument().getRoot());
    if (!element) {
        return host.fail("Cannot edit " + quote(path) + ": the element no longer exists");
    }
    if (toPrintable(value) != value) {
        return host.fail("Cannot edit " + quote(path) +
                         ": the new value has control characters or is not valid UTF-8");
    }
    element->setValue(value);
    host.getDocument().setChanged();
    return true;
}

void HostStateMachine::AskingToSave::onEntry(qor::State*)
{
    m_Machine.m_Host.getConsole().print(
        "The document has unsaved changes. Enter 'save', 'drop' or 'stay'.");
}

bool HostStateMachine::AskingToSave::onEvent(unsigned int event)
{
    if (event != LINE) {
        return false;
    }
    Host& host = m_Machine.m_Host;
    const std::string& line = m_Machine.m_Line;
    if (line == "save") {
        host.setCommandResult(host.saveDocument({}));
    } else if (line != "drop" && line != "stay") {
        // Entering the state again asks again.
        return m_Machine.transition("asking to save");
    }
    if (line == "drop" || !host.getDocument().isChanged()) {
        m_Machine.m_ConfirmedAction = m_Machine.m_PendingAction;
    }
    m_Machine.m_PendingAction = nullptr;
    return m_Machine.transition("browsing");
}

void HostStateMachine::Quitting::onEntry(qor::State*)
{
    m_Machine.m_Host.endSession();
}
