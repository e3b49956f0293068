#include <list>
#include <map>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

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

/// Takes calls down, and does what a script says within them.
class Script
{
public:
    virtual ~Script() = default;
    virtual bool handle(const std::string& handler, const std::string& argument) = 0;
};

/// A state, or with StateMachine a machine, whose handlers are in a script.
template<typename TBase>
class Scripted : public TBase
{
public:
    template<typename... TArguments>
    explicit Scripted(Script& script, TArguments... arguments)
        : TBase(arguments...), m_Script(script)
    {
    }
    State* getInitialChildState() override
    {
        return this->getName() == "R" ? nullptr : TBase::getInitialChildState();
    }

protected:
    void onEntry(State* source) override { m_Script.handle(this->getName() + '+', nameOf(source)); }
    void onExit(State* target) override { m_Script.handle(this->getName() + '-', nameOf(target)); }
    bool onEvent(unsigned int event) override
    {
        return m_Script.handle(this->getName() + '?', std::to_string(event));
    }

private:
    Script& m_Script;
};

class Stage : public Script
{
public:
    explicit Stage(const std::string& handlers)
    {
        for (const std::string& handler : split(handlers, "; ")) {
            const auto parts = split(handler, "=");
            m_Handlers[parts[0]] = parts.back();
        }
        m_States = {{"root", &m_Machine}, {"none", nullptr}};
        add("A", &m_Machine);
        add("A1", find("A"));
        add("A2", find("A"));
        add("B", &m_Machine);
        add("B1", find("B"));
        add("R", &m_Machine);
        add("R1", find("R"));
        add("X", nullptr);
        add("X1", find("X"));
        add("B", find("R"));
        add("root", find("R"));
    }

    /// Does "set B ask A1 handle".
    /// @return whether "handle" was among it
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
            } else if (word == "throw") {
                throw std::runtime_error("thrown by a handler");
            } else if (!word.empty()) {
                run(word, words[++i]);
            }
        }
        return isHandled;
    }

    bool handle(const std::string& handler, const std::string& argument) override
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

    Scripted<StateMachine> m_Machine{*this};

private:
    void add(const std::string& name, State* parent)
    {
        m_Storage.emplace_back(*this, &m_Machine, parent, name);
        m_States.emplace(name, &m_Storage.back());
    }

    void run(const std::string& verb, const std::string& object)
    {
        if (verb == "set") {
            m_Machine.setCurrentState(find(object));
        } else if (verb == "ask") {
            m_Machine.transition(find(object));
        } else if (verb == "ask!") {
            m_Trace += m_Machine.transition(object) ? "known " : "unknown ";
        } else {
            const auto event = static_cast<unsigned int>(std::stoul(object));
            m_Trace += m_Machine.sendEvent(event) ? "yes " : "no ";
        }
    }

    std::map<std::string, std::string> m_Handlers;
    std::list<Scripted<State>> m_Storage;
    std::map<std::string, State*> m_States;
    std::string m_Trace;
};

} // namespace

TEST(StateMachineTest, HandlersAreCalledInOrder)
{
    for (const auto& test : readTable("state-machine")) {
        Stage stage(test[0]);
        for (const std::string& action : split(test[1], ", ")) {
            stage.run(action);
        }
        EXPECT_EQ(stage.trace(), test[2]) << test[0] << " | " << test[1];
    }
}

TEST(StateMachineTest, StatesKnowTheirPlace)
{
    Stage stage("");
    State* const inner = stage.find("A1");
    EXPECT_EQ(inner->getParentState(), stage.find("A"));
    EXPECT_EQ(inner->getStateMachine(), &stage.m_Machine);
    EXPECT_EQ(stage.find("A")->getInitialChildState(), inner);
    EXPECT_EQ(stage.m_Machine.getParentState(), nullptr);
    EXPECT_EQ(stage.m_Machine.getStateMachine(), &stage.m_Machine);
    for (const char* around : {"A", "root"}) {
        EXPECT_TRUE(inner->isChildStateOf(stage.find(around))) << around;
    }
    for (const char* other : {"A1", "A2", "B", "X", "none"}) {
        EXPECT_FALSE(inner->isChildStateOf(stage.find(other))) << other;
    }
    EXPECT_FALSE(stage.find("X1")->isChildStateOf(&stage.m_Machine));
    stage.m_Machine.registerState(nullptr);
    EXPECT_EQ(State(nullptr, nullptr, "alone").getStateMachine(), nullptr);
}

TEST(StateMachineTest, LongWaysAreEnteredFromTheOutside)
{
    for (const int levels : {31, 32, 33, 64, 65, 100}) {
        Stage stage("");
        std::list<Scripted<State>> states;
        State* parent = &stage.m_Machine;
        std::string expected = "root-" + std::to_string(levels) + " root+root ";
        for (int level = 1; level <= levels; ++level) {
            const std::string name = std::to_string(level);
            parent = &states.emplace_back(stage, &stage.m_Machine, parent, name);
            expected += name + "+root ";
        }
        stage.m_Machine.setCurrentState(parent);
        EXPECT_EQ(stage.trace(), expected + '@' + nameOf(parent));
    }
}

TEST(StateMachineTest, CopiesGoTheirOwnWay)
{
    Stage stage("");
    stage.run("start ask B");
    StateMachine copy(stage.m_Machine), assigned;
    stage.run("ask none");
    assigned = copy;
    for (StateMachine* machine : {&copy, &assigned}) {
        EXPECT_EQ(machine->getStateMachine(), &stage.m_Machine);
        machine->sendEvent(1);
        EXPECT_EQ(machine->getCurrentState(), stage.find("B1"));
        EXPECT_TRUE(machine->transition("A2"));
    }
    EXPECT_EQ(stage.m_Machine.getCurrentState(), stage.find("A1"));
    const State copyOfState(*stage.find("A"));
    EXPECT_EQ(copyOfState.getName(), "A");
    EXPECT_EQ(stage.m_Machine.getInitialChildState(), stage.find("A"));
}

TEST(StateMachineTest, MachinesStayUsableWhereHandlersThrow)
{
    Stage stage("A-=throw; B+=throw");
    stage.run("start");
    EXPECT_THROW(stage.run("set B"), std::runtime_error);
    EXPECT_EQ(nameOf(stage.m_Machine.getCurrentState()), "A");
    Stage other("B+=throw");
    other.run("start");
    EXPECT_THROW(other.run("set B"), std::runtime_error);
    other.run("set A2");
    EXPECT_EQ(other.trace(), "A+root A1+root A1-B A-B B+A1 B-A2 A+B A2+B @A2");
}
