#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace {

std::vector<std::uint8_t> contents(std::filesystem::path const& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace

/// Gives every file of the folders named on the command line to the fuzz target.
int main(int argc, char** argv)
{
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        for (auto const& entry : std::filesystem::directory_iterator(argv[i])) {
            std::vector<std::uint8_t> const input = contents(entry.path());
            LLVMFuzzerTestOneInput(input.data(), input.size());
            ++count;
        }
    }
    std::cerr << count << " inputs\n";
    return count == 0 ? 1 : 0;
}
