// SPDX-License-Identifier: MIT
#include <functional>
#include <list>
#include <memory>

#include "Environment.h"
#include "FailingAllocator.h"
#include "HandleCount.h"
#include "PixelData.h"
#include "TemporaryFolder.h"
#include "TestData.h"
#include "qor/qor.h"

using qor::Configuration, qor::Console, qor::File, qor::Image, qor::Log, qor::State;
using qor::StateMachine, qor::StringUtil, qor::XMLElement;

namespace
{

/// State of the objects after a failure.
enum Guarantee {
    STRONG, ///< unchanged
    BASIC,  ///< valid: the operation can be repeated
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

/// Runs the operation with each of its allocations failing in turn, until it succeeds. After a
/// failure nothing has leaked, and the repeated operation has the same result as without a failure.
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
        const int handle = countHandles();
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
        ASSERT_EQ(countHandles(), handle) << allowed;
        ASSERT_TRUE(allowed > 0 || failures > 0) << "it allocates nothing";
    }
}

/// An operation on one object.
template<typename TObject, Guarantee GUARANTEE = STRONG>
TScenario on(const std::string& name, std::function<void(TObject&)> action)
{
    return {name, GUARANTEE, [action] {
                const auto object = std::make_shared<TObject>();
                return TRun{[=] { action(*object); }, [=] { return object->show(); }};
            }};
}

struct TText : std::string {
    std::string show() const { return *this; }
};

/// An operation that returns a text and changes no object.
TScenario making(const std::string& name, std::function<std::string()> action)
{
    return on<TText>(name, [action](TText& text) { text.assign(action()); });
}

const std::string LONG = "a text that fits no buffer of its string";

const std::string NEW = LONG + "2";

const std::string GROUP = "<a>" + LONG + "<b><!-- c --></b></a>";

const std::string DOCUMENT = "<root>" + repeated(GROUP, 4) + "&amp; " + LONG + "</root>";

struct TTree : XMLElement {
    TTree() : XMLElement("") { parse(DOCUMENT); }
    std::string show() const { return toString(); }
    using XMLElement::operator=;
};

struct TTable : Configuration, Configuration::Listener {
    TTable() : Configuration(3)
    {
        addStringParameter(LONG, "text", 0, 99, 0);
        addIntegerParameter(LONG + "/i", 1, 0, 9, 0);
        addListener(this);
    }

    void parameterChanged(const std::string& name) override { changes += name.size(); }

    std::string show()
    {
        std::string text = std::to_string(std::exchange(changes, 0)) + tree.toString();
        for (const std::string& name : {LONG, LONG + "/i", NEW}) {
            text += '|' + get(name);
        }
        return text;
    }

    XMLElement tree{"root"};
    std::size_t changes = 0;
};

struct TPicture : Image {
    TPicture() : Image(makeImage(1, 1, {7})) {}
    std::string show() const
    {
        const Pixels pixels = getData() ? pixelsOf(*this) : Pixels();
        return std::string(reinterpret_cast<const char*>(pixels.data()), pixels.size() * 4);
    }
};

