// Prints the modules of a design with their parameters.

#include "zullib.h"

#include <algorithm>
#include <cstring>
#include <iostream>

namespace {

void printField(ZUL_param const& parameter)
{
    constexpr unsigned int shown = 8;
    auto const* element = static_cast<unsigned char const*>(parameter.getField()); // not aligned
    for (unsigned int i = 0; i < std::min(parameter.getFieldSize(), shown); ++i, element += 8) {
        long long integer = 0;
        double real = 0;
        std::memcpy(&integer, element, sizeof integer);
        std::memcpy(&real, element, sizeof real);
        parameter.getType() == QL_DOUBLEFIELD ? std::cout << ' ' << real : std::cout << ' ' << integer;
    }
    if (parameter.getFieldSize() > shown) {
        std::cout << " ... (" << parameter.getFieldSize() << " elements)";
    }
}

void printValue(ZUL_param const& parameter)
{
    if (parameter.getField() != nullptr) {
        printField(parameter);
    } else if (parameter.isStringType(parameter.getType())) {
        char const* text = parameter.getParamString();
        std::cout << " \"" << (text != nullptr ? text : "") << '"';
    } else if (parameter.getType() == 5) {
        std::cout << ' ' << parameter.getValueDouble();
    } else {
        std::cout << ' ' << parameter.getValue();
    }
}

void printParameters(ZUL const& design, ZUL_module const& module)
{
    for (unsigned int i = 0; i < design.getTagCount(ZUL_param::tag_id); ++i) {
        auto const& parameter = static_cast<ZUL_param const&>(*design.getTagAt(ZUL_param::tag_id, i));
        if (parameter.getModule() == &module) {
            std::cout << "    " << parameter.getName() << " =";
            printValue(parameter);
            std::cout << '\n';
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    ZUL design;
    if (argc != 2 || design.Load(argv[1]) != 0) {
        std::cerr << "Usage: read_design FILE, where FILE is a design\n";
        return 1;
    }
    for (unsigned int i = 0; i < design.getTagCount(ZUL_module::tag_id); ++i) {
        auto const& module = static_cast<ZUL_module const&>(*design.getTagAt(ZUL_module::tag_id, i));
        std::cout << module.getFullName() << " (" << module.getType() << ")\n";
        printParameters(design, module);
    }
}
