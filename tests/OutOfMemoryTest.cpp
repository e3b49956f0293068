#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include "FailingAllocator.h"
#include "PixelData.h"
#include "TemporaryFolder.h"
#include "TestData.h"
#include "qor/qor.h"

using qor::Configuration, qor::Console, qor::File, qor::Image, qor::Log, qor::State;
using qor::StateMachine, qor::StringUtil, qor::XMLElement;

namespace
{

/// What a failure leaves behind.
enum Guarantee {
    STRONG, ///< all as before
    BASIC,  ///< something that the operation can be repeated with
};

/// One operation on objects of its own.
struct TRun {
    std::function<void()> act;
    std::function<std::string()> show; ///< all that the operation may change
};

struct TScenario {
    std::string name;
    Guarantee guarantee;
    std::function<TRun()> prepare;
};

int firstFreeHandle()
{
    const int handle = dup(STDIN_FILENO);
    close(handle);
    return handle;
}

/// Runs the operation with one allocation after the other failing, until it succeeds. A failure
/// loses nothing, and behind it the same operation gives what it gives without.
void expectNothingLost(const TScenario& scenario)
{
    std::string expected;
    {
        const TRun whole = scenario.prepare();
        whole.show();
        whole.act();
        expected = whole.show();
    }
    for (long allowed = 0, failures = 0; failures == allowed; ++allowed) {
        const long before = liveBlocks;
        const int handle = firstFreeHandle();
        {
            const TRun run = scenario.prepare();
            const std::string former = run.show();
            try {
                allocationsLeft = allowed;
                run.act();
            } catch (const std::bad_alloc&) {
                ++failures;
            }
            allocationsLeft = NEVER;
            if (failures > allowed) {
                const std::string left = run.show();
                ASSERT_TRUE(scenario.guarantee == BASIC || left == former) << allowed << left;
                run.act();
            }
            ASSERT_EQ(run.show(), expected) << allowed;
        }
        ASSERT_EQ(liveBlocks, before) << allowed;
        ASSERT_EQ(firstFreeHandle(), handle) << allowed;
        ASSERT_TRUE(allowed > 0 || failures > 0) << "it takes no memory";
    }
}

/// An operation on one object.
template<typename TObject>
TScenario on(const std::string& name, Guarantee guarantee, std::function<void(TObject&)> action)
{
    return {name, guarantee, [action] {
                const auto object = std::make_shared<TObject>();
                return TRun{[=] { action(*object); }, [=] { return object->show(); }};
            }};
}

struct TText : std::string {
    std::string show() const { return *this; }
};

/// An operation that makes something new, tells it as text and leaves all else alone.
TScenario making(const std::string& name, std::function<std::string()> action)
{
    return on<TText>(name, STRONG, [action](TText& text) { text.assign(action()); });
}

const std::string LONG = "a text that fits no buffer of its string";

const std::string GROUP = "<a>" + LONG + "<b><!-- c --></b></a>";

const std::string DOCUMENT = "<root>" + repeated(GROUP, 4) + "&amp; " + LONG + "</root>";

struct TTree : XMLElement {
    TTree() : XMLElement("") { parse(DOCUMENT); }
    std::string show() const { return toString(); }
    using XMLElement::operator=;
};

struct TTable : Configuration::Listener {
    TTable()
    {
        table.addStringParameter(LONG, "text", 0, 99, 0);
        table.addIntegerParameter(LONG + "/i", 1, 0, 9, 0);
        table.addListener(this);
    }

    void parameterChanged(const std::string& name) override { changes += name.size(); }

    std::string show()
    {
        std::string text = std::to_string(std::exchange(changes, 0)) + tree.toString();
        for (const std::string& name : {LONG, LONG + "/i", LONG + "2"}) {
            text += '|' + table.get(name);
        }
        return text;
    }

    Configuration table{3};
    XMLElement tree{"root"};
    std::size_t changes = 0;
};

struct TPicture : Image {
    std::string show() const
    {
        std::string text = std::to_string(getWidth()) + (getData() ? " with pixels" : " without");
        for (const std::uint32_t pixel : isDefined ? pixelsOf(*this) : Pixels()) {
            text += ' ' + std::to_string(pixel);
        }
        return text;
    }

    bool isDefined = false;
};

struct TConsole : Console {
    TConsole() : Console(2)
    {
        addVariable("v", "", VT_STRING, 0, 0, &variable);
        for (const char* line : {"1", "2", "3"}) {
            print(line);
        }
        type("get v " + std::string(9, ' '));
    }

    void type(const std::string& text)
    {
        for (const char character : text) {
            putChar(character);
        }
    }

