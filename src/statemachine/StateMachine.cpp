// SPDX-License-Identifier: MIT
#include "qor/StateMachine.h"

#include <algorithm>
#include <cstddef>

namespace qor
{

namespace
{

/// Returns the number of states from `state`, which may be null, to the top of its hierarchy.
std::size_t countUpwards(State* state)
{
    std::size_t count = 0;
    for (; state; state = state->getParentState()) {
        ++count;
    }
    return count;
}

/// Returns the state a number of levels above `state`.
State* climb(State* state, std::size_t levels)
{
    for (; levels > 0; --levels) {
        state = state->getParentState();
    }
    return state;
}

/// Returns the innermost state that encloses `source` and either encloses or is `target`; null if
/// there is none.
State* findCommonAncestor(State* source, State* target)
{
    State* ancestor = source->getParentState();
    State* other = target;
    const std::size_t depth = countUpwards(ancestor);
    const std::size_t otherDepth = countUpwards(other);
    ancestor = climb(ancestor, depth - std::min(depth, otherDepth));
    other = climb(other, otherDepth - std::min(depth, otherDepth));
    while (ancestor != other) {
        ancestor = ancestor->getParentState();
        other = other->getParentState();
    }
    return ancestor;
}

} // namespace

void StateMachine::EntryPath::findAncestor(State* source)
{
    m_Ancestor = findCommonAncestor(source, m_Target);
    std::size_t length = 0;
    if (m_Target != m_Ancestor) {
        State* state = m_Target->getParentState();
        for (; state != m_Ancestor; state = state->getParentState()) {
            ++length;
        }
    }
    collect(length);
}

void StateMachine::EntryPath::collectNext()
{
    // An assignment in a handler may have shortened the path.
    collect(std::min(m_Remaining, countUpwards(m_Target->getParentState())));
}

/// Collects the outermost states of the path.
/// @param length number of states that have not been taken
inline void StateMachine::EntryPath::collect(std::size_t length)
{
    m_Count = std::min(length, PIECE);
    m_Remaining = length - m_Count;
    State* state = climb(m_Target->getParentState(), m_Remaining);
    for (std::size_t i = 0; i < m_Count; ++i, state = state->getParentState()) {
        m_Piece[i] = state;
    }
}

StateMachine::StateMachine() : State(this, nullptr, "root"), m_CurrentState(this)
{
    registerState(this);
}

// m_IsChanging and m_IsStarting are not copied, because they describe running calls of one machine.

StateMachine::StateMachine(const StateMachine& other)
    : State(other), m_CurrentState(other.m_CurrentState), m_PendingState(other.m_PendingState),
      m_States(other.m_States)
{
}

StateMachine& StateMachine::operator=(const StateMachine& other)
{
    std::map<std::string, State*> states(other.m_States);
    State::operator=(other); // changes nothing if it throws
    m_States.swap(states);
    m_CurrentState = other.m_CurrentState;
    m_PendingState = other.m_PendingState;
    return *this;
}

StateMachine::~StateMachine() = default;

void StateMachine::registerState(State* state)
{
    if (state) {
        m_States.emplace(state->m_Name, state);
    }
}

void StateMachine::start()
{
    if (m_IsStarting) {
        return;
    }
    const ScopedFlag starting(m_IsStarting), changing(m_IsChanging);
    enterInitialStates(getInitialChildState(), this);
}

bool StateMachine::transition(const std::string& name)
{
    m_PendingState = findState(name);
    return m_PendingState != nullptr;
}

void StateMachine::setCurrentState(State* state)
{
    m_PendingState = state;
    carryOutTransition();
}

void StateMachine::processPendingTransition()
{
    carryOutTransition();
}

State* StateMachine::findState(const std::string& name)
{
    const auto found = m_States.find(name);
    return found != m_States.end() ? found->second : nullptr;
}

} // namespace qor
