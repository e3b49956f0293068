#pragma once

#include <memory>

#include <SDL.h>

#include "Harbour.h"

/// The window: the only part that uses SDL. It gives input to the harbour and shows its frames.
class Window : private qor::Configuration::Listener
{
public:
    /// @throws std::runtime_error if no window can be opened
    explicit Window(Harbour& harbour);
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window() override;

    /// Runs the program until it is left.
    void run();

    /// Runs a number of frames, each an update on from the last, without regard to the time.
    void run(int frameCount);

private:
    struct TCloser {
        void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
        void operator()(SDL_Renderer* renderer) const { SDL_DestroyRenderer(renderer); }
        void operator()(SDL_Texture* texture) const { SDL_DestroyTexture(texture); }
    };

    void parameterChanged(const std::string& name) override;
    void handleEvents();
    void handleKey(const SDL_Keysym& key);
    void drawFrame();
    void present(const qor::Image& frame);

    Harbour& m_Harbour;
    std::unique_ptr<SDL_Window, TCloser> m_Window;
    std::unique_ptr<SDL_Renderer, TCloser> m_Renderer;
    std::unique_ptr<SDL_Texture, TCloser> m_Texture; ///< of the size of the last frame
    bool m_SkipsText = false;                        ///< the key of the console also gives a text
};
