// SPDX-License-Identifier: MIT
#include <functional>
#include <list>
#include <utility>

#include "FailingAllocator.h"
#include "PixelData.h"
#include "TestData.h"
#include "qor/qor.h"

using qor::Image, qor::XMLElement;

namespace
{

long countAllocations(const std::function<void()>& action)
{
    const long before = allocations;
    action();
    return allocations - before;
}

} // namespace

TEST(AllocationTest, ElementsAllocateOneBlockEach)
{
    constexpr int GROUPS = 1000;
    constexpr int MAX_ALLOCATIONS = 3 * GROUPS + 16; // Some for the parser's own buffers.
    for (const char* group : {"<a><b>short &amp; x</b><c>1</c></a>", "<a> <b> x &lt;<c>"}) {
        const std::string text = "<root>" + repeated(group, GROUPS) + "x";
        XMLElement tree(""), copy("");
        EXPECT_LE(countAllocations([&] { tree.parse(text); }), MAX_ALLOCATIONS);
        EXPECT_LE(countAllocations([&] { copy = tree; }), MAX_ALLOCATIONS);
        EXPECT_EQ(countAllocations([&] { tree = XMLElement(std::move(copy)); }), 0);
    }
}

TEST(AllocationTest, EventsAndTransitionsAllocateNothing)
{
    qor::StateMachine machine;
    std::list<qor::State> states;
    qor::State* leaves[2] = {&machine, &machine};
    for (int i = 0; i < 80; ++i) {
        states.emplace_back(&machine, leaves[i % 2], "state " + std::to_string(i));
        leaves[i % 2] = &states.back();
    }
    const std::string name = leaves[0]->getName();
    const auto handOver = [&] {
        machine.start();
        machine.setCurrentState(leaves[1]);
        machine.transition(name);
        machine.sendEvent(1);
    };
    EXPECT_EQ(countAllocations(handOver), 0);
    EXPECT_EQ(machine.getCurrentState(), leaves[0]);
}

TEST(AllocationTest, DroppedConsoleLinesReleaseTheirMemory)
{
    qor::Console console(3);
    const auto fill = [&console](const std::string& line) {
        for (int i = 0; i < 3; ++i) {
            console.print(line);
        }
    };
    fill("short");
    const long before = liveBlocks;
    fill(repeated("long", 100));
    EXPECT_EQ(liveBlocks, before + 3);
    fill("short");
    EXPECT_EQ(liveBlocks, before);
}

TEST(AllocationTest, TransfersAndFlippingAllocateNothing)
{
    Image source(8, 8), target(8, 8);
    std::fill_n(source.getData(), 64, 0xFF123456);
    const qor::Rectangle all = source.getSize();
    EXPECT_EQ(countAllocations([&] { target.blit(source, all, 1, 1); }), 0);
    EXPECT_EQ(countAllocations([&] { target.blit(source, all, 0, 0, 9, 9, 2); }), 0);
    EXPECT_EQ(countAllocations([&] { source.flipVertical(); }), 0);
}

TEST(AllocationTest, ImagesSurviveImpossibleSizes)
{
    Image image, other(3, 3);
    EXPECT_THROW(image.create(0x7FFFFFFF, 0x7FFFFFFF), std::bad_alloc);
    EXPECT_TRUE(image.getWidth() == 0x7FFFFFFF && image.getHeight() == 0x7FFFFFFF);
    EXPECT_EQ(image.getData(), nullptr);
    EXPECT_EQ(Image(image).getData(), nullptr);
    image.flipVertical();
    EXPECT_EQ(image.blit(other, other.getSize(), 0, 0), 0);
}
