#include "json_output.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace {

std::span<std::byte const> bytesOf(std::string_view text)
{
    return std::as_bytes(std::span(text));
}

TEST(JsonText, Utf8StaysAsItIs)
{
    EXPECT_EQ(jsonText("Pr\xC3\xBC"
                       "fung"),
              "Pr\xC3\xBC"
              "fung");
}

TEST(JsonText, OneByteThatIsNoUtf8MakesTheWholeTextLatin1)
{
    EXPECT_EQ(jsonText("\xFC"), "\xC3\xBC");
    EXPECT_EQ(jsonText("\xC3\xBC\xFF"), "\xC3\x83\xC2\xBC\xC3\xBF");
    EXPECT_EQ(jsonText("\x80"), "\xC2\x80");
}

TEST(JsonText, EveryByteMakesValidJson)
{
    for (unsigned byte = 0; byte < 256; ++byte) {
        std::string const text(1, static_cast<char>(byte));
        EXPECT_NO_THROW(Json(jsonText(text)).dump()) << byte;
        EXPECT_NO_THROW(Json(jsonText("\xE2\x82\xAC" + text)).dump()) << byte;
    }
}

TEST(Base64, PublishedVectors)
{
    EXPECT_EQ(base64(bytesOf("")), "");
    EXPECT_EQ(base64(bytesOf("f")), "Zg==");
    EXPECT_EQ(base64(bytesOf("fo")), "Zm8=");
    EXPECT_EQ(base64(bytesOf("foo")), "Zm9v");
    EXPECT_EQ(base64(bytesOf("foob")), "Zm9vYg==");
    EXPECT_EQ(base64(bytesOf("fooba")), "Zm9vYmE=");
    EXPECT_EQ(base64(bytesOf("foobar")), "Zm9vYmFy");
    EXPECT_EQ(base64(bytesOf("\xFB\xFF\xBE")), "+/++");
}

TEST(HexText, TwoDigitsAByte)
{
    EXPECT_EQ(hexText(bytesOf("\x01\xAB")), "01ab");
}

TEST(JsonObjectWriter, WritesMembersAndListsAnElementALine)
{
    std::ostringstream out;
    {
        JsonObjectWriter json(out);
        json.member("a", 1);
        json.beginList("list");
        json.element({{"x", "y"}});
        json.element(2);
        json.endList();
        json.beginList("none");
        json.endList();
        json.member("b", nullptr);
    }
    EXPECT_EQ(out.str(),
              "{\n  \"a\": 1,\n  \"list\": [\n    {\"x\":\"y\"},\n    2\n  ],\n  \"none\": [\n  ],\n"
              "  \"b\": null\n}\n");
}

TEST(JsonObjectWriter, ClosesTheObjectWhenAnExceptionPasses)
{
    std::ostringstream out;
    try {
        JsonObjectWriter json(out);
        json.beginList("list");
        json.element(1);
        throw std::runtime_error("half way");
    } catch (std::runtime_error const&) {
    }
    EXPECT_EQ(Json::parse(out.str()), Json::parse(R"({"list":[1]})"));
}

TEST(WriteJson, TextThatIsNoUtf8IsReplacedNotRefused)
{
    std::ostringstream out;
    writeJson(out, "\xFF");
    EXPECT_EQ(out.str(), "\"\xEF\xBF\xBD\"\n");
}

} // namespace
