#pragma once

#include "bytes.h"
#include "laid_out_tag.h"
#include "tag_field.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Keeps what a visit shows.
class VisitRecord : public FieldVisitor {
public:
    VisitRecord() = default;
    VisitRecord(VisitRecord&&) = default; // no copies: the fields refer to the bytes that are kept here
    VisitRecord& operator=(VisitRecord&&) = default;

    void field(TagField const& field) override { fields.push_back(field); }
    void problem(TagProblem const& problem) override { problems.push_back(problem); }

    /// The field at @p offset; a field of width 0 and kind Reserved where there is none.
    TagField at(std::uint64_t offset) const
    {
        auto const found = std::find_if(fields.begin(), fields.end(),
                                        [offset](TagField const& field) { return field.offset == offset; });
        return found == fields.end() ? TagField{offset, 0, FieldKind::Reserved, "", {}} : *found;
    }

    std::vector<TagField> fields;
    std::vector<TagProblem> problems;
    Bytes bytes;
};

inline VisitRecord visited(LaidOutTag& tag, Bytes bytes)
{
    VisitRecord record;
    record.bytes = std::move(bytes);
    tag.visit({record.bytes.data(), record.bytes.size()}, record);
    return record;
}

/// Whether every byte of [0, end) belongs to exactly one field, and no field reaches beyond.
inline testing::AssertionResult coversOnce(VisitRecord const& record, std::uint64_t end)
{
    std::vector<TagField> fields = record.fields;
    std::sort(fields.begin(), fields.end(), [](auto const& a, auto const& b) { return a.offset < b.offset; });
    std::uint64_t next = 0;
    for (TagField const& field : fields) {
        if (field.offset != next) {
            return testing::AssertionFailure() << '"' << field.name << "\" begins at " << field.offset
                                               << ", the field before it ends at " << next;
        }
        next += field.width;
    }
    if (next != end) {
        return testing::AssertionFailure() << "the fields end at " << next << ", not at " << end;
    }
    return testing::AssertionSuccess();
}

/// Visits every shorter piece of @p bytes, an honest tag: no field shows bytes that are not there, and a cut within
/// the fixed part is reported.
/// @param makeTag makes the object that a piece is visited with
template <class MakeTag>
void expectCutsAreShown(MakeTag makeTag, Bytes const& bytes, std::size_t fixedPart)
{
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        SCOPED_TRACE("cut to " + std::to_string(size) + " bytes");
        std::vector<std::byte> const piece(bytes.data(),
                                           bytes.data() + size); // exact: reads behind it are seen
        auto tag = makeTag();
        VisitRecord record;
        tag.visit(piece, record);
        for (TagField const& field : record.fields) {
            std::uint64_t const begin = std::min<std::uint64_t>(field.offset, size);
            EXPECT_EQ(field.bytes.size(), std::min<std::uint64_t>(field.width, size - begin)) << field.name;
        }
        EXPECT_TRUE(size >= fixedPart || !record.problems.empty());
    }
}
