#include <deque>
#include <vector>

#include "FuzzInput.h"
#include "qor/StateMachine.h"

using qor::State;
using qor::StateMachine;

namespace
{

/// What a machine and its states do, from the input, and which states were entered and not left.
struct TPlay {
    FuzzInput input;
    StateMachine* machine = nullptr;
    std::vector<State*> states;
    std::vector<State*> entered;
    int changes = 0; ///< how many calls for entering or leaving are running

    State* pick(unsigned int number) { return states[number % states.size()]; }

    void enter(State* state)
    {
        require(state == machine->getCurrentState());
        require(state->getParentState() == (entered.empty() ? nullptr : entered.back()));
        entered.push_back(state);
        ++changes;
        act();
        --changes;
    }

    void leave(const State* state)
    {
        require(state == machine->getCurrentState() && state == entered.back());
        ++changes;
        act();
        --changes;
        entered.pop_back();
    }

    /// @return whether that handles an event. It may throw a number.
    bool act()
    {
        const unsigned int byte = input.takeByte(), action = byte % 8, number = byte / 8;
        State* const target = pick(number);
        if (action == 1) {
            return machine->sendEvent(number);
        }
        if (action == 2) {
            machine->transition(target);
        } else if (action == 3 && target) {
            require(machine->transition(target->getName()));
        } else if (action == 4) {
            const State* const before = machine->getCurrentState();
            machine->setCurrentState(target);
            State* const state = machine->getCurrentState();
            require(target && changes == 0 ? state == target || state->isChildStateOf(target)
                                           : state == before);
        } else if (action == 5) {
            if (changes == 0 && machine->getInitialChildState()) {
                entered = {machine}; // nothing is left on a start
            }
            machine->start();
        } else if (action == 6) {
            throw byte;
        }
        return action == 7;
    }
};

/// A state, or with StateMachine a machine.
template<typename TBase>
class Actor : public TBase
{
public:
    template<typename... TArguments>
    explicit Actor(TPlay& play, TArguments... arguments) : TBase(arguments...), m_Play(play)
    {
        play.states.push_back(this);
    }

protected:
    void onEntry(State* /*source*/) override { m_Play.enter(this); }
    bool onEvent(unsigned int /*event*/) override { return m_Play.act(); }
    void onExit(State* /*target*/) override { m_Play.leave(this); }

private:
    TPlay& m_Play;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    TPlay play{FuzzInput(data, size), nullptr, {nullptr}, {}};
    Actor<StateMachine> machine(play);
    play.machine = &machine;
    play.entered = {&machine};
    std::deque<Actor<State>> states;
    for (int count = play.input.takeByte() % 16; count > 0; --count) {
        const std::uint8_t byte = play.input.takeByte();
        states.emplace_back(play, &machine, play.pick(byte / 8), std::string(byte % 8, 'a'));
    }
    while (!play.input.isEmpty()) {
        play.changes = 0;
        try {
            play.act();
        } catch (unsigned int) {
        }
        State* state = machine.getCurrentState();
        for (auto inner = play.entered.rbegin(); inner != play.entered.rend(); ++inner) {
            require(state == *inner);
            state = state->getParentState();
        }
        require(!state);
    }
    return 0;
}
