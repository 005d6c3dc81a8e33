#include "board_directories.h"

#include "fpga_types.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using Names = std::map<int, char const*>;

Names const fpgaNames{{0x82FA8, "2s200"},   {0x8300C, "2s300"},   {0x92FA8, "2s200e"},  {0x9300C, "2s300e"},
                      {0x93138, "2s600e"},  {0xA3200, "3s400"},   {0xA7080, "3s1000"},  {0xB3200, "3s400e"},
                      {0xBBEA0, "3s1600e"}, {0xBBEA1, "3s1600e"}, {0xBBEA2, "3s1600e"}, {0xBCDC4, "3s2000"},
                      {0xBD594, "3s4000"}};

Names const fpgaNamesOfBoards{{163, "2s300e"},   {2609, "2s600e"},  {2625, "3s1600e"}, {2628, "3s4000"},
                              {2881, "3s1600e"}, {2882, "3s1600e"}, {3652, "3s4000"}};

Names const currentNames{
    {1872, "kova-1872"},   {1873, "kova-1872"},  {1874, "kova-1874"},   {1875, "kova-1875"},
    {1876, "kova-1876"},   {2624, "kova-2624"},  {2625, "kova-2625"},   {2626, "kova-2626"},
    {2628, "kova-2628"},   {2629, "kova-2629"},  {2641, "kova-2641"},   {2642, "kova-2642"},
    {2643, "kova-2643"},   {2644, "kova-2644"},  {2645, "kova-2645"},   {2646, "kova-2646"},
    {2647, "kova-2647"},   {2648, "kova-2648"},  {2649, "kova-2649"},   {2650, "kova-2650"},
    {2896, "kova-2896"},   {2897, "kova-2897"},  {2911, "kova-2911"},   {3650, "kova-3650"},
    {3652, "kova-3652"},   {29968, "kova-1872"}, {29969, "kova-29969"}, {30016, "kova-1876"},
    {30017, "kova-30017"}, {163, "kova_163"},    {2609, "kova_2609"},   {2627, "kova_2627"},
    {2881, "kova_2881"},   {2882, "kova_2882"}};

Names const olderNames{{163, "kova_163"},   {2609, "kova_2609"}, {2624, "kova_2624"}, {2625, "kova_2625"},
                       {2627, "kova_2627"}, {2628, "kova_2628"}, {2648, "kova_2648"}, {2881, "kova_2881"},
                       {2882, "kova_2882"}, {3652, "kova_3652"}};

char const* nameIn(Names const& names, int code)
{
    auto const found = names.find(code);
    return found == names.end() ? nullptr : found->second;
}

TEST(BoardDirectories, EveryBoardHasItsDirectoriesAndNoOther)
{
    for (int board = 0; board <= 0xFFFF; ++board) {
        EXPECT_STREQ(grabber_dir_by_kovatype(board), nameIn(currentNames, board)) << board;
        EXPECT_STREQ(old_grabber_dir_by_kovatype(board), nameIn(olderNames, board)) << board;
        EXPECT_STREQ(fpga_dir_by_kovatype(board), nameIn(fpgaNamesOfBoards, board)) << board;
    }
}

TEST(BoardDirectories, OnlyTheLowerSixteenBitsOfABoardCount)
{
    for (int const board : {0x10A40, 0x7FFF0A40, static_cast<int>(0xFFFF0A40)}) {
        EXPECT_STREQ(grabber_dir_by_kovatype(board), "kova-2624");
        EXPECT_STREQ(old_grabber_dir_by_kovatype(board), "kova_2624");
    }
    EXPECT_STREQ(fpga_dir_by_kovatype(0x10A41), "3s1600e");
    EXPECT_EQ(grabber_dir_by_kovatype(-1), nullptr);
    EXPECT_EQ(old_grabber_dir_by_kovatype(-1), nullptr);
    EXPECT_EQ(fpga_dir_by_kovatype(-1), nullptr);
}

TEST(BoardDirectories, FirstGenerationIsInItsOlderDirectory)
{
    for (int const board : {163, 2609, 2627, 2881, 2882}) {
        EXPECT_STREQ(grabber_dir_by_kovatype(board), old_grabber_dir_by_kovatype(board)) << board;
    }
}

TEST(FpgaDirectories, EveryTypeHasItsDirectoryAndNoOther)
{
    for (int type = 0; type <= 0xD0000; ++type) {
        ASSERT_STREQ(FPGA2dirname(type), nameIn(fpgaNames, type)) << type;
    }
    EXPECT_EQ(FPGA2dirname(-1), nullptr);
}

TEST(FpgaDirectories, AllBitsOfATypeCount)
{
    EXPECT_EQ(FPGA2dirname(0x182FA8), nullptr);
    EXPECT_EQ(FPGA2dirname(static_cast<int>(0x80082FA8)), nullptr);
    EXPECT_EQ(FPGA2dirname(0x2FA8), nullptr);
}

TEST(FpgaDirectories, TypesWithAPartAreNotThoseWithADirectory)
{
    EXPECT_STREQ(FPGA2dirname(0xB3200), "3s400e");
    EXPECT_EQ(FPGAtype2RBTstring(0xB3200), nullptr);
    for (int const type : {0xBA0F0, 0xBD97C, 0xCC382, 0xFAD, 0x10FAD, 0x20FF5, 0x50028}) {
        EXPECT_EQ(FPGA2dirname(type), nullptr);
        EXPECT_NE(FPGAtype2RBTstring(type), nullptr);
    }
}

} // namespace
