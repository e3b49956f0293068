// SPDX-License-Identifier: MIT
#include <pthread.h>

#include "TestData.h"
#include "qor/CRC32.h"
#include "qor/XMLElement.h"

using qor::XMLElement;

namespace
{

constexpr int LEVELS = 1000000, SIBLINGS = 300000;
constexpr std::size_t STACK_SIZE = 256 << 10;

/// Runs a function on a thread whose stack has less than a byte per level.
void runOnSmallStack(void* (*function)(void*))
{
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, STACK_SIZE), 0);
    ASSERT_EQ(pthread_create(&thread, &attributes, function, nullptr), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

} // namespace

TEST(DeepTreeTest, OnlyMemoryLimitsDepth)
{
    runOnSmallStack([](void*) -> void* {
        const std::string text = repeated("<a>", LEVELS) + repeated("</a>", LEVELS);
        XMLElement tree(""), target("target");
        EXPECT_EQ(tree.parse(text), static_cast<int>(text.size()));
        EXPECT_TRUE(tree.toString() == text);
        {
            XMLElement copy(tree);
            tree.clear();
            target = copy;
        }
        EXPECT_TRUE(target.toString() == text);
        // Assigns a descendant to an ancestor far above and the reverse.
        XMLElement* const child = target.getChild("a")->getChild("a");
        *child->createChild("b") = std::move(*child->getChild("a"));
        target = std::move(*child);
        EXPECT_EQ(target.toString().size(), text.size() - 9);
        return nullptr;
    });
}

TEST(DeepTreeTest, LocatesErrorsFarBelow)
{
    constexpr int DEPTH = 100000;
    EXPECT_EQ(XMLElement("").parse(repeated("<a>", DEPTH) + "<>"), -3 * DEPTH - 2);
    EXPECT_TRUE(XMLElement::getLastError() == "Empty tag at " + repeated("/a", DEPTH));
}

TEST(DeepTreeTest, ValidatesAndHashesDeepTrees)
{
    runOnSmallStack([](void*) -> void* {
        XMLElement tree(""), templateRoot("");
        tree.parse(repeated("<a>", LEVELS));
        templateRoot.parse(repeated("<a>1:0", LEVELS));
        EXPECT_TRUE(tree.validate(&templateRoot));
        tree.parse(repeated("<a>", LEVELS + 1));
        EXPECT_FALSE(tree.validate(&templateRoot));
        EXPECT_EQ(XMLElement::getLastError(), "Unexpected element 'a' as child of 'a'");
        qor::CRC32 fed, expected;
        tree.calculateChecksum(fed);
        expected.add(repeated("a", LEVELS + 1));
        EXPECT_EQ(fed.getChecksumInteger(), expected.getChecksumInteger());
        return nullptr;
    });
}

TEST(DeepTreeTest, ValidatesManyChildrenAgainstManyNamesInLinearTime)
{
    // Comparing each child with each name would take minutes.
    constexpr int NAMES = SIBLINGS / 15;
    XMLElement tree("r"), names("many");
    names.setValue("0-4294967295:0");
    for (int i = 0; i < NAMES; ++i) {
        names.createChild("name " + std::to_string(i))->setValue("0-99:0");
    }
    XMLElement templateRoot(names);
    *templateRoot.createChild("") = names;
    for (int i = 0; i < SIBLINGS; ++i) {
        const long long name = i * 7919LL % NAMES;
        tree.createChild(i % 2 == 0 ? "many" : "name " + std::to_string(name));
    }
    EXPECT_TRUE(tree.validate(&templateRoot)) << XMLElement::getLastError();
}

TEST(DeepTreeTest, DeletesManyChildrenByNameInLinearTime)
{
    XMLElement tree("r");
    for (int i = 0; i < SIBLINGS; ++i) {
        tree.createChild(i % 2 == 0 ? "keep" : "drop");
    }
    // Searching each child from the first one would take minutes.
    tree.deleteChild("drop");
    EXPECT_EQ(tree.toString().size(), 7 + 13u * (SIBLINGS / 2));
}
