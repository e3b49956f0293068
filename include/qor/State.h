// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "qor/Export.h"

namespace qor
{

class StateMachine;

/// A state of a StateMachine, nested in another state or at the top. A host derives its states from
/// this class and overrides handlers. StateMachine describes when the handlers are called.
///
/// **Ownership**: the host owns its states. No operation removes a state from its parent or its
/// machine, so each must live as long as the machine is in use.
///
/// **Error handling**: only the constructors, the assignment and getName() can fail, with
/// `std::bad_alloc`.
///
/// **Thread safety**: one thread at a time may use a machine and its states.
///
/// @code
/// class Door : public qor::State
/// {
/// public:
///     explicit Door(qor::StateMachine* machine) : State(machine, machine, "door") {}
///
/// protected:
///     void onEntry(qor::State* source) override { m_IsFromRoot = source == getStateMachine(); }
///
/// private:
///     bool m_IsFromRoot = false;
/// };
/// @endcode
class QORTK_API State
{
public:
    /// Constructs a state as the last child of `parent` and registers it with the machine. If an
    /// earlier state has the same name, a transition by name leads to that state; a transition by
    /// pointer leads to either.
    /// @param stateMachine machine that the state belongs to; null registers it nowhere
    /// @param parent enclosing state, constructed earlier. It is the machine for a state at the
    ///        top. Null starts a separate hierarchy with this state at its top.
    /// @param name name for StateMachine::transition()
    /// @throws std::bad_alloc if there is not enough memory; parent and machine are then unchanged
    State(StateMachine* stateMachine, State* parent, const std::string& name);

    /// Copies the name, the machine, the parent and the children. The parent does not list the copy
    /// as a child, and the machine does not register it.
    /// @param other state to copy
    /// @throws std::bad_alloc if there is not enough memory
    State(const State& other) = default;

    /// Copies as the copy constructor does. The state must not become its own descendant.
    /// @param other state to copy
    /// @return this state
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    State& operator=(const State& other) = default;

    /// Virtual, so a `std::unique_ptr<State>` may own an object of a derived class. Does not remove
    /// the state from its parent or its machine.
    virtual ~State();

    /// Returns the name.
    /// @return a copy of the name given to the constructor
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] std::string getName() const;

    /// Returns the enclosing state.
    /// @return the state, not owned; null at the top of a hierarchy
    [[nodiscard]] State* getParentState() noexcept { return m_ParentState; }

    /// Returns the machine.
    /// @return the machine given to the constructor, not owned; may be null. A machine, which is a
    ///         state, too, returns itself; a copy of it returns the original.
    [[nodiscard]] StateMachine* getStateMachine() noexcept { return m_StateMachine; }

    /// Returns the child that is entered after this state.
    /// @return the child that was constructed first, unless a derived class returns another one;
    ///         null if the machine stays in this state
    QORTK_API_INLINE virtual State* getInitialChildState() { return m_FirstChildState; }

    /// Checks whether a state encloses this one, at any depth.
    /// @param state possible ancestor; may be null
    /// @return true if `state` is an ancestor; false for this state itself and for null
    [[nodiscard]] bool isChildStateOf(State* state);

protected:
    /// Called when the machine has entered this state. Does nothing by default.
    /// @param source current state before the transition; the machine during StateMachine::start()
    virtual void onEntry(State* source);

    /// Called to handle an event. Returns false by default.
    /// @param event number given to StateMachine::sendEvent()
    /// @return true if the event is handled. If false, the enclosing state receives the event.
    virtual bool onEvent(unsigned int event);

    /// Called before the machine exits this state. Does nothing by default.
    /// @param target target of the transition that was recorded last: of the running transition, or
    ///        of one that a handler has recorded since it began. The latter may be null.
    virtual void onExit(State* target);

private:
    friend class StateMachine;

    void addChildState(State* state);

    std::string m_Name; ///< assigned first, so that an assignment without memory changes nothing
    StateMachine* m_StateMachine;
    State* m_ParentState;
    State* m_FirstChildState = nullptr;
    State* m_LastChildState = nullptr;
    State* m_NextSiblingState = nullptr;
};

} // namespace qor
