// SPDX-License-Identifier: MIT
#include "DocumentCommands.h"

#include <string>
#include <vector>

#include <qor/StringUtil.h>
#include <qor/XMLElement.h>

#include "DocumentTree.h"
#include "HostCommand.h"
#include "shared/ElementPath.h"
#include "shared/SessionCommands.h"
#include "shared/Text.h"

namespace
{

/// Returns whether an element is a comment. Values and children of comments are not saved.
bool isComment(const qor::XMLElement& element)
{
    const std::string name = element.getName();
    return !name.empty() && name.front() == '!';
}

/// The base class of the commands that replace the document.
class ReplaceDocumentCommand : public HostCommand
{
public:
    /// @param asks whether it asks before unsaved changes are lost
    ReplaceDocumentCommand(Host& host, const TDescription& description, bool asks)
        : HostCommand(host, description), m_Asks(asks)
    {
    }

protected:
    bool replaceDocument(const std::string& command, const HostStateMachine::Action& action)
    {
        return m_Asks ? m_Host.getStates().dropDocument(command, action) : action();
    }

private:
    const bool m_Asks;
};

class NewCommand : public ReplaceDocumentCommand
{
public:
    using ReplaceDocumentCommand::ReplaceDocumentCommand;

private:
    bool run(const TTokens& tokens) override
    {
        const std::string& name = tokens[1];
        if (!m_Host.requireIdleLoader()) {
            return false;
        }
        if (!ElementPath::isElementName(name)) {
            return fail("Cannot start a document: " + quote(name) + " is not an element name");
        }
        return replaceDocument("new", [&host = m_Host, name] {
            host.getDocument().create(name);
            return true;
        });
    }
};

class LoadCommand : public ReplaceDocumentCommand
{
public:
    using ReplaceDocumentCommand::ReplaceDocumentCommand;

private:
    bool run(const TTokens& tokens) override
    {
        const std::string& recent = m_Host.getSettings().getTable().getString("document/recent");
        const std::string filename = tokens.size() > 1 ? tokens[1] : recent;
        if (!m_Host.requireIdleLoader()) {
            return false;
        }
        if (filename.empty()) {
            return fail("Cannot load the recent document: no document was loaded or saved before. "
                        "Use 'load FILE'");
        }
        return replaceDocument("load",
                               [&host = m_Host, filename] { return host.loadDocument(filename); });
    }
};

class ErrorCommand : public HostCommand
{
public:
    using HostCommand::HostCommand;

private:
    bool run(const TTokens&) override
    {
        if (!m_Host.requireIdleLoader()) {
            return false;
        }
        const std::string error = qor::XMLElement::getLastError();
        print(error.empty() ? "No error has occurred" : error);
        return true;
    }
};

class TreeCommand : public HostCommand
{
public:
    using HostCommand::HostCommand;

private:
    bool run(const TTokens& tokens) override
    {
        const qor::Configuration& settings = m_Host.getSettings().getTable();
        const int depth = tokens.size() > 1 ? qor::StringUtil::stringToInt(tokens[1])
                                            : settings.getInteger("tree/depth");
        const int count = tokens.size() > 2 ? qor::StringUtil::stringToInt(tokens[2])
                                            : settings.getInteger("tree/lines");
        if (depth < 1 || count < 1) {
            return fail("Cannot show the tree: DEPTH and COUNT are numbers from 1. Usage: " +
                        getDescription().getUsage());
        }
        printTree(m_Host.getConsole(), m_Host.getDocument().getRoot(), depth, count);
        return true;
    }
};

// Each of the following functions returns an element's value, or if `element` is null, the default
// value, as a text of one type.

std::string readText(const Host&, const qor::XMLElement* element, const std::string& defaultValue)
{
    return element ? element->getValue() : defaultValue;
}

std::string readInteger(const Host&, const qor::XMLElement* element,
                        const std::string& defaultValue)
{
    return qor::StringUtil::toString(element ? element->getValueAsInteger()
                                             : qor::StringUtil::stringToInt(defaultValue));
}

std::string readFloat(const Host& host, const qor::XMLElement* element,
                      const std::string& defaultValue)
{
    const int digits = host.getSettings().getTable().getInteger("number/digits");
    return qor::StringUtil::toString(element ? element->getValueAsFloat()
                                             : qor::StringUtil::stringToFloat(defaultValue),
                                     digits);
}

std::string readBoolean(const Host&, const qor::XMLElement* element,
                        const std::string& defaultValue)
{
    return (element ? element->getValueAsBoolean() : defaultValue == "true") ? "true" : "false";
}

class ReadCommand : public HostCommand
{
public:
    using Reader = std::string (*)(const Host& host, const qor::XMLElement* element,
                                   const std::string& defaultValue);

    ReadCommand(Host& host, const TDescription& description, Reader reader)
        : HostCommand(host, description), m_Reader(reader)
    {
    }

private:
    bool run(const TTokens& tokens) override
    {
        const Document& document = m_Host.getDocument();
        const qor::XMLElement* const element = ElementPath(tokens[1]).find(document.getRoot());
        const bool hasDefault = tokens.size() > 2;
        if (!element && !hasDefault) {
            return fail("Cannot read " + quote(tokens[1]) + ": the element does not exist");
        }
        print(m_Reader(m_Host, element, hasDefault ? tokens[2] : ""));
        return true;
    }

