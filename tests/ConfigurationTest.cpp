#include "qor/Configuration.h"

#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "LogReader.h"
#include "TestData.h"
#include "qor/XMLElement.h"

using qor::Configuration;

namespace
{

class ConfigurationTest : public LogReader
{
protected:
    /// Expects no records but these, which are errors, infos or debug records with that letter.
    void expectRecords(const TLines& expected) { EXPECT_EQ(takeRecords(), expected); }

    Configuration table{7};
};

/// Notes who was called for what, and does what it was told.
struct TListener : Configuration::Listener {
    explicit TListener(TLines& notesArgument, std::string nameArgument = "")
        : notes(notesArgument), listenerName(std::move(nameArgument))
    {
    }

    void parameterChanged(const std::string& name) override
    {
        const std::string before = name;
        notes.push_back(listenerName + name);
        if (action) {
            action(name);
        }
        EXPECT_EQ(name, before);
    }

    TLines& notes;
    std::string listenerName;
    std::function<void(const std::string&)> action;
};

TEST_F(ConfigurationTest, ClipsNumbersToTheirLimits)
{
    table.addIntegerParameter("i", 150, 0, 100, 0);
    EXPECT_EQ(table.getInteger("i"), 100);
    expectRecords({"D Added configuration parameter 'i' at index 0",
                   "D Too high value for configration parameter 'i' clipped to 100"});
    EXPECT_TRUE(table.setInteger("i", -1));
    EXPECT_EQ(table.getInteger("i"), 0);
    expectRecords({"D Too low value for configuration parameter 'i' clipped to 0"});

    table.addFloatParameter("f", 1.0f, -0.5f, 0.25f, 0);
    EXPECT_EQ(table.getFloat("f"), 0.25f);
    EXPECT_TRUE(table.setFloat("f", -std::numeric_limits<float>::infinity()));
    EXPECT_EQ(table.getFloat("f"), -0.5f);
    expectRecords({"D Added configuration parameter 'f' at index 1",
                   "D Too high value for configuration parameter 'f' clipped to 0.250000",
                   "D Too low value for configuration parameter 'f' clipped to -0.500000"});
    EXPECT_TRUE(table.setFloat("f", 0.25f) && table.setFloat("f", -0.5f));
    expectRecords({});

    const struct {
        int minimum, maximum, value, expected;
    } cases[] = {{1, 0, 5, 5},
                 {INT_MIN, INT_MAX, INT_MAX, INT_MAX},
                 {INT_MAX, INT_MAX, INT_MIN, INT_MAX},
                 {INT_MIN, INT_MIN, 3, INT_MIN},
                 {INT_MAX, INT_MIN, INT_MIN, INT_MIN},
                 {0, 9, 9, 9},
                 {0, 9, 0, 0}};
    for (const auto& test : cases) {
        Configuration other(0);
        EXPECT_TRUE(other.addIntegerParameter("i", 0, test.minimum, test.maximum, 0));
        takeRecords();
        EXPECT_TRUE(other.setInteger("i", test.value));
        EXPECT_EQ(other.getInteger("i"), test.expected) << test.value;
        EXPECT_EQ(takeRecords().size(), test.value == test.expected ? 0u : 1u);
    }
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float floats[][4] = {{-infinity, infinity, infinity, infinity},
                               {nan, 0.0f, 5.0f, 0.0f},
                               {nan, nan, 5.0f, 5.0f},
                               {0.5f, 0.5f, 3.0f, 0.5f},
                               {infinity, -infinity, 3.0f, 3.0f}};
    for (const auto& [minimum, maximum, value, expected] : floats) {
        Configuration other(0);
        EXPECT_TRUE(other.addFloatParameter("f", value, minimum, maximum, 0));
        EXPECT_EQ(other.getFloat("f"), expected);
    }
}

TEST_F(ConfigurationTest, KeepsTextsOfAnyLength)
{
    EXPECT_TRUE(table.addStringParameter("s", "abc", 1, 2, 0));
    EXPECT_EQ(table.getString("s"), "abc");
    EXPECT_TRUE(table.setString("s", ""));
    EXPECT_TRUE(table.addStringParameter("none", "x", 2, 0, 0));
    EXPECT_TRUE(table.setString("s", "ab"));
    expectRecords({"D Added configuration parameter 's' at index 0",
                   "D Too long value for configuration parameter 's' bytes",
                   "D Too short value for configuration parameter 's'",
                   "D Added configuration parameter 'none' at index 1",
                   "D Too long value for configuration parameter 'none' bytes"});
}

TEST_F(ConfigurationTest, RefusesOtherNamesAndTypes)
{
    table.addBooleanParameter("b", true, 0);
    table.addIntegerParameter("i", 3, 0, 9, 0);
    table.addFloatParameter("f", 1.5f, 0, 9, 0);
    table.addStringParameter("s", "text", 0, 9, 0);
    EXPECT_FALSE(table.addStringParameter("b", "other", 0, 9, 0));
    takeRecords();
    const auto expectFailures = [this](const std::string& name, const std::string& own) {
        const auto expect = [&](const char* type, bool isFailure) {
            if (own != type) {
                EXPECT_TRUE(isFailure) << name << ' ' << type;
            }
        };
        expect("b", !table.setBoolean(name, false) && !table.getBoolean(name));
        expect("i", !table.setInteger(name, 1) && table.getInteger(name) == 0);
        expect("f", !table.setFloat(name, 1) && table.getFloat(name) == 0.0f);
        expect("s", !table.setString(name, "x") && table.getString(name).empty());
        const TLines records = takeRecords();
        EXPECT_EQ(records.size(), own.empty() ? 8u : 6u);
        const std::string expected =
            own.empty() ? "D Access to non-existing configuration parameter '" + name + "'"
                        : "D Configuration parameter type conflict '" + name + "'";
        for (const std::string& record : records) {
            EXPECT_EQ(record, expected);
        }
    };
    for (const char* name : {"b", "i", "f", "s"}) {
        expectFailures(name, name);
    }
    expectFailures("B", "");
    EXPECT_EQ(table.get("B") + (table.set("B", "true") ? "set" : ""), "");
    const std::string missing = "D Access to non-existing configuration parameter 'B'";
    expectRecords({missing, missing});
    EXPECT_FALSE(table.addIntegerParameter("f", 1, 0, 1, 0));
    EXPECT_FALSE(table.addFloatParameter("i", 1, 0, 1, 0));
    EXPECT_FALSE(table.addBooleanParameter("s", true, 0));
    expectRecords({"E Attempt to add a duplicate configuration parameter 'f'",
                   "E Attempt to add a duplicate configuration parameter 'i'",
                   "E Attempt to add a duplicate configuration parameter 's'"});
    EXPECT_EQ(table.get("f"), "1.000000");
}

TEST_F(ConfigurationTest, TakesAndGivesText)
{
    table.addBooleanParameter("b", false, 0);
    table.addIntegerParameter("i", 0, INT_MIN, INT_MAX, 0);
    table.addFloatParameter("f", 0, 1, -1, 0);
    table.addStringParameter("s", "", 0, 99, 0);
    takeRecords();
    // Name, text, and what is there then; a dash where the text is refused.
    const char* const cases[][3] = {
        {"b", " true", "true"},
        {"b", "TRUE", "-"},
        {"b", "1", "-"},
        {"b", "falsehood", "false"},
        {"b", "fals", "-"},
        {"b", "", "-"},
        {"i", " 42", "42"},
        {"i", "abc", "-"},
        {"i", "-7x", "-7"},
        {"i", "2147483648", "-"},
        {"i", "+-1", "-"},
        {"i", "2147483647.9", "2147483647"},
        {"f", "0.5", "0.500000"},
        {"f", "1e", "-"},
        {"f", "-1e2,5", "-100.000000"},
        {"f", "inf", "-"},
        {"f", "\n1e-7", "0.000000"},
        {"f", "1e39", "-"},
        {"s", " as it is\n", " as it is\n"},
        {"s", "", ""},
    };
    for (const auto& [name, text, expected] : cases) {
        const std::string before = table.get(name);
        const bool isRefused = std::string(expected) == "-";
        EXPECT_EQ(table.set(name, text), !isRefused) << text;
        EXPECT_EQ(table.get(name), isRefused ? before : expected) << text;
    }
    expectRecords({});
}

TEST_F(ConfigurationTest, TellsListenersOfChangesInOrder)
{
    TLines notes;
    TListener a(notes, "a "), b(notes, "b ");
    table.addListener(&a);
    table.addListener(&b);
    table.addListener(&a);
    table.addListener(nullptr);
    const auto expect = [&notes](const TLines& expected) {
        EXPECT_EQ(notes, expected);
        notes.clear();
    };
    table.addIntegerParameter("none", 0, 0, 9, 0);
    table.addBooleanParameter("false", false, 0);
    table.addStringParameter("text", "text", 0, 9, 0);
    table.addFloatParameter("low", 0, 1, 9, 0);
    expect({"a low", "b low"});
    table.setInteger("none", 20);
    expect({"a none", "b none"});
    table.setInteger("none", 30);
    table.setFloat("low", 1);
    table.setString("text", "text");
    expect({});
    const float nan = std::numeric_limits<float>::quiet_NaN();
    table.setFloat("low", nan);
    table.setFloat("low", nan);
    expect({"a low", "b low", "a low", "b low"});

    Configuration copy(table);
    Configuration assigned(0);
    assigned = copy;
    table.removeListener(&a);
    table.removeListener(&a);
    table.updateAllParameters();
    expect({"b none", "b false", "b text", "b low"});
    assigned.setString("text", "");
    expect({"a text", "b text"});
    Configuration& self = assigned;
    assigned = self;
    EXPECT_EQ(assigned.get("none") + copy.getString("text"), "9text");
}

TEST_F(ConfigurationTest, LetsListenersSetAndAdd)
{
    TLines notes;
    TListener adder(notes), second(notes, "second ");
    table.addListener(&adder);
    table.addListener(&second);
    const std::string name = "a name that is too long to be kept in place";
    adder.action = [this, &name](const std::string& changed) {
        if (changed == name) {
            for (int i = 0; i < 100; ++i) {
                table.addBooleanParameter(std::to_string(i), false, 0);
            }
            table.setInteger("other", 1);
        }
    };
    table.addIntegerParameter("other", 0, 0, 1, 0);
    table.addStringParameter(name, "", 0, 9, 0);
    table.setString(name, "x");
    EXPECT_EQ(notes, (TLines{name, "other", "second other", "second " + name}));
}

TEST_F(ConfigurationTest, TakesArgumentsThatReferToItself)
{
    const std::string longText(100, 'l');
    TLines notes;
    TListener listener(notes);
    table.addListener(&listener);
    table.addStringParameter("a", longText, 0, 999, 0);
    for (int i = 0; i < 20; ++i) {
        const std::string& text = table.getString("a");
        EXPECT_TRUE(table.addStringParameter(text + std::to_string(i), text, 0, 999, 0));
    }
    EXPECT_TRUE(table.addStringParameter(table.getString("a"), table.getString("a"), 0, 999, 0));
    EXPECT_EQ(table.getString(longText), longText);
    EXPECT_TRUE(table.setString("a", table.getString("a")));
    EXPECT_TRUE(notes.empty());
    // The parameter has its own name as its value.
    EXPECT_TRUE(table.setString(table.getString(longText), "new"));
    EXPECT_EQ(notes, TLines{longText});
    EXPECT_TRUE(table.set("a", table.getString(longText)));
    EXPECT_EQ(table.getString("a"), "new");
}

TEST(ConfigurationInstanceTest, IsTheFirstThatIsAlive)
{
    EXPECT_EQ(Configuration::getInstance(), nullptr);
    auto first = std::make_unique<Configuration>(1);
    Configuration second(2);
    second = Configuration(*first);
    EXPECT_EQ(Configuration::getInstance(), first.get());
    first.reset();
    EXPECT_EQ(Configuration::getInstance(), nullptr);
    const Configuration third(3);
    EXPECT_EQ(Configuration::getInstance(), &third);
}

class ConfigurationFileTest : public ConfigurationTest
{
protected:
    void SetUp() override
    {
        ConfigurationTest::SetUp();
        table.addBooleanParameter("b", true, 0);
        table.addIntegerParameter("group/i", 5, 0, 100, 3);
        table.addFloatParameter("group/f", 0.25f, -1, 1, 0);
        table.addStringParameter("s", "text", 0, 10, 0);
        takeRecords();
    }

