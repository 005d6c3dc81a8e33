#include "scenario.h"

#include <algorithm>
#include <cctype>
#include <cstring>

std::string errorName(int error)
{
    char const* const name = strerrorname_np(error);
    return error == 0 ? "done" : name == nullptr ? std::to_string(error) : name;
}

std::string exitName(int code)
{
    return "exit " + std::to_string(code);
}

std::string identifier(std::string const& name)
{
    std::string identifier;
    bool beginsWord = true;
    for (char const c : name) {
        auto const character = static_cast<unsigned char>(c);
        if (std::isalnum(character) != 0) {
            identifier += static_cast<char>(beginsWord ? std::toupper(character) : character);
        }
        beginsWord = std::isalnum(character) == 0;
    }
    return identifier;
}