struct TConsole : Console {
    TConsole() : Console(2)
    {
        addVariable("v", "", VT_STRING, 0, 0, &variable);
        for (const char* line : {"1", "2", "3"}) {
            print(line);
        }
        for (const char character : "get v " + std::string(9, ' ')) {
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

using OutOfMemoryTest = TemporaryFolder;

TEST_F(OutOfMemoryTest, WaitNeedsNoMemory)
{
    qor::Mutex mutex;
    qor::Condition condition;
    mutex.lock();
    allocationsLeft = 0;
    EXPECT_NO_THROW(condition.wait(mutex, 1));
    allocationsLeft = NEVER;
    mutex.unlock();
}

} // namespace

TEST_F(OutOfMemoryTest, OperationsCanBeRepeatedAfterFailure)
{
    const std::string document = write("document", DOCUMENT), target = path("target");
    const std::string picture = path("picture"), missing = path("none/" + LONG);
    const std::string settings =
        write("settings", "<c><version>3</version><" + LONG + ">" + LONG + LONG + "<i>7</i></c>");
    ASSERT_EQ(makeImage(2, 2, {1, 2, 3, 4}).saveTGA(picture.c_str(), 32), 4);
    const TTree tree;
    XMLElement rules("");
    rules.parse("<t>0:0-99<a>4:0-99<b>0-1:0</b><c>1:0</c></a></t>");
    const TTable table;
    const TConsole console;
    TMachine machine;
    machine.states.emplace_back(&machine.machine, &machine.first, LONG);
    TNothing nothing;

    // An operation on a file that contains a log before. Of a log only the size is compared.
    const auto onFile = [&](const std::string& name, std::function<void()> action,
                            Guarantee guarantee = STRONG) {
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
        on<TTree>("assignment", [&](TTree& t) { t = rules; }),
        on<TTree>("assignment to a child", [](TTree& t) { *t.getChild("a") = t; }),
        on<TTree>("move into a child",
                  [](TTree& t) { *t.findChild("a/b") = std::move(*t.getChild("a")); }),
        on<TTree, BASIC>("parse", [](TTree& t) { t.parse(DOCUMENT + " "); }),
        on<TTree, BASIC>("fault in a text", [](TTree& t) { t.parse("<a>" + GROUP + "</c>"); }),
        on<TTree, BASIC>("load", [&](TTree& t) { EXPECT_GT(t.load(document), 0); }),
        on<TTree, BASIC>("missing file", [&](TTree& t) { EXPECT_LT(t.load(missing), 0); }),
        on<TTree>("name", [](TTree& t) { t.setName(LONG); }),
        on<TTree>("value", [](TTree& t) { t.getChild("a")->setValue(LONG + LONG); }),
        on<TTree>("number", [](TTree& t) { t.findChild("a/b")->setValue(1e38f); }),
        on<TTree>("child", [](TTree& t) { t.createChild(LONG); }),
        on<TTree, BASIC>("path", [](TTree& t) { t.findChild(LONG + "/b/" + LONG, true); }),
        onFile("saved tree", [&] { EXPECT_GT(tree.save(target, true), 0); }),
        making("failed save",
               [&] { return tree.save(missing, true) < 0 ? XMLElement::getLastError() : ""; }),

        making("table", [&] { return Configuration(table).get(LONG); }),
        on<TTable>("assigned table", [&](TTable& t) { static_cast<Configuration&>(t) = table; }),
        on<TTable>("new flag", [](TTable& t) { t.addBooleanParameter(NEW, true, 0); }),
        on<TTable>("new number", [](TTable& t) { t.addIntegerParameter(NEW, 5, 0, 3, 0); }),
        on<TTable>("new float", [](TTable& t) { t.addFloatParameter(NEW, 5, 0, 3, 0); }),
        on<TTable>("new text", [](TTable& t) { t.addStringParameter(NEW, LONG, 0, 3, 0); }),
        on<TTable>("text", [](TTable& t) { t.setString(LONG, LONG); }),
        on<TTable>("number", [](TTable& t) { t.set(LONG + "/i", "5"); }),
        on<TTable, BASIC>("listener", [](TTable& t) { t.removeListener(&t), t.addListener(&t); }),
        on<TTable, BASIC>("all parameters", [](TTable& t) { t.updateAllParameters(); }),
        on<TTable, BASIC>("table into tree", [](TTable& t) { t.save(&t.tree); }),
        on<TTable, BASIC>("table of a file", [&](TTable& t) { t.load(settings); }),
        onFile("table into a file", [&] { table.save(target); }),

        on<TPicture, BASIC>("loaded image", [&](TPicture& i) { (void)i.loadTGA(picture.c_str()); }),

        making("console", [] { return TConsole().show(); }),
        making("copied console", [&] { return TConsole(console).show(); }),
        on<TConsole>("assigned console",
                     [](TConsole& c) {
                         Console other(1);
                         other.print(LONG);
                         static_cast<Console&>(c) = other;
                     }),
        on<TConsole>("line", [](TConsole& c) { c.print(LONG); }),
        on<TConsole>("character", [](TConsole& c) { c.putChar('x'); }),
        on<TConsole, BASIC>("command line", [](TConsole& c) { c.putChar(13); }),
        on<TConsole>("command", [&](TConsole& c) { c.addCommand(LONG, LONG, 0, 0, &nothing); }),
        on<TConsole>("variable",
                     [](TConsole& c) { c.addVariable(LONG, LONG, c.VT_STRING, 0, 0, nullptr); }),

        on<TMachine>("state",
                     [](TMachine& m) { m.states.emplace_back(&m.machine, &m.first, LONG); }),
        on<TMachine>("assigned machine", [&](TMachine& m) { m.machine = machine.machine; }),
        making("copied machine",
               [&] { return StateMachine(machine.machine).transition(LONG) ? LONG : ""; }),

        onFile(
            "log", [&] { Log::open(target.c_str(), false); }, BASIC),
        onFile("record", [] { Log::info(std::string(5000, 'x')); }),
        making("size of a missing file", [&] { return std::to_string(File::fileSize(missing)); }),
        making("missing file", [&] { return File::deleteFile(missing) ? "" : "missing"; }),
        making("folder", [&] { return File::createDirectory(missing) ? "" : "missing"; }),
        making("renaming", [&] { return File::renameFile(missing, missing) ? "" : "missing"; }),
        making("path", [&] { return File::standardizePath(File::filePath(missing, LONG)); }),
        making("data directory",
               [&] {
                   setVariable("QOR_USER_DATA_DIR", nullptr);
                   return File::getUserDataDirectory(LONG, false);
               }),

        making("thread",
               [&] {
                   qor::Thread thread;
                   bool isStarted = false;
                   try {
                       isStarted = thread.start(&nothing);
                   } catch (const std::bad_alloc&) {
                       return "thrown"; // An assertion would throw, too.
                   }
                   if (!isStarted) {
                       throw std::bad_alloc();
                   }
                   thread.wait();
                   return "";
               }),
        making("lock and event", [] { return qor::Mutex(), qor::Condition(), ""; }),
        making("trimmed text", [] { return StringUtil::trim(" " + LONG); }),
        making("number as text", [] { return StringUtil::toString(1e30f, 60); }),
        making("time as text", [] { return StringUtil::timeStampToString(0, true); }),
    };
    for (const TScenario& scenario : scenarios) {
        SCOPED_TRACE(scenario.name);
        expectNothingLost(scenario);
    }
}
