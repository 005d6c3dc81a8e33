#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Names of everything in the directory @p path, hidden files too, sorted.
std::vector<std::string> entriesOf(std::string const& path);

/// Number of descriptors that this process has open.
std::size_t openDescriptors();
