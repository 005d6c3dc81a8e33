#include "kova/templates/platform/descriptor.h"

#include "child_process.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>

namespace {

using kova::templates::platform::Descriptor;

int openSomething()
{
    return open("/dev/null", O_RDONLY | O_CLOEXEC);
}

bool isOpen(int descriptor)
{
    return fcntl(descriptor, F_GETFD) != -1;
}

TEST(Descriptor, IsClosedByItsOwner)
{
    int const number = openSomething();
    {
        Descriptor const owner(number);
        EXPECT_TRUE(owner);
        EXPECT_EQ(owner.get(), number);
        EXPECT_TRUE(isOpen(number));
    }
    EXPECT_FALSE(isOpen(number));
}

TEST(Descriptor, IsNoneBelowZero)
{
    errno = 0;
    {
        Descriptor const none(-1);
        EXPECT_FALSE(none);
    }
    EXPECT_EQ(errno, 0) << "nothing was closed";
}

TEST(Descriptor, StaysOpenWhenItIsReleased)
{
    int const number = openSomething();
    {
        Descriptor owner(number);
        EXPECT_EQ(owner.release(), number);
        EXPECT_FALSE(owner);
    }
    EXPECT_TRUE(isOpen(number));
    EXPECT_EQ(close(number), 0);
}

TEST(Descriptor, LeavesErrnoWhenItIsClosed)
{
    int const number = openSomething();
    {
        Descriptor const owner(number);
        close(number);
        errno = ENOSPC;
    }
    EXPECT_EQ(errno, ENOSPC) << "and not that there was nothing to close";
}

TEST(Descriptor, MayBeThatOfStandardInput)
{
    EXPECT_EQ(inChildProcess([] {
                  close(STDIN_FILENO);
                  int const number = openSomething();
                  bool const owned = static_cast<bool>(Descriptor(number));
                  return owned && !isOpen(number) ? number : -1;
              }),
              STDIN_FILENO);
}

} // namespace
