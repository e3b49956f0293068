#pragma once

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
/// **Transitions** exit the current state and its enclosing states, up to the nearest state that
/// encloses the current one and either encloses or is the target. Then they enter the states from
/// there down to the target, and the initial children below it. So a transition from a state to
/// itself exits and enters it; one to an enclosing state neither exits nor enters that state, but
/// enters its initial children.
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
/// - Assigning a state changes its parent at once. The exits of a running transition end where the
///   chain of parents ends. Its entries keep the path that they began with, except for states more
///   than 32 levels further down, whose parents are looked up on the way.
///
/// So the machine cannot recurse without end, unless `onEvent` itself keeps sending events.
///
/// **Ownership**: the host owns the states; see State. A copy of a machine has the same states as
/// its source, and the same root: that of the source.
///
/// **Error handling**: nothing fails, except that registering states and copying machines throws
/// `std::bad_alloc` if there is not enough memory. If a handler throws, the change ends and the
/// machine is in that handler's state; the transition remains recorded, and the next event carries
/// it out from there.
///
/// **Thread safety**: there is no lock. All calls on a machine and its states must come from one
/// thread at a time. Handlers run on the stack of the call.
///
/// **Complexity**: events and transitions allocate nothing. A transition takes time proportional to
/// the depth of the states, plus one walk along the path for each 32 levels entered.
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

    /// Copies the registered states, the current state and the recorded transition. A copy is never
    /// in the middle of a change, and an assignment does not end one. After a failed assignment the
    /// target is unchanged.
    /// @param other machine to copy
    /// @throws std::bad_alloc if there is not enough memory
    /// @{
    StateMachine(const StateMachine& other);
    StateMachine& operator=(const StateMachine& other);
    /// @}

    ~StateMachine() override;

    /// Makes a state known by its name; its constructor does so, too. If the name is taken, the
    /// earlier state keeps it.
    /// @param state state to register; null changes nothing
    /// @throws std::bad_alloc if there is not enough memory
    void registerState(State* state);

    /// Enters the initial child of the root, its initial child, and so on. Exits nothing, not even
    /// on a second start. Keeps a recorded transition. Does nothing inside another start().
    void start();

    /// Returns the current state: during onEntry() the state being entered, during onExit() the
    /// state being exited, before the start the machine itself.
    [[nodiscard]] State* getCurrentState() noexcept { return m_CurrentState; }

    /// Records a transition, which the next sendEvent() carries out, or the running one after its
    /// event. Replaces a transition recorded before.
    /// @param state target; null only cancels a recorded transition
    void transition(State* state) noexcept { m_PendingState = state; }

    /// Records a transition by name. Takes logarithmic time in the number of states.
    /// @param name name of the target
    /// @return whether the machine has a state of that name. If not, a recorded transition is
    ///         cancelled.
    bool transition(const std::string& name);

    /// Carries out a transition at once. From onEntry() and onExit() it only records it.
    /// @param state target; null only cancels a recorded transition
    void setCurrentState(State* state);

    /// Delivers an event, then carries out the recorded transition.
    /// @param event any number
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
