#include "fpga_types.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>

namespace {

struct Row {
    unsigned int code;
    char const* part;
};

constexpr std::array rows{
    Row{4013, "4013epq240"},     Row{4020, "4020epq240"},     Row{4028, "4028exhq240"},
    Row{4036, "4036exhq240"},    Row{69549, "4013xlpq240"},   Row{69556, "4020xlpq240"},
    Row{69564, "4028xlhq240"},   Row{69572, "4036xlhq240"},   Row{69580, "4044xlhq240"},
    Row{69588, "4052xlhq240"},   Row{69598, "4062xlhq240"},   Row{135085, "4013xlapq240"},
    Row{135092, "4020xlapq240"}, Row{135100, "4028xlahq240"}, Row{135108, "4036xlahq240"},
    Row{135116, "4044xlahq240"}, Row{135124, "4052xlahq240"}, Row{135134, "4062xlahq240"},
    Row{135157, "4085xlahq240"}, Row{536488, "2s200fg456"},   Row{602024, "2s200efg456"},
    Row{536588, "2s300fg456"},   Row{602124, "2s300efg456"},  Row{602424, "2s600efg456"},
    Row{327720, "s40xlpq240"},   Row{668160, "3s400ft256"},   Row{684160, "3s1000ft256"},
    Row{762096, "3s1200efg400"}, Row{769696, "3s1600efg484"}, Row{769697, "3s1600efg400"},
    Row{769698, "3s1600efg320"}, Row{773572, "3s2000fg676"},  Row{775572, "3s4000fg676"},
    Row{776572, "3s5000fg676"},  Row{836482, "5vsx50tff1136"}};

TEST(FpgaTypes, TableHasEachTypeInOrderAndThenTheTerminator)
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(fpga_types[i].code, rows.at(i).code) << i;
        EXPECT_STREQ(fpga_types[i].part, rows.at(i).part);
    }
    EXPECT_EQ(fpga_types[rows.size()].code, 0xFFFFFFFF);
    EXPECT_EQ(fpga_types[rows.size()].part, nullptr);
}

TEST(FpgaTypes, CodeAndPartLeadToEachOther)
{
    for (Row const& row : rows) {
        EXPECT_STREQ(FPGAtype2RBTstring(static_cast<int>(row.code)), row.part);
        EXPECT_EQ(RBTstring2FPGAtype(row.part), row.code);
    }
}

TEST(FpgaTypes, CodeWithoutEntryHasNoPart)
{
    EXPECT_EQ(FPGAtype2RBTstring(0xB3200), nullptr);
    EXPECT_EQ(FPGAtype2RBTstring(0), nullptr);
    EXPECT_EQ(FPGAtype2RBTstring(-1), nullptr) << "the terminator's code";
}

TEST(FpgaTypes, PartIsComparedExactly)
{
    EXPECT_EQ(RBTstring2FPGAtype("3S1000FT256"), 0xFFFFFFFF);
    EXPECT_EQ(RBTstring2FPGAtype("3s1000ft25"), 0xFFFFFFFF);
    EXPECT_EQ(RBTstring2FPGAtype("3s1000ft2566"), 0xFFFFFFFF);
    EXPECT_EQ(RBTstring2FPGAtype(""), 0xFFFFFFFF);
}

TEST(FpgaTypes, NoPartIsNoType)
{
    EXPECT_EQ(RBTstring2FPGAtype(nullptr), 0xFFFFFFFF);
}

} // namespace
