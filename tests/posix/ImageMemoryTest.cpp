// SPDX-License-Identifier: MIT
#include <new>

#include <sys/resource.h>

#include "PixelData.h"
#include "TemporaryFolder.h"
#include "qor/Image.h"

using qor::Image;

namespace
{

using ImageMemoryTest = TemporaryFolder;

TEST_F(ImageMemoryTest, ReportsMissingMemory)
{
    constexpr rlim_t LIMIT = 1 << 30;
    rlimit former{};
    getrlimit(RLIMIT_AS, &former);
    const rlimit limited{LIMIT, former.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_AS, &limited), 0);
    // A truncated file reports that it is truncated.
    const std::string header("\0\0\3\0\0\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF\x08\0", 18);
    Image image = makeImage(1, 1, {42}), large;
    EXPECT_EQ(image.loadTGA(write("short.tga", header + header).c_str()), -6);
    EXPECT_TRUE(!image.getData() && image.getWidth() == 0 && image.getHeight() == 0);
    // A complete one, with holes that take no disk space, does not.
    const std::string complete =
        write("complete.tga", header.substr(0, 12) + "\x7F\x43\x7F\x43\x08");
    std::filesystem::resize_file(complete, 18 + 17279 * 17279);
    EXPECT_THROW((void)image.loadTGA(complete.c_str()), std::bad_alloc);
    EXPECT_TRUE(!image.getData() && image.getWidth() == 17279 && image.getHeight() == 17279);
    // A failed assignment leaves its target as it was.
    image = makeImage(1, 1, {42});
    large.create(12000, 12000);
    EXPECT_THROW(image = large, std::bad_alloc);
    EXPECT_EQ(pixelsOf(image), Pixels{42});
    setrlimit(RLIMIT_AS, &former);
}

} // namespace
