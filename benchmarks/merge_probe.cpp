#include "merge_sides.h"

#include <cstdlib>
#include <iostream>
#include <stdexcept>

/// What an instruction counter is to count: one merge that is undone and one that stays.
/// @return how many tags there are then
extern "C" __attribute__((noinline)) unsigned measuredLoad(ZUL& zul, ZUL const& other)
{
    try {
        zul.mergeAllOrNothing(other, [] { throw std::runtime_error("undone"); });
    } catch (std::runtime_error const&) {
        zul += other;
    }
    return zul.getTotalTagCount();
}

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: merge_probe SHAPE TAGS\nMerges a container of that shape into one with twice as "
                     "many tags. Shapes:\n";
        for (Shape const& shape : shapes()) {
            std::cerr << "  " << shape.name << '\n';
        }
        return 2;
    }
    auto const tags = static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10));
    Bytes const container = shapeNamed(argv[1]).make(tags);
    ZUL other;
    if (other.Load(container.data(), container.size()) != 0) {
        return 1;
    }
    MergeTarget target(tags);
    unsigned const expected = (*target).getTotalTagCount() + other.getTotalTagCount();
    return measuredLoad(*target, other) == expected ? 0 : 1;
}
