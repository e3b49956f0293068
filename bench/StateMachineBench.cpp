// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include "qor/qor.h"

#ifdef HAVE_BOOST
// Headers of old versions of Boost cause these warnings.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wconversion"
#include <boost/mpl/list.hpp>
#include <boost/msm/back/state_machine.hpp>
#include <boost/msm/front/functor_row.hpp>
#include <boost/msm/front/state_machine_def.hpp>
#include <boost/statechart/custom_reaction.hpp>
#include <boost/statechart/event.hpp>
#include <boost/statechart/simple_state.hpp>
#include <boost/statechart/state_machine.hpp>
#include <boost/statechart/transition.hpp>
#pragma GCC diagnostic pop
#endif

// Compares three levels of states: a root, two middle states, and leaves in them.
//   handled  the leaf handles the event
//   bubbles  leaf and middle state decline the event, the root handles it
//   sibling  the leaf handles the event and switches to another leaf of its middle state: one exit
//            and one entry
//   switch   the leaf handles the event and switches to a leaf of the other middle state: two exits
//            and two entries
// Handlers count their calls, so that compilers cannot omit them.

namespace
{

enum Event : unsigned int {
    LEAF_1,
    LEAF_2,
    LEAF_3,
    SWITCH,
    SIBLING,
    MIDDLE_1,
    MIDDLE_2,
    MIDDLE_3,
    MIDDLE_4,
    ROOT_1,
    ROOT_2,
    ROOT_3,
    ROOT_4
};

/// The calls of handlers. Each kind has its own counter, so that increments of different kinds do
/// not depend on each other.
struct TCounts {
    long entries;
    long exits;
    long events;
};

TCounts counts;

/// Sends an event repeatedly, and checks the total of the counters.
/// @param countPerEvent the sum that the handlers add for each event
template<typename TSend>
void sendAll(benchmark::State& state, long countPerEvent, TSend send)
{
    counts = {};
    for (auto _ : state) {
        send();
        benchmark::DoNotOptimize(counts);
    }
    if (counts.entries + counts.exits + counts.events !=
        countPerEvent * static_cast<long>(state.iterations())) {
        state.SkipWithError("the wrong handlers were called");
    }
}

namespace by_qortk
{

class CountingState : public qor::State
{
public:
    using State::State;

protected:
    void onEntry(State*) override { ++counts.entries; }
    void onExit(State*) override { ++counts.exits; }
    bool onEvent(unsigned int event) override
    {
        switch (event) {
        case MIDDLE_1:
            counts.events += 1;
            return true;
        case MIDDLE_2:
            counts.events += 2;
            return true;
        case MIDDLE_3:
            counts.events += 3;
            return true;
        case MIDDLE_4:
            counts.events += 4;
            return true;
        default:
            return false;
        }
    }
};

class Leaf : public CountingState
{
public:
    using CountingState::CountingState;
    State* m_Other = nullptr;
    State* m_Sibling = nullptr;

protected:
    bool onEvent(unsigned int event) override
    {
        switch (event) {
        case LEAF_1:
            counts.events += 1;
            return true;
        case LEAF_2:
            counts.events += 2;
            return true;
        case LEAF_3:
            counts.events += 3;
            return true;
        case SWITCH:
            getStateMachine()->transition(m_Other);
            return true;
        case SIBLING:
            getStateMachine()->transition(m_Sibling);
            return true;
        default:
            return false;
        }
    }
};

class Machine : public qor::StateMachine
{
public:
    Machine()
    {
        m_LeafA.m_Other = &m_LeafB;
        m_LeafB.m_Other = &m_LeafA;
        m_LeafA.m_Sibling = &m_SecondLeafA;
        m_SecondLeafA.m_Sibling = &m_LeafA;
        start();
    }

protected:
    bool onEvent(unsigned int event) override
    {
        switch (event) {
        case ROOT_1:
            counts.events += 1;
            return true;
        case ROOT_2:
            counts.events += 2;
            return true;
        case ROOT_3:
            counts.events += 3;
            return true;
        case ROOT_4:
            counts.events += 4;
            return true;
        default:
            return false;
        }
    }

private:
    CountingState m_A{this, this, "a"};
    CountingState m_B{this, this, "b"};
    Leaf m_LeafA{this, &m_A, "leaf a"};
    Leaf m_SecondLeafA{this, &m_A, "second leaf a"};
    Leaf m_LeafB{this, &m_B, "leaf b"};
};

void run(benchmark::State& state, Event event, long count)
{
    Machine machine;
    sendAll(state, count, [&machine, event] { machine.sendEvent(event); });
}

BENCHMARK_CAPTURE(run, , LEAF_3, 3)->Name("event/handled/qortk");
BENCHMARK_CAPTURE(run, , ROOT_3, 3)->Name("event/bubbles/qortk");
BENCHMARK_CAPTURE(run, , SIBLING, 2)->Name("event/sibling/qortk");
BENCHMARK_CAPTURE(run, , SWITCH, 4)->Name("event/switch/qortk");

} // namespace by_qortk

/// Virtual handlers for exactly these states. An event climbs from state to state; a switch calls
/// the exits and entries that its author listed. Nothing is searched, deferred or guarded. The
/// places of the states are template parameters, so that no handler has a single implementation
/// that compilers could inline.
namespace by_hand
{

struct TState {
    explicit TState(TState* parentState) : parent(parentState) {}
    virtual ~TState() = default;
    virtual void onEntry() = 0;
    virtual void onExit() = 0;
    virtual bool onEvent(unsigned int event) = 0;
    TState* parent;
};

TState* current;

template<int PLACE, int FIRST>
struct TCounting : TState {
    using TState::TState;
    void onEntry() override { ++counts.entries; }
    void onExit() override { ++counts.exits; }
    bool onEvent(unsigned int event) override
    {
        switch (event) {
        case FIRST:
            counts.events += 1;
            return true;
        case FIRST + 1:
            counts.events += 2;
            return true;
        case FIRST + 2:
            counts.events += 3;
            return true;
        case FIRST + 3:
            counts.events += 4;
            return true;
        default:
            return false;
        }
    }
};

template<int PLACE>
struct TLeaf : TCounting<PLACE, LEAF_1> {
    using TCounting<PLACE, LEAF_1>::TCounting;
    bool onEvent(unsigned int event) override
    {
        switch (event) {
        case LEAF_1:
            counts.events += 1;
            return true;
        case LEAF_2:
            counts.events += 2;
            return true;
        case LEAF_3:
            counts.events += 3;
            return true;
        case SWITCH:
            current->onExit();
            current->parent->onExit();
            other->parent->onEntry();
            other->onEntry();
            current = other;
            return true;
        case SIBLING:
            current->onExit();
            sibling->onEntry();
            current = sibling;
            return true;
        default:
            return false;
        }
    }
    TState* other = nullptr;
    TState* sibling = nullptr;
};

struct TStates {
    TStates()
    {
        leafA.other = &leafB;
        leafB.other = &leafA;
        leafA.sibling = &secondLeafA;
        secondLeafA.sibling = &leafA;
        current = &leafA;
    }
    TCounting<0, ROOT_1> root{nullptr};
    TCounting<1, MIDDLE_1> a{&root};
    TCounting<2, MIDDLE_1> b{&root};
    TLeaf<3> leafA{&a};
    TLeaf<4> secondLeafA{&a};
    TLeaf<5> leafB{&b};
};

bool sendEvent(unsigned int event)
{
    bool isHandled = false;
    for (TState* state = current; state && !isHandled; state = state->parent) {
        isHandled = state->onEvent(event);
    }
    return isHandled;
}

void run(benchmark::State& state, Event event, long count)
{
    const TStates states;
    sendAll(state, count, [event] { sendEvent(event); });
}

BENCHMARK_CAPTURE(run, , LEAF_3, 3)->Name("event/handled/by hand");
BENCHMARK_CAPTURE(run, , ROOT_3, 3)->Name("event/bubbles/by hand");
BENCHMARK_CAPTURE(run, , SIBLING, 2)->Name("event/sibling/by hand");
BENCHMARK_CAPTURE(run, , SWITCH, 4)->Name("event/switch/by hand");

} // namespace by_hand

#ifdef HAVE_BOOST

namespace by_statechart
{

namespace sc = boost::statechart;

template<Event EVENT>
struct TEvent : sc::event<TEvent<EVENT>> {
};

/// A state that handles four events, from `FIRST` on.
template<typename TState, typename TContext, int FIRST, typename TInitial>
struct TCounting : sc::simple_state<TState, TContext, TInitial> {
    template<int INDEX>
    using TReaction = sc::custom_reaction<TEvent<Event(FIRST + INDEX)>>;
    using reactions = boost::mpl::list<TReaction<0>, TReaction<1>, TReaction<2>, TReaction<3>>;
    TCounting() { ++counts.entries; }
    ~TCounting() { ++counts.exits; }
    template<Event EVENT>
    sc::result react(const TEvent<EVENT>&)
    {
        counts.events += EVENT - FIRST + 1;
        return this->discard_event();
    }
};

struct TRoot;
struct TA;
struct TB;
struct TLeafA;
struct TLeafB;

struct Machine : sc::state_machine<Machine, TRoot> {
};

struct TRoot : TCounting<TRoot, Machine, ROOT_1, TA> {
};
struct TA : TCounting<TA, TRoot, MIDDLE_1, TLeafA> {
};
struct TB : TCounting<TB, TRoot, MIDDLE_1, TLeafB> {
};

template<typename TState, typename TContext, typename TOther>
struct TCountingLeaf : TCounting<TState, TContext, LEAF_1, boost::mpl::list<>> {
    using TBase = TCounting<TState, TContext, LEAF_1, boost::mpl::list<>>;
    using reactions = boost::mpl::list<
        typename TBase::template TReaction<0>, typename TBase::template TReaction<1>,
        typename TBase::template TReaction<2>, sc::transition<TEvent<SWITCH>, TOther>>;
};

struct TLeafA : TCountingLeaf<TLeafA, TA, TLeafB> {
};
struct TLeafB : TCountingLeaf<TLeafB, TB, TLeafA> {
};

template<Event EVENT>
void run(benchmark::State& state, TEvent<EVENT> event, long count)
{
    Machine machine;
    machine.initiate();
    sendAll(state, count, [&machine, &event] { machine.process_event(event); });
}

BENCHMARK_CAPTURE(run, , TEvent<LEAF_3>(), 3)->Name("event/handled/Boost.Statechart");
BENCHMARK_CAPTURE(run, , TEvent<ROOT_3>(), 3)->Name("event/bubbles/Boost.Statechart");
BENCHMARK_CAPTURE(run, , TEvent<SWITCH>(), 4)->Name("event/switch/Boost.Statechart");

} // namespace by_statechart

namespace by_msm
{

namespace front = boost::msm::front;
using boost::mpl::vector;

template<Event EVENT>
struct TEvent {
};

template<int COUNT>
struct TCount {
    template<typename TEvent, typename TMachine, typename TSource, typename TTarget>
    void operator()(const TEvent&, TMachine&, TSource&, TTarget&)
    {
        counts.events += COUNT;
    }
};

template<typename TBase>
struct TCounting : TBase {
    template<typename TEvent, typename TMachine>
    void on_entry(const TEvent&, TMachine&)
    {
        ++counts.entries;
    }
    template<typename TEvent, typename TMachine>
    void on_exit(const TEvent&, TMachine&)
    {
        ++counts.exits;
    }
};

/// The four events of a state, from `FIRST` on.
template<int FIRST>
struct TOwnEvents : vector<front::Internal<TEvent<Event(FIRST)>, TCount<1>>,
                           front::Internal<TEvent<Event(FIRST + 1)>, TCount<2>>,
                           front::Internal<TEvent<Event(FIRST + 2)>, TCount<3>>,
                           front::Internal<TEvent<Event(FIRST + 3)>, TCount<4>>> {
};

/// A state with a leaf. NUMBER distinguishes the types of several such states.
template<int NUMBER>
struct TMiddle : TCounting<front::state_machine_def<TMiddle<NUMBER>>> {
    struct TLeaf : TCounting<front::state<>> {
    };
    using initial_state = TLeaf;
    using internal_transition_table = TOwnEvents<MIDDLE_1>;
    struct transition_table : vector<front::Row<TLeaf, TEvent<LEAF_1>, front::none, TCount<1>>,
                                     front::Row<TLeaf, TEvent<LEAF_2>, front::none, TCount<2>>,
                                     front::Row<TLeaf, TEvent<LEAF_3>, front::none, TCount<3>>> {
    };
};

using TMiddleA = boost::msm::back::state_machine<TMiddle<0>>;
using TMiddleB = boost::msm::back::state_machine<TMiddle<1>>;

struct TRoot : front::state_machine_def<TRoot> {
    using initial_state = TMiddleA;
    using internal_transition_table = TOwnEvents<ROOT_1>;
    struct transition_table : vector<front::Row<TMiddleA, TEvent<SWITCH>, TMiddleB>,
                                     front::Row<TMiddleB, TEvent<SWITCH>, TMiddleA>> {
    };
};

template<Event EVENT>
void run(benchmark::State& state, TEvent<EVENT> event, long count)
{
    boost::msm::back::state_machine<TRoot> machine;
    machine.start();
    sendAll(state, count, [&machine, &event] { machine.process_event(event); });
}

BENCHMARK_CAPTURE(run, , TEvent<LEAF_3>(), 3)->Name("event/handled/Boost.MSM");
BENCHMARK_CAPTURE(run, , TEvent<ROOT_3>(), 3)->Name("event/bubbles/Boost.MSM");
BENCHMARK_CAPTURE(run, , TEvent<SWITCH>(), 4)->Name("event/switch/Boost.MSM");

} // namespace by_msm

#endif

} // namespace

BENCHMARK_MAIN();
