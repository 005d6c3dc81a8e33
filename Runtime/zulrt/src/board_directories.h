#pragma once

// Names of the directories below "Hardware Applets" in which an installation keeps designs. All of them are static
// texts; null stands for none.

extern "C" {

/// @param code the FPGA type, all 32 bits of it
/// @return the directory of designs for that FPGA type
char const* FPGA2dirname(int code);
}

/// @param boardType only the lower 16 bits count
/// @return the directory of designs for the FPGA type of that board
char const* fpga_dir_by_kovatype(int boardType);

/// @param boardType only the lower 16 bits count
/// @return the directory of designs for that board
char const* grabber_dir_by_kovatype(int boardType);

/// @param boardType only the lower 16 bits count
/// @return the directory in which older installations keep designs for that board
char const* old_grabber_dir_by_kovatype(int boardType);
