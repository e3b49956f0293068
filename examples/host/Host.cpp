#include "Host.h"

#include <vector>

namespace
{

constexpr int KEEP_ALL_LINES = -1;
constexpr int SCREEN_LINES = 2000;
constexpr const char* FAILURE = "Error: ";

} // namespace

Host::Host(Mode mode)
    : m_Mode(mode), m_Document("document"),
      m_Console(mode == Mode::FULL_SCREEN ? SCREEN_LINES : KEEP_ALL_LINES)
{
    m_Console.addVariable("prompt", "text in front of the command line", qor::Console::VT_STRING, 0,
                          0, &m_Prompt);
    // The console has these two already, but does not give their help texts out.
    m_Descriptions["get"] = {"get", "VARIABLE", "Show a console variable", 1, 1};
    m_Descriptions["set"] = {"set", "VARIABLE VALUE", "Set a console variable", 2, 2};
}

void Host::registerCommand(std::unique_ptr<Command> command)
{
    const Command::TDescription& description = command->getDescription();
    const std::string& name = description.name;
    // As in the console, the first one to take a name keeps it.
    if (!m_Descriptions.emplace(name, description).second) {
        return;
    }
    m_Console.addCommand(name, description.help, description.minParameters,
                         description.maxParameters, command.get());
    m_Commands.emplace(name, std::move(command));
}

const std::map<std::string, Command::TDescription>& Host::getDescriptions() const
{
    return m_Descriptions;
}

void Host::putChar(char character)
{
    const unsigned int outputModCount = m_Console.getOutputModCount();
    m_Result.reset();
    m_Console.putChar(character);
    if (character == ENTER && hasLineFailed(outputModCount)) {
        m_HasFailed = true;
    }
}

bool Host::hasLineFailed(unsigned int outputModCountBefore) const
{
    if (m_Result) {
        return !*m_Result;
    }
    // An empty line prints nothing, and the newest line is of no concern then.
    if (m_Console.getOutputModCount() == outputModCountBefore) {
        return false;
    }
    std::vector<std::string> newest;
    m_Console.getOutput(newest, 1, 0);
    return !newest.empty() && newest.front().rfind(FAILURE, 0) == 0;
}

bool Host::fail(const std::string& reason)
{
    m_Console.print(FAILURE + reason);
    return false;
}

void Host::newDocument(const std::string& name)
{
    m_Document = qor::XMLElement(name);
    m_Filename.clear();
    m_IsChanged = false;
}

bool Host::loadDocument(const std::string& filename)
{
    // A failed load leaves its element with a part of the file.
    qor::XMLElement document("");
    const int result = document.load(filename);
    if (result < 0) {
        // -1 may stand for the file as a whole, all else is a position in it.
        const std::string place = result == -1 ? "code -1" : "position " + std::to_string(-result);
        return fail(filename + ": " + qor::XMLElement::getLastError() + " (" + place + ")");
    }
    m_Document = std::move(document);
    m_Filename = filename;
    m_IsChanged = false;
    return true;
}
