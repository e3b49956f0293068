// SPDX-License-Identifier: MIT
#include "qor/Configuration.h"

#include <climits>
#include <ctime>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>

#include "LogReader.h"
#include "TestData.h"
#include "qor/XMLElement.h"

using qor::Configuration;

namespace
{

class ConfigurationTest : public LogReader
{
protected:
    /// Expects exactly these records since the last call, each after the letter of its level.
    void expectRecords(const TLines& expected) { EXPECT_EQ(takeRecords(), expected); }

    Configuration table{7};
};

/// Records the notifications, each after the name of the listener, and performs an action.
struct TListener : Configuration::Listener {
    explicit TListener(TLines& notesArgument, std::string nameArgument = "")
        : notes(notesArgument), listenerName(std::move(nameArgument))
    {
    }

    void parameterChanged(const std::string& name) override
    {
        notes.push_back(listenerName + name);
        if (action) {
            action(name);
        }
    }

    TLines& notes;
    std::string listenerName;
    std::function<void(const std::string&)> action;
};

TEST_F(ConfigurationTest, ClampsValuesToLimits)
{
    const auto number = [](const std::string& text) { return std::strtof(text.c_str(), nullptr); };
    for (const auto& row : readTable("configuration-limits")) {
        Configuration other(0);
        const std::string& value = row[3];
        if (row[0] == "i") {
            other.addIntegerParameter("p", std::stoi(value), std::stoi(row[1]), std::stoi(row[2]),
                                      0);
        } else if (row[0] == "f") {
            other.addFloatParameter("p", number(value), number(row[1]), number(row[2]), 0);
        } else {
            other.addStringParameter("p", value, std::stoi(row[1]), std::stoi(row[2]), 0);
        }
        TLines expected = {"D Added configuration parameter 'p' at index 0"};
        if (row[5] != "-") {
            expected.push_back("D " + row[5]);
        }
        EXPECT_EQ(takeRecords(), expected);
        EXPECT_EQ(other.get("p"), row[4]) << row[1] << ' ' << row[2] << ' ' << value;
    }
}

TEST_F(ConfigurationTest, RejectsUnknownNamesAndWrongTypes)
{
    EXPECT_TRUE(table.addBooleanParameter("b", true, 0));
    EXPECT_TRUE(table.addIntegerParameter("i", 3, 0, 9, 0));
    EXPECT_TRUE(table.addFloatParameter("f", 1.5f, 0, 9, 0));
    EXPECT_TRUE(table.addStringParameter("s", "text", 0, 9, 0));
    EXPECT_FALSE(table.addStringParameter("b", "other", 0, 9, 0));
    takeRecords();
    const std::pair<std::string, std::string> cases[] = {{"b", "set, true, no, 0, no, 0, no, "},
                                                         {"i", "no, false, set, 1, no, 0, no, "},
                                                         {"f", "no, false, no, 0, set, 1, no, "},
                                                         {"s", "no, false, no, 0, no, 0, set, x"},
                                                         {"B", "no, false, no, 0, no, 0, no, "}};
    for (const auto& [name, expected] : cases) {
        std::ostringstream results;
        results << std::boolalpha << (table.setBoolean(name, true) ? "set, " : "no, ")
                << table.getBoolean(name) << (table.setInteger(name, 1) ? ", set, " : ", no, ")
                << table.getInteger(name) << (table.setFloat(name, 1) ? ", set, " : ", no, ")
                << table.getFloat(name) << (table.setString(name, "x") ? ", set, " : ", no, ")
                << table.getString(name);
        EXPECT_EQ(results.str(), expected) << name;
        const bool exists = name != "B";
        const std::string record = exists ? "D Configuration parameter type conflict '"
                                          : "D Access to non-existing configuration parameter '";
        expectRecords(TLines(exists ? 6 : 8, record + name + "'"));
    }
    EXPECT_EQ(table.get("B"), "");
    EXPECT_FALSE(table.set("B", "true"));
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

TEST_F(ConfigurationTest, ConvertsParametersToAndFromText)
{
    table.addBooleanParameter("b", false, 0);
    table.addIntegerParameter("i", 0, INT_MIN, INT_MAX, 0);
    table.addFloatParameter("f", 0, 1, -1, 0);
    table.addStringParameter("s", "", 0, 99, 0);
    takeRecords();
    for (const auto& row : readTable("configuration-texts")) {
        const std::string before = table.get(row[0]);
        const bool isRefused = row[2] == "-";
        EXPECT_EQ(table.set(row[0], row[1]), !isRefused) << row[1];
        EXPECT_EQ(table.get(row[0]), isRefused ? before : row[2]) << row[1];
    }
    expectRecords({});
}

TEST_F(ConfigurationTest, NotifiesListenersInOrder)
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
    Configuration& self = copy;
    const std::string& text = copy.getString("text");
    b.action = [&](const std::string&) { copy = self; };
    copy.setInteger("none", 8);
    EXPECT_EQ(&copy.getString("text"), &text);
    EXPECT_EQ(assigned.get("none"), "9");
    EXPECT_EQ(copy.get("none"), "8");
    EXPECT_EQ(text, "text");
}

TEST_F(ConfigurationTest, ListenersMaySetAndAddParameters)
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
    // The value equals the name.
    table.addStringParameter(name, name, 0, 99, 0);
    table.setString(table.getString(name), "x");
    EXPECT_EQ(notes, (TLines{name, "other", "second other", "second " + name}));
}