    std::string getValues() const
    {
        return table.get("b") + ' ' + table.get("group/i") + ' ' + table.get("group/f") + ' ' +
               table.get("s");
    }

    const std::string m_Usual = "true 5 0.250000 text";
};

TEST_F(ConfigurationFileTest, StartsWithoutAFileAndGoesOnWithIt)
{
    EXPECT_FALSE(table.save());
    expectRecords({"E Attempt to save configuration without file name (not loaded from a file)"});
    const std::string file = path("a.xml");
    EXPECT_TRUE(table.load(file));
    expectRecords({"I No configuration file '" + file + "' found"});
    EXPECT_EQ(getValues(), m_Usual);
    table.setString("s", " spaced ");
    EXPECT_TRUE(Configuration(table).save());
    EXPECT_EQ(read(file), "<configuration>\n\t<version>7</version>\n\t<b>true</b>\n\t<group>\n"
                          "\t\t<i>5</i>\n\t\t<f>0.250000</f>\n\t</group>\n\t<s>spaced</s>\n"
                          "</configuration>\n");
    table.setInteger("group/i", 6);
    TLines notes;
    TListener listener(notes);
    table.addListener(&listener);
    EXPECT_TRUE(table.load(file));
    EXPECT_EQ(notes, (TLines{"group/i", "s"}));
    EXPECT_EQ(getValues(), "true 5 0.250000 spaced");
    expectRecords({});
}

TEST_F(ConfigurationFileTest, ReadsWhatIsStored)
{
    const std::string dropped = "D Configuration parameter 'group/i' value ignored (interpretation "
                                "changed between versions)";
    const auto missing = [](const std::string& name) {
        return "D No value for configuration parameter '" + name + "'";
    };
    const std::string tooHigh =
        "D Too high value for configuration parameter 'group/f' clipped to 1.000000";
    const struct {
        std::string source, values;
        TLines records;
    } cases[] = {
        {"<x></x>", m_Usual, {missing("b"), dropped, missing("group/f"), missing("s")}},
        {"<x><version>2</version><b>false</b><group><i>9</i><f>2</f></group><s></s></x>",
         "false 5 1.000000 ",
         {dropped, tooHigh}},
        {"<x><version>3</version><b>1</b><group><i>words</i></group><s>a</s><s>b</s></x>",
         "false 0 0.250000 a",
         {missing("group/f")}},
        {"<x><s>a</s><group><f>x</f></group><group><i>9</i></group><version>-1</version><b>true "
         "</b></x>",
         "true 5 0.000000 a",
         {missing("group/i")}},
        {"<x><version>9</version><other>1</other><b>x</b><group><i>101</i><f>1e-7</f></group>"
         "<s>longer than it may be</s></x>",
         "false 100 0.000000 longer than it may be",
         {"D Too high value for configration parameter 'group/i' clipped to 100",
          "D Too long value for configuration parameter 's' bytes"}},
    };
    for (const auto& test : cases) {
        const Configuration former(table);
        qor::XMLElement root("");
        ASSERT_GE(root.parse(test.source), 0);
        EXPECT_TRUE(table.load(&root));
        EXPECT_EQ(getValues(), test.values) << test.source;
        expectRecords(test.records);
        table = former;
    }
    EXPECT_FALSE(table.load(static_cast<const qor::XMLElement*>(nullptr)));
    EXPECT_FALSE(table.save(static_cast<qor::XMLElement*>(nullptr)));
}

TEST_F(ConfigurationFileTest, KeepsItsValuesWhenAFileCannotBeRead)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(server, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    close(server);
    for (const std::string& file :
         {write("broken", "<a><b>false</a>"), write("empty", ""), path("socket")}) {
        EXPECT_FALSE(table.load(file));
        EXPECT_EQ(getValues(), m_Usual);
        qor::XMLElement element("");
        const int result = element.load(file);
        expectRecords({"E Configuration file '" + file + "' loading failed (" +
                       std::to_string(result) + "): " + element.getLastError()});
    }
    EXPECT_TRUE(table.load(path("")));
    expectRecords({"I No configuration file '" + path("") + "' found"});

    for (const std::string& file : {path("missing/a"), path("")}) {
        EXPECT_FALSE(table.save(file));
        qor::XMLElement element("");
        const int result = element.save(file, true);
        expectRecords({"E Configuration saving to file '" + file + "' failed (" +
                       std::to_string(result) + "): " + element.getLastError()});
    }
}

TEST_F(ConfigurationFileTest, SavesIntoAnElement)
{
    Configuration high(0x80000001);
    high.addStringParameter("a/x", "1", 0, 9, 0x80000001);
    high.addStringParameter("a//", "2", 0, 9, 0);
    high.addStringParameter("/a/y", "3", 0, 9, 0);
    high.addStringParameter("version", "kept", 0, 9, 0);
    qor::XMLElement root("");
    ASSERT_GE(root.parse("<r>text<a>old</a><z>stays</z><a><x>second</x></a></r>"), 0);
    EXPECT_TRUE(high.save(&root));
    EXPECT_EQ(root.toString(), "<r><a><x><>2</>1</x><y>3</y>old</a><z>stays</z>"
                               "<a><x>second</x></a><version>kept</version>text</r>");
    root.findChild("version")->setValue(INT_MIN + 1);
    high.setString("a/x", "");
    EXPECT_TRUE(high.load(&root));
    EXPECT_EQ(high.getString("a/x"), "1");
}

TEST_F(ConfigurationFileTest, FindsElementsAsPathsDo)
{
    // Enough siblings for the names to be looked up in a table.
    Configuration many(1);
    std::string source = "<r>";
    std::vector<std::string> names;
    for (int i = 0; i < 1200; ++i) {
        const std::string group = i % 3 == 0 ? "" : "g" + std::to_string(i % 3) + "/";
        names.push_back(group + "n" + std::to_string(i));
        many.addIntegerParameter(names.back(), 0, INT_MIN, INT_MAX, 0);
        source += "<n" + std::to_string(i / 2) + ">" + std::to_string(i) + "</n" +
                  std::to_string(i / 2) + ">";
    }
    qor::XMLElement root(""), expected("");
    ASSERT_GE(root.parse(source + "</r>"), 0);
    EXPECT_TRUE(many.load(&root));
    for (const std::string& name : names) {
        EXPECT_EQ(many.getInteger(name), root.getValueAsInteger(name, 0)) << name;
        many.setInteger(name, many.getInteger(name) + 1000);
    }
    expected = root;
    EXPECT_TRUE(many.save(&root));
    expected.findChild("version", true)->setValue(1);
    for (const std::string& name : names) {
        expected.findChild(name, true)->setValue(many.getInteger(name));
    }
    EXPECT_EQ(root.toString(), expected.toString());
}

} // namespace
