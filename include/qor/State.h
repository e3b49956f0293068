#pragma once

#include <string>

#include "qor/Export.h"

namespace qor
{

class StateMachine;

/// A state of a StateMachine, nested in another state or at the top. A host derives its states from
/// this class and overrides the handlers that it needs; StateMachine describes when they are
/// called.
///
/// **Ownership**: the host owns its states. No operation removes a state from its parent or its
/// machine, so each must live as long as the machine is in use.
///
/// **Error handling**: only constructing, copying and getName() can fail, by `std::bad_alloc`.
///
/// **Thread safety**: as for the machine, one thread at a time.
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
    /// Constructs a state as the last child of `parent` and registers it with the machine. If its
    /// name is taken there, transition() by name finds the earlier state, and this one can be
    /// reached by pointer only.
    /// @param stateMachine machine that the state belongs to; null registers it nowhere
    /// @param parent enclosing state, constructed earlier: the machine for a state at the top. Null
    ///        makes the state the top of a hierarchy of its own.
    /// @param name name for StateMachine::transition()
    /// @throws std::bad_alloc if there is not enough memory; neither parent nor machine then has
    /// the
    ///         state
    State(StateMachine* stateMachine, State* parent, const std::string& name);

    /// Copies all members, the place in the hierarchy included. The parent and the machine of a
    /// copy do not know it. An assignment must not make a state its own descendant.
    /// @param other state to copy
    /// @throws std::bad_alloc if there is not enough memory; the target is unchanged
    /// @{
    State(const State& other) = default;
    State& operator=(const State& other) = default;
    /// @}

    virtual ~State();

    /// Returns the name given to the constructor.
    [[nodiscard]] std::string getName() const;

    /// Returns the enclosing state; null at the top of a hierarchy.
    [[nodiscard]] State* getParentState() noexcept { return m_ParentState; }

    /// Returns the machine given to the constructor; may be null.
    [[nodiscard]] StateMachine* getStateMachine() noexcept { return m_StateMachine; }

    /// Returns the child to enter when the machine arrives in this state; null to stay in this one.
    /// By default it is the child that was constructed first.
    virtual State* getInitialChildState();

    /// Returns whether a state encloses this one, at any depth. No state encloses itself.
    /// @param state possible ancestor; null gives false
    [[nodiscard]] bool isChildStateOf(State* state);

protected:
    /// Called when the machine has entered this state. Does nothing by default.
    /// @param source current state before the transition; the machine during StateMachine::start()
    virtual void onEntry(State* source);

    /// Called with an event. Handles no event by default.
    /// @param event number given to StateMachine::sendEvent()
    /// @return whether the event is handled. If not, the enclosing state receives it.
    virtual bool onEvent(unsigned int event);

    /// Called before the machine exits this state. Does nothing by default.
    /// @param target target of the transition; if a handler has recorded another transition since
    ///        this one began, the target of that, which may be null
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
