#pragma once

#include "private_tmp.h"

#include <gtest/gtest.h>

#include <string>
#include <sys/mount.h>
#include <unistd.h>

inline constexpr unsigned pageSize = 4096;

/// How many pages @p bytes take on a disk.
inline unsigned pagesOf(std::size_t bytes)
{
    return static_cast<unsigned>((bytes + pageSize - 1) / pageSize);
}

/// Runs @p action with an empty /tmp that @p options limit, inside of inPrivateTmp(). Fails the test where the machine does
/// not let this process mount anything.
inline void onDiskWith(std::string const& options, std::function<void()> const& action)
{
    if (mount("none", "/tmp", "tmpfs", 0, ("mode=1777," + options).c_str()) != 0) {
        ADD_FAILURE() << "this machine lets nobody mount a disk of a given size: " << std::strerror(errno);
        return;
    }
    action();
    EXPECT_EQ(umount2("/tmp", MNT_DETACH), 0);
}

/// The same for every number of pages from @p least to @p most.
inline void onEveryDisk(unsigned least, unsigned most, std::function<void(unsigned pages)> const& action)
{
    inPrivateTmp([&] {
        for (unsigned pages = least; pages <= most && !testing::Test::HasFailure(); ++pages) {
            SCOPED_TRACE(testing::Message() << pages << " pages");
            onDiskWith("size=" + std::to_string(pages * pageSize), [&] { action(pages); });
        }
    });
}
