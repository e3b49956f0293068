// SPDX-License-Identifier: MIT
#include "Window.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <stdexcept>
#include <string>

Window::Window(Harbour& harbour) : m_Harbour(harbour), m_Settings(harbour.getSettings().getTable())
{
    // The frame is finished; a copy of it to the screen needs no graphics hardware.
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
    if (SDL_Init(SDL_INIT_VIDEO) == 0) {
        m_Window.reset(
            SDL_CreateWindow("qorharbour", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                             m_Settings.getInteger("window/width"),
                             m_Settings.getInteger("window/height"), SDL_WINDOW_RESIZABLE));
    }
    if (!m_Window) {
        const std::string reason = SDL_GetError();
        SDL_Quit();
        throw std::runtime_error("Cannot open a window: " + reason);
    }
    SDL_StartTextInput();
    m_Settings.addListener(this);
    parameterChanged("window/fullscreen");
}

Window::~Window()
{
    m_Settings.removeListener(this);
    m_Window.reset();
    SDL_Quit();
}

void Window::parameterChanged(const std::string& name)
{
    const bool fillsScreen = m_Settings.getBoolean("window/fullscreen");
    if (name == "window/fullscreen") {
        SDL_SetWindowFullscreen(m_Window.get(), fillsScreen ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
    }
    if (name.rfind("window/", 0) == 0 && !fillsScreen) {
        SDL_SetWindowSize(m_Window.get(), m_Settings.getInteger("window/width"),
                          m_Settings.getInteger("window/height"));
    }
}

/// Stores a size that the user gave to the window.
void Window::storeSize(int width, int height)
{
    // Both sizes are stored first: each setting resizes the window.
    if (!m_Settings.getBoolean("window/fullscreen")) {
        m_Settings.removeListener(this);
        m_Settings.setInteger("window/width", width);
        m_Settings.setInteger("window/height", height);
        m_Settings.addListener(this);
    }
}

void Window::handleEvents()
{
    for (SDL_Event event; SDL_PollEvent(&event) != 0;) {
        if (event.type == SDL_QUIT) {
            m_Harbour.life.sendEvent(Life::QUIT);
        } else if (event.type == SDL_KEYDOWN) {
            const bool wasInConsole = m_Harbour.life.isIn("console");
            handleKey(event.key.keysym);
            m_TakesText = wasInConsole && m_Harbour.life.isIn("console");
        } else if (event.type == SDL_TEXTINPUT && m_TakesText) {
            m_Harbour.editor.insert(event.text.text);
        } else if (event.type == SDL_MOUSEWHEEL) {
            m_Harbour.scroll(event.wheel.y > 0 ? 3 : -3);
        } else if (event.type == SDL_WINDOWEVENT && event.window.event == SDL_WINDOWEVENT_RESIZED) {
            storeSize(event.window.data1, event.window.data2);
        }
    }
}

void Window::handleKey(const SDL_Keysym& key)
{
    static const std::map<SDL_Keycode, Life::Event> EVENTS = {
        {SDLK_F1, Life::CONSOLE},  {SDLK_ESCAPE, Life::ESCAPE}, {SDLK_RETURN, Life::CONTINUE},
        {SDLK_SPACE, Life::PAUSE}, {SDLK_y, Life::YES},         {SDLK_n, Life::NO}};
    const auto event = EVENTS.find(key.sym);
    if (key.scancode == SDL_SCANCODE_GRAVE) {
        m_Harbour.life.sendEvent(Life::CONSOLE); // left of 1, independent of the keyboard's layout
    } else if (key.sym == SDLK_F11) {
        m_Settings.setBoolean("window/fullscreen", !m_Settings.getBoolean("window/fullscreen"));
    } else if (m_Harbour.life.isIn("console")) {
        handleConsoleKey(key.sym);
    } else if (key.sym == SDLK_LEFT || key.sym == SDLK_RIGHT) {
        m_Harbour.pan(key.sym == SDLK_LEFT ? -0.5f : 0.5f);
    }
    if (event != EVENTS.end()) {
        m_Harbour.life.sendEvent(event->second); // a console ignores most of them
    }
}

void Window::handleConsoleKey(SDL_Keycode key)
{
    static const std::map<SDL_Keycode, void (LineEditor::*)()> EDITS = {
        {SDLK_BACKSPACE, &LineEditor::eraseBefore}, {SDLK_DELETE, &LineEditor::eraseAfter},
        {SDLK_UP, &LineEditor::showOlder},          {SDLK_DOWN, &LineEditor::showNewer},
        {SDLK_LEFT, &LineEditor::moveLeft},         {SDLK_RIGHT, &LineEditor::moveRight},
        {SDLK_HOME, &LineEditor::moveToStart},      {SDLK_END, &LineEditor::moveToEnd}};
    const auto edit = EDITS.find(key);
    if (edit != EDITS.end()) {
        (m_Harbour.editor.*edit->second)();
    } else if (key == SDLK_RETURN || key == SDLK_KP_ENTER) {
        m_Harbour.enterLine(m_Harbour.editor.enter());
    } else if (key == SDLK_PAGEUP || key == SDLK_PAGEDOWN) {
        m_Harbour.scroll(key == SDLK_PAGEUP ? 5 : -5);
    }
}

void Window::present(const qor::Image& frame) const
{
    constexpr int BITS = 32;
    // The surface only refers to the pixels, and SDL reads them alone.
    const std::unique_ptr<SDL_Surface, TCloser> surface(SDL_CreateRGBSurfaceWithFormatFrom(
        const_cast<Pixel*>(frame.getData()), frame.getWidth(), frame.getHeight(), BITS,
        frame.getWidth() * static_cast<int>(sizeof(Pixel)), SDL_PIXELFORMAT_RGB888));
    SDL_BlitSurface(surface.get(), nullptr, SDL_GetWindowSurface(m_Window.get()), nullptr);
    SDL_UpdateWindowSurface(m_Window.get());
}

void Window::run(int frameCount)
{
    const std::string driver = SDL_GetCurrentVideoDriver();
    if (frameCount == 0 && (driver == "dummy" || driver == "offscreen")) {
        throw std::runtime_error("There is no display; see --frames");
    }
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::duration<double> STEP(Harbour::STEP), LONGEST(0.25);
    Clock::time_point last = Clock::now();
    std::chrono::duration<double> unspent(0.0);
    for (int i = 0; (frameCount == 0 || i < frameCount) && !m_Harbour.life.isIn("over"); ++i) {
        m_Harbour.stats.start();
        handleEvents();
        const Clock::time_point now = Clock::now();
        // After a pause, such as a moved window, the lost time is not made up for.
        unspent += std::min<std::chrono::duration<double>>(now - last, LONGEST);
        last = now;
        for (unspent = frameCount > 0 ? STEP : unspent; unspent >= STEP; unspent -= STEP) {
            m_Harbour.step();
        }
        m_Harbour.stats.end("update");
        int width = 0, height = 0;
        SDL_GetWindowSize(m_Window.get(), &width, &height);
        present(m_Harbour.draw(width, height));
        m_Harbour.stats.end("present");
        // If the screen does not set the pace, sleep until the next step.
        const std::chrono::duration<double, std::milli> rest =
            STEP - unspent - (Clock::now() - now);
        if (frameCount == 0 && rest.count() >= 1.0) {
            SDL_Delay(static_cast<Uint32>(rest.count()));
        }
    }
}
