#include "listing.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

namespace fs = std::filesystem;

std::vector<std::string> entriesOf(std::string const& path)
{
    std::vector<std::string> names;
    for (auto const& entry : fs::directory_iterator(path)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::size_t openDescriptors()
{
    auto const entries = fs::directory_iterator("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}
