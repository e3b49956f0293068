// SPDX-License-Identifier: MIT
#include "../ReferenceValidator.h"
#include "FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    qor::XMLElement templateRoot(""), document("");
    templateRoot.parse(input.takeText());
    document.parse(input.takeText());
    const std::string error = referenceErrorOf(document, templateRoot);
    require(errorOf(document, templateRoot) == error);
    require(errorOf(document, templateRoot) == error);
    require(errorOf(qor::XMLElement(document), qor::XMLElement(templateRoot)) == error);
    return 0;
}
