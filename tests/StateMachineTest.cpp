// SPDX-License-Identifier: MIT
#include <deque>
#include <functional>
#include <list>
#include <map>

#include "TestData.h"
#include "qor/StateMachine.h"

using qor::State;
using qor::StateMachine;

namespace
{

std::string nameOf(const State* state)
{
    return state ? state->getName() : "none";
}

/// Records a call of a handler and performs its actions. Returns whether the event is handled.
using TScript = std::function<bool(const std::string& handler, const std::string& argument)>;

/// A state or a machine, by TBase, whose handlers call a script.
template<typename TBase>
class Scripted : public TBase
{
public:
    template<typename... TArguments>
    explicit Scripted(const TScript& script, TArguments... arguments)
        : TBase(arguments...), m_Script(script)
    {
    }
    State* getInitialChildState() override
    {
        return this->getName() == "R" ? nullptr : TBase::getInitialChildState();
    }

protected:
    void onEntry(State* source) override { m_Script(this->getName() + '+', nameOf(source)); }
    void onExit(State* target) override { m_Script(this->getName() + '-', nameOf(target)); }
    bool onEvent(unsigned int event) override
    {
        return m_Script(this->getName() + '?', std::to_string(event));
    }

private:
    const TScript& m_Script;
};

class Fixture
{
public:
    explicit Fixture(const std::string& handlers)
    {
        for (const std::string& handler : split(handlers, "; ")) {
            const auto parts = split(handler, "=");
            m_Handlers[parts[0]] = parts.back();
        }
        m_States = {{"root", &m_Machine}, {"none", nullptr}};
        for (const char* place : {"A root", "A1 A", "A2 A", "B root", "B1 B", "R root", "R1 R",
                                  "X none", "X1 X", "B R", "root R"}) {
            const auto names = split(place, " ");
            m_Storage.emplace_back(m_Script, &m_Machine, find(names[1]), names[0]);
            m_States.emplace(names[0], &m_Storage.back());
        }
    }

    /// Performs actions such as "set B ask A1 handle".
    /// @return whether "handle" is one of them
    bool run(const std::string& text)
    {
        const auto words = split(text, " ");
        bool isHandled = false;
        for (std::size_t i = 0; i < words.size(); ++i) {
            const std::string& word = words[i];
            if (word == "handle") {
                isHandled = true;
            } else if (word == "start") {
                m_Machine.start();
            } else if (!word.empty()) {
                run(word, words[++i]);
            }
        }
        return isHandled;
    }

    bool handle(const std::string& handler, const std::string& argument)
    {
        m_Trace += handler + argument + ' ';
        const std::string state = handler.substr(0, handler.size() - 1);
        if (handler.back() != '?' && nameOf(m_Machine.getCurrentState()) != state) {
            m_Trace += "elsewhere ";
        }
        return run(m_Handlers[handler]);
    }

    State* find(const std::string& name) { return m_States.at(name); }
    std::string trace() { return m_Trace + '@' + nameOf(m_Machine.getCurrentState()); }

    std::map<std::string, std::string> m_Handlers;
    const TScript m_Script = [this](const auto& handler, const auto& argument) {
        return handle(handler, argument);
    };
    Scripted<StateMachine> m_Machine{m_Script};

private:
    void run(const std::string& verb, const std::string& object)
    {
        if (verb == "set") {
            m_Machine.setCurrentState(find(object));
        } else if (verb == "ask") {
            m_Machine.transition(find(object));
        } else if (verb == "detach") {
            State& state = *find(object);
            state = State(nullptr, nullptr, object);
        } else if (verb == "ask!") {
            m_Trace += m_Machine.transition(object) ? "known " : "unknown ";
        } else {
            const auto event = static_cast<unsigned int>(std::stoul(object));
            m_Trace += m_Machine.sendEvent(event) ? "yes " : "no ";
        }
    }

    std::list<Scripted<State>> m_Storage;
    std::map<std::string, State*> m_States;
    std::string m_Trace;
};

} // namespace

TEST(StateMachineTest, CallsHandlersInOrder)
{
    for (const auto& test : readTable("state-machine")) {
        Fixture fixture(test[0]);
        for (const std::string& action : split(test[1], ", ")) {
            fixture.run(action);
        }
        EXPECT_EQ(fixture.trace(), test[2]) << test[0] << " | " << test[1];
    }
}

