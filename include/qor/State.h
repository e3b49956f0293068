#pragma once

#include <string>

#include "qor/Export.h"

namespace qor
{

class StateMachine;

/// A state of a StateMachine, inside an enclosing state or at the top. A host derives its states
/// from this class and overrides what it needs; see StateMachine for when what is called.
///
/// The host owns its states. Nothing takes a state out of its parent or its machine, so each has to
/// live for as long as the machine is in use. A copy has every member of its source, the place in
/// the hierarchy included, but neither its parent nor its machine knows it.
class QORTK_API State
{
public:
    /// Makes the last child of `parent` and registers it with the machine under its name, unless
    /// that is taken there: then only a pointer leads to the state. Where memory runs out, neither
    /// parent nor machine knows it.
    /// @param stateMachine the machine that the state belongs to; with null it is registered
    /// nowhere
    /// @param parent the enclosing state, constructed earlier: the machine for a state at the top
    /// of
    ///        its hierarchy. Null puts the state at the top of a hierarchy of its own.
    /// @param name what StateMachine::transition() finds the state by
    State(StateMachine* stateMachine, State* parent, const std::string& name);

    /// Takes over all members, and is known to nobody.
    /// @{
    State(const State& other) = default;
    State& operator=(const State& other) = default;
    /// @}

    virtual ~State();

    /// @return what the machine finds the state by
    std::string getName() const;

    /// @return the enclosing state, null at the top of a hierarchy
    State* getParentState() { return m_ParentState; }

    /// @return the machine that the state was made for; null if there is none
    StateMachine* getStateMachine() { return m_StateMachine; }

    /// Tells which state to descend into when the machine comes to this one; null to rest here.
    /// @return the child constructed first; null without children
    virtual State* getInitialChildState();

    /// @return whether `state` encloses this one, at any depth. No state encloses itself.
    bool isChildStateOf(State* state);

protected:
    /// Called after the machine has come to this state. By default it does nothing.
    /// @param source the state that the machine was in before; on StateMachine::start() the machine
    virtual void onEntry(State* source);

    /// Called with an event. By default it handles none.
    /// @return whether the event was handled; if not, it goes on to the enclosing state
    virtual bool onEvent(unsigned int event);

    /// Called before the machine leaves this state. By default it does nothing.
    /// @param target the state asked for; null where a handler asked for null in the meantime
    virtual void onExit(State* target);

private:
    friend class StateMachine;

    void addChildState(State* state);

    std::string m_Name; ///< first, so that an assignment that lacks memory changes nothing
    StateMachine* m_StateMachine;
    State* m_ParentState;
    State* m_FirstChildState = nullptr;
    State* m_LastChildState = nullptr;
    State* m_NextSiblingState = nullptr;
};

} // namespace qor
