// SPDX-License-Identifier: MIT
#include "qor/State.h"

#include "qor/StateMachine.h"

namespace qor
{

State::State(StateMachine* stateMachine, State* parent, const std::string& name)
    : m_Name(name), m_StateMachine(stateMachine), m_ParentState(parent)
{
    // A machine registers itself, since its map is not constructed yet.
    if (stateMachine && stateMachine != this) {
        stateMachine->registerState(this);
    }
    // Last, because it cannot be undone if registering throws.
    if (parent) {
        parent->addChildState(this);
    }
}

State::~State() = default;

std::string State::getName() const
{
    return m_Name;
}

bool State::isChildStateOf(State* state)
{
    const State* ancestor = m_ParentState;
    while (ancestor && ancestor != state) {
        ancestor = ancestor->m_ParentState;
    }
    return ancestor != nullptr;
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
