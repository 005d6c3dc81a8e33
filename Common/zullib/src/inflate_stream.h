#pragma once

#include <cstddef>
#include <functional>
#include <span>

/// Decompresses the zlib stream that @p stream begins with, in pieces of at most 64 KiB; what follows it is ignored.
/// @param sink takes the pieces in order and returns 0, or anything else to stop
/// @return 0; what @p sink returned; -5 (EIO) when the stream is corrupt, cut short or needs a dictionary
/// @throws std::bad_alloc when memory runs out
/// @throws std::runtime_error "Unknown error while decompressing"
int inflateStream(std::span<std::byte const> stream,
                  std::function<int(std::span<std::byte const>)> const& sink);
