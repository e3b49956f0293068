// SPDX-License-Identifier: MIT
// The states of a ferry. It is moored or under way; under way, it is cruising or slow.
#include <iostream>
#include <string>

#include <qor/State.h>
#include <qor/StateMachine.h>

enum Event : unsigned int { CAST_OFF, MOOR, FOG, CLEAR, HORN };

/// A state that prints its entries and exits. One event leads to another state.
class FerryState : public qor::State
{
public:
    FerryState(qor::StateMachine& ferry, State& parent, const std::string& name, Event event,
               const std::string& next)
        : State(&ferry, &parent, name), m_Event(event), m_Next(next)
    {
    }

protected:
    void onEntry(State* source) override
    {
        std::cout << "  enters " << getName() << " from " << source->getName() << '\n';
    }
    bool onEvent(unsigned int event) override
    {
        return event == m_Event && getStateMachine()->transition(m_Next);
    }
    void onExit(State* target) override
    {
        std::cout << "  exits " << getName() << " to " << target->getName() << '\n';
    }

private:
    const Event m_Event;
    const std::string m_Next;
};

static void send(qor::StateMachine& ferry, Event event, const char* name)
{
    std::cout << name << '\n';
    if (!ferry.sendEvent(event)) {
        std::cout << "  not handled\n";
    }
}

int main()
{
    qor::StateMachine ferry;
    // The first child that is constructed is the initial state of its parent.
    FerryState moored(ferry, ferry, "moored", CAST_OFF, "under way");
    FerryState underWay(ferry, ferry, "under way", MOOR, "moored");
    FerryState cruising(ferry, underWay, "cruising", FOG, "slow");
    FerryState slow(ferry, underWay, "slow", CLEAR, "cruising");

    std::cout << "start\n";
    ferry.start();
    send(ferry, CAST_OFF, "cast off");
    send(ferry, FOG, "fog");
    send(ferry, HORN, "horn");
    send(ferry, MOOR, "moor"); // handled by the parent of the current state
    std::cout << "The ferry is " << ferry.getCurrentState()->getName() << ".\n";
}
