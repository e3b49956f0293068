// SPDX-License-Identifier: MIT
#include "ReferenceValidator.h"
#include "TestData.h"
#include "qor/XMLElement.h"

using qor::XMLElement;

TEST(XMLValidatorTest, ReportsFirstError)
{
    XMLElement templateRoot(""), document("");
    for (const auto& test : readTable("xml-templates")) {
        templateRoot.parse(test[0]);
        document.parse(test[1]);
        EXPECT_EQ(errorOf(document, templateRoot), test[2]) << test[0] << "\n" << test[1];
    }
    EXPECT_FALSE(XMLElement("r").validate(nullptr));
    EXPECT_EQ(XMLElement::getLastError(), "Invalid template rule '' for element ''");
}