    std::string show() const
    {
        std::vector<std::string> lines;
        getOutput(lines, 9, 0);
        std::string text = getCommandLine() + '|' + variable;
        for (const std::string& line : lines) {
            text += '|' + line;
        }
        return text;
    }

    std::string variable = LONG;
};

struct TNothing : qor::Task, qor::ConsoleCommand {
    void run() override {}
    bool execute(const std::vector<std::string>&) override { return true; }
};

struct TMachine {
    TMachine() { machine.setCurrentState(&first); }

    std::string show()
    {
        State* const child = first.getInitialChildState();
        std::string text = child ? child->getName() : "no child";
        for (const std::string& name : {std::string("root"), std::string("first"), LONG}) {
            text += machine.transition(name) ? ", knows " + name : "";
        }
        return text;
    }

    StateMachine machine;
    State first{&machine, &machine, "first"};
    std::list<State> states;
};

class OutOfMemoryTest : public TemporaryFolder
{
};

} // namespace

TEST_F(OutOfMemoryTest, NothingIsLostAndAllCanBeRepeated)
{
    const std::string document = write("document", DOCUMENT), target = path("target");
    const std::string picture = path("picture"), missing = path("none/" + LONG);
    const std::string settings =
        write("settings", "<c><version>3</version><" + LONG + ">" + LONG + LONG + "<i>7</i></c>");
    makeImage(2, 2, {1, 2, 3, 4}).saveTGA(picture.c_str(), 32);
    const TTree tree;
    XMLElement rules("");
    rules.parse("<t>0:0-99<a>4:0-99<b>0-1:0</b><c>1:0</c></a></t>");
    const TTable table;
    const TConsole console;
    TMachine machine;
    machine.states.emplace_back(&machine.machine, &machine.first, LONG);
    TNothing nothing;

    // An operation on a file, which holds a log at first. Records show without their time.
    const auto onFile = [&](const std::string& name, Guarantee guarantee,
                            std::function<void()> action) {
        return TScenario{
            name, guarantee, [=] {
                Log::open(target.c_str(), false);
                const std::shared_ptr<void> atEnd(nullptr, [](void*) { Log::close(); });
                return TRun{[=, use = atEnd] { action(); },
                            [=] {
                                const std::string text = read(target);
                                return text[0] == 'X' ? std::to_string(text.size()) : text;
                            }};
            }};
    };
    const TScenario scenarios[] = {
        making("element", [&] { return XMLElement(LONG).getName(); }),
        making("copied tree", [&] { return XMLElement(tree).toString(); }),
        making("text of a tree", [&] { return tree.toString(); }),
        making("fault", [&] { return tree.validate(&rules) ? "" : XMLElement::getLastError(); }),
        making("checksum",
               [&] {
                   qor::MD5 checksum;
                   tree.calculateChecksum(checksum);
                   return checksum.getChecksumHex();
               }),
        on<TTree>("assignment", STRONG, [&](TTree& t) { t = rules; }),
        on<TTree>("assignment to a child", STRONG, [](TTree& t) { *t.getChild("a") = t; }),
        on<TTree>("move into a child", STRONG,
                  [](TTree& t) { *t.findChild("a/b") = std::move(*t.getChild("a")); }),
        on<TTree>("parse", BASIC, [](TTree& t) { t.parse(DOCUMENT + " "); }),
        on<TTree>("fault in a text", BASIC, [](TTree& t) { t.parse("<a>" + GROUP + "</c>"); }),
        on<TTree>("load", BASIC, [&](TTree& t) { t.load(document); }),
        on<TTree>("missing file", BASIC, [&](TTree& t) { t.load(missing); }),
        on<TTree>("name", STRONG, [](TTree& t) { t.setName(LONG); }),
        on<TTree>("value", STRONG, [](TTree& t) { t.getChild("a")->setValue(LONG + LONG); }),
        on<TTree>("number", STRONG, [](TTree& t) { t.findChild("a/b")->setValue(1e30f); }),
        on<TTree>("child", STRONG, [](TTree& t) { t.createChild(LONG); }),
        on<TTree>("path", BASIC, [](TTree& t) { t.findChild(LONG + "/b/" + LONG, true); }),
        onFile("saved tree", STRONG, [&] { tree.save(target, true); }),
        making("failed save",
               [&] { return tree.save(missing, true) < 0 ? XMLElement::getLastError() : ""; }),

        making("table", [&] { return Configuration(table.table).get(LONG); }),
        on<TTable>("assigned table", STRONG, [&](TTable& t) { t.table = table.table; }),
        on<TTable>("new flag", STRONG,
                   [](TTable& t) { t.table.addBooleanParameter(LONG + "2", true, 0); }),
        on<TTable>("new number", STRONG,
                   [](TTable& t) { t.table.addIntegerParameter(LONG + "2", 5, 0, 3, 0); }),
        on<TTable>("new float", STRONG,
                   [](TTable& t) { t.table.addFloatParameter(LONG + "2", 5, 0, 3, 0); }),
        on<TTable>("new text", STRONG,
                   [](TTable& t) { t.table.addStringParameter(LONG + "2", LONG, 0, 3, 0); }),
        on<TTable>("text", STRONG, [](TTable& t) { t.table.setString(LONG, LONG); }),
        on<TTable>("number", STRONG, [](TTable& t) { t.table.set(LONG + "/i", "5"); }),
        on<TTable>("listener", BASIC,
                   [](TTable& t) { t.table.removeListener(&t), t.table.addListener(&t); }),
        on<TTable>("all parameters", BASIC, [](TTable& t) { t.table.updateAllParameters(); }),
        on<TTable>("table into tree", BASIC, [](TTable& t) { t.table.save(&t.tree); }),
        on<TTable>("table of a file", BASIC, [&](TTable& t) { t.table.load(settings); }),
        onFile("table into a file", STRONG, [&] { table.table.save(target); }),

        on<TPicture>("new image", BASIC, [](TPicture& i) { i.create(2, 2); }),
        on<TPicture>("assigned image", STRONG,
                     [&](TPicture& i) { static_cast<Image&>(i) = makeImage(1, 1, {5}); }),
        on<TPicture>("loaded image", BASIC,
                     [&](TPicture& i) { i.isDefined = i.loadTGA(picture.c_str()) == 4; }),

        making("console", [] { return TConsole().show(); }),
        making("copied console", [&] { return TConsole(console).show(); }),
        on<TConsole>("assigned console", STRONG,
                     [](TConsole& c) {
                         Console other(1);
                         other.print(LONG);
                         static_cast<Console&>(c) = other;
                     }),
        on<TConsole>("line", STRONG, [](TConsole& c) { c.print(LONG); }),
        on<TConsole>("character", STRONG, [](TConsole& c) { c.putChar('x'); }),
        on<TConsole>("command line", BASIC, [](TConsole& c) { c.putChar(13); }),
        on<TConsole>("command", STRONG,
                     [&](TConsole& c) { c.addCommand(LONG, LONG, 0, 0, &nothing); }),
        on<TConsole>("variable", STRONG,
                     [](TConsole& c) { c.addVariable(LONG, LONG, c.VT_STRING, 0, 0, nullptr); }),

        on<TMachine>("state", STRONG,
                     [](TMachine& m) { m.states.emplace_back(&m.machine, &m.first, LONG); }),
        on<TMachine>("assigned machine", STRONG, [&](TMachine& m) { m.machine = machine.machine; }),
        making("copied machine",
               [&] { return StateMachine(machine.machine).transition(LONG) ? LONG : ""; }),

        onFile("log", BASIC, [&] { Log::open(target.c_str(), false); }),
        onFile("record", STRONG, [] { Log::info(std::string(5000, 'x')); }),
        making("size of a missing file", [&] { return std::to_string(File::fileSize(missing)); }),
        making("missing file", [&] { return File::deleteFile(missing) ? "" : "missing"; }),
        making("folder", [&] { return File::createDirectory(missing) ? "" : "missing"; }),
        making("renaming", [&] { return File::renameFile(missing, missing) ? "" : "missing"; }),
        making("path", [&] { return File::standardizePath(File::filePath(missing, LONG)); }),
        making("data directory", [&] { return File::getUserDataDirectory(LONG, false); }),

        making("thread",
               [&] {
                   qor::Thread thread;
                   if (!thread.start(&nothing)) {
                       throw std::bad_alloc();
                   }
                   thread.wait();
                   return "";
               }),
        making("lock and event",
               [] {
                   qor::Mutex mutex;
                   qor::Condition condition;
                   condition.signal();
                   mutex.lock();
                   condition.wait(mutex, 0);
                   mutex.unlock();
                   return "";
               }),
        making("trimmed text", [] { return StringUtil::trim(" " + LONG); }),
        making("number as text", [] { return StringUtil::toString(1e30f, 60); }),
        making("time as text", [] { return StringUtil::timeStampToString(0, true); }),
    };
    for (const TScenario& scenario : scenarios) {
        SCOPED_TRACE(scenario.name);
        expectNothingLost(scenario);
    }
}
