// SPDX-License-Identifier: MIT
// A game that a console drives: it returns from a pause to the state that it was in before.
#include <iostream>
#include <string>
#include <vector>

#include <qor/Console.h>
#include <qor/State.h>
#include <qor/StateMachine.h>

enum Event : unsigned int { NO_EVENT, PAUSE, RESUME, DIVE };

/// The state that encloses walking and swimming.
class Playing : public qor::State
{
public:
    explicit Playing(qor::StateMachine& game) : State(&game, &game, "playing") {}

protected:
    bool onEvent(unsigned int event) override
    {
        return event == PAUSE && getStateMachine()->transition("paused");
    }
};

/// A child of Playing.
class Move : public qor::State
{
public:
    Move(Playing& playing, const std::string& name)
        : State(playing.getStateMachine(), &playing, name)
    {
    }

protected:
    bool onEvent(unsigned int event) override
    {
        return event == DIVE && getStateMachine()->transition("swimming");
    }
};

/// Remembers the state from which the game was paused.
class Paused : public qor::State
{
public:
    explicit Paused(qor::StateMachine& game) : State(&game, &game, "paused") {}

protected:
    void onEntry(State* source) override
    {
        if (source != this) { // a transition from this state to itself
            m_Former = source;
        }
    }
    bool onEvent(unsigned int event) override
    {
        if (event != RESUME) {
            return false;
        }
        getStateMachine()->transition(m_Former);
        return true;
    }

private:
    State* m_Former = nullptr;
};

/// Sends an event to the game, or with GO, changes to the state with the name that the user types.
class GameCommand : public qor::ConsoleCommand
{
public:
    GameCommand(qor::Console& console, qor::StateMachine& game, Event event)
        : m_Console(console), m_Game(game), m_Event(event)
    {
    }

    bool execute(const std::vector<std::string>& tokens) override
    {
        if (m_Event == NO_EVENT && !m_Game.transition(tokens[1])) {
            m_Console.print("Error: No state has the name '" + tokens[1] + "'");
            return false;
        }
        // transition() only records the target. The next event carries it out, handled or not.
        if (!m_Game.sendEvent(m_Event) && m_Event != NO_EVENT) {
            m_Console.print("Nothing happens.");
        }
        m_Console.print("You are " + m_Game.getCurrentState()->getName() + ".");
        return true;
    }

private:
    qor::Console& m_Console;
    qor::StateMachine& m_Game;
    const Event m_Event;
};

int main()
{
    qor::StateMachine game;
    Playing playing(game);
    Move walking(playing, "walking"), swimming(playing, "swimming");
    Paused paused(game);
    game.start();

    qor::Console console(100);
    GameCommand dive(console, game, DIVE), pause(console, game, PAUSE);
    GameCommand resume(console, game, RESUME), go(console, game, NO_EVENT);
    console.addCommand("dive", "Start to swim", 0, 0, &dive);
    console.addCommand("pause", "Interrupt the game", 0, 0, &pause);
    console.addCommand("resume", "Continue the game", 0, 0, &resume);
    console.addCommand("go", "STATE Change to a state", 1, 1, &go);

    for (const char character :
         std::string("dive\rpause\rdive\rresume\rgo paused\rgo flying\rgo playing\r")) {
        console.putChar(character);
    }
    std::vector<std::string> lines;
    console.getOutput(lines, 100, 0);
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        std::cout << *line << '\n';
    }
}
