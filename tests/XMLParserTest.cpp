#include <cstddef>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include "RandomText.h"
#include "TemporaryFolder.h"
#include "TestData.h"
#include "qor/StringUtil.h"
#include "qor/XMLElement.h"

using qor::XMLElement;

namespace
{

/// Reads documents that begin with a tag, step by step and without any thought of speed. What it
/// has read it writes at once: children in front of the value, and nothing but the tag of comments.
struct TSlowParser {
    std::string source, message = {}, text = {}, location = {};
    std::size_t position = 1;

    void fail(const std::string& reason) { message = reason + (location.empty() ? "/" : location); }

    std::string readTag()
    {
        std::string tag;
        while (position < source.size()) {
            const char byte = source[position++];
            const bool mayEnd =
                tag[0] != '!' || (tag.size() > 4 && tag.substr(tag.size() - 2) == "--");
            if (byte == '>' && mayEnd) {
                if (tag.empty()) {
                    fail("Empty tag at ");
                }
                break;
            }
            tag += byte == '>' ? "" : std::string(1, byte);
        }
        return tag;
    }

    void readElement(const std::string& name)
    {
        const std::size_t outerSize = location.size(), begin = text.size();
        location += '/' + name;
        text += '<' + name + '>';
        std::string value;
        while (message.empty() && position < source.size()) {
            if (source[position++] != '<') {
                value += source[position - 1];
                continue;
            }
            const std::string tag = readTag();
            if (!message.empty() || tag == '/' + name) {
                break;
            }
            if (tag[0] == '!') {
                text += '<' + tag + '>';
            } else if (tag[0] == '/') {
                fail("Mismatching closing tag '" + tag.substr(1) + "' while expecting '" + name +
                     "' at ");
            } else if (position == source.size()) {
                fail("Unexpected end of source data at ");
            } else {
                readElement(tag);
            }
        }
        location.resize(outerSize);
        // Entities are written as they were read, but for ampersands that begin none.
        const std::set<std::string> ENTITIES{"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
        value = qor::StringUtil::trim(value);
        for (std::size_t i = 0; i < value.size(); ++i) {
            const std::string entity = value.substr(i, value.find(';', i) - i + 1);
            const bool isLone = value[i] == '&' && ENTITIES.count(entity) == 0;
            text += isLone ? "" : value[i] == '>' ? "&gt;" : value.substr(i, 1);
        }
        text += "</" + name + '>';
        if (name[0] == '!') {
            text.resize(begin + name.size() + 2);
        }
    }
};

void expectParsedAsSlowly(const std::string& source)
{
    TSlowParser slow{source};
    const std::string root = slow.readTag();
    if (slow.message.empty()) {
        slow.readElement(root);
    }
    XMLElement tree("old");
    tree.createChild("old");
    const int result = tree.parse(source);
    const int position = static_cast<int>(slow.position);
    ASSERT_EQ(result, slow.message.empty() ? position : -position) << source;
    ASSERT_EQ(result < 0 ? XMLElement::getLastError() : "", slow.message) << source;
    ASSERT_EQ(result < 0 ? slow.text : tree.toString(), slow.text) << source;
}

} // namespace

TEST(XMLParserTest, SourcesGiveTreesOrReasons)
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
        XMLElement tree("old");
        tree.createChild("old")->setValue("old");
        XMLElement("").parse("<last></error>");
        const std::string lastError = XMLElement::getLastError();
        const int result = tree.parse(test[0]);
        EXPECT_EQ(result, std::stoi(test[1])) << test[0];
        EXPECT_EQ(result < 0 ? XMLElement::getLastError() : tree.toString(), test[2]) << test[0];
        EXPECT_TRUE(result < 0 || XMLElement::getLastError() == lastError);
    }
    XMLElement tree("");
    tree.parse("<!-- c --><a>1</a><b></c>");
    EXPECT_EQ(tree.getName() + tree.getValue("a", ""), "!-- c --1");
    EXPECT_NE(tree.getChild("b"), nullptr);
}

TEST(XMLParserTest, AnyTextIsReadAsTheRulesSay)
{
    RandomText texts(
        "<a>|</a>|<b>|</b>|<a>|</a>|<!--|-->|->|>|<|/|<?php|?>|&amp;|&lt;|&|text | |\n|<a>x</a>|"
        "<long name='1'>|</long name='1'>|a somewhat longer text|<!---->|\r\n|\v");
    for (int i = 0; i < 60000; ++i) {
        expectParsedAsSlowly((i % 8 == 0 ? "<" : "<a>") + texts.next(24));
    }
    const std::string document =
        "<root x='1'>\n\t<!-- a > comment --> first &amp; <item>5 &lt; 6</item>second<list><x>1</x>"
        "<y><z>a value that is longer than a few words: &quot; </z></y></list>&bogus; \xC3\xA9 "
        "&apos;</root x='1'> rest";
    for (std::size_t size = 1; size <= document.size(); ++size) {
        expectParsedAsSlowly(document.substr(0, size));
    }
}

class XMLLoadTest : public TemporaryFolder
{
};

TEST_F(XMLLoadTest, FilesThatHoldNoDocument)
{
    write("empty", "");
    write("zero", std::string("\0<a>", 4));
    write("blank", " \n\t");
    const char* const CASES[][2] = {
        {"none.xml", "open"}, {"", "read"}, {"empty", "read"}, {"zero", "read"}};
    XMLElement tree("");
    for (const auto& [name, action] : CASES) {
        tree.setName("old");
        tree.createChild("old");
        EXPECT_EQ(tree.load(path(name)), -1);
        EXPECT_EQ(XMLElement::getLastError(),
                  std::string("Unable to ") + action + " source file '" + path(name) + "'");
        EXPECT_EQ(tree.toString(), "<></>");
    }
    EXPECT_EQ(tree.load(path("blank")), -1);
    EXPECT_EQ(XMLElement::getLastError(), "Empty XML source");
}

TEST_F(XMLLoadTest, FilesOfAnySizeFromAnySource)
{
    for (const unsigned int size :
         {8u, 4096u, 65535u, 65536u, 65537u, 131071u, 131072u, 131073u, 300000u}) {
        std::string value;
        for (std::size_t i = 0; i + 7 < size; ++i) {
            value += static_cast<char>('a' + i % 23);
        }
        const std::string text = "<a>" + value + "</a>";
        const std::string file = write("file.xml", text);
        XMLElement tree("");
        EXPECT_EQ(tree.load(file), static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(tree.getValue(), value);

        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        std::thread writer([&] {
            EXPECT_EQ(::write(ends[1], text.data(), size), static_cast<ssize_t>(size));
            close(ends[1]);
        });
        EXPECT_EQ(tree.load("/dev/fd/" + std::to_string(ends[0])), static_cast<int>(size));
        writer.join();
        close(ends[0]);
        EXPECT_EQ(tree.getValue(), value);

        // A zero byte is the end: the root is closed there.
        write("file.xml", "<a>" + value + '\0' + "</b>");
        EXPECT_EQ(tree.load(file), static_cast<int>(size - 4));
        EXPECT_EQ(tree.getValue(), value);
    }
}