TEST_F(ConfigurationTest, AcceptsArgumentsThatReferToParameters)
{
    const std::string longText(100, 'l');
    table.addStringParameter("a", longText, 0, 999, 0);
    for (int i = 0; i < 20; ++i) {
        const std::string& text = table.getString("a");
        EXPECT_TRUE(table.addStringParameter(text + std::to_string(i), text, 0, 999, 0));
    }
    EXPECT_TRUE(table.addStringParameter(table.getString("a"), table.getString("a"), 0, 999, 0));
    EXPECT_EQ(table.getString(longText), longText);
    EXPECT_TRUE(table.setString(table.getString(longText), "new"));
    EXPECT_TRUE(table.set("a", table.getString(longText)));
    EXPECT_EQ(table.getString("a"), "new");
}

TEST(ConfigurationInstanceTest, IsFirstLivingInstance)
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
        table.addIntegerParameter("group/i", 5, 0, 100, 1);
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

TEST_F(ConfigurationFileTest, CreatesMissingFileOnSave)
{
    EXPECT_FALSE(table.save());
    expectRecords({"E Attempt to save configuration without file name (not loaded from a file)"});
    const std::string file = path("a.xml");
    EXPECT_TRUE(table.load(file));
    expectRecords({"I No configuration file '" + file + "' found"});
    EXPECT_EQ(getValues(), m_Usual);
    table.setString("s", " spaced ");
    Configuration assigned(0);
    assigned = Configuration(table);
    EXPECT_TRUE(assigned.save());
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

TEST_F(ConfigurationFileTest, LoadsStoredValuesByVersion)
{
    for (const auto& row : readTable("stored-configurations")) {
        const Configuration former(table);
        qor::XMLElement root("");
        ASSERT_GE(root.parse(row[0]), 0);
        EXPECT_TRUE(table.load(&root));
        EXPECT_EQ(getValues(), row[1]) << row[0];
        expectRecords(split(row[2], "; "));
        table = former;
    }
    Configuration versioned(9);
    versioned.addBooleanParameter("b", true, 9);
    versioned.addFloatParameter("f", 0.5f, 0, 1, 9);
    qor::XMLElement old("");
    old.parse("<r><version>8</version><b>false</b><f>1</f></r>");
    EXPECT_TRUE(versioned.load(&old));
    EXPECT_EQ(versioned.get("b"), "true");
    EXPECT_EQ(versioned.get("f"), "0.500000");
    EXPECT_FALSE(table.load(static_cast<const qor::XMLElement*>(nullptr)));
    EXPECT_FALSE(table.save(static_cast<qor::XMLElement*>(nullptr)));
}

TEST_F(ConfigurationFileTest, ListenersMayEditLoadedTree)
{
    qor::XMLElement root("");
    ASSERT_GE(root.parse("<r><version>7</version><b>false</b><group><i>1</i><f>1</f></group>"
                         "<group><i>2</i><f>0.5</f></group><s>lost</s></r>"),
              0);
    TLines notes;
    TListener editor(notes);
    editor.action = [&root](const std::string& name) {
        root.deleteChild(root.getChild(name == "group/i" ? "group" : "s"));
    };
    table.addListener(&editor);
    EXPECT_TRUE(table.load(&root));
    EXPECT_EQ(getValues(), "false 1 0.500000 text");
    EXPECT_EQ(notes, (TLines{"b", "group/i", "group/f"}));
}

TEST_F(ConfigurationFileTest, FindsFirstElementsAmongManyInAnyOrder)
{
    constexpr int COUNT = 100;
    qor::XMLElement root("r"), expected("");
    Configuration many(0);
    for (int i = 0; i < COUNT; ++i) {
        const std::string number = std::to_string(i * 7 % COUNT);
        root.createChild("n" + number)->setValue(i);
        root.createChild("n" + std::to_string(i / 2))->setValue(-i);
        many.addIntegerParameter("n" + std::to_string(i), COUNT, 1, 0, 0);
    }
    for (int i = 0; i < COUNT; ++i) {
        const std::string number = std::to_string(i * 7 % COUNT);
        many.addIntegerParameter("new" + number + "/x", COUNT + i, 1, 0, 0);
        many.addIntegerParameter("/new" + number + "/y", COUNT + i, 1, 0, 0);
    }
    expected = root;
    many.load(&root);
    many.save(&root);
    expected.createChild("version")->setValue(0);
    for (int i = 0; i < COUNT; ++i) {
        const std::string name = "n" + std::to_string(i),
                          group = "new" + std::to_string(i * 7 % COUNT);
        EXPECT_EQ(many.getInteger(name), expected.getValueAsInteger(name, COUNT)) << name;
        expected.findChild(group + "/x", true)->setValue(COUNT + i);
        expected.findChild(group + "/y", true)->setValue(COUNT + i);
    }
    EXPECT_EQ(root.toString(), expected.toString());
}

TEST_F(ConfigurationFileTest, LoadsAndSavesInLinearTime)
{
    const auto measure = [](int count) {
        Configuration many(0);
        qor::XMLElement root("r");
        for (int i = 0; i < count; ++i) {
            many.addIntegerParameter("n" + std::to_string(i), 0, 1, 0, 0);
            root.createChild("n" + std::to_string(count - 1 - i));
        }
        std::clock_t best = std::numeric_limits<std::clock_t>::max();
        for (int run = 0; run < 3; ++run) {
            const std::clock_t begin = std::clock();
            many.load(&root);
            many.save(&root);
            best = std::min(best, std::clock() - begin);
        }
        return best;
    };
    const std::clock_t tick = CLOCKS_PER_SEC / 1000;
    EXPECT_LT(measure(16000), 64 * (measure(1000) + tick)) << "quadratic time: 256 times as long";
}

TEST_F(ConfigurationFileTest, ZeroBytesEndPathsAndStoredTexts)
{
    const std::string file = write("a.xml", "<c><b>false</b></c>");
    EXPECT_TRUE(table.load(file + '\0'));
    EXPECT_FALSE(table.save());
    EXPECT_EQ(getValues(), m_Usual);
    EXPECT_EQ(read(file), "<c><b>false</b></c>");
    table.addStringParameter("last", "", 0, 10, 0);
    table.setString("s", std::string("a\0b", 3));
    table.setString("last", "z");
    EXPECT_TRUE(table.save(file));
    table.setString("last", "");
    EXPECT_TRUE(table.load(file));
    EXPECT_EQ(table.getString("s") + table.getString("last"), "az");
}

TEST_F(ConfigurationFileTest, ReportsFileErrors)
{
    const std::string broken = write("broken", "<a><b>false</a>"), missing = path("missing/a");
    EXPECT_FALSE(table.load(broken));
    EXPECT_FALSE(table.save(missing));
    EXPECT_EQ(getValues(), m_Usual);
    expectRecords({"E Configuration file '" + broken + "' loading failed (-15): Mismatching " +
                       "closing tag 'a' while expecting 'b' at /a/b",
                   "E Configuration saving to file '" + missing +
                       "' failed (-1): Unable to open target file '" + missing + "'"});
}

TEST_F(ConfigurationFileTest, SavesIntoAnElement)
{
    Configuration high(0x80000001);
    high.addStringParameter("a/x", "1", 0, 9, 0x80000001);
    high.addStringParameter("a//", "2", 0, 9, 0);
    high.addStringParameter("/a/y", "3", 0, 9, 0);
    high.addStringParameter("version", "kept", 0, 9, 0);
    qor::XMLElement root(""), saved("r");
    EXPECT_TRUE(Configuration(0x80000001).save(&saved));
    EXPECT_EQ(saved.toString(), "<r><version>-2147483647</version></r>");
    ASSERT_GE(root.parse("<r>text<a>old</a><z>stays</z><a><x>second</x></a></r>"), 0);
    EXPECT_TRUE(high.save(&root));
    EXPECT_EQ(root.toString(), "<r><a><x><>2</>1</x><y>3</y>old</a><z>stays</z>"
                               "<a><x>second</x></a><version>kept</version>text</r>");
    root.findChild("version")->setValue(INT_MIN + 1);
    high.setString("a/x", "");
    EXPECT_TRUE(high.load(&root));
    EXPECT_EQ(high.getString("a/x"), "1");
}

} // namespace
