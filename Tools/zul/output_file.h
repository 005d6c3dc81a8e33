#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>

/// What a verb may do to files that are there already.
enum class Overwrite : bool { Refused = false, Allowed = true };

/// @throws Failure Refused when there is something at @p path and it may not be overwritten: "... exists; --force
///         overwrites it". To be asked before long work; writeOutput() asks again.
void checkOutput(std::string const& path, Overwrite overwrite);

/// Takes the next bytes. @return 0, or a negated errno to stop
using ByteSink = std::function<int(std::span<std::byte const>)>;
/// Hands the bytes of a file, in pieces and always the same ones, to a sink. @return 0 or a negated errno
using ByteSource = std::function<int(ByteSink const&)>;

/// Writes a file: to a temporary name beside @p path, read back and compared, synced, and renamed, so that @p path is
/// what it was or has all of the bytes. A symbolic link is followed; the mode of an old file is kept.
/// @throws Failure Refused as above, also when something appears at @p path in the meantime; Unreadable, naming the
///         file and why, when it cannot be written or reads back differently; Damaged when @p source fails
void writeOutput(std::string const& path, ByteSource const& source, Overwrite overwrite);
void writeOutput(std::string const& path, std::span<std::byte const> bytes, Overwrite overwrite);
