#pragma once

#include "bytes.h"
#include "laid_out_tag.h"
#include "loading.h"
#include "tag_layout.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

/// A tag made for a test. Included by the tests of the layout only.
namespace rows {

constexpr std::uint32_t tagId = 0x1234;

/// A tag with the rows that a test gives it.
class RowsTag : public LaidOutTag {
public:
    using Rows = std::function<void(TagLayout&)>;

    explicit RowsTag(Rows rows, ZUL* parent = nullptr) : LaidOutTag(parent), m_rows(std::move(rows)) {}
    std::uint32_t getTagId() const override { return tagId; }
    void checkDependentFields() override { ++dependenciesChecked; }

    int dependenciesChecked = 0;

private:
    void layout(TagLayout& row) override { m_rows(row); }

    Rows m_rows;
};

inline Bytes header(std::uint32_t length)
{
    return Bytes().u32(tagId).u32(length);
}

/// What saving and measuring throw, the same; nothing is written then. "saved" when they do not.
inline std::string savingError(RowsTag& tag)
{
    Bytes room = Bytes().fill(0xA5, 64);
    Bytes const before = room;
    std::string message;
    try {
        tag.Save(room.data());
        return "saved";
    } catch (std::runtime_error const& error) {
        message = error.what();
    }
    try {
        static_cast<void>(tag.getSaveLength());
        return "measured";
    } catch (std::runtime_error const& error) {
        EXPECT_EQ(error.what(), message);
    }
    EXPECT_EQ(room, before) << "nothing is written";
    return message;
}

} // namespace rows
