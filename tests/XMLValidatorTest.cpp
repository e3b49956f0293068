#include <random>
#include <string>

#include <gtest/gtest.h>

#include "PlainValidator.h"
#include "TestData.h"
#include "qor/XMLElement.h"

using qor::XMLElement;

namespace
{

XMLElement parsed(const std::string& text)
{
    XMLElement tree("");
    tree.parse(text);
    return tree;
}

/// Trees small enough to fit each other now and then.
class RandomTrees
{
public:
    XMLElement make(bool isTemplate, int levels = 3)
    {
        XMLElement element(!isTemplate && below(8) == 0 ? "!" : std::string(1, "abcde"[below(5)]));
        element.setValue(isTemplate ? rule(levels) : repeated("x", below(8) == 0 ? 3 : below(2)));
        for (int count = levels > 0 ? below(6) : 0; count > 0; --count) {
            *element.createChild("") = make(isTemplate, levels - 1);
        }
        return element;
    }

private:
    std::string rule(int levels)
    {
        const int least = below(3) / 2;
        const std::string rule = std::to_string(least) + "-" +
                                 std::to_string(least + 1 + below(4)) + ":0-" +
                                 std::to_string(1 + below(3));
        return levels < 3 && below(12) == 0 ? "none" : rule;
    }

    int below(unsigned int end) { return static_cast<int>(m_Random() % end); }

    std::mt19937 m_Random{24};
};

} // namespace

TEST(XMLValidatorTest, FirstFaultsAreTold)
{
    for (const auto& test : readTable("xml-templates")) {
        EXPECT_EQ(faultOf(parsed(test[1]), parsed(test[0])), test[2]) << test[0] << "\n" << test[1];
    }
    EXPECT_FALSE(parsed("<r></r>").validate(nullptr));
    EXPECT_EQ(XMLElement::getLastError(), "Invalid template rule '' for element ''");
}

TEST(XMLValidatorTest, RandomTreesGetTheVerdictsOfPlainerCode)
{
    RandomTrees trees;
    int fitting = 0;
    for (int i = 0; i < 3000; ++i) {
        const XMLElement templateRoot = trees.make(true);
        for (int j = 0; j < 10; ++j) {
            const XMLElement document = trees.make(false);
            const std::string fault = plainFaultOf(document, templateRoot);
            ASSERT_EQ(faultOf(document, templateRoot), fault) << templateRoot.toString() << "\n"
                                                              << document.toString();
            fitting += fault.empty() ? 1 : 0;
        }
    }
    EXPECT_GT(fitting, 300);
}
