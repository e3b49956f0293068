// SPDX-License-Identifier: MIT
#include "../ReferenceParser.h"
#include "FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string source(data, data + size);
    qor::XMLElement tree("");
    const int result = tree.parse(source);
    require(result == -1 || static_cast<std::size_t>(std::abs(result)) <= size);
    require(qor::XMLElement(tree).toString() == tree.toString());
    const bool isDeclared = source.rfind("<?xml", 0) == 0;
    require(source[0] != '<' || isDeclared || outcomeOf(source) == referenceOutcomeOf(source));
    return 0;
}
