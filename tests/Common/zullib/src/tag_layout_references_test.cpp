#include "tag_layout.h"

#include "ZUL_module.h"
#include "ZUL_process.h"
#include "ZUL_register.h"
#include "coverage.h"
#include "rows_tag.h"
#include "zul_class.h"

using namespace rows;

namespace {

/// A container with process 3, module 5 and register "reg".
class ReferenceRows : public testing::Test {
protected:
    ReferenceRows()
    {
        m_zul.AddTag(m_process);
        m_module->setIndex(5);
        m_zul.AddTag(m_module);
        m_zul.AddTag(m_register);
    }

    ZUL m_zul;
    ZUL_process* m_process = new ZUL_process(&m_zul, 3, "process");
    ZUL_module* m_module = new ZUL_module(&m_zul, m_process);
    ZUL_register* m_register = new ZUL_register(&m_zul, "reg", false);
};

} // namespace

TEST_F(ReferenceRows, ProcessIsFoundByItsId)
{
    ZUL_process const* process = nullptr;
    RowsTag::Rows const rows = [&process](TagLayout& row) {
        row.fixed(12);
        row.process(8, "process id", process);
    };
    RowsTag tag(rows, &m_zul);
    loadFrom(tag, header(12).u32(3));
    EXPECT_EQ(process, m_process);
    EXPECT_EQ(savedBytes(tag), header(12).u32(3));
    EXPECT_EQ(visited(tag, header(12).u32(9)).at(8).kind, FieldKind::ProcessReference);
    EXPECT_EQ(process, m_process) << "a visit looks nothing up";
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(tag, header(12).u32(4), tagId));
    RowsTag free(rows);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(free, header(12).u32(3), tagId));
}

TEST_F(ReferenceRows, ModuleIsFoundByItsIndex)
{
    ZUL_module const* module = nullptr;
    RowsTag::Rows const rows = [&module](TagLayout& row) {
        row.fixed(12);
        row.module(8, "module index", module);
    };
    RowsTag tag(rows, &m_zul);
    loadFrom(tag, header(12).u32(5));
    EXPECT_EQ(module, m_module);
    EXPECT_EQ(savedBytes(tag), header(12).u32(5));
    EXPECT_EQ(visited(tag, header(12).u32(9)).at(8).kind, FieldKind::ModuleReference);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(tag, header(12).u32(6), tagId));
    EXPECT_EQ(module, m_module);
    RowsTag free(rows);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(free, header(12).u32(5), tagId));
}

TEST_F(ReferenceRows, UnknownModuleMayMakeATagMalformed)
{
    ZUL_module const* module = nullptr;
    RowsTag tag(
        [&module](TagLayout& row) {
            row.fixed(12);
            row.moduleElseMalformed(8, "module index", module);
        },
        &m_zul);
    loadFrom(tag, header(12).u32(5));
    EXPECT_EQ(module, m_module);
    EXPECT_EQ(savedBytes(tag), header(12).u32(5));
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(tag, header(12).u32(6), tagId));
    EXPECT_EQ(visited(tag, header(12).u32(9)).at(8).kind, FieldKind::ModuleReference);
}

TEST_F(ReferenceRows, RegisterIsFoundByItsName)
{
    ZUL_register const* reg = nullptr;
    RowsTag::Rows const rows = [&reg](TagLayout& row) {
        row.variable(12);
        auto const length = row.tailLength(8, 4, "length", reg == nullptr ? 0 : 3);
        row.total(length, "too big");
        row.tailRegisterName("register name", length, reg);
    };
    RowsTag tag(rows, &m_zul);
    loadFrom(tag, header(15).u32(3).chars("reg"));
    EXPECT_EQ(reg, m_register);
    EXPECT_EQ(savedBytes(tag), header(15).u32(3).chars("reg"));
    loadFrom(tag, header(17).u32(5).chars("reg").zeros(2));
    EXPECT_EQ(reg, m_register) << "a name ends at its first NUL";
    EXPECT_EQ(visited(tag, header(15).u32(3).chars("xyz")).at(12).kind, FieldKind::RegisterReference);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(tag, header(14).u32(2).chars("re"), tagId));
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(tag, header(12).u32(0), tagId));
    RowsTag free(rows);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(free, header(15).u32(3).chars("reg"), tagId));
}
