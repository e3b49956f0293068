// SPDX-License-Identifier: MIT
// The parts of the example programs whose limits the programs do not reach.
#include <algorithm>
#include <filesystem>
#include <numeric>
#include <string>

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "shared/FileCopy.h"
#include "shared/ImageTools.h"
#include "shared/SourceCheck.h"

TEST(SourceCheck, FindsTheElementOfTheLastError)
{
    struct TCase {
        const char* source;
        TElementNumbers numbers;
        const char* error;
    };
    const TCase CASES[] = {
        {"<a><b>x</b></a>", {}, ""},
        {"<a>x</a>", {}, "Too long value for element 'a'"},
        {"<a><b>x</b><c/></a>", {2}, "Unexpected element 'c/' as child of 'a'"},
        {"<a>x<b>y</b><c></c></a>", {}, "Too long value for element 'a'"},
        {"<a>x<c></c><b>long</b></a>", {2}, "Too long value for element 'b'"},
        {"<a><!-- --><b>x<d></d></b></a>", {2, 1}, "Unexpected element 'd' as child of 'b'"},
        {"<a><b>long<d></d></b></a>", {1}, "Too long value for element 'b'"},
    };
    qor::XMLElement rules("");
    ASSERT_GT(rules.parse("<a>1:0<b>0-2:1-3</b></a>"), 0);
    for (const TCase& test : CASES) {
        qor::XMLElement document("");
        (void)document.parse(test.source);
        EXPECT_EQ(findMismatch(document, rules), test.numbers) << test.source;
        if (*test.error) {
            EXPECT_EQ(qor::XMLElement::getLastError(), test.error) << test.source;
        }
    }
}

using FileCopyTest = TemporaryFolder;

TEST_F(FileCopyTest, RemainsOnlyIfTheFileLostItsContent)
{
    struct TCase {
        const char* content; ///< of the file after saving
        bool isSaved;
        const char* copy;
    };
    const TCase CASES[] = {{"new", true, ""}, {"old", false, ""}, {"ne", false, "file~"}};
    for (const TCase& test : CASES) {
        write("file", "old");
        FileCopy copy;
        EXPECT_EQ(copy.create("file"), "");
        EXPECT_EQ(read("file~"), "old");
        write("file", test.content);
        EXPECT_EQ(copy.remove(test.isSaved), test.copy);
        EXPECT_EQ(std::filesystem::exists("file~"), *test.copy != '\0') << test.content;
    }
    FileCopy none;
    EXPECT_EQ(none.create("missing"), "");
    EXPECT_EQ(none.remove(false), "");
}

TEST_F(FileCopyTest, ReplacesNothing)
{
    write("file", "old");
    write("file~", "other");
    std::filesystem::create_directory("file~~");
    FileCopy copy;
    EXPECT_EQ(copy.create("file"), "");
    EXPECT_EQ(read("file~~~"), "old");
    EXPECT_EQ(copy.remove(true), "");
    EXPECT_EQ(read("file~"), "other");
    EXPECT_TRUE(std::filesystem::is_directory("file~~"));
    EXPECT_FALSE(std::filesystem::exists("file~~~"));

    // All names are used.
    for (std::string name = "file~~~"; name.size() <= std::string("file").size() + 9; name += '~') {
        write(name, "other");
    }
    FileCopy elsewhere;
    EXPECT_EQ(elsewhere.create("file"), "");
    write("file", "ne");
    const std::string name = elsewhere.remove(false);
    EXPECT_EQ(std::filesystem::path(name).parent_path() / "",
              std::filesystem::temp_directory_path() / "");
    EXPECT_EQ(read(name), "old");
    std::filesystem::remove(name);
}

TEST(ImageTools, ResizesLongImages)
{
    constexpr int LONG_SIDE = 40000; // the product of two, times 4, does not fit in an int
    for (const bool isWide : {true, false}) {
        const int width = isWide ? LONG_SIDE : 1, height = isWide ? 1 : LONG_SIDE;
        qor::Image image(static_cast<unsigned long>(width), static_cast<unsigned long>(height));
        std::iota(image.getData(), image.getData() + LONG_SIDE, 0xFF000000);
        const qor::Image same = resize(image, width, height, false);
        EXPECT_TRUE(std::equal(image.getData(), image.getData() + LONG_SIDE, same.getData()));
        const qor::Image mirrored = resize(image, width, height, true);
        EXPECT_EQ(mirrored.getData()[0], image.getData()[isWide ? LONG_SIDE - 1 : 0]);
    }
}
