#pragma once

/// What speaks for or against using a directory as the cache of unpacked libraries. Only one of Trusted is used.
enum class CacheTrust {
    Trusted,             ///< a directory of this user alone, with its marker library
    Missing,             ///< there is nothing of that name
    NotADirectory,       ///< a symbolic link, a file or anything else that is no directory itself
    Unreachable,         ///< it cannot be looked at: too long a name, no right, no descriptor left
    ForeignOwner,        ///< it belongs to another user
    WritableByOthers,    ///< its group or everybody may write into it
    NoMarker,            ///< the marker library is missing: the directory was never filled
    MarkerNotAFile,      ///< the marker is a symbolic link, a FIFO or anything else that is no regular file
    MarkerOfAnotherUser, ///< the marker belongs to another user
    MarkerNotReadable    ///< the marker cannot be opened for reading
};

/// Looks at a directory that libraries would be loaded from, without following links and without waiting for anything.
/// @param path of the directory; null is Unreachable
CacheTrust trustOfCacheDirectory(char const* path) noexcept;

/// The same in words, such as "belongs to another user"; a constant text.
char const* describe(CacheTrust trust) noexcept;
