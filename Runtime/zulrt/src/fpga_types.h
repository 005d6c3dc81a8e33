#pragma once

/// An FPGA type and the part string that its bitstreams carry.
struct FpgaType {
    unsigned int code;
    char const* part; ///< static text; null in the terminator
};

/// All FPGA types that have a part string. The last entry, code 0xFFFFFFFF without part, ends the table.
extern FpgaType const fpga_types[];

extern "C" {

/// @return the part string of the first entry with @p code: static text; null when there is none, as for 0xFFFFFFFF
char const* FPGAtype2RBTstring(int code);

/// @param part compared exactly, upper and lower case being different
/// @return the code of the first entry with @p part; 0xFFFFFFFF when there is none or @p part is null
unsigned int RBTstring2FPGAtype(char const* part);
}
