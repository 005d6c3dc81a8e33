#include "kova/templates/platform/map_file.h"

#include "kova/templates/platform/descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

using kova::templates::platform::Descriptor;

namespace {

constexpr off_t largestFile = 0x7FFFFFFF;
// 27 bits, fewer than largestFile has. Callers rely on what follows: files of 128 MiB and more are seen in part.
constexpr unsigned long sizeMask = 0x7FFFFFF;

/// @return 0 or the errno for what cannot be mapped
int whyNotMappable(struct stat const& status)
{
    if (!S_ISREG(status.st_mode)) {
        return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    }
    return status.st_size > largestFile ? EFBIG : 0;
}

int refuse(int error)
{
    errno = error;
    return -1;
}

} // namespace

int open_size(char const* path, unsigned long* size)
{
    if (path == nullptr || size == nullptr) {
        return refuse(EINVAL);
    }
    // Without O_NONBLOCK the open itself would wait for somebody to write into a FIFO.
    Descriptor file(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        return -1;
    }
    if (int const error = whyNotMappable(status); error != 0) {
        return refuse(error);
    }
    *size = static_cast<unsigned long>(status.st_size) & sizeMask;
    if (*size == 0) {
        return refuse(status.st_size == 0 ? EINVAL : EFBIG);
    }
    return file.release();
}

namespace CF {

void* map_file(char const* path, unsigned long* size)
{
    Descriptor const file(open_size(path, size));
    if (!file) {
        return nullptr;
    }
    void* const start = ::mmap(nullptr, *size, PROT_READ, MAP_SHARED, file.get(), 0);
    return start == MAP_FAILED ? nullptr : start;
}

int unmap_file(void* start, unsigned long size)
{
    return ::munmap(start, size);
}

} // namespace CF
