#include <benchmark/benchmark.h>

#include "qor/qor.h"

#ifdef HAVE_BOOST
// Old headers of this library hide names and narrow numbers, which is not for us to mend.
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

// Two states under the root with a leaf each:
//   handled  an event that the leaf handles
//   bubbles  an event that only the root handles
//   switch   an event that leads from the one leaf to the other, through two exits and two entries
// Handlers count, so that none of them can be left out.

namespace
{

enum Event : unsigned int { HANDLED, BUBBLES, SWITCH };

long handlerCalls = 0;

/// Sends an event over and over, and checks how many handlers that called each time.
template<typename TSend>
void sendAll(benchmark::State& state, long callsPerEvent, TSend send)
{
    handlerCalls = 0;
    for (auto _ : state) {
        send();
        benchmark::DoNotOptimize(handlerCalls);
    }
    if (handlerCalls != callsPerEvent * static_cast<long>(state.iterations())) {
        state.SkipWithError("other handlers were called than meant");
    }
}

namespace by_qortk
{

class CountingState : public qor::State
{
public:
    using State::State;

protected:
    void onEntry(State*) override { ++handlerCalls; }
    void onExit(State*) override { ++handlerCalls; }
};

class Leaf : public CountingState
{
public:
    using CountingState::CountingState;
    State* m_Other = nullptr;

protected:
    bool onEvent(unsigned int event) override
    {
        if (event == SWITCH) {
            getStateMachine()->transition(m_Other);
            return true;
        }
        if (event == HANDLED) {
            ++handlerCalls;
            return true;
        }
        return false;
    }
};

class Machine : public qor::StateMachine
{
public:
    Machine()
    {
        m_LeafA.m_Other = &m_LeafB;
        m_LeafB.m_Other = &m_LeafA;
        start();
    }

protected:
    bool onEvent(unsigned int event) override
    {
        handlerCalls += event == BUBBLES ? 1 : 0;
        return event == BUBBLES;
    }

private:
    CountingState m_A{this, this, "a"};
    CountingState m_B{this, this, "b"};
    Leaf m_LeafA{this, &m_A, "leaf a"};
    Leaf m_LeafB{this, &m_B, "leaf b"};
};

void run(benchmark::State& state, Event event, long calls)
{
    Machine machine;
    sendAll(state, calls, [&machine, event] { machine.sendEvent(event); });
}

BENCHMARK_CAPTURE(run, , HANDLED, 1)->Name("event/handled/qortk");
BENCHMARK_CAPTURE(run, , BUBBLES, 1)->Name("event/bubbles/qortk");
BENCHMARK_CAPTURE(run, , SWITCH, 4)->Name("event/switch/qortk");

} // namespace by_qortk

#ifdef HAVE_BOOST

namespace by_statechart
{

namespace sc = boost::statechart;

struct THandled : sc::event<THandled> {
};
struct TBubbles : sc::event<TBubbles> {
};
struct TSwitch : sc::event<TSwitch> {
};

struct TRoot;
struct TA;
struct TB;
struct TLeafA;
struct TLeafB;

struct Machine : sc::state_machine<Machine, TRoot> {
};

struct TRoot : sc::simple_state<TRoot, Machine, TA> {
    using reactions = sc::custom_reaction<TBubbles>;
    sc::result react(const TBubbles&)
    {
        ++handlerCalls;
        return discard_event();
    }
};

template<typename TState, typename TLeaf>
struct TCounting : sc::simple_state<TState, TRoot, TLeaf> {
    TCounting() { ++handlerCalls; }
    ~TCounting() { ++handlerCalls; }
};

struct TA : TCounting<TA, TLeafA> {
};
struct TB : TCounting<TB, TLeafB> {
};

template<typename TState, typename TParent, typename TOther>
struct TCountingLeaf : sc::simple_state<TState, TParent> {
    using reactions =
        boost::mpl::list<sc::custom_reaction<THandled>, sc::transition<TSwitch, TOther>>;
    TCountingLeaf() { ++handlerCalls; }
    ~TCountingLeaf() { ++handlerCalls; }
    sc::result react(const THandled&)
    {
        ++handlerCalls;
        return this->discard_event();
    }
};

struct TLeafA : TCountingLeaf<TLeafA, TA, TLeafB> {
};
struct TLeafB : TCountingLeaf<TLeafB, TB, TLeafA> {
};

template<typename TEvent>
void run(benchmark::State& state, TEvent event, long calls)
{
    Machine machine;
    machine.initiate();
    sendAll(state, calls, [&machine, &event] { machine.process_event(event); });
}

BENCHMARK_CAPTURE(run, , THandled(), 1)->Name("event/handled/Boost.Statechart");
BENCHMARK_CAPTURE(run, , TBubbles(), 1)->Name("event/bubbles/Boost.Statechart");
BENCHMARK_CAPTURE(run, , TSwitch(), 4)->Name("event/switch/Boost.Statechart");

} // namespace by_statechart

namespace by_msm
{

namespace front = boost::msm::front;

struct THandled {
};
struct TBubbles {
};
struct TSwitch {
};

struct TCounting : front::state<> {
    template<typename TEvent, typename TMachine>
    void on_entry(const TEvent&, TMachine&)
    {
        ++handlerCalls;
    }
    template<typename TEvent, typename TMachine>
    void on_exit(const TEvent&, TMachine&)
    {
        ++handlerCalls;
    }
};

struct TCount {
    template<typename TEvent, typename TMachine, typename TSource, typename TTarget>
    void operator()(const TEvent&, TMachine&, TSource&, TTarget&)
    {
        ++handlerCalls;
    }
};

/// A state with one leaf; the outer machine names the instances apart.
template<int NUMBER>
struct TInner : front::state_machine_def<TInner<NUMBER>> {
    struct TLeaf : TCounting {
    };
    using initial_state = TLeaf;
    struct transition_table : boost::mpl::vector<front::Row<TLeaf, THandled, front::none, TCount>> {
    };
    template<typename TEvent, typename TMachine>
    void on_entry(const TEvent&, TMachine&)
    {
        ++handlerCalls;
    }
    template<typename TEvent, typename TMachine>
    void on_exit(const TEvent&, TMachine&)
    {
        ++handlerCalls;
    }
};

using TInnerA = boost::msm::back::state_machine<TInner<0>>;
using TInnerB = boost::msm::back::state_machine<TInner<1>>;

struct TOuter : front::state_machine_def<TOuter> {
    using initial_state = TInnerA;
    struct transition_table : boost::mpl::vector<front::Row<TInnerA, TSwitch, TInnerB>,
                                                 front::Row<TInnerB, TSwitch, TInnerA>> {
    };
    struct internal_transition_table : boost::mpl::vector<front::Internal<TBubbles, TCount>> {
    };
};

template<typename TEvent>
void run(benchmark::State& state, TEvent event, long calls)
{
    boost::msm::back::state_machine<TOuter> machine;
    machine.start();
    sendAll(state, calls, [&machine, &event] { machine.process_event(event); });
}

BENCHMARK_CAPTURE(run, , THandled(), 1)->Name("event/handled/Boost.MSM");
BENCHMARK_CAPTURE(run, , TBubbles(), 1)->Name("event/bubbles/Boost.MSM");
BENCHMARK_CAPTURE(run, , TSwitch(), 4)->Name("event/switch/Boost.MSM");

} // namespace by_msm

#endif

} // namespace

BENCHMARK_MAIN();
