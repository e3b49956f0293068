// SPDX-License-Identifier: MIT
#include "qor/XMLElement.h"

#include <cstddef>
#include <limits>
#include <numeric>
#include <type_traits>
#include <utility>
#include <vector>

#include "TestData.h"

using qor::XMLElement;

static_assert(std::has_virtual_destructor_v<XMLElement>);
static_assert(std::is_nothrow_move_constructible_v<XMLElement>);
static_assert(!std::is_convertible_v<std::string, XMLElement>, "no implicit conversion from text");

namespace
{

template<typename T, typename = void>
constexpr bool CAN_BE_VALUE = false;
template<typename T>
constexpr bool CAN_BE_VALUE<
    T, std::void_t<decltype(std::declval<XMLElement&>().setValue(std::declval<T>()))>> = true;

constexpr auto LAMBDA = [] { return 1; };
static_assert(CAN_BE_VALUE<char (&)[4]> && CAN_BE_VALUE<std::nullptr_t> && CAN_BE_VALUE<short>);
static_assert(!CAN_BE_VALUE<char> && !CAN_BE_VALUE<int*> && !CAN_BE_VALUE<const void*>);
static_assert(!CAN_BE_VALUE<XMLElement*> && !CAN_BE_VALUE<const volatile char*>);
static_assert(!CAN_BE_VALUE<int (*)()> && !CAN_BE_VALUE<int (&)()> &&
              !CAN_BE_VALUE<decltype(LAMBDA)>);
static_assert(!CAN_BE_VALUE<int std::string::*> && !CAN_BE_VALUE<int (std::string::*)()>);

/// Values follow the children, as the writer puts them.
constexpr const char* DOCUMENT = "<r><a><b><c>3</c>2</b><b>5</b>1</a><d>4</d><a>6</a>0</r>";

XMLElement makeTree(const std::string& text = DOCUMENT)
{
    XMLElement tree("");
    EXPECT_EQ(tree.parse(text), static_cast<int>(text.size()));
    EXPECT_EQ(tree.toString(), text);
    return tree;
}

std::string textOf(const XMLElement* element)
{
    return element ? element->toString() : "null";
}

bool isWithin(const std::string& path, const std::string& outer)
{
    return outer.empty() || (path + '/').rfind(outer + '/', 0) == 0;
}

} // namespace

TEST(XMLTreeTest, ConvertsValuesToText)
{
    XMLElement element("a");
    const auto valueOf = [&element](auto value) {
        element.setValue(value);
        return element.getValue();
    };
    EXPECT_EQ(valueOf("  word \t\r\n"), "word");
    EXPECT_EQ(valueOf(" \n "), "");
    EXPECT_EQ(valueOf(std::string("\fa  b\v")), "\fa  b\v");
    EXPECT_EQ(valueOf(static_cast<const char*>(nullptr)), "");
    EXPECT_EQ(valueOf(true), "true");
    EXPECT_EQ(valueOf(false), "false");
    EXPECT_EQ(valueOf(-2147483647 - 1), "-2147483648");
    EXPECT_EQ(valueOf(1.5f), "1.500000");
    EXPECT_EQ(valueOf(0.1), "0.100000");
    EXPECT_EQ(valueOf(123456789.0123456), "123456789.012346");
    EXPECT_EQ(valueOf(-std::numeric_limits<double>::max()).size(), 1 + 309 + 7u);
    EXPECT_EQ(valueOf(4294967295u), "4294967295");
    EXPECT_EQ(valueOf(std::size_t{5}), "5");
    EXPECT_EQ(valueOf(-5L), "-5");
    EXPECT_EQ(valueOf(std::numeric_limits<long long>::min()), "-9223372036854775808");
    EXPECT_EQ(valueOf(std::numeric_limits<unsigned long long>::max()), "18446744073709551615");
    EXPECT_EQ(valueOf(nullptr), "");
    EXPECT_EQ(valueOf(-3.4028235e38f), "-340282346638528859811704183484516925440.000000");
}

TEST(XMLTreeTest, ReturnsDefaultsForMissingElementsOnly)
{
    const XMLElement tree = makeTree("<r><n>12abc</n><w>abc</w><t>true</t>own</r>");
    EXPECT_EQ(tree.getValue("", "default"), "own");
    EXPECT_EQ(tree.getValue("/n", "default"), "12abc");
    EXPECT_EQ(tree.getValue("missing", "default"), "default");
    for (const auto& [path, number] : {std::pair("n", 12), {"w", 0}, {"n/n", 7}, {"m", 7}}) {
        EXPECT_EQ(tree.getValueAsInteger(path, 7), number);
        EXPECT_EQ(tree.getValueAsFloat(path, 7), static_cast<float>(number));
    }
    EXPECT_TRUE(tree.getValueAsBoolean("t", false));
    EXPECT_FALSE(tree.getValueAsBoolean("w", true));
    EXPECT_TRUE(tree.getValueAsBoolean("m", true));
}

