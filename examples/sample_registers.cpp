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
    bool layout;
    unsigned int address;
    unsigned char msb;
    unsigned char lsb;
    unsigned long long value;
    bool access;
    ZUL_register::access type;
};

// Each module has 256 bytes of addresses, from 0x201000 on.
// clang-format off
constexpr Register registers[] = {
    {"Camera0_Enable",       older, 0x201000,  0,  0, 0,          writable, direct},
    {"Camera0_TapGeometry",  older, 0x201000,  7,  4, 0,          writable, direct},
    {"Camera0_Width",        older, 0x201004, 15,  0, 2048,       writable, direct},
    {"Camera0_Height",       older, 0x201008, 15,  0, 1088,       writable, direct},
    {"Camera0_Exposure",     newer, 0x20100C, 31,  0, 106312,     writable, buffered},
    {"Camera0_Status",       older, 0x201010, 15,  0, 0,          readOnly, direct},
    {"Camera0_Timestamp",    newer, 0x201018, 63,  0, 0,          readOnly, direct},
    {"Buffer0_StartAddress", newer, 0x201100, 63,  0, 0x80000000, writable, direct},
    {"Buffer0_FillLevel",    older, 0x201108, 31,  0, 0,          readOnly, direct},
    {"Buffer0_Overflow",     older, 0x20110C,  0,  0, 0,          readOnly, direct},
    {"Fir0_Coefficient0",    newer, 0x201200, 15,  0, 0xFFFF,     writable, buffered},
    {"Fir0_Coefficient1",    newer, 0x201204, 15,  0, 4,          writable, buffered},
    {"Fir0_Coefficient2",    newer, 0x201208, 15,  0, 10,         writable, buffered},
    {"Fir0_Gain",            newer, 0x20120C, 15,  0, 0x140,      writable, buffered},
    {"Lut0_Address",         older, 0x201300,  7,  0, 0,          writable, direct},
    {"Lut0_Data",            older, 0x201304, 15,  0, 0,          writable, direct},
    {"Lut0_TableBank_ActiveWhileTransferring_SelectedByHost_SwitchedAtFrameStart",
                             newer, 0x201308,  1,  0, 1,          writable, buffered},
    {"Dma0_Control",         older, 0x201400,  3,  0, 0,          writable, direct},
    {"Dma0_BytesMoved",      newer, 0x201408, 63,  0, 0,          readOnly, direct},
    {"Encoder0_Position",    newer, 0x201500, 63,  0, 0,          readOnly, direct},
    {"Encoder0_Steps",       older, 0x201508,  2,  0, 4,          writable, direct},
    {"Trigger0_Divider",     older, 0x201600, 15,  0, 4,          writable, direct},
    {"Trigger0_Delay",       older, 0x201604, 31,  0, 250,        writable, direct},
    {"Trigger0_Missed",      older, 0x201608, 31,  0, 0,          readOnly, direct},
    {"Camera1_Enable",       older, 0x201700,  0,  0, 0,          writable, direct},
    {"Camera1_Width",        older, 0x201704, 15,  0, 1024,       writable, direct},
    {"Camera1_Status",       older, 0x201710, 15,  0, 0,          readOnly, direct},
    {"Sampler1_Step",        older, 0x201900,  5,  0, 2,          writable, direct},
    {"Dma1_Control",         older, 0x201A00,  3,  0, 0,          writable, direct},
    {"Strobe1_Pulse",        newer, 0x201B00, 15,  0, 6250,       writable, direct},
    {"Board_Identification", newer, 0x200010, 63,  0, 0,          readOnly, direct},
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
