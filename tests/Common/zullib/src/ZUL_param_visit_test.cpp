#include "ZUL_param.h"

#include "coverage.h"
#include "param_bytes.h"

#include <gtest/gtest.h>

TEST(VisitedParam, ShowsEveryByteOnce)
{
    for (Bytes const& bytes : {integerParam(), doubleParam(), fieldParam(), textParam()}) {
        ZUL_param parameter(nullptr, QL_ParamType{1}, nullptr);
        VisitRecord const shown = visited(parameter, bytes);
        EXPECT_TRUE(coversOnce(shown, bytes.size()));
        EXPECT_TRUE(shown.problems.empty());
        expectCutsAreShown([] { return ZUL_param(nullptr, QL_ParamType{1}, nullptr); }, bytes, 192);
    }
}

TEST(VisitedParam, ShowsValues)
{
    ZUL_param parameter(nullptr, QL_ParamType{1}, nullptr);
    Bytes const bytes = textParam().setU32(8, 77);
    VisitRecord const shown = visited(parameter, bytes);
    EXPECT_EQ(shown.at(8).kind, FieldKind::ModuleReference);
    EXPECT_EQ(shown.at(8).number(), 77U);
    EXPECT_EQ(shown.at(16).text(), "threshold");
    EXPECT_EQ(shown.at(80).number(), 42U);
    EXPECT_EQ(shown.at(88).real(), 2.5);
    EXPECT_EQ(shown.at(100).number(), 13U);
    EXPECT_EQ(shown.at(120).kind, FieldKind::TailLength);
    EXPECT_EQ(shown.at(192).text(), "rising");
    EXPECT_EQ(parameter.getType(), 13U);
}

TEST(VisitedParam, NamesTheFieldThatIsWrong)
{
    auto const problemIn = [](Bytes const& bytes) {
        ZUL_param parameter(nullptr, QL_ParamType{1}, nullptr);
        VisitRecord const shown = visited(parameter, bytes);
        EXPECT_EQ(shown.problems.size(), 1U);
        return shown.problems.empty() ? TagProblem{} : shown.problems[0];
    };
    TagProblem const type = problemIn(paramBytes({.type = 9}));
    EXPECT_EQ(type.kind, TagProblem::Kind::Malformed);
    EXPECT_EQ(type.offset, 100U);
    EXPECT_EQ(type.expected, "1 to 8, 13, 14 or 16");
    EXPECT_EQ(type.found, "9");
    TagProblem const tooMany = problemIn(paramBytes({.type = 1, .elements = 2}));
    EXPECT_EQ(tooMany.offset, 104U);
    EXPECT_EQ(tooMany.expected, "0");
    EXPECT_EQ(tooMany.found, "2");
    TagProblem const none = problemIn(paramBytes({.type = 6}));
    EXPECT_EQ(none.offset, 104U);
    EXPECT_EQ(none.expected, "at least 1");
    TagProblem const text = problemIn(paramBytes({.type = 1, .characters = 4}, Bytes().chars("text")));
    EXPECT_EQ(text.offset, 120U);
    EXPECT_EQ(text.found, "4");
    TagProblem const length = problemIn(integerParam().setU32(4, 193).u8(0));
    EXPECT_EQ(length.kind, TagProblem::Kind::BadLength);
    EXPECT_EQ(length.offset, 4U);
}

TEST(VisitedParam, SurvivesAnyNumbers)
{
    for (std::uint32_t const type : {0U, 1U, 6U, 13U, 0xFFFFFFFFU}) {
        for (std::uint32_t const number : {1U, 0x20000000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            ZUL_param parameter(nullptr, QL_ParamType{1}, nullptr);
            Bytes const bytes = paramBytes({.type = type, .elements = number, .characters = number}).u8(1);
            VisitRecord const shown = visited(parameter, bytes);
            EXPECT_FALSE(shown.problems.empty());
            for (TagField const& field : shown.fields) {
                EXPECT_LE(field.bytes.size(), bytes.size());
            }
        }
    }
}