TEST(XMLTreeTest, FollowsFirstChildrenOfPaths)
{
    for (const auto& test : readTable("xml-paths")) {
        XMLElement tree = makeTree(test[0]);
        const XMLElement& constTree = tree;
        EXPECT_EQ(textOf(constTree.findChild(test[1])), test[2]) << test[1];
        EXPECT_EQ(textOf(tree.findChild(test[1])), test[2]) << test[1];
        EXPECT_EQ(tree.toString(), test[0]);
        EXPECT_EQ(textOf(tree.findChild(test[1], true)), test[3]) << test[1];
        EXPECT_EQ(tree.toString(), test[4]) << test[1];
    }
}

TEST(XMLTreeTest, ListsChildrenByName)
{
    XMLElement tree = makeTree();
    const XMLElement& constTree = tree;
    XMLElement* const first = tree.getChild("");
    EXPECT_EQ(first, constTree.getChild("a"));
    EXPECT_EQ(textOf(tree.getNextChild(first, "")), "<d>4</d>");
    EXPECT_EQ(textOf(constTree.getNextChild(constTree.getChild("d"), "a")), "<a>6</a>");
    EXPECT_EQ(textOf(constTree.getNextChild(first, "b")), "null");
    EXPECT_EQ(tree.getNextChild(nullptr, ""), nullptr);
    EXPECT_EQ(constTree.getNextChild(nullptr, ""), nullptr);
}

TEST(XMLTreeTest, VisitsChildrenInRangeLoops)
{
    XMLElement tree("t");
    tree.parse("<t><a>1</a><b>2</b><a>3</a></t>");
    for (XMLElement& child : tree.getChildren("a")) {
        child.setValue(child.getValue() + "x");
    }
    const XMLElement& constTree = tree;
    const std::pair<std::string, std::string> cases[] = {{"", "1x 2 3x "}, {"b", "2 "}, {"c", ""}};
    for (const auto& [name, expected] : cases) {
        std::string values;
        for (const XMLElement& child : constTree.getChildren(name)) {
            values += child.getValue() + " ";
        }
        EXPECT_EQ(values, expected) << name;
    }
}

TEST(XMLTreeTest, DeletesChildren)
{
    for (const auto& test : readTable("xml-deletions")) {
        XMLElement tree = makeTree(test[0]);
        tree.deleteChild("a");
        tree.deleteChild("");
        tree.createChild("n");
        EXPECT_EQ(tree.toString(), test[1]);
        tree.createChild("");
        tree.deleteChild(std::string());
        EXPECT_EQ(tree.toString(), test[1]);
    }
    XMLElement letters = makeTree("<r><a></a><b></b><c></c><d></d></r>");
    EXPECT_EQ(textOf(letters.deleteChild(letters.getChild("b"))), "<c></c>");
    EXPECT_EQ(textOf(letters.deleteChild(letters.getChild("d"))), "null");
    letters.createChild("n");
    EXPECT_EQ(textOf(letters.deleteChild(letters.getChild("a"))), "<c></c>");
    EXPECT_EQ(letters.toString(), "<r><c></c><n></n></r>");
    XMLElement tree = makeTree();
    EXPECT_EQ(tree.deleteChild(tree.findChild("a/b")), nullptr);
    EXPECT_EQ(tree.deleteChild(&tree), nullptr);
    EXPECT_EQ(tree.deleteChild(static_cast<XMLElement*>(nullptr)), nullptr);
    EXPECT_EQ(tree.toString(), DOCUMENT);
    XMLElement* const child = tree.getChild("d");
    EXPECT_EQ(child->deleteChild(child->createChild("x")), nullptr);
    child->createChild("y");
    EXPECT_EQ(child->toString(), "<d><y></y>4</d>");
    tree.deleteChildren();
    EXPECT_EQ(tree.toString(), "<r>0</r>");
    tree.setName("s");
    tree.createChild("x");
    tree.clear();
    EXPECT_EQ(tree.toString(), "<></>");
}

