#include "qor/State.h"

#include "qor/StateMachine.h"

namespace qor
{

State::State(StateMachine* stateMachine, State* parent, const std::string& name)
    : m_Name(name), m_StateMachine(stateMachine), m_ParentState(parent)
{
    // A machine registers itself: at this moment it is not yet there.
    if (stateMachine && stateMachine != this) {
        stateMachine->registerState(this);
    }
    // Last, as nothing takes a state out again if memory is short.
    if (parent) {
        parent->addChildState(this);
    }
}

State::~State() = default;

std::string State::getName() const
{
    return m_Name;
}

State* State::getInitialChildState()
{
    return m_FirstChildState;
}

bool State::isChildStateOf(State* state)
{
    const State* around = m_ParentState;
    while (around && around != state) {
        around = around->m_ParentState;
    }
    return around != nullptr;
}

void State::onEntry(State* /*source*/) {}

bool State::onEvent(unsigned int /*event*/)
{
    return false;
}

void State::onExit(State* /*target*/) {}

void State::addChildState(State* state)
{
    if (m_LastChildState) {
        m_LastChildState->m_NextSiblingState = state;
    } else {
        m_FirstChildState = state;
    }
    m_LastChildState = state;
}

} // namespace qor
