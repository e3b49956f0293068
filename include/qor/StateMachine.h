// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "qor/Export.h"
#include "qor/State.h"

namespace qor
{

/// A passive hierarchical state machine. States are nested in states; the machine itself is the
/// root state, with the name "root".
///
/// **Events** are numbers without meaning to the machine. sendEvent() delivers an event to the
/// current state, then to its enclosing states up to the root, until one of them handles it. After
/// that it carries out the recorded transition, if there is one.
///
/// **Transitions** exit the current state and its enclosing states, up to but not including the
/// common ancestor: the innermost state that encloses the current state and either is the target or
/// encloses it. Then they enter the states from the common ancestor down to the target, and the
/// initial children below the target. A transition from a state to itself thus exits and enters
/// that state. A transition to an enclosing state neither exits nor enters that state, but enters
/// its initial children.
///
/// **Calls from onEntry() and onExit()**, which run during a transition or start():
/// - setCurrentState() only records its target, as transition() does.
/// - sendEvent() delivers its event, but carries out no transition.
/// - start() enters the initial states at once, except inside another start(), where it has no
///   effect. Then the interrupted transition continues: with the exit of the parent of the exited
///   state if onExit() has called start(), or with the entry of the next state on the path if
///   onEntry() has called it. At its end, the transition enters the initial children of the current
///   state, which start() may have changed.
/// - A transition that is recorded during a running transition is discarded when the running one
///   ends. Until then, onExit() receives its target. A transition that is recorded during start(),
///   without a running transition, remains recorded for the next event.
/// - An assignment to a state changes its parent at once. A running transition exits the new
///   parents, up to the common ancestor or, if that is not among them, to the top. It enters the
///   states that were on its path when it began; only more than 32 levels further down, it enters
///   those that are on the path by then.
///
/// The machine thus recurses without limit only if `onEvent` sends events without limit.
///
/// **Ownership**: the host owns the states; see State. A copy of a machine has the same states as
/// its source, including the root state, which is the source itself.
///
/// **Error handling**: registering a state and copying a machine throw `std::bad_alloc` if there is
/// not enough memory. No other operation fails. If a handler throws, the transition ends in the
/// state of that handler and remains recorded. The next event carries it out from there.
///
/// **Thread safety**: there is no lock. All calls on a machine and its states must come from one
/// thread at a time. Handlers run on the stack of the call.
///
/// **Complexity**: events and transitions allocate nothing. A transition takes time proportional to
/// the depth of the states. If it enters more than 32 levels, it also walks the path once for each
/// 32 of them.
///
/// @code
/// enum Event { COIN, PUSH };
///
/// struct Locked : qor::State {
///     explicit Locked(qor::StateMachine* machine) : State(machine, machine, "locked") {}
///     bool onEvent(unsigned int event) override
///     {
///         return event == COIN && getStateMachine()->transition("open");
///     }
/// };
///
/// struct Open : qor::State {
///     explicit Open(qor::StateMachine* machine) : State(machine, machine, "open") {}
///     bool onEvent(unsigned int event) override
///     {
///         return event == PUSH && getStateMachine()->transition("locked");
///     }
/// };
///
/// qor::StateMachine turnstile;
/// Locked locked(&turnstile); // constructed first, so the initial state
/// Open open(&turnstile);
/// turnstile.start();
/// turnstile.sendEvent(COIN);
/// const std::string name = turnstile.getCurrentState()->getName(); // "open"
/// @endcode
class QORTK_API StateMachine : public State
{
public:
    /// Constructs a machine that has only the root state and is in it.
    StateMachine();

    /// Copies the registered states, the current state and the recorded transition. No transition
    /// is running in the copy.
    /// @param other machine to copy
    /// @throws std::bad_alloc if there is not enough memory
    StateMachine(const StateMachine& other);

    /// Copies the registered states, the current state and the recorded transition. A transition
    /// that is running in this machine continues.
    /// @param other machine to copy
    /// @return this machine
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    StateMachine& operator=(const StateMachine& other);

    ~StateMachine() override;

    /// Registers a state for transitions by name. The constructor of State does so, too. If an
    /// earlier state has the same name, nothing is changed.
    /// @param state state to register; null changes nothing
    /// @throws std::bad_alloc if there is not enough memory
    void registerState(State* state);

    /// Enters the initial child of the root, its initial child, and so on. Exits no state, not even
    /// on a second start. A recorded transition remains recorded.
    void start();

