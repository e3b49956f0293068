#include <cstddef>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "TestData.h"
#include "qor/XMLElement.h"

using qor::XMLElement;

namespace
{

constexpr long NEVER = -1;
long liveBlocks = 0;
long allocations = 0;
long allocationsLeft = NEVER; ///< until one fails

} // namespace

void* operator new(std::size_t size)
{
    if (allocationsLeft == 0) {
        throw std::bad_alloc();
    }
    allocationsLeft -= allocationsLeft > 0 ? 1 : 0;
    void* const block = std::malloc(size);
    liveBlocks += 1;
    allocations += 1;
    return block;
}

void operator delete(void* block) noexcept
{
    liveBlocks -= block ? 1 : 0;
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    operator delete(block);
}

namespace
{

long countAllocations(const std::function<void()>& action)
{
    const long before = allocations;
    action();
    return allocations - before;
}

/// Runs an action with one allocation after the other failing, until it succeeds. Where it fails,
/// nothing may be lost, and the tree that it would change stays as it was.
void expectNothingLost(const XMLElement& tree, const std::function<void()>& action)
{
    const std::string text = tree.toString();
    bool succeeded = false;
    for (long allowed = 0; !succeeded; ++allowed) {
        const long before = liveBlocks;
        allocationsLeft = allowed;
        try {
            action();
            succeeded = true;
        } catch (const std::bad_alloc&) {
        }
        allocationsLeft = NEVER;
        ASSERT_TRUE(succeeded || (liveBlocks == before && tree.toString() == text)) << allowed;
    }
}

} // namespace

TEST(AllocationTest, ElementsTakeOneBlockEach)
{
    constexpr int GROUPS = 1000, OWN_BUFFERS = 16;
    for (const char* group : {"<a><b>short &amp; x</b><c>1</c></a>", "<a> <b> x &lt;<c>"}) {
        const std::string text = "<root>" + repeated(group, GROUPS) + "x";
        XMLElement tree(""), copy("");
        const long parsing = countAllocations([&] { tree.parse(text); }) - 3 * GROUPS;
        EXPECT_TRUE(parsing >= 0 && parsing <= OWN_BUFFERS) << parsing;
        const long copying = countAllocations([&] { copy = tree; }) - 3 * GROUPS;
        EXPECT_TRUE(copying >= 0 && copying <= OWN_BUFFERS) << copying;
        const long moving = countAllocations([&] {
            XMLElement moved(std::move(copy));
            tree = std::move(moved);
        });
        EXPECT_EQ(moving, 0);
    }
}

TEST(AllocationTest, NothingIsLostWhereMemoryRunsOut)
{
    const std::string group = "<a>a value that fits no buffer of its string<b><!-- c --></b></a>";
    const std::string text = "<root>" + repeated(group, 4);
    XMLElement tree(""), target("target");
    tree.parse(text);
    expectNothingLost(tree, [&] { XMLElement copy(tree); });
    expectNothingLost(target, [&] { target = tree; });
    EXPECT_EQ(target.toString(), tree.toString());
    expectNothingLost(target, [&] { *target.getChild("a") = target; });
    expectNothingLost(tree, [&] { XMLElement("").parse(text); });
    expectNothingLost(tree, [&] { tree.toString(); });
}
