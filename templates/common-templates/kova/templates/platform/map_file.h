#pragma once

/// Opens the file @p path for reading.
///
/// A file of 128 MiB and more is reported with the remainder of its size modulo 128 MiB.
/// @param path refused with errno EINVAL when null
/// @param size receives the size in bytes, below 128 MiB; 0 when that is why the file is refused. Refused with errno
///        EINVAL when null.
/// @return a descriptor that the caller closes, or a negative number with errno set: what open() gives; EISDIR for a
///         directory; EINVAL for an empty file and for what is no regular file; EFBIG for a file above 0x7FFFFFFF bytes
///         and for one whose size is a multiple of 128 MiB
int open_size(char const* path, unsigned long* size);

namespace CF {

/// Maps the file @p path read-only, as many bytes of it as open_size() reports.
/// @param size receives their number
/// @return the start of the mapping, for unmap_file() in the end; null with errno set as by open_size() or mmap()
void* map_file(char const* path, unsigned long* size);

/// Ends a mapping of @p size bytes at @p start. @return what munmap() returns
int unmap_file(void* start, unsigned long size);

} // namespace CF
