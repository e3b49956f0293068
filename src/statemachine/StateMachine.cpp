#include "qor/StateMachine.h"

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

/// The innermost state that encloses the source and encloses or is the target; null for none.
State* findCommonAncestor(State* source, State* target)
{
    State* ancestor = source->getParentState();
    std::size_t ancestorCount = countUpwards(ancestor);
    std::size_t targetCount = countUpwards(target);
    for (; ancestorCount > targetCount; --ancestorCount) {
        ancestor = ancestor->getParentState();
    }
    for (; targetCount > ancestorCount; --targetCount) {
        target = target->getParentState();
    }
    while (ancestor != target) {
        ancestor = ancestor->getParentState();
        target = target->getParentState();
    }
    return ancestor;
}

} // namespace

/// A change of the current state, with its handlers. The machine is marked to its end, also where a
/// handler throws.
class StateMachine::Change
{
public:
    Change(StateMachine& machine, State* source) : m_Machine(machine), m_Source(source)
    {
        m_Machine.m_IsChanging = true;
    }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;
    ~Change() { m_Machine.m_IsChanging = false; }

    /// Leaves the source and all around it up to another state, or to the top.
    void leaveUpTo(State* end)
    {
        for (State* state = m_Source; state != end; state = state->m_ParentState) {
            m_Machine.m_CurrentState = state;
            state->onExit(m_Machine.m_PendingState);
        }
        m_Machine.m_CurrentState = end;
    }

    /// Enters the states inside an enclosing one, or inside none, down to the target. They are
    /// linked upwards only, so each is searched from the target on: mostly a step or two, and no
    /// memory for a list.
    void enterBelow(State* ancestor, State* target)
    {
        while (ancestor != target) {
            State* state = target;
            while (state->m_ParentState != ancestor) {
                state = state->m_ParentState;
            }
            enter(state);
            ancestor = state;
        }
    }

    /// Enters the initial child of a state, its initial child, and so on.
    void descend(State* state)
    {
        while ((state = state->getInitialChildState()) != nullptr) {
            enter(state);
        }
    }

private:
    void enter(State* state)
    {
        m_Machine.m_CurrentState = state;
        state->onEntry(m_Source);
    }

    StateMachine& m_Machine;
    State* const m_Source;
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
    // All or nothing, if memory runs out.
    std::map<std::string, State*> states(other.m_States);
    State::operator=(other);
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
    if (m_IsChanging) {
        return;
    }
    Change(*this, this).descend(this);
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

void StateMachine::processPendingTransition()
{
    if (!m_PendingState || m_IsChanging) {
        return;
    }
    // What the handlers ask for takes the request's place, but not the target's.
    State* const target = m_PendingState;
    State* const ancestor = findCommonAncestor(m_CurrentState, target);
    Change change(*this, m_CurrentState);
    change.leaveUpTo(ancestor);
    change.enterBelow(ancestor, target);
    change.descend(target);
    m_PendingState = nullptr;
}

State* StateMachine::findState(const std::string& name)
{
    const auto found = m_States.find(name);
    return found != m_States.end() ? found->second : nullptr;
}

} // namespace qor
