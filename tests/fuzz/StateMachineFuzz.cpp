// SPDX-License-Identifier: MIT
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
struct ActionRunner {
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
            const int exitCountBefore = exitCount, startCountBefore = startCount;
            machine->setCurrentState(target);
            State* const state = machine->getCurrentState();
            const bool isThere = state == target || state->isChildStateOf(target);
            if (!target || handlerDepth > 0) {
                require(state == before);
            } else {
                require(exitCount > exitCountBefore && (isThere || startCount > startCountBefore));
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
            ++startCount;
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
    int exitCount = 0;
    int startCount = 0;
    bool isStarting = false;
    int handlerDepth = 0; ///< number of running entry and exit handlers
};

ActionRunner* runner;

/// A state or, if TBase is StateMachine, the machine. Its handlers run actions of the input.
template<typename TBase>
struct ActingState : TBase {
    using TBase::TBase;

    void onEntry(State* /*source*/) override
    {
        if (this->getParentState() != runner->entered.back()) {
            runner->entered = runner->resumed;
        }
        require(this->getParentState() == runner->entered.back());
        runner->entered.push_back(this);
        runner->resumed = runHandler();
    }

    bool onEvent(unsigned int /*event*/) override { return runner->act(); }

    void onExit(State* /*target*/) override
    {
        require(this == runner->entered.back());
        ++runner->exitCount;
        runner->entered = runHandler();
        runner->entered.pop_back();
    }

    /// Returns the states that were entered before the handler acted.
    std::vector<const State*> runHandler() const
    {
        require(this == runner->machine->getCurrentState());
        const std::vector<const State*> before = runner->entered;
        ++runner->handlerDepth;
        runner->act();
        --runner->handlerDepth;
        return before;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ActingState<StateMachine> machine;
    ActionRunner newRunner{
        FuzzInput(data, size), &machine, {nullptr, &machine}, {nullptr, &machine}};
    runner = &newRunner;
    std::deque<ActingState<State>> states;
    for (int count = runner->input.takeByte() % 16; count > 0; --count) {
        const std::uint8_t byte = runner->input.takeByte();
        states.emplace_back(&machine, runner->pick(byte / 8), std::string(byte % 8, 'a'));
        runner->states.push_back(&states.back());
    }
    while (!runner->input.isEmpty()) {
        runner->handlerDepth = 0;
        runner->isStarting = false;
        try {
            runner->act();
        } catch (unsigned int) {
        }
        // Exactly the current state and its ancestors are entered.
        State* state = machine.getCurrentState();
        for (std::size_t i = runner->entered.size() - 1; i > 0; --i) {
            require(state == runner->entered[i]);
            state = state->getParentState();
        }
        require(!state);
    }
    return 0;
}
