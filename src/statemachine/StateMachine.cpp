#include "qor/StateMachine.h"

#include <algorithm>
#include <cstddef>

namespace qor
{

namespace
{

/// How many states there are from this one to the top.
std::size_t countUpwards(State* state)
{
    std::size_t count = 0;
    for (; state; state = state->getParentState()) {
        ++count;
    }
    return count;
}

} // namespace

/// Marks that the machine changes, to the end of a scope, also where a handler throws.
class StateMachine::Change
{
public:
    explicit Change(bool& isChanging) : m_IsChanging(isChanging) { m_IsChanging = true; }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;
    ~Change() { m_IsChanging = false; }

private:
    bool& m_IsChanging;
};

StateMachine::StateMachine() : State(this, nullptr, "root"), m_CurrentState(this)
{
    registerState(this);
}

// A copy is never in the midst of a change, even if its source is, and a machine in the midst of
// one remains so.

StateMachine::StateMachine(const StateMachine& other)
    : State(other), m_CurrentState(other.m_CurrentState), m_PendingState(other.m_PendingState),
      m_States(other.m_States)
{
}

StateMachine& StateMachine::operator=(const StateMachine& other)
{
    m_States = other.m_States;
    State::operator=(other);
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
    if (m_IsChanging) {
        return;
    }
    const Change change(m_IsChanging);
    descend(this, this);
}

State* StateMachine::getCurrentState()
{
    return m_CurrentState;
}

void StateMachine::transition(State* state)
{
    m_PendingState = state;
}

bool StateMachine::transition(const std::string& name)
{
    m_PendingState = findState(name);
    return m_PendingState != nullptr;
}

void StateMachine::setCurrentState(State* state)
{
    m_PendingState = state;
    processPendingTransition();
}

bool StateMachine::sendEvent(unsigned int event)
{
    bool handled = false;
    for (State* state = m_CurrentState; state && !handled; state = state->m_ParentState) {
        handled = state->onEvent(event);
    }
    processPendingTransition();
    return handled;
}

void StateMachine::processPendingTransition()
{
    if (!m_PendingState || m_IsChanging) {
        return;
    }
    const Change change(m_IsChanging);
    // What the handlers ask for takes the request's place, but not the target's.
    State* const target = m_PendingState;
    State* const source = m_CurrentState;
    State* const ancestor = findCommonAncestor(source, target);
    while (m_CurrentState && m_CurrentState != ancestor) {
        m_CurrentState->onExit(m_PendingState);
        m_CurrentState = m_CurrentState->m_ParentState;
    }
    enterBelow(ancestor, target, source);
    descend(m_CurrentState, source);
    m_PendingState = nullptr;
}

/// The innermost state that encloses the source and encloses or is the target; null for none.
State* StateMachine::findCommonAncestor(State* source, State* target)
{
    State* ancestor = source->m_ParentState;
    std::size_t ancestorCount = countUpwards(ancestor);
    std::size_t targetCount = countUpwards(target);
    for (; ancestorCount > targetCount; --ancestorCount) {
        ancestor = ancestor->m_ParentState;
    }
    for (; targetCount > ancestorCount; --targetCount) {
        target = target->m_ParentState;
    }
    while (ancestor != target) {
        ancestor = ancestor->m_ParentState;
        target = target->m_ParentState;
    }
    return ancestor;
}

/// Enters the states inside an enclosing one, or inside none, down to the target. They are linked
/// upwards only, so those of a long way are collected in several goes.
void StateMachine::enterBelow(State* ancestor, State* target, State* source)
{
    constexpr std::size_t SIZE = 32;
    State* states[SIZE];
    while (ancestor != target) {
        std::size_t count = 0;
        for (State* state = target; state != ancestor; state = state->m_ParentState) {
            states[count++ % SIZE] = state;
        }
        const std::size_t innermost = count - std::min(count, SIZE);
        while (count > innermost) {
            --count;
            enter(states[count % SIZE], source);
        }
        ancestor = states[innermost % SIZE];
    }
}

void StateMachine::descend(State* state, State* source)
{
    for (State* child = state->getInitialChildState(); child;
         child = m_CurrentState->getInitialChildState()) {
        enter(child, source);
    }
}

void StateMachine::enter(State* state, State* source)
{
    m_CurrentState = state;
    state->onEntry(source);
}

State* StateMachine::findState(const std::string& name)
{
    const auto found = m_States.find(name);
    return found != m_States.end() ? found->second : nullptr;
}

} // namespace qor