TEST(XMLTreeTest, CopiesAreIndependent)
{
    XMLElement source = makeTree();
    XMLElement copy(source), copyOfChild(source.getChild("a")), assigned("x");
    assigned = source;
    source.findChild("a/b/c")->setName("changed");
    source.clear();
    EXPECT_EQ(copy.toString(), DOCUMENT);
    EXPECT_EQ(assigned.toString(), DOCUMENT);
    EXPECT_EQ(copyOfChild.toString(), "<a><b><c>3</c>2</b><b>5</b>1</a>");
    EXPECT_EQ(copyOfChild.getNextChild(&copyOfChild, ""), nullptr);
    EXPECT_EQ(XMLElement(static_cast<const XMLElement*>(nullptr)).toString(), "<></>");
}

TEST(XMLTreeTest, AssignsElementsWithinTree)
{
    const std::vector<std::string> paths{"", "a", "a/b", "a/b/c", "d"};
    for (const std::string& targetPath : paths) {
        for (const std::string& sourcePath : paths) {
            for (const bool moves : {false, true}) {
                XMLElement tree = makeTree();
                XMLElement* const target = tree.findChild(targetPath);
                XMLElement* const source = tree.findChild(sourcePath);
                const std::string targetText = target->toString(), text = source->toString();
                std::string expected = DOCUMENT;
                const bool isApart =
                    !isWithin(targetPath, sourcePath) && !isWithin(sourcePath, targetPath);
                if (moves && isApart) {
                    expected.replace(expected.find(text), text.size(), "<></>");
                }
                expected.replace(expected.find(targetText), targetText.size(), text);
                const XMLElement* const child = source->getChild("");
                XMLElement& result = moves ? * target = std::move(*source) : * target = *source;
                EXPECT_EQ(&result, target);
                EXPECT_TRUE(source != target || target->getChild("") == child);
                EXPECT_EQ(tree.toString(), expected) << targetPath << " = " << sourcePath << moves;
                target->createChild("n");
                EXPECT_NE(tree.toString().find("<n></n>"), std::string::npos);
            }
        }
    }
}

// Short texts are in the element, long ones on the heap.
TEST(XMLTreeTest, KeepsTextsOfEveryLength)
{
    std::vector<std::string> texts;
    for (const int size : {0, 1, 2, 3, 4, 7, 8, 14, 15, 16, 17, 31, 32, 33, 37, 38, 39, 99}) {
        texts.emplace_back(static_cast<std::size_t>(size), '\0');
        std::iota(texts.back().begin(), texts.back().end(), 'A');
    }
    XMLElement changed("");
    for (const std::string& name : texts) {
        for (const std::string& value : texts) {
            XMLElement tree("r");
            changed.setName(name);
            changed.setValue(value);
            *tree.createChild("x") = changed;
            *tree.createChild("y") = XMLElement(XMLElement(changed));
            for (const XMLElement& child : tree.getChildren()) {
                ASSERT_EQ(child.getName(), name);
                ASSERT_EQ(child.getValue(), value);
            }
            XMLElement read("");
            // Other elements divide the first value into two parts.
            read.parse("<r>" + value + "<" + name + "->" + value + "</" + name + "->" + value +
                       "</r>");
            ASSERT_EQ(read.getValue(), value + value);
            ASSERT_EQ(read.getValue(name + "-", "none"), value);
        }
    }
}

TEST(XMLTreeTest, ComparesAllBytesOfNames)
{
    for (std::size_t size = 1; size <= 20; ++size) {
        const std::string name(size, 'n');
        XMLElement tree("r");
        for (std::size_t i = 0; i < size; ++i) {
            tree.createChild(name)->setName(std::string(name).replace(i, 1, "m"));
        }
        tree.createChild(name + 'n');
        EXPECT_EQ(tree.getChild(name), nullptr) << size;
        XMLElement* const child = tree.createChild(name);
        EXPECT_EQ(tree.getChild(name), child) << size;
    }
}

TEST(XMLTreeTest, MovesKeepAddressesAndClearSource)
{
    XMLElement source = makeTree();
    XMLElement* const child = source.findChild("a/b");
    XMLElement target(std::move(source));
    EXPECT_EQ(target.findChild("a/b"), child);
    EXPECT_EQ(source.toString(), "<></>");
    source.createChild("x");
    source = std::move(target);
    EXPECT_EQ(source.findChild("a/b"), child);
    EXPECT_EQ(source.toString(), DOCUMENT);
    EXPECT_EQ(target.toString(), "<></>");
    // A moved child is still a child: an ancestor is copied into it.
    *child = std::move(source);
    EXPECT_EQ(child->toString(), DOCUMENT);
}
