#pragma once

#include "cache_trust.h"

#include <memory>

/// The directory that loads of a design with the id @p id share: @p base, "zulcache_" and @p id, whatever they hold.
/// @param id null counts as empty
/// @param base null stands for "/tmp/"
/// @return made with new[], the caller's
/// @throws std::bad_alloc
char* getAppletDLLsCacheDir(char const* id, char const* base);

/// The directory for the libraries of a design: the cache directory of @p id when it is there and trusted (see
/// trustOfCacheDirectory), otherwise a new private one, "/tmp/zulrt-" and six characters, with mode 0700.
/// @param id null, empty and one with a '/' have no cache directory. Nor has "__INVALID_ZUL_ID__" here, which designs
///        without id share: only LibraryDirectory knows the libraries and can tell whose they are.
/// @param isCache takes whether it is the cache directory; may be null
/// @return made with new[], the caller's; null when no directory could be made, errno says why
/// @throws std::bad_alloc; no directory was made then
char* createAppletDLLsTempDir(char const* id, bool* isCache);

/// Removes the files of a directory, then the directory. A directory in it stays, and so does @p dir then. A symbolic
/// link is no directory here, and nothing outside of @p dir is touched.
/// @param dir null is a broken invariant; where these are not checked it is a directory that cannot be opened
/// @return 0, whatever could not be removed, or the (positive) errno of opening the directory
int delete_dir(char const* dir);

/// Does nothing: there is no list of directories that earlier runs left. The place to remove them, if there ever is one.
/// @return 0
int delete_old_dirs();

/// Whether @p id is "__INVALID_ZUL_ID__", which every design gets that is saved without an id.
bool isSharedId(char const* id) noexcept;

/// The name of the cache directory in "/tmp/", or null for an @p id that has none: null, empty, or with a '/'.
/// @throws std::bad_alloc
std::unique_ptr<char[]> nameOfCacheDirectory(char const* id);

/// A new directory for this user alone, as createAppletDLLsTempDir makes it; null when that fails, errno says why.
/// @throws std::bad_alloc
std::unique_ptr<char[]> makePrivateDirectory();
