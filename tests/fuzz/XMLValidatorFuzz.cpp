#include "../PlainValidator.h"
#include "FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    qor::XMLElement templateRoot(""), document("");
    templateRoot.parse(input.takeText());
    document.parse(input.takeText());
    const std::string expected = plainFaultOf(document, templateRoot);
    require(faultOf(document, templateRoot) == expected);
    require(faultOf(document, templateRoot) == expected);
    require(faultOf(qor::XMLElement(document), qor::XMLElement(templateRoot)) == expected);
    return 0;
}
