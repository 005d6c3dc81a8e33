#pragma once

#include "bytes.h"
#include "zul_errors.h"
#include "zul_tag.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <exception>
#include <typeinfo>
#include <vector>

/// Loads @p tag from a copy of @p bytes that ends exactly where they end, so that reading on is seen. For tags that
/// keep nothing of the buffer.
inline unsigned long loadFrom(ZUL_tag& tag, Bytes const& bytes)
{
    std::vector<std::byte> const exact(bytes.data(), bytes.data() + bytes.size());
    return tag.Load(exact.data(), exact.size());
}

/// Whether loading throws an Error, of exactly this class, with that tag id.
template <class Error>
testing::AssertionResult loadThrows(ZUL_tag& tag, Bytes const& bytes, std::uint32_t id)
{
    try {
        unsigned long const consumed = loadFrom(tag, bytes);
        return testing::AssertionFailure() << "loaded " << consumed << " bytes";
    } catch (ZUL_file_error const& error) {
        if (typeid(error) != typeid(Error) || error.getTagId() != id) {
            return testing::AssertionFailure()
                   << '"' << error.what() << "\" with id " << std::hex << error.getTagId();
        }
        return testing::AssertionSuccess();
    } catch (std::exception const& error) {
        return testing::AssertionFailure() << "threw another error: " << error.what();
    }
}

/// Checks every rule of a tag whose length never varies.
/// @param makeTag makes the object to load
/// @param bytes an honest tag
template <class MakeTag>
void expectFixedLength(MakeTag makeTag, Bytes const& bytes, std::uint32_t id)
{
    auto const length = static_cast<std::uint32_t>(bytes.size());
    for (std::size_t avail = 0; avail < bytes.size(); ++avail) {
        auto tag = makeTag();
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, Bytes(bytes).cut(avail), id))
            << avail << " bytes";
    }
    for (std::uint32_t const stated :
         {0U, 8U, length - 1, length + 1, length + 4, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        auto tag = makeTag();
        Bytes const broken =
            Bytes(bytes).setU32(4, stated).fill(0, 16); // the bytes are there, the number is wrong
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, broken, id)) << "length field " << stated;
    }
    auto tag = makeTag();
    EXPECT_EQ(loadFrom(tag, Bytes(bytes).fill(0xA5, 32)), length) << "bytes behind the tag are not its own";
    EXPECT_EQ(tag.getSaveLength(), length);
}
