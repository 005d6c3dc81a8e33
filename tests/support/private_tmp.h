#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

/// Runs @p test in a child process that has a /tmp of its own, which is empty, sticky and writable for everybody. What
/// it expects in vain fails this test. Needs no special rights where user namespaces are allowed.
void inPrivateTmp(std::function<void()> const& test);

/// Limits the own /tmp to @p bytes. @return the errno of writing more: of a full disk, or where nothing can be mounted
///         that of a limit on the length of files
int fillTmpBeyond(off_t bytes);

/// What @p action returns while nothing can be created in the own /tmp.
/// @param reason takes the errno of trying
int onUnwritableTmp(std::function<int()> const& action, int& reason);

/// Makes the file or the directory @p path, in the own /tmp, one of another user, with whatever contents.
void giveAway(std::string const& path);

/// Takes all descriptors that this process may open.
void useUpDescriptors();

/// The names of everything in /tmp, sorted.
std::vector<std::string> inTmp();
