#pragma once

#include <map>
#include <string>

#include "qor/Export.h"
#include "qor/State.h"

namespace qor
{

/// A passive hierarchical state machine: states stand inside states, and the machine itself is the
/// root around them, with the name "root".
///
/// **Events** are numbers without a meaning to the machine. sendEvent() passes one to the current
/// state, then to the states around it up to the root, until one handles it. Only then the
/// transition is carried out that was asked for last, by whichever handler.
///
/// **Transitions** leave the current state and all around it, up to the nearest state that encloses
/// both it and the target or is the target, and enter those from there down to the target, and on
/// along the initial children. So a transition from a state to itself leaves and enters it, and one
/// to an enclosing state neither leaves nor enters that one, but enters its initial children anew.
/// Handlers learn the target on leaving and the source on entering.
///
/// **Calls from onEntry() and onExit()**, which run during a transition or start():
/// - setCurrentState() only records its target, as transition() does.
/// - sendEvent() delivers its event, but carries out no transition.
/// - start() enters the initial states at once, except inside another start(), where it does
///   nothing. Then the surrounding transition continues: after an exit with the parent of the state
///   that was exited, after an entry with the next state on its path. After the last state of the
///   path it enters the initial children of the current state, which start() may have changed.
/// - A transition that is recorded during another one is discarded when that one ends; the
/// remaining
///   calls of onExit() receive its target as their argument. One that is recorded during start()
///   alone waits for the next event.
/// - Assigning a state changes its parent at once. A transition that has begun keeps its path of
///   entry (of the next 32 levels), and its exits end where the chain of parents ends.
///
/// So nothing recurses without end, unless `onEvent` itself keeps sending events.
///
/// The states belong to the host; see State. All runs on the stack of the host's call, without
/// memory from the heap. A transition takes time proportional to the depth of the states; entering
/// more than 32 levels walks the path once more for each 32 of them. Nothing fails and nothing
/// throws, but for lack of memory when a state is registered. Where a handler throws, the change
/// ends and the machine stands in that handler's state; a request that it was about is still there,
/// and the next event goes on with it from there. There is no lock: all calls on a machine and its
/// states come from one thread at a time.
///
/// A copy of a machine has the same states as its source, and the same root: that of the source.
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
/// turnstile.getCurrentState()->getName(); // "open"
/// @endcode
class QORTK_API StateMachine : public State
{
public:
    /// Makes a machine without states but the root, and in that one.
    StateMachine();

    /// Takes over the states, the current one and the request.
    /// @{
    StateMachine(const StateMachine& other);
    StateMachine& operator=(const StateMachine& other);
    /// @}

    ~StateMachine() override;

    /// Makes a state known by its name, as its constructor does. A name that is taken keeps its
    /// earlier state; null changes nothing.
    void registerState(State* state);

    /// Enters the initial child of the root, its initial child, and so on. Exits nothing, not even
    /// on a second start. Keeps a recorded transition. Does nothing inside another start().
    void start();

    /// @return where the machine is: the state that it is coming to in onEntry(), the one that it
    ///         is about to leave in onExit(); itself before the start
    State* getCurrentState() { return m_CurrentState; }

    /// Asks for a transition, which is carried out by the next sendEvent(), behind the event if
    /// that is running. An earlier request is dropped; null only drops it.
    void transition(State* state) { m_PendingState = state; }

    /// Asks for a transition by name.
    /// @return whether there is a state of that name; if not, an earlier request is dropped
    bool transition(const std::string& name);

    /// Carries out a transition at once. Null does nothing but drop an earlier request.
    void setCurrentState(State* state);

    /// Delivers an event, then carries out the transition that is asked for.
    /// @return whether a state handled the event
    bool sendEvent(unsigned int event)
    {
        bool isHandled = false;
        for (State* state = m_CurrentState; state && !isHandled; state = state->m_ParentState) {
            isHandled = state->onEvent(event);
        }
        if (m_PendingState) {
            processPendingTransition();
        }
        return isHandled;
    }

private:
    class ScopedFlag;

    State* findState(const std::string& name);
    void processPendingTransition();
    void exitUpTo(State* end);
    void enterInitialStates(State* state, State* source);
    void enter(State* state, State* source);

    State* m_CurrentState;
    State* m_PendingState = nullptr;
    std::map<std::string, State*> m_States;
    bool m_IsChanging = false; ///< whether a transition or start() is running
    bool m_IsStarting = false; ///< whether start() is running
};

} // namespace qor
