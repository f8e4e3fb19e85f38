#include "TallyfoxCore/Files/FileDescriptor.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <utility>

namespace tallyfox::test {
namespace {

bool isOpenInTheSystem(int descriptor)
{
    return ::fcntl(descriptor, F_GETFD) >= 0;
}

TEST(FileDescriptor, movedDescriptorBelongsOnlyToItsNewOwner)
{
    FileDescriptor first = FileDescriptor::openFolder("/");
    const int number = first.get();
    {
        const FileDescriptor second = std::move(first);
        EXPECT_EQ(second.get(), number);
        EXPECT_FALSE(first.isOpen()); // NOLINT(bugprone-use-after-move): that is what is tested
        EXPECT_TRUE(isOpenInTheSystem(number));
    }
    EXPECT_FALSE(isOpenInTheSystem(number));
}

TEST(FileDescriptor, numberZeroIsOpenToo)
{
    const auto openWithoutStandardInput = [] {
        ::close(STDIN_FILENO);
        const FileDescriptor folder = FileDescriptor::openFolder("/");
        std::_Exit(folder.get() == STDIN_FILENO && folder.isOpen() ? 0 : 1);
    };
    EXPECT_EXIT(openWithoutStandardInput(), testing::ExitedWithCode(0), "");
}

TEST(FileDescriptor, numberZeroIsNotOpenedAgainBecauseOfAnEarlierError)
{
    const auto openWithoutStandardInput = [] {
        ::dup2(::open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO); // so that the root is not zero
        const FileDescriptor root = FileDescriptor::openFolder("/");
        ::close(STDIN_FILENO);
        errno = EPERM;
        std::_Exit(root.openBelow("usr", O_RDONLY).get() == STDIN_FILENO ? 0 : 1);
    };
    EXPECT_EXIT(openWithoutStandardInput(), testing::ExitedWithCode(0), "");
}

TEST(FileDescriptor, pathsAroundTheSystemsLimitAreOpened)
{
    const FileDescriptor root = FileDescriptor::openFolder("/");
    for (std::size_t size = PATH_MAX - 8; size < PATH_MAX + 8; ++size) {
        const std::string path = '.' + std::string(size - 4, '/') + "usr";
        ASSERT_EQ(path.size(), size);
        EXPECT_TRUE(root.openBelow(path, O_RDONLY | O_DIRECTORY).isOpen()) << size << ": " << errno;
    }
}

} // namespace
} // namespace tallyfox::test
