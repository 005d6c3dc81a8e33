#include "sample_design.h"

#include <stdexcept>
#include <string>

namespace sample {

namespace {

constexpr bool older = true;
constexpr bool newer = false;
constexpr bool readOnly = true;
constexpr bool writable = false;
constexpr auto direct = ZUL_register::access1;
constexpr auto buffered = ZUL_register::access2;

struct Register {
    char const* name;
    unsigned long long value;
    unsigned int address;
    ZUL_register::access type;
    unsigned char msb;
    unsigned char lsb;
    bool access;
    bool layout;
};

// Each module has 256 bytes of addresses, from 0x201000 on.
// clang-format off
constexpr Register registers[] = {
    {"Camera0_Enable",       0,          0x201000, direct,    0,  0, writable, older},
    {"Camera0_TapGeometry",  0,          0x201000, direct,    7,  4, writable, older},
    {"Camera0_Width",        2048,       0x201004, direct,   15,  0, writable, older},
    {"Camera0_Height",       1088,       0x201008, direct,   15,  0, writable, older},
    {"Camera0_Exposure",     106312,     0x20100C, buffered, 31,  0, writable, newer},
    {"Camera0_Status",       0,          0x201010, direct,   15,  0, readOnly, older},
    {"Camera0_Timestamp",    0,          0x201018, direct,   63,  0, readOnly, newer},
    {"Buffer0_StartAddress", 0x80000000, 0x201100, direct,   63,  0, writable, newer},
    {"Buffer0_FillLevel",    0,          0x201108, direct,   31,  0, readOnly, older},
    {"Buffer0_Overflow",     0,          0x20110C, direct,    0,  0, readOnly, older},
    {"Fir0_Coefficient0",    0xFFFF,     0x201200, buffered, 15,  0, writable, newer},
    {"Fir0_Coefficient1",    4,          0x201204, buffered, 15,  0, writable, newer},
    {"Fir0_Coefficient2",    10,         0x201208, buffered, 15,  0, writable, newer},
    {"Fir0_Gain",            0x140,      0x20120C, buffered, 15,  0, writable, newer},
    {"Lut0_Address",         0,          0x201300, direct,    7,  0, writable, older},
    {"Lut0_Data",            0,          0x201304, direct,   15,  0, writable, older},
    {"Lut0_TableBank_ActiveWhileTransferring_SelectedByHost_SwitchedAtFrameStart",
                             1,          0x201308, buffered,  1,  0, writable, newer},
    {"Dma0_Control",         0,          0x201400, direct,    3,  0, writable, older},
    {"Dma0_BytesMoved",      0,          0x201408, direct,   63,  0, readOnly, newer},
    {"Encoder0_Position",    0,          0x201500, direct,   63,  0, readOnly, newer},
    {"Encoder0_Steps",       4,          0x201508, direct,    2,  0, writable, older},
    {"Trigger0_Divider",     4,          0x201600, direct,   15,  0, writable, older},
    {"Trigger0_Delay",       250,        0x201604, direct,   31,  0, writable, older},
    {"Trigger0_Missed",      0,          0x201608, direct,   31,  0, readOnly, older},
    {"Camera1_Enable",       0,          0x201700, direct,    0,  0, writable, older},
    {"Camera1_Width",        1024,       0x201704, direct,   15,  0, writable, older},
    {"Camera1_Status",       0,          0x201710, direct,   15,  0, readOnly, older},
    {"Sampler1_Step",        2,          0x201900, direct,    5,  0, writable, older},
    {"Dma1_Control",         0,          0x201A00, direct,    3,  0, writable, older},
    {"Strobe1_Pulse",        6250,       0x201B00, direct,   15,  0, writable, newer},
    {"Board_Identification", 0,          0x200010, direct,   63,  0, readOnly, newer},
};

struct Alias {
    char const* alias;
    char const* target;
};

constexpr Alias aliases[] = {
    {"Inspection\\Camera0\\Width",        "Camera0_Width"},
    {"Inspection\\Camera0\\Height",       "Camera0_Height"},
    {"Inspection\\Camera0\\ExposureTime", "Camera0_Exposure"},
    {"Inspection\\Camera0\\Timestamp",    "Camera0_Timestamp"},
    {"Inspection\\Trigger0\\Divider",     "Trigger0_Divider"},
    {"Inspection\\Encoder0\\Position",    "Encoder0_Position"},
    {"Overview\\Camera1\\Width",          "Camera1_Width"},
    {"Overview\\Sampler1\\Step",          "Sampler1_Step"},
};
// clang-format on

} // namespace

void addRegisters(ZUL& design)
{
    for (Register const& each : registers) {
        auto& added = add<ZUL_register>(design, each.name, each.layout);
        if (added.setAddress(each.address, each.value, each.access, each.msb, each.lsb, each.type) != 0) {
            throw std::invalid_argument(std::string("register ") + each.name +
                                        " takes no such bits or value");
        }
    }
}

void addRegisterLinks(ZUL& design)
{
    for (Alias const& each : aliases) {
        ZUL_register const* target = design.findRegister(each.target);
        auto& added = add<ZUL_register_link>(design, each.alias, each.target);
        added.setType(target->isReadOnly(), target->getType());
    }
}

} // namespace sample
