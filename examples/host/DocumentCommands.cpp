#include "DocumentCommands.h"

#include <cstddef>
#include <string>
#include <vector>

#include <qor/StringUtil.h>
#include <qor/XMLElement.h>

#include "Command.h"
#include "DocumentTree.h"
#include "Host.h"

namespace
{

std::string quote(const std::string& text)
{
    return "'" + text + "'";
}

/// @return whether an element of that name can be written to a file and be read again
bool isElementName(const std::string& name)
{
    return !name.empty() && name.find_first_of("!?") != 0 &&
           name.find_first_of("<>/") == std::string::npos;
}

bool areElementNames(const std::string& path)
{
    std::size_t begin = path.front() == '/' ? 1 : 0;
    for (;;) {
        const std::size_t slash = path.find('/', begin);
        if (!isElementName(path.substr(begin, slash - begin))) {
            return false;
        }
        if (slash == std::string::npos) {
            return true;
        }
        begin = slash + 1;
    }
}

/// Where the last name of a path belongs.
struct TPlace {
    qor::XMLElement* parent = nullptr; ///< null if there is no such element
    std::string name;
};

/// Paths with empty names, which stand for any element, are too vague to add or to delete by.
TPlace findPlace(qor::XMLElement& document, const std::string& path)
{
    if (path.back() == '/' || path.find("//") != std::string::npos) {
        return {};
    }
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return {&document, path};
    }
    return {document.findChild(path.substr(0, slash)), path.substr(slash + 1)};
}

class NewCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        if (!m_Host.mayUseFiles()) {
            return false;
        }
        if (!isElementName(tokens[1])) {
            return fail("Not a name for an element: " + quote(tokens[1]));
        }
        m_Host.newDocument(tokens[1]);
        return true;
    }
};

class LoadCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        const std::string& recent = m_Host.getSettings().getTable().getString("document/recent");
        // A copy, since loading sets it.
        const std::string filename = tokens.size() > 1 ? tokens[1] : recent;
        if (filename.empty()) {
            return fail("No document was loaded before; name one");
        }
        return m_Host.loadDocument(filename);
    }
};

class SaveCommand : public Command
{
public:
    SaveCommand(Host& host, const TDescription& description, bool formatted)
        : Command(host, description), m_Formatted(formatted)
    {
    }

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        return m_Host.saveDocument(tokens.size() > 1 ? tokens[1] : m_Host.getFilename(),
                                   m_Formatted);
    }

    const bool m_Formatted;
};

class ErrorCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>&) override
    {
        if (!m_Host.mayUseFiles()) {
            return false;
        }
        const std::string error = qor::XMLElement::getLastError();
        print(error.empty() ? "Nothing has failed so far" : error);
        return true;
    }
};

class TreeCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        const qor::Configuration& settings = m_Host.getSettings().getTable();
        const int depth = tokens.size() > 1 ? qor::StringUtil::stringToInt(tokens[1])
                                            : settings.getInteger("tree/depth");
        const int count = tokens.size() > 2 ? qor::StringUtil::stringToInt(tokens[2])
                                            : settings.getInteger("tree/lines");
        if (depth < 1 || count < 1) {
            return fail("DEPTH and COUNT are numbers from 1 on");
        }
        printTree(m_Host.getConsole(), m_Host.getDocument(), depth, count);
        return true;
    }
};

std::string readText(const Host& host, const std::string& path, const std::string& defaultValue)
{
    return host.getDocument().getValue(path, defaultValue);
}

std::string readInteger(const Host& host, const std::string& path, const std::string& defaultValue)
{
    const int defaultNumber = qor::StringUtil::stringToInt(defaultValue);
    return qor::StringUtil::toString(host.getDocument().getValueAsInteger(path, defaultNumber));
}

std::string readFloat(const Host& host, const std::string& path, const std::string& defaultValue)
{
    const int digits = host.getSettings().getTable().getInteger("number/digits");
    const float defaultNumber = qor::StringUtil::stringToFloat(defaultValue);
    return qor::StringUtil::toString(host.getDocument().getValueAsFloat(path, defaultNumber),
                                     digits);
}

std::string readBoolean(const Host& host, const std::string& path, const std::string& defaultValue)
{
    return host.getDocument().getValueAsBoolean(path, defaultValue == "true") ? "true" : "false";
}

