#include "board_directories.h"

namespace {

struct FpgaDirectory {
    unsigned int type;
    char const* name;
};

struct BoardDirectories {
    unsigned int board;
    char const* current; ///< boards of the first generation have but their older one
    char const* older;
    char const* fpga;
};

// Not every type of fpga_types has a directory, and 0xB3200 has one without being there.
// clang-format off
constexpr FpgaDirectory fpgaDirectories[] = {
    {0x82FA8, "2s200"},
    {0x8300C, "2s300"},
    {0x92FA8, "2s200e"},
    {0x9300C, "2s300e"},
    {0x93138, "2s600e"},
    {0xA3200, "3s400"},
    {0xA7080, "3s1000"},
    {0xB3200, "3s400e"},
    {0xBBEA0, "3s1600e"},
    {0xBBEA1, "3s1600e"},
    {0xBBEA2, "3s1600e"},
    {0xBCDC4, "3s2000"},
    {0xBD594, "3s4000"},
};

constexpr BoardDirectories boardDirectories[] = {
    //      current       older        FPGA
    {  163, "kova_163",   "kova_163",  "2s300e"},
    { 1872, "kova-1872",  nullptr,     nullptr},
    { 1873, "kova-1872",  nullptr,     nullptr},
    { 1874, "kova-1874",  nullptr,     nullptr},
    { 1875, "kova-1875",  nullptr,     nullptr},
    { 1876, "kova-1876",  nullptr,     nullptr},
    { 2609, "kova_2609",  "kova_2609", "2s600e"},
    { 2624, "kova-2624",  "kova_2624", nullptr},
    { 2625, "kova-2625",  "kova_2625", "3s1600e"},
    { 2626, "kova-2626",  nullptr,     nullptr},
    { 2627, "kova_2627",  "kova_2627", nullptr},
    { 2628, "kova-2628",  "kova_2628", "3s4000"},
    { 2629, "kova-2629",  nullptr,     nullptr},
    { 2641, "kova-2641",  nullptr,     nullptr},
    { 2642, "kova-2642",  nullptr,     nullptr},
    { 2643, "kova-2643",  nullptr,     nullptr},
    { 2644, "kova-2644",  nullptr,     nullptr},
    { 2645, "kova-2645",  nullptr,     nullptr},
    { 2646, "kova-2646",  nullptr,     nullptr},
    { 2647, "kova-2647",  nullptr,     nullptr},
    { 2648, "kova-2648",  "kova_2648", nullptr},
    { 2649, "kova-2649",  nullptr,     nullptr},
    { 2650, "kova-2650",  nullptr,     nullptr},
    { 2881, "kova_2881",  "kova_2881", "3s1600e"},
    { 2882, "kova_2882",  "kova_2882", "3s1600e"},
    { 2896, "kova-2896",  nullptr,     nullptr},
    { 2897, "kova-2897",  nullptr,     nullptr},
    { 2911, "kova-2911",  nullptr,     nullptr},
    { 3650, "kova-3650",  nullptr,     nullptr},
    { 3652, "kova-3652",  "kova_3652", "3s4000"},
    {29968, "kova-1872",  nullptr,     nullptr},
    {29969, "kova-29969", nullptr,     nullptr},
    {30016, "kova-1876",  nullptr,     nullptr},
    {30017, "kova-30017", nullptr,     nullptr},
};
// clang-format on

BoardDirectories directoriesOf(int boardType)
{
    unsigned int const board = static_cast<unsigned int>(boardType) & 0xFFFFU;
    for (BoardDirectories const& row : boardDirectories) {
        if (row.board == board) {
            return row;
        }
    }
    return {board, nullptr, nullptr, nullptr};
}

} // namespace

char const* FPGA2dirname(int code)
{
    for (FpgaDirectory const& row : fpgaDirectories) {
        if (row.type == static_cast<unsigned int>(code)) {
            return row.name;
        }
    }
    return nullptr;
}

char const* fpga_dir_by_kovatype(int boardType)
{
    return directoriesOf(boardType).fpga;
}

char const* grabber_dir_by_kovatype(int boardType)
{
    return directoriesOf(boardType).current;
}

char const* old_grabber_dir_by_kovatype(int boardType)
{
    return directoriesOf(boardType).older;
}
