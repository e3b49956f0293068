#include "HostLife.h"

#include "Host.h"

HostLife::HostLife(Host& host)
    : m_Host(host), m_Running(*this, *this, "running", ""),
      m_Browsing(*this, m_Running, "browsing", ""),
      m_Editing(*this, m_Running, "editing", "value>"),
      m_AskingToSave(*this, m_Running, "asking to save", "save, drop or stay?"),
      m_Quitting(*this, *this, "quitting", "")
{
    start();
}

void HostLife::edit(const std::string& path)
{
    m_EditedPath = path;
    sendEvent(EDIT);
}

void HostLife::quit()
{
    sendEvent(QUIT);
}

bool HostLife::takeLine(const std::string& line)
{
    m_Line = line;
    return sendEvent(LINE);
}

std::string HostLife::getPrompt()
{
    const qor::State* const state = getCurrentState();
    return state == this ? "" : static_cast<const LifeState*>(state)->getPrompt();
}

std::string HostLife::getPath()
{
    std::string path = getCurrentState()->getName();
    for (qor::State* state = getCurrentState()->getParentState(); state;
         state = state->getParentState()) {
        path.insert(0, state->getName() + " / ");
    }
    return path;
}

HostLife::LifeState::LifeState(HostLife& life, qor::State& parent, const std::string& name,
                               const std::string& prompt)
    : State(&life, &parent, name), m_Life(life), m_Prompt(prompt)
{
}

bool HostLife::Running::onEvent(unsigned int event)
{
    if (event != QUIT) {
        return false;
    }
    const Host& host = m_Life.m_Host;
    const bool asks = host.getMode() == Host::Mode::FULL_SCREEN && host.isChanged();
    return m_Life.transition(asks ? "asking to save" : "quitting");
}

bool HostLife::Browsing::onEvent(unsigned int event)
{
    return event == EDIT && m_Life.transition("editing");
}

void HostLife::Editing::onEntry(qor::State*)
{
    Host& host = m_Life.m_Host;
    const std::string& path = m_Life.m_EditedPath;
    host.getConsole().print("The value of '" + path + "' is '" +
                            host.getDocument().getValue(path, "") +
                            "'. Type another one; an empty line keeps it.");
}

bool HostLife::Editing::onEvent(unsigned int event)
{
    if (event != LINE) {
        return false;
    }
    Host& host = m_Life.m_Host;
    // The document may have been replaced since.
    qor::XMLElement* const element = host.getDocument().findChild(m_Life.m_EditedPath, false);
    if (!element) {
        host.noteResult(host.fail("The element is gone"));
    } else if (!m_Life.m_Line.empty()) {
        element->setValue(m_Life.m_Line);
        host.setChanged(true);
    }
    return m_Life.transition("browsing");
}

void HostLife::AskingToSave::onEntry(qor::State*)
{
    m_Life.m_Host.getConsole().print("There are unsaved changes. Type 'save', 'drop' or 'stay'.");
}

bool HostLife::AskingToSave::onEvent(unsigned int event)
{
    if (event == QUIT) {
        // Asked for once more, without an answer: that is one.
        return m_Life.transition("quitting");
    }
    return event == LINE && answer(m_Life.m_Line);
}

/// @return true
bool HostLife::AskingToSave::answer(const std::string& line)
{
    if (line == "drop") {
        return m_Life.transition("quitting");
    }
    if (line == "stay") {
        return m_Life.transition("browsing");
    }
    if (line == "save") {
        Host& host = m_Life.m_Host;
        const bool isSaved = host.saveDocument(host.getFilename(), true);
        host.noteResult(isSaved);
        return m_Life.transition(isSaved ? "quitting" : "browsing");
    }
    // Comes in once more, and so asks again.
    return m_Life.transition("asking to save");
}

void HostLife::Quitting::onEntry(qor::State*)
{
    m_Life.m_Host.leave();
}