class ReadCommand : public Command
{
public:
    using TReader = std::string (*)(const Host& host, const std::string& path,
                                    const std::string& defaultValue);

    ReadCommand(Host& host, const TDescription& description, TReader reader)
        : Command(host, description), m_Reader(reader)
    {
    }

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        const bool hasDefault = tokens.size() > 2;
        if (!hasDefault && !m_Host.getDocument().findChild(tokens[1])) {
            return fail("No element at " + quote(tokens[1]));
        }
        print(m_Reader(m_Host, tokens[1], hasDefault ? tokens[2] : ""));
        return true;
    }

    const TReader m_Reader;
};

class PutCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        qor::XMLElement& document = m_Host.getDocument();
        const std::string& path = tokens[1];
        if (!document.findChild(path) && !areElementNames(path)) {
            return fail("Not a path to create elements by: " + quote(path));
        }
        document.findChild(path, true)->setValue(joinWords(tokens, 2));
        m_Host.setChanged(true);
        return true;
    }
};

class EditCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        if (!m_Host.getDocument().findChild(tokens[1], false)) {
            return fail("No element at " + quote(tokens[1]));
        }
        m_Host.getLife().edit(tokens[1]);
        return true;
    }
};

class AddCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        const TPlace place = findPlace(m_Host.getDocument(), tokens[1]);
        if (!place.parent || !isElementName(place.name)) {
            return fail("No place for an element at " + quote(tokens[1]));
        }
        place.parent->createChild(place.name)->setValue(joinWords(tokens, 2));
        m_Host.setChanged(true);
        return true;
    }
};

class DeleteCommand : public Command
{
public:
    DeleteCommand(Host& host, const TDescription& description, bool deletesAll)
        : Command(host, description), m_DeletesAll(deletesAll)
    {
    }

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        const TPlace place = findPlace(m_Host.getDocument(), tokens[1]);
        qor::XMLElement* const child = place.parent ? place.parent->getChild(place.name) : nullptr;
        if (!child) {
            return fail("No element to delete at " + quote(tokens[1]));
        }
        if (m_DeletesAll) {
            place.parent->deleteChild(place.name);
        } else {
            place.parent->deleteChild(child);
        }
        m_Host.setChanged(true);
        return true;
    }

    const bool m_DeletesAll;
};

} // namespace

void addDocumentCommands(Host& host)
{
    host.addCommand<NewCommand>({"new", "NAME", "Start an empty document", 1, 1});
    host.addCommand<LoadCommand>(
        {"load", "[FILE]", "Read the document from a file, or the recent one", 0, 1});
    host.addCommand<SaveCommand>({"save", "[FILE]", "Write the document, an element a line", 0, 1},
                                 true);
    host.addCommand<SaveCommand>(
        {"save-compact", "[FILE]", "Write the document without white space", 0, 1}, false);
    host.addCommand<ErrorCommand>({"error", "", "Show why loading or saving last failed", 0, 0});
    host.addCommand<TreeCommand>(
        {"tree", "[DEPTH [COUNT]]", "Show the document: so many levels and lines", 0, 2});
    host.addCommand<ReadCommand>({"text", "PATH [DEFAULT]", "Show a value", 1, 2}, readText);
    host.addCommand<ReadCommand>(
        {"integer", "PATH [DEFAULT]", "Show a value as a whole number", 1, 2}, readInteger);
    host.addCommand<ReadCommand>({"float", "PATH [DEFAULT]", "Show a value as a number", 1, 2},
                                 readFloat);
    host.addCommand<ReadCommand>(
        {"boolean", "PATH [DEFAULT]", "Show a value as true or false", 1, 2}, readBoolean);
    host.addCommand<PutCommand>(
        {"put", "PATH VALUE...", "Set a value, creating what is missing", 2, -1});
    host.addCommand<EditCommand>({"edit", "PATH", "Type a value in a line of its own", 1, 1});
    host.addCommand<AddCommand>(
        {"add", "PATH [VALUE...]", "Append an element, even beside one of its name", 1, -1});
    host.addCommand<DeleteCommand>({"delete", "PATH", "Delete an element", 1, 1}, false);
    host.addCommand<DeleteCommand>(
        {"delete-all", "PATH", "Delete all elements of the last name", 1, 1}, true);
}
