// A ferry: under way, it is either cruising or slowed down by fog; moored, it waits.
#include <iostream>
#include <string>

#include <qor/State.h>
#include <qor/StateMachine.h>

enum Event : unsigned int { CAST_OFF, MOOR, FOG, CLEAR, HORN };

/// A state that tells what happens to it, and on one event asks for another state.
class Stage : public qor::State
{
public:
    Stage(qor::StateMachine& ferry, State& parent, const std::string& name, Event event,
          const std::string& next)
        : State(&ferry, &parent, name), m_Event(event), m_Next(next)
    {
    }

protected:
    void onEntry(State* source) override
    {
        std::cout << "  into " << getName() << " from " << source->getName() << '\n';
    }
    bool onEvent(unsigned int event) override
    {
        return event == m_Event && getStateMachine()->transition(m_Next);
    }
    void onExit(State* target) override
    {
        std::cout << "  out of " << getName() << " for " << target->getName() << '\n';
    }

private:
    const Event m_Event;
    const std::string m_Next;
};

static void send(qor::StateMachine& ferry, Event event, const char* name)
{
    std::cout << name << '\n';
    if (!ferry.sendEvent(event)) {
        std::cout << "  handled by nobody\n";
    }
}

int main()
{
    qor::StateMachine ferry;
    // What is constructed first is where its parent begins.
    Stage moored(ferry, ferry, "moored", CAST_OFF, "under way");
    Stage underWay(ferry, ferry, "under way", MOOR, "moored");
    Stage cruising(ferry, underWay, "cruising", FOG, "slow");
    Stage slow(ferry, underWay, "slow", CLEAR, "cruising");

    std::cout << "start\n";
    ferry.start();
    send(ferry, CAST_OFF, "cast off");
    send(ferry, FOG, "fog");
    send(ferry, HORN, "horn");
    send(ferry, MOOR, "moor"); // handled by the state around the current one
    std::cout << "The ferry is " << ferry.getCurrentState()->getName() << ".\n";
}
