#include <string>

#include <gtest/gtest.h>

#include "PlainValidator.h"
#include "RandomText.h"
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
    RandomText rules("<a>0-2:0-1<b>0-2:0</b><c>0-1:0-2</c></a>|<b>0-2:0-1<d>0-1:0|<c>0-3:0-1|"
                     "<a>0-3:1-2|<b>1-2:0-2|<c>1-3:0-1</c>|<d>0-9:0</d>|</a>|</b>|</c>|</d>|none"),
        texts("<a>|<a>|<b>|<c>|<a>x</a>|<b>x</b>|<c></c>|<d></d>|</a>|</b>|</c>|x|<!---->");
    int fitting = 0;
    for (int i = 0; i < 3000; ++i) {
        const XMLElement templateRoot =
            parsed("<r>1:0-2<c>0-3:0-1</c><a>0-3:0-1<b>0-2:0</b>" + rules.next(12));
        for (int j = 0; j < 10; ++j) {
            const XMLElement document = parsed("<r>" + texts.next(9));
            const std::string fault = plainFaultOf(document, templateRoot);
            ASSERT_EQ(faultOf(document, templateRoot), fault) << templateRoot.toString() << "\n"
                                                              << document.toString();
            fitting += fault.empty() ? 1 : 0;
        }
    }
    EXPECT_GT(fitting, 300);
}
