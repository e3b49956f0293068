#include <deque>
#include <vector>

#include "FuzzInput.h"
#include "qor/StateMachine.h"

using qor::State;
using qor::StateMachine;

namespace
{

/// Runs the actions of the input on a state machine, also from handlers, and records the states
/// that should be entered.
struct TPlay {
    State* pick(unsigned int number) { return states[number % states.size()]; }

    /// Runs the next action of the input.
    /// @return the result of an event handler that runs this action
    /// @throws unsigned int if the action is to throw
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
            const int leftBefore = left, startsBefore = starts;
            machine->setCurrentState(target);
            State* const state = machine->getCurrentState();
            const bool isThere = state == target || state->isChildStateOf(target);
            if (!target || changes > 0) {
                require(state == before);
            } else {
                require(left > leftBefore && (isThere || starts > startsBefore));
            }
        } else if (action == 5) {
            start();
        } else if (action == 6) {
            throw byte;
        }
        return action == 7;
    }

    void start()
    {
        const bool isOutermost = !isStarting;
        if (isOutermost && machine->getInitialChildState()) {
            entered = {nullptr, machine}; // a start exits nothing
            ++starts;
            isStarting = true;
        }
        machine->start();
        isStarting = isStarting && !isOutermost;
    }

    FuzzInput input;
    StateMachine* machine;
    std::vector<State*> states{nullptr};
    std::vector<const State*> entered{nullptr}; ///< entered states, innermost last
    std::vector<const State*>
        resumed{}; ///< `entered` as it was when the last entry handler was called
    int left = 0;
    int starts = 0;
    bool isStarting = false;
    int changes = 0; ///< number of running entry and exit handlers
};

TPlay* play;

/// A state or, if TBase is StateMachine, the machine. Its handlers run actions of the input.
template<typename TBase>
struct TActor : TBase {
    using TBase::TBase;

    void onEntry(State* /*source*/) override
    {
        if (this->getParentState() != play->entered.back()) {
            play->entered = play->resumed;
        }
        require(this->getParentState() == play->entered.back());
        play->entered.push_back(this);
        play->resumed = change();
    }

    bool onEvent(unsigned int /*event*/) override { return play->act(); }

    void onExit(State* /*target*/) override
    {
        require(this == play->entered.back());
        ++play->left;
        play->entered = change();
        play->entered.pop_back();
    }

    /// Returns the states that were entered before the handler acted.
    std::vector<const State*> change() const
    {
        require(this == play->machine->getCurrentState());
        const std::vector<const State*> before = play->entered;
        ++play->changes;
        play->act();
        --play->changes;
        return before;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    TActor<StateMachine> machine;
    TPlay newPlay{FuzzInput(data, size), &machine, {nullptr, &machine}, {nullptr, &machine}};
    play = &newPlay;
    std::deque<TActor<State>> states;
    for (int count = play->input.takeByte() % 16; count > 0; --count) {
        const std::uint8_t byte = play->input.takeByte();
        states.emplace_back(&machine, play->pick(byte / 8), std::string(byte % 8, 'a'));
        play->states.push_back(&states.back());
    }
    while (!play->input.isEmpty()) {
        play->changes = 0;
        play->isStarting = false;
        try {
            play->act();
        } catch (unsigned int) {
        }
        // Exactly the current state and its ancestors are entered.
        State* state = machine.getCurrentState();
        for (std::size_t i = play->entered.size() - 1; i > 0; --i) {
            require(state == play->entered[i]);
            state = state->getParentState();
        }
        require(!state);
    }
    return 0;
}
