#include "fpga_types.h"

#include <cstring>

// clang-format off
FpgaType const fpga_types[] = {
    {0x00FAD,    "4013epq240"},
    {0x00FB4,    "4020epq240"},
    {0x00FBC,    "4028exhq240"},
    {0x00FC4,    "4036exhq240"},
    {0x10FAD,    "4013xlpq240"},
    {0x10FB4,    "4020xlpq240"},
    {0x10FBC,    "4028xlhq240"},
    {0x10FC4,    "4036xlhq240"},
    {0x10FCC,    "4044xlhq240"},
    {0x10FD4,    "4052xlhq240"},
    {0x10FDE,    "4062xlhq240"},
    {0x20FAD,    "4013xlapq240"},
    {0x20FB4,    "4020xlapq240"},
    {0x20FBC,    "4028xlahq240"},
    {0x20FC4,    "4036xlahq240"},
    {0x20FCC,    "4044xlahq240"},
    {0x20FD4,    "4052xlahq240"},
    {0x20FDE,    "4062xlahq240"},
    {0x20FF5,    "4085xlahq240"},
    {0x82FA8,    "2s200fg456"},
    {0x92FA8,    "2s200efg456"},
    {0x8300C,    "2s300fg456"},
    {0x9300C,    "2s300efg456"},
    {0x93138,    "2s600efg456"},
    {0x50028,    "s40xlpq240"},
    {0xA3200,    "3s400ft256"},
    {0xA7080,    "3s1000ft256"},
    {0xBA0F0,    "3s1200efg400"},
    {0xBBEA0,    "3s1600efg484"},
    {0xBBEA1,    "3s1600efg400"},
    {0xBBEA2,    "3s1600efg320"},
    {0xBCDC4,    "3s2000fg676"},
    {0xBD594,    "3s4000fg676"},
    {0xBD97C,    "3s5000fg676"},
    {0xCC382,    "5vsx50tff1136"},
    {0xFFFFFFFF, nullptr},
};
// clang-format on

char const* FPGAtype2RBTstring(int code)
{
    FpgaType const* type = fpga_types;
    while (type->part != nullptr && type->code != static_cast<unsigned int>(code)) {
        ++type;
    }
    return type->part;
}

unsigned int RBTstring2FPGAtype(char const* part)
{
    FpgaType const* type = fpga_types;
    while (type->part != nullptr && (part == nullptr || std::strcmp(type->part, part) != 0)) {
        ++type;
    }
    return type->code;
}
