// SPDX-License-Identifier: MIT
#include "ReferenceParser.h"
#include "TemporaryFolder.h"
#include "TestData.h"

using qor::XMLElement;

TEST(XMLParserTest, ReturnsPositionAndTreeOrError)
{
    std::vector<std::vector<std::string>> cases = readTable("xml-sources");
    cases.insert(cases.end(), {{" \t\r\n<a></a>rest", "11", "<a></a>"},
                               {"<a>\r\n<b>\fx\r\ny\v</b></a>", "22", "<a><b>\fx\r\ny\v</b></a>"},
                               {"<a>\x80\xFF</a>", "9", "<a>\x80\xFF</a>"},
                               {std::string("<a>x\0</a>", 9), "9", std::string("<a>x\0</a>", 9)},
                               {"", "-1", "Empty XML source"},
                               {" \n", "-1", "Empty XML source"},
                               {" <?xml?>", "-6", "No root element found after XML declaration"},
                               {"\f<a>", "-1", "Expected a tag, but found character 0x0C at /"},
                               {"\xEF\xBB\xBF<a>", "-1",
                                "Expected a tag, but found character 0xFFFFFFEF at /"}});
    for (const auto& test : cases) {
        XMLElement("").parse("<last></error>");
        const std::string lastError = XMLElement::getLastError();
        EXPECT_EQ(outcomeOf(test[0]), test[1] + ' ' + test[2]) << test[0];
        EXPECT_TRUE(test[1][0] == '-' || XMLElement::getLastError() == lastError);
    }
    XMLElement tree("");
    tree.parse("<!-- c --><a>1</a><b></c>");
    EXPECT_EQ(tree.getName() + tree.getValue("a", ""), "!-- c --1");
    EXPECT_NE(tree.getChild("b"), nullptr);
}

TEST(XMLParserTest, ComparesEveryByteOfNames)
{
    for (std::size_t size = 1; size <= 20; ++size) {
        const std::string name(size, 'n');
        XMLElement tree("");
        EXPECT_GT(tree.parse("<a><" + name + ">x</" + name + "></a>"), 0) << size;
        for (std::size_t i = 0; i < size; ++i) {
            std::string other = name;
            other[i] = 'm';
            EXPECT_LT(tree.parse("<a><" + name + ">x</" + other + "></a>"), 0) << size << ' ' << i;
        }
    }
}

TEST(XMLParserTest, KeepsTheSiblingsOfAChildThatParses)
{
    for (const std::string text : {"<x><y>z<v></v></y></x>", "<x><y>z<v></v></y><>"}) {
        XMLElement root("root");
        XMLElement* const first = root.createChild("first");
        root.createChild("second");
        first->parse(text);
        EXPECT_EQ(root.toString(), "<root><x><y><v></v>z</y></x><second></second></root>");
    }
}

using XMLLoadTest = TemporaryFolder;

TEST_F(XMLLoadTest, ReportsFilesWithoutDocument)
{
    XMLElement tree("");
    for (const std::string& file : {write("empty", ""), write("zero", std::string("\0<a>", 4))}) {
        tree.createChild("old");
        EXPECT_EQ(tree.load(file), -1);
        EXPECT_EQ(XMLElement::getLastError(), "Unable to read source file '" + file + "'");
        EXPECT_EQ(tree.toString(), "<></>");
    }
    EXPECT_EQ(tree.load(write("blank", " \n\t")), -1);
    EXPECT_EQ(XMLElement::getLastError(), "Empty XML source");
}

TEST_F(XMLLoadTest, LoadsFilesOfAnySizeUpToZeroByte)
{
    for (const unsigned int size :
         {8u, 4096u, 65535u, 65536u, 65537u, 131071u, 131072u, 131073u, 300000u}) {
        const std::string value = repeated("abcdefghijklmnopqrstuvw", 14000).substr(0, size - 7);
        const std::string text = "<a>" + value + "</a>", file = write("file.xml", text);
        XMLElement tree("");
        EXPECT_EQ(tree.load(file), static_cast<int>(size));
        EXPECT_EQ(tree.getValue(), value);

        // A zero byte ends the source, and the root is closed there.
        write("file.xml", "<a>" + value + '\0' + "</b>");
        EXPECT_EQ(tree.load(file), static_cast<int>(size - 4));
        EXPECT_EQ(tree.getValue(), value);
    }
}
