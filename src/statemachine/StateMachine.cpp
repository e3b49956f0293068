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

/// Returns the innermost state that encloses `source` and either encloses or is `target`; null if
/// there is none. Both paths are cut to the same length, then climbed in step until they meet.
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

/// The states to enter on the way from an enclosing state down to a target, outermost first.
///
/// States are linked upwards only, and a list of any length would need the heap. So the path is
/// collected in pieces, each by one walk up from the target. The first piece is collected before
/// any handler runs: handlers that assign states change only what lies more than PIECE levels away.
class EntryPath
{
public:
    /// Collects the first piece.
    /// @param end the enclosing state, which is not part of the path; null for none
    EntryPath(State* target, const State* end) : m_Target(target)
    {
        for (State* state = target; state != end; state = state->getParentState()) {
            if (m_Remaining < PIECE) {
                m_Piece[m_Remaining] = state;
            }
            ++m_Remaining;
        }
        m_Count = m_Remaining;
        if (m_Remaining > PIECE) {
            collect();
        }
    }

    /// Returns the next state to enter; null after the target.
    State* takeNext()
    {
        if (m_Count == 0 && m_Remaining > 0) {
            // An assignment in a handler may have shortened the path.
            m_Remaining = std::min(m_Remaining, countUpwards(m_Target));
            collect();
        }
        if (m_Count == 0) {
            return nullptr;
        }
        --m_Remaining;
        return m_Piece[--m_Count];
    }

private:
    static constexpr std::size_t PIECE = 32;

    /// Collects the outermost of the remaining states.
    void collect()
    {
        m_Count = std::min(m_Remaining, PIECE);
        const std::size_t inner = m_Remaining - m_Count;
        State* state = m_Target;
        for (std::size_t i = 0; i < m_Remaining; ++i, state = state->getParentState()) {
            if (i >= inner) {
                m_Piece[i - inner] = state;
            }
        }
    }

    State* const m_Target;
    std::size_t m_Remaining = 0; ///< states not taken yet
    std::size_t m_Count = 0;     ///< those of them in the piece
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
