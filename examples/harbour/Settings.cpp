// SPDX-License-Identifier: MIT
#include "Settings.h"

namespace
{

constexpr unsigned int VERSION = 1;

} // namespace

Settings::Settings() : m_Table(VERSION)
{
    const auto addInteger = [this](const char* name, int value, int low, int high,
                                   const char* help) {
        m_Table.addIntegerParameter(name, value, low, high, 0);
        m_Descriptions.push_back({name, help});
    };
    const auto addBoolean = [this](const char* name, bool value, const char* help) {
        m_Table.addBooleanParameter(name, value, 0);
        m_Descriptions.push_back({name, help});
    };
    addInteger("window/width", 1280, 160, 7680, "columns of the window");
    addInteger("window/height", 720, 90, 4320, "rows of the window");
    addBoolean("window/fullscreen", false, "whether the window fills the screen");
    addInteger("log/level", 2, 0, 3, "what is logged: 0 nothing, 1 errors, 2 infos, 3 all");
    addBoolean("show/names", true, "whether ships have name tags");
    addBoolean("show/status", true, "whether there is a status line");
    addBoolean("show/ships", true, "whether the status line counts the ships");
    addBoolean("show/rate", true, "whether the status line shows the frames a second");
    m_Table.addFloatParameter("time/speed", 4.0f, 0.0f, 600.0f, 0);
    m_Descriptions.push_back({"time/speed", "minutes of the day that pass in a second"});
}

bool Settings::load(const std::string& filename)
{
    const bool isReadable = m_Table.load(filename);
    m_Filename = isReadable ? filename : "";
    return isReadable;
}
