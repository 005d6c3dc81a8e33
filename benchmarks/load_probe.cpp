#include "shapes.h"
#include "zul_class.h"

#include <cstdlib>
#include <iostream>

/// What an instruction counter is to count: one strict load and the destruction of what it made.
/// @return the load's result
extern "C" __attribute__((noinline)) int measuredLoad(Bytes const& container)
{
    ZUL zul;
    return zul.Load(container.data(), container.size());
}

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: load_probe SHAPE TAGS\nLoads a container of that shape once. Shapes:\n";
        for (Shape const& shape : shapes()) {
            std::cerr << "  " << shape.name << '\n';
        }
        return 2;
    }
    Bytes const container =
        shapeNamed(argv[1]).make(static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10)));
    return measuredLoad(container) == 0 ? 0 : 1;
}
