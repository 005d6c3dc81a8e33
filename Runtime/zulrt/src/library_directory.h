#pragma once

#include <memory>
#include <sys/types.h>

class ZUL;

/// The directory with the unpacked libraries of a design: the shared cache directory of the design's id, a private one,
/// or none. The cache directory stays for later loads; a private one is removed with the object, if asked for.
class LibraryDirectory {
public:
    /// Holds none. @param removesPrivate whether a private directory is removed when it is given up
    explicit LibraryDirectory(bool removesPrivate) noexcept : m_removesPrivate(removesPrivate) {}
    LibraryDirectory(LibraryDirectory const&) = delete;
    LibraryDirectory& operator=(LibraryDirectory const&) = delete;
    /// Removes a private directory, however much of it was filled, but not in a process forked off from its maker.
    ~LibraryDirectory();

    /// Gives the old directory up and holds one for the libraries of @p zul, which is private and empty, or the cache.
    /// @param opsys 0 for no directory at all
    /// @return 0, or -14 when no directory could be made; none is held then
    /// @throws std::bad_alloc; the old directory is still held then
    int replace(ZUL const& zul, unsigned opsys);

    /// Writes the libraries of @p zul that are for this platform's system, unless the cache is held or found; then
    /// makes the private directory the cache, if nobody was faster. A design without libraries needs no directory.
    /// @param opsys the ZUL_dll::savepolicy of the files
    /// @return 0; the negated errno of making a directory, or -14 where there is none; the result of ZUL::saveLibs,
    ///         -2 for instance when no library is for this system; the directory is still held then
    /// @throws std::bad_alloc, std::runtime_error as ZUL_dll::toFile does; the directory is still held then
    int unpack(ZUL const& zul, unsigned opsys);

    /// Null when none is held; valid until the next call of replace() or unpack().
    char const* path() const noexcept { return m_held.path.get(); }
    /// Whether the held directory is the shared cache.
    bool isCache() const noexcept { return m_held.isCache; }
    bool removesPrivate() const noexcept { return m_removesPrivate; }

private:
    struct Directory {
        std::unique_ptr<char[]> path;
        bool isCache = false;
        pid_t maker = 0; ///< the process that made a private directory
    };
    static Directory obtain(ZUL const& zul);
    void publish(char const* id);
    void giveUp() noexcept;

    Directory m_held;
    bool const m_removesPrivate;
};