    /// Returns the current state.
    /// @return the state, not owned: during onEntry() the state being entered, during onExit() the
    ///         state being exited, before the start the machine itself
    [[nodiscard]] State* getCurrentState() noexcept { return m_CurrentState; }

    /// Records a transition and replaces the one recorded before. The next sendEvent() carries it
    /// out; if sendEvent() is running, that call does so.
    /// @param state target; null only cancels a recorded transition
    void transition(State* state) noexcept { m_PendingState = state; }

    /// Records a transition by name. Takes logarithmic time in the number of states.
    /// @param name name of the target
    /// @return true if the machine has a state of that name. If false, a recorded transition is
    ///         canceled.
    bool transition(const std::string& name);

    /// Carries out a transition at once. Called from onEntry() and onExit(), only records it.
    /// @param state target; null only cancels a recorded transition
    void setCurrentState(State* state);

    /// Delivers an event, then carries out the recorded transition.
    /// @param event any number
    /// @return whether a state handled the event
    bool sendEvent(unsigned int event)
    {
        bool isHandled = false;
        State* state = m_CurrentState;
        do {
            isHandled = state->onEvent(event);
            state = state->m_ParentState;
        } while (state && !isHandled);
        if (m_PendingState) {
            carryOutTransition();
        }
        return isHandled;
    }

private:
    class ScopedFlag;
    class EntryPath;

    State* findState(const std::string& name);
    void processPendingTransition(); ///< called by programs that were compiled with 1.0.0

    // These are inline, and so compiled into the program, as most handlers are. When the library
    // called the handlers, transitions took 1.4 times as long.
    inline void carryOutTransition();
    inline void exitUpTo(State* end);
    inline void enterInitialStates(State* state, State* source);
    inline void enter(State* state, State* source);

    State* m_CurrentState; ///< not null while handlers run
    State* m_PendingState = nullptr;
    std::map<std::string, State*> m_States;
    bool m_IsChanging = false; ///< whether a transition or start() is running
    bool m_IsStarting = false; ///< whether start() is running
};

/// @cond

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

/// The states between the common ancestor of a transition and its target, neither included,
/// outermost first.
///
/// States are linked upwards only, and a list of any length would need the heap. So the path is
/// collected in pieces, each by one walk up from the target. The first piece is collected before
/// any handler runs: handlers that assign states change only what lies more than PIECE levels away.
class StateMachine::EntryPath
{
public:
    /// Finds the common ancestor and collects the first piece.
    EntryPath(State* source, State* target) : m_Target(target)
    {
        // Two states of the same depth meet in step: at the common ancestor, or both at null.
        State* other = source->m_ParentState;
        State* state = target->m_ParentState;
        for (; state != other && state && other && m_Count < PIECE; other = other->m_ParentState) {
            m_Piece[m_Count++] = state;
            state = state->m_ParentState;
        }
        m_Ancestor = state;
        if (state != other) {
            findAncestor(source);
        }
    }

    /// Returns the innermost state that encloses the source and either is or encloses the target;
    /// null if there is none.
    State* getAncestor() const { return m_Ancestor; }

    /// Returns the next state to enter; null at the end of the path.
    State* takeNext()
    {
        if (m_Count == 0 && m_Remaining > 0) {
            collectNext();
        }
        return m_Count > 0 ? m_Piece[--m_Count] : nullptr;
    }

private:
    static constexpr std::size_t PIECE = 32;

    QORTK_API void findAncestor(State* source);
    QORTK_API void collectNext();
    inline void collect(std::size_t length); // defined in the source file

    State* const m_Target;
    State* m_Ancestor;
    std::size_t m_Count = 0;     ///< states in the piece
    std::size_t m_Remaining = 0; ///< states below the piece
    State* m_Piece[PIECE];       ///< innermost first
};

inline void StateMachine::carryOutTransition()
{
    if (!m_PendingState || m_IsChanging) {
        return;
    }
    const ScopedFlag changing(m_IsChanging);
    // Handlers may replace the pending state, but not the target of the running transition.
    State* const target = m_PendingState;
    State* const source = m_CurrentState;
    EntryPath path(source, target);
    exitUpTo(path.getAncestor());
    while (State* const state = path.takeNext()) {
        enter(state, source);
    }
    if (target != path.getAncestor()) {
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

/// @endcond

} // namespace qor