    const Reader m_Reader;
};

class PutCommand : public HostCommand
{
public:
    using HostCommand::HostCommand;

private:
    bool run(const TTokens& tokens) override
    {
        if (!m_Host.requireIdleLoader()) {
            return false;
        }
        Document& document = m_Host.getDocument();
        qor::XMLElement* const element = ElementPath(tokens[1]).create(document.getRoot());
        if (!element || isComment(*element)) {
            return fail("Cannot set " + quote(tokens[1]) +
                        ": a part is not an element name, or its number is too large");
        }
        element->setValue(joinWords(tokens, 2));
        document.setChanged();
        return true;
    }
};

class EditCommand : public HostCommand
{
public:
    using HostCommand::HostCommand;

private:
    bool run(const TTokens& tokens) override
    {
        if (!m_Host.requireIdleLoader()) {
            return false;
        }
        const qor::XMLElement* const element =
            ElementPath(tokens[1]).find(m_Host.getDocument().getRoot());
        if (!element || isComment(*element)) {
            return fail("Cannot edit " + quote(tokens[1]) +
                        ": the element does not exist or is a comment");
        }
        m_Host.getStates().edit(tokens[1]);
        return true;
    }
};

class AddCommand : public HostCommand
{
public:
    using HostCommand::HostCommand;

private:
    bool run(const TTokens& tokens) override
    {
        if (!m_Host.requireIdleLoader()) {
            return false;
        }
        Document& document = m_Host.getDocument();
        const ElementPath path(tokens[1]);
        qor::XMLElement* const parent = path.findParent(document.getRoot());
        if (!parent || isComment(*parent) || path.hasNumber() ||
            !ElementPath::isElementName(path.getName())) {
            return fail("Cannot add " + quote(tokens[1]) +
                        ": its parent does not exist, or the last part is not an element name");
        }
        parent->createChild(path.getName())->setValue(joinWords(tokens, 2));
        document.setChanged();
        return true;
    }
};

class DeleteCommand : public HostCommand
{
public:
    DeleteCommand(Host& host, const TDescription& description, bool deletesAll)
        : HostCommand(host, description), m_DeletesAll(deletesAll)
    {
    }

private:
    bool run(const TTokens& tokens) override
    {
        if (!m_Host.requireIdleLoader()) {
            return false;
        }
        Document& document = m_Host.getDocument();
        const ElementPath path(tokens[1]);
        qor::XMLElement* const parent = path.findParent(document.getRoot());
        qor::XMLElement* const child = parent ? path.find(document.getRoot()) : nullptr;
        // An empty name without a number is refused, because it matches every element.
        if (!child || (path.getName().empty() && !path.hasNumber())) {
            return fail("Cannot delete " + quote(tokens[1]) + ": the element does not exist");
        }
        if (m_DeletesAll) {
            parent->deleteChild(child->getName());
        } else {
            parent->deleteChild(child);
        }
        document.setChanged();
        return true;
    }

    const bool m_DeletesAll;
};

void addFileCommands(Host& host)
{
    host.beginGroup("Document");
    host.addCommand<NewCommand>({"new", "NAME", "Start an empty document", 1, 1}, true);
    host.addCommand<NewCommand>(
        {"new!", "NAME", "Start an empty document and drop unsaved changes", 1, 1}, false);
    host.addCommand<LoadCommand>({"load", "[FILE]", "Load a file, or the recent document", 0, 1},
                                 true);
    host.addCommand<LoadCommand>({"load!", "[FILE]", "Load and drop unsaved changes", 0, 1}, false);
    addSaveCommands(host);
    host.addCommand({"save-compact", "[FILE]", "Save without white space", 0, 1},
                    [&host](const Command::TTokens& tokens) {
                        return host.saveDocument({tokens.size() > 1 ? tokens[1] : "", false});
                    });
    host.addCommand<ErrorCommand>({"error", "", "Show the last XML error", 0, 0});
}

void addElementCommands(Host& host)
{
    host.beginGroup("Elements");
    host.addCommand<TreeCommand>(
        {"tree", "[DEPTH [COUNT]]", "Show the document, with limits on levels and lines", 0, 2});
    host.addCommand<ReadCommand>(
        {"text", "PATH [DEFAULT]", "Show a value; a path is like ships/ship[2]/name", 1, 2},
        readText);
    host.addCommand<ReadCommand>({"integer", "PATH [DEFAULT]", "Show a value as an integer", 1, 2},
                                 readInteger);
    host.addCommand<ReadCommand>({"float", "PATH [DEFAULT]", "Show a value as a number", 1, 2},
                                 readFloat);
    host.addCommand<ReadCommand>(
        {"boolean", "PATH [DEFAULT]", "Show a value as true or false", 1, 2}, readBoolean);
    host.addCommand<PutCommand>(
        {"put", "PATH VALUE...", "Set a value and create missing elements", 2, -1});
    host.addCommand<EditCommand>({"edit", "PATH", "Enter a value on a separate line", 1, 1});
    host.addCommand<AddCommand>({"add", "PATH [VALUE...]", "Append an element", 1, -1});
    host.addCommand<DeleteCommand>({"delete", "PATH", "Delete an element", 1, 1}, false);
    host.addCommand<DeleteCommand>(
        {"delete-all", "PATH", "Delete an element and its siblings with the same name", 1, 1},
        true);
}

} // namespace

void addDocumentCommands(Host& host)
{
    addFileCommands(host);
    addElementCommands(host);
}
