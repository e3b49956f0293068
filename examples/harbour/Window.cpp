// SPDX-License-Identifier: MIT
#include "Window.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <stdexcept>
#include <string>

Window::Window(Harbour& harbour) : m_Harbour(harbour)
{
    qor::Configuration& table = harbour.getSettings().getTable();
    // The frame is finished; a copy of it to the screen needs no graphics hardware.
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
    if (SDL_Init(SDL_INIT_VIDEO) == 0) {
        m_Window.reset(SDL_CreateWindow("qorharbour", SDL_WINDOWPOS_CENTERED,
                                        SDL_WINDOWPOS_CENTERED, table.getInteger("window/width"),
                                        table.getInteger("window/height"), SDL_WINDOW_RESIZABLE));
    }
    if (!m_Window) {
        const std::string reason = SDL_GetError();
        SDL_Quit();
        throw std::runtime_error("Cannot open a window: " + reason);
    }
    SDL_StartTextInput();
    table.addListener(this);
    applySetting("window/fullscreen");
}

Window::~Window()
{
    m_Harbour.getSettings().getTable().removeListener(this);
    m_Window.reset();
    SDL_Quit();
}

void Window::parameterChanged(const std::string& name)
{
    applySetting(name);
}

void Window::applySetting(const std::string& name)
{
    const qor::Configuration& table = m_Harbour.getSettings().getTable();
    const bool fillsScreen = table.getBoolean("window/fullscreen");
    if (name == "window/fullscreen") {
        SDL_SetWindowFullscreen(m_Window.get(), fillsScreen ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
    }
    if (name.rfind("window/", 0) == 0 && !fillsScreen) {
        SDL_SetWindowSize(m_Window.get(), table.getInteger("window/width"),
                          table.getInteger("window/height"));
    }
}

void Window::handleEvents()
{
    qor::Configuration& table = m_Harbour.getSettings().getTable();
    m_SkipsText = false;
    for (SDL_Event event; SDL_PollEvent(&event) != 0;) {
        if (event.type == SDL_QUIT) {
            m_Harbour.quit();
        } else if (event.type == SDL_KEYDOWN) {
            handleKey(event.key.keysym);
        } else if (event.type == SDL_TEXTINPUT && !m_SkipsText) {
            m_Harbour.handleText(event.text.text);
        } else if (event.type == SDL_MOUSEWHEEL) {
            m_Harbour.handleKey(event.wheel.y > 0 ? Harbour::Key::PAGE_UP
                                                  : Harbour::Key::PAGE_DOWN);
        } else if (event.type == SDL_WINDOWEVENT && event.window.event == SDL_WINDOWEVENT_RESIZED &&
                   !table.getBoolean("window/fullscreen")) {
            // Both sizes are read first: each setting resizes the window.
            const int width = event.window.data1, height = event.window.data2;
            table.removeListener(this);
            table.setInteger("window/width", width);
            table.setInteger("window/height", height);
            table.addListener(this);
        }
    }
}

void Window::handleKey(const SDL_Keysym& key)
{
    using Key = Harbour::Key;
    static const std::map<SDL_Keycode, Key> KEYS = {{SDLK_F1, Key::CONSOLE},
                                                    {SDLK_ESCAPE, Key::ESCAPE},
                                                    {SDLK_RETURN, Key::ENTER},
                                                    {SDLK_KP_ENTER, Key::ENTER},
                                                    {SDLK_BACKSPACE, Key::BACKSPACE},
                                                    {SDLK_DELETE, Key::DELETE},
                                                    {SDLK_UP, Key::UP},
                                                    {SDLK_DOWN, Key::DOWN},
                                                    {SDLK_LEFT, Key::LEFT},
                                                    {SDLK_RIGHT, Key::RIGHT},
                                                    {SDLK_PAGEUP, Key::PAGE_UP},
                                                    {SDLK_PAGEDOWN, Key::PAGE_DOWN},
                                                    {SDLK_HOME, Key::HOME},
                                                    {SDLK_END, Key::END}};
    const auto found = KEYS.find(key.sym);
    // The key left of 1, whatever the layout of the keyboard.
    if (key.scancode == SDL_SCANCODE_GRAVE) {
        m_SkipsText = true;
        m_Harbour.handleKey(Key::CONSOLE);
    } else if (found != KEYS.end()) {
        m_Harbour.handleKey(found->second);
    } else if (key.sym == SDLK_F11) {
        qor::Configuration& table = m_Harbour.getSettings().getTable();
        table.setBoolean("window/fullscreen", !table.getBoolean("window/fullscreen"));
    }
}

void Window::drawFrame()
{
    int width = 0, height = 0;
    SDL_GetWindowSize(m_Window.get(), &width, &height);
    m_Harbour.resize(width, height);
    present(m_Harbour.draw());
    m_Harbour.getStats().end(Stats::PRESENT);
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

void Window::run()
{
    const std::string driver = SDL_GetCurrentVideoDriver();
    if (driver == "dummy" || driver == "offscreen") {
        throw std::runtime_error("There is no display; see --frames");
    }
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::duration<double> STEP(Harbour::STEP), LONGEST(0.25);
    Clock::time_point last = Clock::now();
    std::chrono::duration<double> unspent(0.0);
    while (!m_Harbour.isOver()) {
        m_Harbour.getStats().startFrame();
        handleEvents();
        const Clock::time_point now = Clock::now();
        // After a pause, such as a moved window, time is lost rather than hurried after.
        unspent += std::min<std::chrono::duration<double>>(now - last, LONGEST);
        last = now;
        for (; unspent >= STEP; unspent -= STEP) {
            m_Harbour.update();
        }
        m_Harbour.getStats().end(Stats::UPDATE);
        drawFrame();
        // Where the screen does not set the pace, sleep until the next step.
        const std::chrono::duration<double, std::milli> rest =
            STEP - unspent - (Clock::now() - now);
        if (rest.count() >= 1.0) {
            SDL_Delay(static_cast<Uint32>(rest.count()));
        }
    }
}

void Window::run(int frameCount)
{
    for (int i = 0; i < frameCount && !m_Harbour.isOver(); ++i) {
        m_Harbour.getStats().startFrame();
        handleEvents();
        m_Harbour.update();
        m_Harbour.getStats().end(Stats::UPDATE);
        drawFrame();
    }
}
