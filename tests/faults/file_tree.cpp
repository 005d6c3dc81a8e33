#include "file_tree.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

std::string describe(fs::directory_entry const& entry)
{
    if (entry.is_symlink()) {
        return "-> " + fs::read_symlink(entry.path()).string();
    }
    std::string const mode = std::to_string(static_cast<unsigned>(entry.status().permissions()));
    if (entry.is_directory()) {
        return "directory " + mode;
    }
    std::ifstream file(entry.path(), std::ios::binary);
    return "file " + mode + ' ' + std::string(std::istreambuf_iterator<char>(file), {});
}

bool has(FileTree const& tree, FileTree::value_type const& entry)
{
    auto const found = tree.find(entry.first);
    return found != tree.end() && found->second == entry.second;
}

} // namespace

FileTree treeBelow(std::string const& directory)
{
    FileTree tree;
    for (auto const& entry : fs::recursive_directory_iterator(directory)) {
        tree.emplace(entry.path().lexically_relative(directory).string(), describe(entry));
    }
    return tree;
}

void clear(std::string const& directory)
{
    for (auto const& entry : fs::directory_iterator(directory)) {
        fs::remove_all(entry.path());
    }
}

std::string unexpected(FileTree const& now, FileTree const& before, FileTree const& after,
                       Tolerance const& tolerance)
{
    constexpr std::size_t shown = 60;
    std::string text;
    for (auto const& entry : now) {
        bool const isKnownName = before.contains(entry.first) || after.contains(entry.first);
        bool const isTolerated = isKnownName ? tolerance.spoils : tolerance.leaves;
        if (!isTolerated && !has(before, entry) && !has(after, entry)) {
            text += "\n  " + entry.first + " is left: " + entry.second.substr(0, shown);
        }
    }
    for (auto const& [path, what] : before) {
        if (!tolerance.removes && after.contains(path) && !now.contains(path)) {
            text += "\n  " + path + " is gone";
        }
    }
    return text;
}
