// SPDX-License-Identifier: MIT
// Keeps a window's size in the settings: limits, changes that apply at once, and saving on exit.
#include <iostream>
#include <string>

#include <qor/Configuration.h>

/// Replace it by the window of your toolkit.
struct TWindow {
    int width;
    int height;
};

/// Resizes the window whenever a setting changes, from the settings file, a menu or a console.
class WindowSettings : public qor::Configuration::Listener
{
public:
    WindowSettings(qor::Configuration& configuration, TWindow& window)
        : m_Configuration(configuration), m_Window(window)
    {
        m_Configuration.addIntegerParameter("window/width", 1280, 320, 7680, 0);
        m_Configuration.addIntegerParameter("window/height", 720, 200, 4320, 0);
        m_Configuration.addListener(this);
        m_Configuration.updateAllParameters(); // the defaults, too
    }
    WindowSettings(const WindowSettings&) = delete;
    WindowSettings& operator=(const WindowSettings&) = delete;
    ~WindowSettings() override { m_Configuration.removeListener(this); }

    void parameterChanged(const std::string&) override
    {
        m_Window.width = m_Configuration.getInteger("window/width");
        m_Window.height = m_Configuration.getInteger("window/height");
    }

    /// Call it when the user has resized the window.
    void storeSize(int width, int height)
    {
        m_Configuration.setInteger("window/width", width);
        m_Configuration.setInteger("window/height", height);
    }

private:
    qor::Configuration& m_Configuration;
    TWindow& m_Window;
};

int main()
{
    qor::Configuration configuration(1);
    TWindow window = {};
    WindowSettings settings(configuration, window);
    // False means that the file exists but cannot be read: don't save over it then. See the recipe
    // on elements that no parameter names for files that users edit.
    const bool maySave = configuration.load("settings.xml");

    std::cout << window.width << " x " << window.height << '\n';
    configuration.set("window/width", "100"); // clipped to the limit
    std::cout << window.width << " x " << window.height << '\n';
    settings.storeSize(1920, 1080);

    if (maySave && !configuration.save()) {
        std::cout << "The settings could not be saved.\n";
        return 1;
    }
    std::cout << window.width << " x " << window.height << ", saved\n";
}
