#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <list>
#include <new>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "TestData.h"
#include "qor/qor.h"

using qor::Image, qor::XMLElement;

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
    if (!block) {
        throw std::bad_alloc();
    }
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

TEST(AllocationTest, EventsAndTransitionsTakeNoMemory)
{
    qor::StateMachine machine;
    std::list<qor::State> states;
    qor::State* leaves[2] = {&machine, &machine};
    for (int i = 0; i < 80; ++i) {
        states.emplace_back(&machine, leaves[i % 2], "state " + std::to_string(i));
        leaves[i % 2] = &states.back();
    }
    const std::string name = leaves[0]->getName();
    const long taken = countAllocations([&] {
        machine.start();
        machine.setCurrentState(leaves[1]);
        machine.transition(name);
        machine.sendEvent(1);
    });
    EXPECT_EQ(taken, 0);
    EXPECT_EQ(machine.getCurrentState(), leaves[0]);
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
    XMLElement templateRoot("");
    templateRoot.parse("<t>0:0<a>4:0-99<b>0-1:0</b><c>1:0</c></a></t>");
    expectNothingLost(tree, [&] { EXPECT_FALSE(tree.validate(&templateRoot)); });
    EXPECT_EQ(XMLElement::getLastError(), "Too few 'c' elements");
    qor::CRC32 checksum;
    expectNothingLost(tree, [&] { tree.calculateChecksum(checksum); });
}

TEST(AllocationTest, TransfersAllocateNothingAndFlippingOneRow)
{
    Image source(8, 8), target(8, 8), row(8, 1);
    std::fill_n(source.getData(), 64, 0xFF123456);
    const qor::Rectangle all = source.getSize();
    EXPECT_EQ(countAllocations([&] { target.blit(source, all, 1, 1); }), 0);
    EXPECT_EQ(countAllocations([&] { target.blit(source, all, 0, 0, 9, 9, 2); }), 0);
    EXPECT_EQ(countAllocations([&] { row.flipVertical(); }), 0);
    EXPECT_EQ(countAllocations([&] { source.flipVertical(); }), 1);
}

TEST(AllocationTest, ImagesSurviveLackOfMemory)
{
    Image image(2, 2), other(3, 3);
    std::fill_n(image.getData(), 4, 5u);
    const auto expectFailure = [](const std::function<void()>& action) {
        EXPECT_THROW(action(), std::bad_alloc);
        allocationsLeft = NEVER;
    };
    expectFailure([&] { allocationsLeft = 0, image.flipVertical(); });
    expectFailure([&] { allocationsLeft = 0, image = other; });
    EXPECT_TRUE(image.getWidth() == 2 && image.getData()[0] == 5);
    expectFailure([&] { image.create(0x7FFFFFFF, 0x7FFFFFFF); });
    EXPECT_TRUE(image.getWidth() == 0x7FFFFFFF && image.getHeight() == 0x7FFFFFFF);
    EXPECT_EQ(image.getData(), nullptr);
    EXPECT_EQ(Image(image).getData(), nullptr);
    image.flipVertical();
    EXPECT_EQ(image.blit(other, other.getSize(), 0, 0), 0);
}
