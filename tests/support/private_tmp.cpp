#include "private_tmp.h"

#include "child_process.h"
#include "files.h"
#include "listing.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sched.h>
#include <stdexcept>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr uid_t somebodyElse = 4321;

void require(bool holds)
{
    if (!holds) {
        throw std::runtime_error("cannot prepare a /tmp for the test");
    }
}

void writeText(char const* path, std::string const& text)
{
    writeFile(path, Bytes().chars(text));
}

/// Gives this process mounts of its own; without being root, in a user namespace with the same ids.
bool separateMounts()
{
    std::string const user = std::to_string(geteuid());
    std::string const group = std::to_string(getegid());
    if (geteuid() == 0) {
        return unshare(CLONE_NEWNS) == 0;
    }
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    writeText("/proc/self/setgroups", "deny");
    writeText("/proc/self/uid_map", user + ' ' + user + " 1");
    writeText("/proc/self/gid_map", group + ' ' + group + " 1");
    return true;
}

bool mountTmp()
{
    return separateMounts() && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", "/tmp", "tmpfs", 0, "mode=1777") == 0;
}

/// For containers whose root may not mount: another root directory.
bool changeRoot(char const* directory)
{
    return chmod(directory, 0755) == 0 && chdir(directory) == 0 && mkdir("tmp", 0777) == 0 &&
           chmod("tmp", 01777) == 0 && chroot(".") == 0 && chdir("/") == 0;
}

} // namespace

void inPrivateTmp(std::function<void()> const& test)
{
    TemporaryDirectory const root;
    auto const run = [&] {
        require(mountTmp() || changeRoot(root.path()));
        test();
        return testing::Test::HasFailure() ? 1 : 0;
    };
    EXPECT_EQ(inChildProcess(run), 0) << "see above";
}

int fillTmpBeyond(off_t bytes)
{
    std::string const size = "mode=1777,size=" + std::to_string(bytes);
    if (mount("none", "/tmp", "tmpfs", 0, size.c_str()) == 0) {
        return ENOSPC;
    }
    signal(SIGXFSZ, SIG_IGN);
    rlimit const limit{static_cast<rlim_t>(bytes), static_cast<rlim_t>(bytes)};
    require(setrlimit(RLIMIT_FSIZE, &limit) == 0);
    return EFBIG;
}

int onUnwritableTmp(std::function<int()> const& action, int& reason)
{
    if (mount(nullptr, "/tmp", nullptr, MS_REMOUNT | MS_RDONLY, "mode=1777") == 0) {
        reason = EROFS;
        int const result = action();
        require(mount(nullptr, "/tmp", nullptr, MS_REMOUNT, "mode=1777") == 0);
        return result;
    }
    reason = EACCES;
    require(chmod("/tmp", 0555) == 0);
    int const result = asOrdinaryUser(action);
    require(chmod("/tmp", 01777) == 0);
    return result;
}

void giveAway(std::string const& path)
{
    if (chown(path.c_str(), somebodyElse, somebodyElse) != 0) {
        // A user namespace of one user knows nobody to give it to, but everything of root's is somebody else's there.
        struct stat status {};
        require(stat(path.c_str(), &status) == 0);
        char const* const other = S_ISDIR(status.st_mode) ? "/usr/share" : "/etc/passwd";
        require(mount(other, path.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0);
    }
}

void useUpDescriptors()
{
    rlimit const limit{64, 64};
    require(setrlimit(RLIMIT_NOFILE, &limit) == 0);
    while (dup(0) >= 0) {
    }
    require(errno == EMFILE);
}

std::vector<std::string> inTmp()
{
    return entriesOf("/tmp");
}
