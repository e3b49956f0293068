// SPDX-License-Identifier: MIT
#include "Window.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <stdexcept>
#include <string>

Window::Window(Harbour& harbour) : m_Harbour(harbour)
{
    qor::Configuration& table = harbour.settings;
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
    m_Harbour.settings.removeListener(this);
    m_Window.reset();
    SDL_Quit();
}

void Window::parameterChanged(const std::string& name)
{
    applySetting(name);
}

void Window::applySetting(const std::string& name)
{
    const qor::Configuration& table = m_Harbour.settings;
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
    qor::Configuration& table = m_Harbour.settings;
    m_SkipsText = false;
    for (SDL_Event event; SDL_PollEvent(&event) != 0;) {
        if (event.type == SDL_QUIT) {
            m_Harbour.life.sendEvent(Life::QUIT);
        } else if (event.type == SDL_KEYDOWN) {
            handleKey(event.key.keysym);
        } else if (event.type == SDL_TEXTINPUT && !m_SkipsText) {
            m_Harbour.handleText(event.text.text);
        } else if (event.type == SDL_MOUSEWHEEL) {
            m_Harbour.scroll(event.wheel.y > 0 ? 3 : -3);
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
    qor::Configuration& table = m_Harbour.settings;
    // The key left of 1, independent of the keyboard's layout.
    if (key.scancode == SDL_SCANCODE_GRAVE || key.sym == SDLK_F1) {
        m_SkipsText = key.sym != SDLK_F1;
        m_Harbour.life.sendEvent(Life::CONSOLE);
    } else if (key.sym == SDLK_ESCAPE) {
        m_Harbour.life.sendEvent(Life::ESCAPE);
    } else if (key.sym == SDLK_F11) {
        table.setBoolean("window/fullscreen", !table.getBoolean("window/fullscreen"));
    } else if (m_Harbour.life.isIn("console")) {
        editLine(key.sym);
    } else if (key.sym == SDLK_LEFT || key.sym == SDLK_RIGHT) {
        m_Harbour.pan(key.sym == SDLK_LEFT ? -0.5f : 0.5f);
    } else if (key.sym == SDLK_RETURN) {
        m_Harbour.life.sendEvent(Life::CONTINUE);
    }
}

void Window::editLine(SDL_Keycode key)
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
        m_Harbour.runLine(m_Harbour.editor.enter());
    } else if (key == SDLK_PAGEUP || key == SDLK_PAGEDOWN) {
        m_Harbour.scroll(key == SDLK_PAGEUP ? 5 : -5);
    }
}

void Window::drawFrame()
{
    int width = 0, height = 0;
    SDL_GetWindowSize(m_Window.get(), &width, &height);
    m_Harbour.resize(width, height);
    present(m_Harbour.draw());
    m_Harbour.stats.end("present");
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
        m_Harbour.stats.startFrame();
        handleEvents();
        const Clock::time_point now = Clock::now();
        // After a pause, such as a moved window, the lost time is not made up for.
        unspent += std::min<std::chrono::duration<double>>(now - last, LONGEST);
        last = now;
        for (unspent = frameCount > 0 ? STEP : unspent; unspent >= STEP; unspent -= STEP) {
            m_Harbour.update();
        }
        m_Harbour.stats.end("update");
        drawFrame();
        // If the screen does not set the pace, sleep until the next step.
        const std::chrono::duration<double, std::milli> rest =
            STEP - unspent - (Clock::now() - now);
        if (frameCount == 0 && rest.count() >= 1.0) {
            SDL_Delay(static_cast<Uint32>(rest.count()));
        }
    }
}