TEST(StateMachineTest, EntersDeepPathsInOrder)
{
    constexpr int PIECE = 32, DETACHED = 60;
    // Most paths start in a separate hierarchy of the same depth. A handler that detaches a state
    // far below shortens the rest of the path. The first piece of the path starts with the root.
    for (const int levels : {31, 32, 33, 64, 65, 70}) {
        const bool detaches = levels == 70;
        std::string trace, expected;
        std::deque<Scripted<State>> states;
        const TScript script = [&](const std::string& handler, const std::string&) {
            trace += handler;
            if (detaches && handler == "10+") {
                static_cast<State&>(states[DETACHED]) = State(nullptr, nullptr, "60");
            }
            return false;
        };
        StateMachine machine;
        State* parent = &machine;
        for (int i = 0; i < levels; ++i) {
            states.emplace_back(script, &machine, parent, std::to_string(i));
            parent = &states.back();
            expected += !detaches || i < PIECE - 1 || i >= DETACHED ? std::to_string(i) + '+' : "";
        }
        std::deque<State> others;
        for (int i = 0; i <= levels && levels != 2 * PIECE && !detaches; ++i) {
            others.emplace_back(nullptr, i > 0 ? &others.back() : nullptr, "other");
            machine.setCurrentState(&others.back());
        }
        machine.setCurrentState(parent);
        EXPECT_EQ(trace, expected) << levels;
    }
}

TEST(StateMachineTest, StatesReturnTheirPlace)
{
    Fixture fixture("");
    State* const inner = fixture.find("A1");
    EXPECT_EQ(inner->getParentState(), fixture.find("A"));
    EXPECT_EQ(inner->getStateMachine(), &fixture.m_Machine);
    EXPECT_EQ(fixture.m_Machine.getStateMachine(), &fixture.m_Machine);
    const std::map<std::string, bool> encloses = {{"root", true}, {"A", true},  {"A1", false},
                                                  {"A2", false},  {"B", false}, {"X", false},
                                                  {"none", false}};
    for (const auto& [name, expected] : encloses) {
        EXPECT_EQ(inner->isChildStateOf(fixture.find(name)), expected) << name;
    }
    EXPECT_FALSE(fixture.find("X1")->isChildStateOf(&fixture.m_Machine));
    fixture.m_Machine.registerState(nullptr);
    EXPECT_EQ(State(nullptr, nullptr, "alone").getStateMachine(), nullptr);
}

TEST(StateMachineTest, CopiesOfStatesHaveAllMembers)
{
    Fixture fixture("");
    State& original = *fixture.find("A");
    State copy(original), assigned(nullptr, nullptr, "other");
    assigned = original;
    for (State* state : {&copy, &assigned}) {
        EXPECT_EQ(state->getName(), "A");
        EXPECT_EQ(state->getStateMachine(), &fixture.m_Machine);
        EXPECT_EQ(state->getParentState(), &fixture.m_Machine);
        EXPECT_EQ(state->getInitialChildState(), fixture.find("A1"));
        // Neither the machine nor the parent knows the copy.
        fixture.m_Machine.transition("A");
        fixture.m_Machine.sendEvent(1);
        EXPECT_EQ(fixture.m_Machine.getCurrentState()->getParentState(), &original);
    }
}

TEST(StateMachineTest, CopiesOfMachinesAreIndependent)
{
    Fixture fixture("");
    fixture.run("start ask B");
    StateMachine copy(fixture.m_Machine), assigned;
    EXPECT_FALSE(assigned.sendEvent(1));
    fixture.run("ask none");
    assigned = copy;
    for (StateMachine* machine : {&copy, &assigned}) {
        EXPECT_EQ(machine->getStateMachine(), &fixture.m_Machine);
        EXPECT_EQ(machine->getCurrentState(), fixture.find("A1"));
        machine->sendEvent(1);
        EXPECT_EQ(machine->getCurrentState(), fixture.find("B1"));
        EXPECT_TRUE(machine->transition("A2"));
    }
    EXPECT_EQ(fixture.m_Machine.getCurrentState(), fixture.find("A1"));
}
