#pragma once

/// While one lives, a function of zlib fails in this thread.
///
/// In a program that uses it, zlib's functions are reached through ones of the same names that ask this class first,
/// so it needs zlib as a shared library.
class ZlibFailure {
public:
    enum class Of { None, Compress, InflateInit, Inflate };

    /// @param result what the function returns
    ZlibFailure(Of function, int result) noexcept;
    ~ZlibFailure();
    ZlibFailure(ZlibFailure const&) = delete;
    ZlibFailure& operator=(ZlibFailure const&) = delete;
};
