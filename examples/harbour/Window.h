// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <SDL.h>

#include "Harbour.h"

/// The window: the only part that uses SDL. It gives input to the harbour and shows its frames.
class Window final : private qor::Configuration::Listener
{
public:
    /// @throws std::runtime_error if no window can be opened
    explicit Window(Harbour& harbour);
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window() override;

    /// Runs the program until it is left.
    /// @param frameCount 0, or the number of frames to run without regard to the time: each is one
    ///        step after the last
    /// @throws std::runtime_error if there is no display and the number of frames is 0
    void run(int frameCount);

private:
    struct TCloser {
        void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
        void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
    };

    void parameterChanged(const std::string& name) override;
    void handleEvents();
    void storeSize(int width, int height);
    void handleKey(const SDL_Keysym& key);
    void handleConsoleKey(SDL_Keycode key);
    void present(const qor::Image& frame) const;

    Harbour& m_Harbour;
    qor::Configuration& m_Settings;
    std::unique_ptr<SDL_Window, TCloser> m_Window;
    bool m_TakesText = false; ///< the key that opens the console also gives a text
};
