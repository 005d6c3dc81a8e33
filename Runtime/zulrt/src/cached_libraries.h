#pragma once

class ZUL;

/// Whether the directory @p path holds the libraries of @p zul that are for this platform's system, byte for byte, and
/// nothing else. A design without such libraries is in no directory. Follows no links and waits for nothing.
/// @throws std::bad_alloc
bool holdsLibrariesOf(ZUL const& zul, char const* path);
