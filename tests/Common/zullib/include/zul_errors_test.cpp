#include "zul_errors.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

static_assert(std::is_base_of_v<std::runtime_error, ZUL_runtime_error>);
static_assert(std::is_base_of_v<ZUL_runtime_error, ZUL_invalid_data>);
static_assert(std::is_base_of_v<ZUL_runtime_error, ZUL_inconsistent_data>);
static_assert(std::is_base_of_v<ZUL_runtime_error, ZUL_dll_already_exists>);
static_assert(std::is_base_of_v<ZUL_runtime_error, ZUL_file_error>);
static_assert(std::is_base_of_v<ZUL_file_error, ZUL_file_duplicate_tag>);
static_assert(std::is_base_of_v<ZUL_file_error, ZUL_file_bad_tag_length>);
static_assert(std::is_base_of_v<ZUL_file_error, ZUL_file_bad_reference>);
static_assert(std::is_base_of_v<ZUL_file_error, ZUL_file_malformed_tag>);
static_assert(std::is_base_of_v<ZUL_file_error, ZUL_link_loop_detected>);
static_assert(std::is_base_of_v<ZUL_file_error, ZUL_add_tag_error>);
static_assert(!std::is_base_of_v<ZUL_file_error, ZUL_dll_already_exists>);
static_assert(!std::is_base_of_v<ZUL_file_error, ZUL_invalid_data>);
static_assert(!std::is_base_of_v<ZUL_invalid_data, ZUL_inconsistent_data>);

namespace {

constexpr std::uint32_t authorId = 0x8150070; // low byte 'p'

void expectFileError(ZUL_file_error const& error, std::string const& message, std::string const& details)
{
    EXPECT_EQ(error.what(), message);
    EXPECT_EQ(error.getTagId(), authorId);
    EXPECT_EQ(error.asString(), details);
}

} // namespace

TEST(Errors, MessageOnlyErrorsHaveNoDetails)
{
    EXPECT_STREQ(ZUL_runtime_error("message").what(), "message");
    EXPECT_EQ(ZUL_runtime_error("message").asString(), "");
    EXPECT_STREQ(ZUL_invalid_data("invalid").what(), "invalid");
    EXPECT_EQ(ZUL_invalid_data("invalid").asString(), "");
    EXPECT_STREQ(ZUL_inconsistent_data("inconsistent").what(), "inconsistent");
    EXPECT_EQ(ZUL_inconsistent_data("inconsistent").asString(), "");
}

TEST(Errors, ExistingLibraryIsNamed)
{
    ZUL_dll_already_exists const error("filters");
    EXPECT_STREQ(error.what(), "lib with that name already exists");
    EXPECT_EQ(error.getLibName(), "filters");
    EXPECT_EQ(error.asString(), "filters");
}

TEST(Errors, DetailsOfAFileErrorAreTheLowByteOfTheId)
{
    expectFileError(ZUL_file_error("message", authorId), "message", "p");
    EXPECT_EQ(ZUL_file_error("", 0x41424344).asString(), "D");
    EXPECT_EQ(ZUL_file_error("", 0xFFFFFFFF).asString(), "\xFF");
}

TEST(Errors, LowByteOfZeroIsOneCharacterToo)
{
    EXPECT_EQ(ZUL_file_error("", 0x8158000).asString(), std::string(1, '\0'));
}

TEST(Errors, DuplicateTagIsNamedOrHasNoDetails)
{
    expectFileError(ZUL_file_duplicate_tag(authorId, "dma_ctrl"), "duplicate tag found", "dma_ctrl");
    expectFileError(ZUL_file_duplicate_tag(authorId, ""), "duplicate tag found", "");
}

TEST(Errors, EachFileErrorHasItsText)
{
    expectFileError(ZUL_file_bad_tag_length(authorId), "tag with invalid length information found", "p");
    expectFileError(ZUL_file_bad_reference(authorId), "dangling reference", "p");
    expectFileError(ZUL_file_malformed_tag(authorId), "malformed tag found", "p");
    expectFileError(ZUL_add_tag_error("cannot be taken over", authorId), "cannot be taken over", "p");
}

TEST(Errors, LinkLoopNamesBothLinks)
{
    ZUL_link_loop_detected const error("link loop detected", authorId, 0x8151001);
    expectFileError(error, "link loop detected", "p");
    EXPECT_EQ(error.getSecondTagId(), 0x8151001U);
}

TEST(Errors, AreCaughtByTheirFamilyWithoutLosingAnything)
{
    try {
        throw ZUL_file_duplicate_tag(authorId, "dma_ctrl");
    } catch (ZUL_runtime_error const& error) {
        EXPECT_STREQ(error.what(), "duplicate tag found");
        EXPECT_EQ(error.asString(), "dma_ctrl");
    }
}
