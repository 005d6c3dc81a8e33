#include "text_output.h"

#include "session.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

struct Screen {
    std::ostringstream out;
    std::ostringstream err;
    Session session{out, err};
};

TEST(Escaped, TextStaysAsItIs)
{
    EXPECT_EQ(escaped(""), "");
    EXPECT_EQ(escaped("Process0\\Camera 'left'"), "Process0\\Camera 'left'");
    EXPECT_EQ(escaped("Pr\xC3\xBC"
                      "fung \xE2\x82\xAC \xF0\x9F\x93\xB7"),
              "Pr\xC3\xBC"
              "fung \xE2\x82\xAC \xF0\x9F\x93\xB7");
}

TEST(Escaped, ControlCharactersCannotReachATerminal)
{
    EXPECT_EQ(escaped("\x1B[2J"), "\\x1b[2J");
    EXPECT_EQ(escaped(std::string_view("a\0b\n\t\x7F", 6)), "a\\x00b\\x0a\\x09\\x7f");
    EXPECT_EQ(escaped("\xC2\x9B"
                      "2J"),
              "\\xc2\\x9b2J")
        << "a control character of two bytes";
}

TEST(Escaped, CharactersThatTurnTextRoundAreShown)
{
    EXPECT_EQ(escaped("\xE2\x80\xAEgpj"), "\\xe2\\x80\\xaegpj");
    EXPECT_EQ(escaped("\xE2\x81\xA6"), "\\xe2\\x81\\xa6");
    EXPECT_EQ(escaped("\xE2\x80\xA8"), "\\xe2\\x80\\xa8") << "line separator";
}

TEST(Escaped, BytesThatAreNoUtf8AreShownOneByOne)
{
    EXPECT_EQ(escaped("Pr\xFC"
                      "fung"),
              "Pr\\xfcfung");
    EXPECT_EQ(escaped("\xC0\x80"), "\\xc0\\x80") << "longer than needed";
    EXPECT_EQ(escaped("\xED\xA0\x80"), "\\xed\\xa0\\x80") << "a surrogate";
    EXPECT_EQ(escaped("\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80") << "beyond the last character";
    EXPECT_EQ(escaped("\xE2\x82"), "\\xe2\\x82") << "cut short";
    EXPECT_EQ(escaped("\xE2(\xA1"), "\\xe2(\\xa1");
}

TEST(Numbers, HexadecimalHasAPrefixAndNoLeadingZeros)
{
    EXPECT_EQ(asHex(0), "0x0");
    EXPECT_EQ(asHex(0x8150070), "0x8150070");
    EXPECT_EQ(asHex(0xFFFFFFFFFFFFFFFF), "0xffffffffffffffff");
}

TEST(Numbers, CountsAgreeWithTheirNouns)
{
    EXPECT_EQ(counted(0, "byte"), "0 bytes");
    EXPECT_EQ(counted(1, "byte"), "1 byte");
    EXPECT_EQ(counted(2, "library", "libraries"), "2 libraries");
}

TEST(Numbers, BytesAreShownInPairsOfDigits)
{
    std::byte const bytes[] = {std::byte{0x4d}, std::byte{0}, std::byte{0xff}};
    EXPECT_EQ(hexBytes(bytes), "4d 00 ff");
    EXPECT_EQ(hexBytes({}), "");
}

TEST(Styles, AreOnlyUsedWhereThereAreColours)
{
    Screen screen;
    EXPECT_EQ(styled(screen.session, Style::Alarm, "x"), "x");
    screen.session.colour = true;
    EXPECT_EQ(styled(screen.session, Style::Alarm, "x"), "\033[31mx\033[0m");
    EXPECT_EQ(styled(screen.session, Style::Plain, "x"), "x");
}

TEST(Warnings, AreOneHarmlessLineEach)
{
    Screen screen;
    warn(screen.session, "a\nb\x1B");
    EXPECT_EQ(screen.err.str(), "zul: a\\x0ab\\x1b\n");
    EXPECT_EQ(screen.out.str(), "");
}

TEST(Padding, CountsCharactersNotBytes)
{
    EXPECT_EQ(padded("\xC3\xBC", 3), "\xC3\xBC  ");
    EXPECT_EQ(padded("long", 2), "long");
}

TEST(Table, ColumnsAreAsWideAsTheirLongestCell)
{
    Screen screen;
    Table table({"name", "n", "last"});
    EXPECT_TRUE(table.empty());
    table.row({"a", "1000", "x"});
    table.row({"longer", "1", ""});
    table.print(screen.session, "  ");
    EXPECT_EQ(screen.out.str(), "  name    n     last\n"
                                "  a       1000  x\n"
                                "  longer  1\n");
}

TEST(Table, OneLongCellWidensOnlyItsOwnLine)
{
    Screen screen;
    Table table({"name", "n"});
    table.row({std::string(60, 'x'), "1"});
    table.row({"a", "2"});
    table.print(screen.session);
    EXPECT_EQ(screen.out.str(), "name" + std::string(46, ' ') + "n\n" + std::string(60, 'x') + "  1\na" +
                                    std::string(49, ' ') + "2\n");
}

TEST(Table, CellsAreEscaped)
{
    Screen screen;
    Table table({"name"});
    table.row({"a\nb"});
    table.print(screen.session);
    EXPECT_EQ(screen.out.str(), "name\na\\x0ab\n");
}

} // namespace
