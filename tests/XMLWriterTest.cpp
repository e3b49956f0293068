// SPDX-License-Identifier: MIT
#include <cstddef>
#include <thread>

#include "TemporaryFolder.h"
#include "qor/MD5.h"
#include "qor/XMLElement.h"

using qor::XMLElement;

namespace
{

/// @return random bytes except zero and those that are excluded, many of them special in XML
std::string randomText(std::mt19937& random, std::size_t maxSize, const std::string& excluded)
{
    std::string text(random() % (maxSize + 1), 'x');
    for (char& byte : text) {
        byte =
            random() % 4 == 0 ? "<>&;/-\"'"[random() % 8] : static_cast<char>(random() % 255 + 1);
        byte = excluded.find(byte) == std::string::npos ? byte : '&';
    }
    return text;
}

void fill(XMLElement& element, std::mt19937& random, std::size_t depth)
{
    element.setValue(randomText(random, random() % 30 == 0 ? 9000 : 60, ""));
    for (std::size_t i = 0; i < depth; ++i) {
        fill(*element.createChild("e" + randomText(random, 20, ">")), random, depth - 1);
        element.createChild("!--" + randomText(random, 50, ">") + "--");
    }
}

class XMLWriterTest : public TemporaryFolder
{
protected:
    std::string formatted(const XMLElement& element)
    {
        const int size = element.save(path("out.xml"), true);
        const std::string text = read(path("out.xml"));
        EXPECT_EQ(size, static_cast<int>(text.size()));
        EXPECT_EQ(element.toString(true), text);
        return text;
    }
};

} // namespace

TEST_F(XMLWriterTest, FormatsOneElementPerLine)
{
    const std::string value(40, 'v');
    XMLElement root("root");
    root.createChild("item")->setValue(5);
    root.createChild("note")->setValue(value);
    XMLElement* const list = root.createChild("list");
    list->setValue("text\nmore");
    list->createChild("x")->setValue("<1>");
    root.createChild("!-- a comment --");
    root.createChild("empty");
    EXPECT_EQ(formatted(root), "<root>\n\t<item>5</item>\n\t<note>\n\t\t" + value +
                                   "\n\t</note>\n\t<list>\n\t\t<x>&lt;1&gt;</x>\n\t\ttext\nmore\n"
                                   "\t</list>\n\t<!-- a comment -->\n\t<empty></empty>\n</root>\n");
    const std::string compact = "<root><item>5</item><note>" + value +
                                "</note><list><x>&lt;1&gt;</x>text\nmore</list>"
                                "<!-- a comment --><empty></empty></root>";
    EXPECT_EQ(root.toString(), compact);
    EXPECT_EQ(list->getChild("x")->toString(), "<x>&lt;1&gt;</x>");
    EXPECT_EQ(formatted(*list->getChild("x")), "<x>&lt;1&gt;</x>\n");
    XMLElement comment("!c");
    comment.setValue("lost");
    EXPECT_EQ(formatted(comment), "<!c>\n");
    comment.createChild("lost");
    EXPECT_EQ(formatted(comment), "<!c>\n\n");
    EXPECT_EQ(comment.toString(), "<!c>");
}

TEST_F(XMLWriterTest, EscapesValuesAndIndentsLongOnes)
{
    const std::string bytes = "\"&'<>a",
                      entities[] = {"&quot;", "&amp;", "&apos;", "&lt;", "&gt;", "a"};
    for (const unsigned int size : {1u, 8u, 38u, 39u, 40u, 41u, 8190u, 8191u, 8192u, 16384u}) {
        std::string value, escaped;
        for (std::size_t i = 0; i < size; ++i) {
            const std::size_t which = (i * i + i / 7) % bytes.size();
            value += bytes[which];
            escaped += entities[which];
        }
        XMLElement element("<'&");
        element.setValue(value);
        EXPECT_EQ(element.toString(), "<<'&>" + escaped + "</<'&>");
        const std::string space = size < 40 ? "" : "\n", indent = size < 40 ? "" : "\t";
        EXPECT_EQ(formatted(element), "<<'&>" + space + indent + escaped + space + "</<'&>\n");
    }
}

/// Joins line ends as loading does on this system.
/// @return the number of bytes removed
int joinLineEnds([[maybe_unused]] std::string& text)
{
    int count = 0;
#ifdef _WIN32
    for (std::size_t i = 0; (i = text.find("\r\n", i)) != std::string::npos; ++count) {
        text.erase(i, 1);
    }
#endif
    return count;
}

TEST_F(XMLWriterTest, RoundTripsInSeveralThreads)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([file = path(std::to_string(thread))] {
            std::mt19937 random;
            XMLElement rules("");
            rules.parse("<t>0:0-9999<n>1:1</n></t>");
            for (int i = 0; i < 30; ++i) {
                XMLElement tree("r"), loaded("");
                fill(tree, random, 4);
                std::string text = tree.toString();
                const int size = static_cast<int>(text.size());
                EXPECT_EQ(loaded.parse(text), size);
                EXPECT_EQ(loaded.toString(), text);
                EXPECT_EQ(tree.save(file, false), size);
                EXPECT_EQ(read(file), text);
                // The line feed at the end is not read.
                const int formattedSize = tree.save(file, true);
                const int lineEnds = joinLineEnds(text);
                EXPECT_EQ(loaded.load(file), formattedSize - 1 - lineEnds);
                EXPECT_EQ(loaded.toString(), text);
                tree.parse(text);
                qor::MD5 checksum, expected;
                tree.calculateChecksum(expected);
                loaded.calculateChecksum(checksum);
                EXPECT_EQ(checksum.getChecksumHex(), expected.getChecksumHex());
                tree.clear();
                tree.findChild("n", true)->setValue(i % 10);
                EXPECT_TRUE(tree.validate(&rules));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
