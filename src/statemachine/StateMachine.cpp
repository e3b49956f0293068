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

/// Climbs from two states in step until they meet or one of them is null.
void climbInStep(State*& first, State*& second)
{
    while (first != second && first && second) {
        first = first->getParentState();
        second = second->getParentState();
    }
}

/// Returns the innermost state that encloses `source` and either encloses or is `target`; null if
/// there is none.
State* findCommonAncestor(State* source, State* target)
{
    // Paths of the same length need no count: they meet at the common ancestor or both at null.
    State* ancestor = source->getParentState();
    State* other = target->getParentState();
    climbInStep(ancestor, other);
    if (ancestor == other) {
        return ancestor;
    }
    // Paths of different lengths cannot meet in step. The longer one is longer by the states that
    // remain; without as many states at its lower end, both have the same length.
    const std::size_t surplus = countUpwards(ancestor);
    ancestor = source->getParentState();
    if (surplus > 0) {
        ancestor = climb(ancestor, surplus - 1); // as deep as the target, which may enclose it
        other = target;
    } else {
        other = climb(target->getParentState(), countUpwards(other));
    }
    climbInStep(ancestor, other);
    return ancestor;
}

/// The states between an enclosing state and a target, neither included, outermost first.
///
/// States are linked upwards only, and a list of any length would need the heap. So the path is
/// collected in pieces, each by one walk up from the target. The first piece is collected before
/// any handler runs: handlers that assign states change only what lies more than PIECE levels away.
class EntryPath
{
public:
    /// Collects the first piece.
    /// @param end enclosing state; null for none. If it is the target, the path is empty.
    EntryPath(State* target, const State* end) : m_Target(target)
    {
        if (target == end) {
            return;
        }
        State* state = target->getParentState();
        for (; state != end && m_Count < PIECE; state = state->getParentState()) {
            m_Piece[m_Count++] = state;
        }
        if (state != end) { // the piece holds the innermost states, not the outermost
            std::size_t length = m_Count;
            for (; state != end; state = state->getParentState()) {
                ++length;
            }
            collect(length);
        }
    }

    /// Returns the next state to enter; null at the end of the path.
    State* takeNext()
    {
        if (m_Count == 0 && m_Remaining > 0) {
            // An assignment in a handler may have shortened the path.
            collect(std::min(m_Remaining, countUpwards(m_Target->getParentState())));
        }
        return m_Count > 0 ? m_Piece[--m_Count] : nullptr;
    }

private:
    static constexpr std::size_t PIECE = 32;

    /// Collects the outermost states of the path.
    /// @param length number of states that have not been taken
    void collect(std::size_t length)
    {
        m_Count = std::min(length, PIECE);
        m_Remaining = length - m_Count;
        State* state = climb(m_Target->getParentState(), m_Remaining);
        for (std::size_t i = 0; i < m_Count; ++i, state = state->getParentState()) {
            m_Piece[i] = state;
        }
    }

    State* const m_Target;
    std::size_t m_Count = 0;     ///< states in the piece
    std::size_t m_Remaining = 0; ///< states below the piece
    State* m_Piece[PIECE];       ///< innermost first
};

} // namespace

/// Sets a flag and restores its old value at the end of the scope, also when a handler throws.
class StateMachine::ScopedFlag
{
public:
    explicit ScopedFlag(bool& flag) : m_Flag(flag), m_OldValue(flag) { m_Flag = true; }
    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;
    ~ScopedFlag() { m_Flag = m_OldValue; }

private:
    bool& m_Flag;
    const bool m_OldValue;
};

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
    processPendingTransition();
}

void StateMachine::processPendingTransition()
{
    if (!m_PendingState || m_IsChanging) {
        return;
    }
    const ScopedFlag changing(m_IsChanging);
    // Handlers may replace the pending state, but not the target of the running transition.
    State* const target = m_PendingState;
    State* const source = m_CurrentState;
    State* const ancestor = findCommonAncestor(source, target);
    EntryPath path(target, ancestor);
    exitUpTo(ancestor);
    while (State* const state = path.takeNext()) {
        enter(state, source);
    }
    if (target != ancestor) {
        enter(target, source);
    }
    enterInitialStates(m_CurrentState->getInitialChildState(), source);
    m_PendingState = nullptr;
}

inline void StateMachine::exitUpTo(State* end)
{
    // A handler may start the machine or assign states, so this loop neither relies on
    // m_CurrentState nor expects to meet `end`.
    for (State* state = m_CurrentState; state && state != end; state = state->m_ParentState) {
        m_CurrentState = state;
        state->onExit(m_PendingState);
    }
    m_CurrentState = end;
}

inline void StateMachine::enterInitialStates(State* state, State* source)
{
    while (state) {
        enter(state, source);
        state = m_CurrentState->getInitialChildState();
    }
}

inline void StateMachine::enter(State* state, State* source)
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
