// The functions about files that this project and the libraries under it call.

#include "injection.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

/// The function of that name behind this one.
template <class Function>
Function next(char const* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

template <class Result>
Result failing(Result failure)
{
    errno = errorOfFault();
    return failure;
}

/// What Function returns; @p failure when this call is to fail.
template <auto Function, class Result, class... Arguments>
Result attempt(char const* name, Result failure, Arguments... arguments)
{
    static auto* const real = next<decltype(Function)>(name);
    return hasToFail(FaultKind::SystemCall, name) ? failing(failure) : real(arguments...);
}

/// The same for what releases something, which is gone whatever the result.
template <auto Function, class... Arguments>
int attemptToRelease(char const* name, Arguments... arguments)
{
    static auto* const real = next<decltype(Function)>(name);
    bool const fails = hasToFail(FaultKind::SystemCall, name);
    int const result = real(arguments...);
    return fails ? failing(-1) : result;
}

/// The same for what reads or writes.
template <auto Function, class Buffer, class... Where>
ssize_t attemptToTransfer(char const* name, int file, Buffer buffer, std::size_t length, Where... where)
{
    static auto* const real = next<decltype(Function)>(name);
    return hasToFailTransfer(name, length) != 0 ? failing<ssize_t>(-1) : real(file, buffer, length, where...);
}

constexpr int failed = -1;

/// The mode that comes as a variable argument where a file may be created.
mode_t modeIn(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

extern "C" {

int open(char const* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    mode_t const mode = modeIn(flags, arguments);
    va_end(arguments);
    return attempt<&::open>("open", failed, path, flags, mode);
}

int openat(int directory, char const* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    mode_t const mode = modeIn(flags, arguments);
    va_end(arguments);
    return attempt<&::openat>("openat", failed, directory, path, flags, mode);
}

// clang-format off
FILE* fopen64(char const* path, char const* mode) { return attempt<&::fopen64, FILE*>("fopen64", nullptr, path, mode); }
int memfd_create(char const* name, unsigned flags) noexcept { return attempt<&::memfd_create>("memfd_create", failed, name, flags); }
int mkostemp(char* name, int flags) { return attempt<&::mkostemp>("mkostemp", failed, name, flags); }
char* mkdtemp(char* name) noexcept { return attempt<&::mkdtemp, char*>("mkdtemp", nullptr, name); }
int dup(int file) noexcept { return attempt<&::dup>("dup", failed, file); }
int dup2(int file, int as) noexcept { return attempt<&::dup2>("dup2", failed, file, as); }
int close(int file) { return attemptToRelease<&::close>("close", file); }

ssize_t read(int file, void* to, std::size_t length) { return attemptToTransfer<&::read>("read", file, to, length); }
ssize_t write(int file, void const* from, std::size_t length) { return attemptToTransfer<&::write>("write", file, from, length); }
ssize_t pread(int file, void* to, std::size_t length, off_t at) { return attemptToTransfer<&::pread>("pread", file, to, length, at); }

int stat(char const* path, struct stat* status) noexcept { return attempt<static_cast<int (*)(char const*, struct stat*) noexcept>(&::stat)>("stat", failed, path, status); }
int lstat(char const* path, struct stat* status) noexcept { return attempt<&::lstat>("lstat", failed, path, status); }
int fstat(int file, struct stat* status) noexcept { return attempt<&::fstat>("fstat", failed, file, status); }
int fstatat(int directory, char const* path, struct stat* status, int flags) noexcept { return attempt<&::fstatat>("fstatat", failed, directory, path, status, flags); }
char* realpath(char const* path, char* resolved) noexcept { return attempt<&::realpath, char*>("realpath", nullptr, path, resolved); }
ssize_t readlink(char const* path, char* to, std::size_t length) noexcept { return attempt<&::readlink, ssize_t>("readlink", failed, path, to, length); }

int ftruncate(int file, off_t length) noexcept { return attempt<&::ftruncate>("ftruncate", failed, file, length); }
int fsync(int file) { return attempt<&::fsync>("fsync", failed, file); }
int fchmod(int file, mode_t mode) noexcept { return attempt<&::fchmod>("fchmod", failed, file, mode); }
int fchown(int file, uid_t user, gid_t group) noexcept { return attempt<&::fchown>("fchown", failed, file, user, group); }

int rename(char const* from, char const* to) noexcept { return attempt<&::rename>("rename", failed, from, to); }
int renameat2(int fromDirectory, char const* from, int toDirectory, char const* to, unsigned flags) noexcept { return attempt<&::renameat2>("renameat2", failed, fromDirectory, from, toDirectory, to, flags); }
int unlink(char const* path) noexcept { return attempt<&::unlink>("unlink", failed, path); }
int unlinkat(int directory, char const* path, int flags) noexcept { return attempt<&::unlinkat>("unlinkat", failed, directory, path, flags); }
int mkdir(char const* path, mode_t mode) noexcept { return attempt<&::mkdir>("mkdir", failed, path, mode); }
int rmdir(char const* path) noexcept { return attempt<&::rmdir>("rmdir", failed, path); }

DIR* opendir(char const* path) { return attempt<&::opendir, DIR*>("opendir", nullptr, path); }
DIR* fdopendir(int file) { return attempt<&::fdopendir, DIR*>("fdopendir", nullptr, file); }
dirent* readdir(DIR* directory) { return attempt<&::readdir, dirent*>("readdir", nullptr, directory); }
ssize_t getdents64(int directory, void* to, std::size_t length) noexcept { return attempt<&::getdents64, ssize_t>("getdents64", failed, directory, to, length); }
int closedir(DIR* directory) { return attemptToRelease<&::closedir>("closedir", directory); }
// clang-format on

// The checked forms of these functions, which hardened code calls; without their check.
// clang-format off
int __open_2(char const* path, int flags) { return open(path, flags); }
int __openat_2(int directory, char const* path, int flags) { return openat(directory, path, flags); }
ssize_t __read_chk(int file, void* to, std::size_t length, std::size_t) { return read(file, to, length); }
ssize_t __pread_chk(int file, void* to, std::size_t length, off_t at, std::size_t) { return pread(file, to, length, at); }
ssize_t __readlink_chk(char const* path, char* to, std::size_t length, std::size_t) { return readlink(path, to, length); }
char* __realpath_chk(char const* path, char* resolved, std::size_t) { return realpath(path, resolved); }
// clang-format on

/// Answers the error itself.
int posix_fallocate(int file, off_t offset, off_t length)
{
    int const error = errno;
    int const result = attempt<&::posix_fallocate>("posix_fallocate", failed, file, offset, length);
    return result == failed ? std::exchange(errno, error) : result;
}

void* mmap(void* address, std::size_t length, int protection, int flags, int file, off_t offset) noexcept
{
    void* const start =
        attempt<&::mmap>("mmap", MAP_FAILED, address, length, protection, flags, file, offset);
    noteInUse({.mappings = start == MAP_FAILED ? 0 : 1});
    return start;
}

int munmap(void* address, std::size_t length) noexcept
{
    noteInUse({.mappings = -1});
    return attemptToRelease<&::munmap>("munmap", address, length);
}

/// Moves; where it is to another mapping, that one is gone.
void* mremap(void* address, std::size_t oldLength, std::size_t length, int flags, ...) noexcept
{
    va_list arguments;
    va_start(arguments, flags);
    void* const target = (flags & MREMAP_FIXED) != 0 ? va_arg(arguments, void*) : nullptr;
    va_end(arguments);
    void* const start = attempt<&::mremap>("mremap", MAP_FAILED, address, oldLength, length, flags, target);
    noteInUse({.mappings = start != MAP_FAILED && target != nullptr ? -1 : 0});
    return start;
}
}
