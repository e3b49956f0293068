#include <vector>

#include "FuzzInput.h"
#include "qor/StringUtil.h"
#include "qor/XMLElement.h"

namespace
{

/// Whether an element that was parsed is read back as it is written.
bool isReadable(const qor::XMLElement& element)
{
    const std::string name = element.getName(), value = element.getValue();
    if (name.empty() || name.front() == '/' || name.find('>') != std::string::npos) {
        return false;
    }
    if (name.front() == '!') {
        return name.size() >= 5 && name.compare(name.size() - 2, 2, "--") == 0;
    }
    // An ampersand that was dropped may leave white space at an end, which would be trimmed.
    return value == qor::StringUtil::trim(value);
}

/// The same for a tree, whose root must be no comment, nor be taken for a declaration.
bool isReadableTree(const qor::XMLElement& root)
{
    bool isFine = root.getName().rfind('!', 0) != 0 && root.getName().rfind("?xml", 0) != 0;
    std::vector<const qor::XMLElement*> waiting{&root};
    while (isFine && !waiting.empty()) {
        const qor::XMLElement& element = *waiting.back();
        waiting.pop_back();
        isFine = isReadable(element);
        for (const qor::XMLElement* child = element.getChild(""); child;
             child = element.getNextChild(child, "")) {
            waiting.push_back(child);
        }
    }
    return isFine;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string source(data, data + size);
    qor::XMLElement tree("");
    const int result = tree.parse(source);
    const std::string text = tree.toString();
    require(qor::XMLElement(tree).toString() == text);
    require(result == -1 || static_cast<std::size_t>(std::abs(result)) <= size);
    if (result >= 0 && isReadableTree(tree)) {
        require(tree.parse(text) == static_cast<int>(text.size()) && tree.toString() == text);
    }
    return 0;
}
