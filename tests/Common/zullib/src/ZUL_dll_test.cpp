#include "ZUL_dll.h"
#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "throwing.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <string>

// The bytes of a library, for lengths that would need gigabytes of memory.
using LibraryMember = TagBytes ZUL_dll::*;
LibraryMember libraryMember();
template <LibraryMember member>
struct LibraryAccess {
    friend LibraryMember libraryMember() { return member; }
};
template struct LibraryAccess<&ZUL_dll::m_library>;

namespace {

constexpr ZUL* noContainer = nullptr;
constexpr std::uint32_t id = 0x8154000;

ZUL_dll freeLibrary()
{
    return ZUL_dll(noContainer);
}

Bytes libraryBytes(std::string_view name, std::uint32_t compressed, std::string_view library,
                   std::uint32_t system = 0x01020304, std::uint32_t reserved = 0)
{
    return Bytes()
        .u32(id)
        .u32(96 + library.size())
        .u32(reserved)
        .u32(reserved)
        .u32(system)
        .u32(reserved)
        .u32(compressed)
        .text(name, 64)
        .u32(reserved)
        .chars(library);
}

std::string storedIn(ZUL_dll const& library)
{
    return library.getLib() == nullptr
               ? ""
               : std::string(static_cast<char const*>(library.getLib()), library.getLibLength());
}

TEST(LibraryTag, NewOneIsEmpty)
{
    ZUL zul;
    ZUL_dll library(&zul);
    EXPECT_EQ(library.getTagId(), id);
    EXPECT_EQ(ZUL_dll::tag_id, id);
    EXPECT_EQ(library.getParent(), &zul);
    EXPECT_EQ(library.getName(), nullptr);
    EXPECT_EQ(library.getLib(), nullptr);
    EXPECT_EQ(library.getLibLength(), 0U);
    EXPECT_FALSE(library.isCompressed());
    EXPECT_EQ(library.getSystem(), zul_opsys{0});
    EXPECT_EQ(savedBytes(library, 0xA5), libraryBytes("", 0, "", 0));
}

TEST(LibraryTag, SystemOfThisPlatform)
{
    EXPECT_EQ(zul_opsys_of_library(), zul_opsys{516});
    EXPECT_EQ(ZUL_dll::get_library_opsys(), zul_opsys{516});
    EXPECT_EQ(sizeof(zul_opsys), 4U);
}

TEST(LibraryTag, PoliciesHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<unsigned>(ZUL_dll::keep), 0U);
    EXPECT_EQ(static_cast<unsigned>(ZUL_dll::overwrite), 1U);
    EXPECT_EQ(static_cast<unsigned>(ZUL_dll::replace), 2U);
}

TEST(LibraryTag, LoadsItsFieldsAndBorrowsTheLibrary)
{
    ZUL_dll library = freeLibrary();
    Bytes const bytes = libraryBytes("filter", 1, "library", 0xFFFFFFFF, 0xEEEEEEEE);
    EXPECT_EQ(library.Load(bytes.data(), bytes.size()), 103U);
    EXPECT_STREQ(library.getName(), "filter");
    EXPECT_EQ(library.getSystem(), zul_opsys{0xFFFFFFFF});
    EXPECT_TRUE(library.isCompressed());
    EXPECT_EQ(library.getLib(), bytes.data() + 96);
    EXPECT_EQ(library.getLibLength(), 7U);
}

TEST(LibraryTag, SavesEveryByte)
{
    for (std::uint32_t const compressed : {0U, 1U}) {
        ZUL_dll library = freeLibrary();
        Bytes const bytes = libraryBytes("filter", compressed, "library");
        library.Load(bytes.data(), bytes.size());
        EXPECT_EQ(library.getSaveLength(), 103U);
        EXPECT_EQ(savedBytes(library, 0xA5), bytes);
    }
}

TEST(LibraryTag, AnyOtherNumberCountsAsCompressedAndIsSavedAsOne)
{
    for (std::uint32_t const compressed : {2U, 0x100U, 0x80000000U, 0xFFFFFFFFU}) {
        ZUL_dll library = freeLibrary();
        Bytes const bytes = libraryBytes("filter", compressed, "library", 516, 0xEEEEEEEE);
        library.Load(bytes.data(), bytes.size());
        EXPECT_TRUE(library.isCompressed());
        EXPECT_EQ(savedBytes(library, 0xA5), libraryBytes("filter", 1, "library", 516));
    }
}

TEST(LibraryTag, NoBytesLoadAndSave)
{
    ZUL_dll library = freeLibrary();
    Bytes const bytes = libraryBytes("filter", 0, "");
    EXPECT_EQ(library.Load(bytes.data(), bytes.size()), 96U);
    EXPECT_EQ(library.getLibLength(), 0U);
    EXPECT_EQ(savedBytes(library, 0xA5), bytes);
}

TEST(LibraryTag, BytesBehindTheTagAreNotItsOwn)
{
    ZUL_dll library = freeLibrary();
    Bytes const bytes = libraryBytes("filter", 0, "library").chars("next tag");
    EXPECT_EQ(library.Load(bytes.data(), bytes.size()), 103U);
    EXPECT_EQ(storedIn(library), "library");
}

TEST(LibraryTag, WrongLengthsAreRefusedAndChangeNothing)
{
    Bytes const honest = libraryBytes("other", 1, "library", 7);
    ZUL_dll library = freeLibrary();
    library.setName("kept");
    library.setData("bytes", 5);
    for (std::size_t avail = 0; avail < honest.size(); ++avail) {
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(library, Bytes(honest).cut(avail), id))
            << avail << " bytes";
    }
    for (std::uint32_t const stated : {0U, 8U, 95U, 104U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(library, Bytes(honest).setU32(4, stated), id))
            << stated;
    }
    EXPECT_EQ(savedBytes(library), libraryBytes("kept", 0, "bytes", 0));
}

TEST(LibraryTag, NameOfFullWidthIsSavedWithoutTerminatorAndLoadsBack)
{
    std::string const name(64, 'n');
    ZUL_dll library = freeLibrary();
    library.setName((name + "cut").c_str());
    EXPECT_EQ(library.getName(), name);
    Bytes const saved = savedBytes(library, 0xA5);
    EXPECT_EQ(saved, libraryBytes(name, 0, "", 0));
    ZUL_dll loaded = freeLibrary();
    loaded.Load(saved.data(), saved.size());
    EXPECT_EQ(loaded.getName(), name);
}

TEST(LibraryTag, EmptyNameIsNone)
{
    ZUL_dll library = freeLibrary();
    library.setName("name");
    library.setName("");
    EXPECT_EQ(library.getName(), nullptr);
    library.setName("name");
    library.setName(nullptr);
    EXPECT_EQ(library.getName(), nullptr);
    library.setName("name");
    Bytes const bytes = libraryBytes("", 0, "library");
    library.Load(bytes.data(), bytes.size());
    EXPECT_EQ(library.getName(), nullptr);
    EXPECT_EQ(savedBytes(library, 0xA5), bytes);
}

TEST(LibraryTag, SetDataCopiesReplacesAndLeavesTheRest)
{
    ZUL_dll library = freeLibrary();
    Bytes const bytes = libraryBytes("filter", 1, "library");
    library.Load(bytes.data(), bytes.size());
    std::string source = "first";
    library.setData(source.data(), source.size());
    source = "xxxxx";
    EXPECT_EQ(storedIn(library), "first");
    EXPECT_TRUE(library.isCompressed()) << "as it was";
    EXPECT_STREQ(library.getName(), "filter");
    library.setData(static_cast<char const*>(library.getLib()) + 1, 3); // of its own bytes
    EXPECT_EQ(storedIn(library), "irs");
    library.setData(nullptr, 0);
    EXPECT_EQ(library.getLibLength(), 0U);
}

TEST(LibraryTag, AnySystemIsKept)
{
    ZUL_dll library = freeLibrary();
    for (std::uint32_t const system : {0U, 1U, 516U, 0xFFFFFFFFU}) {
        library.setSystem(zul_opsys{system});
        EXPECT_EQ(library.getSystem(), zul_opsys{system});
        EXPECT_EQ(savedBytes(library), libraryBytes("", 0, "", system));
    }
}

TEST(LibraryTag, LengthBeyondU32IsRefused)
{
    ZUL_dll library = freeLibrary();
    TagBytes& stored = library.*libraryMember();
    std::byte one{};
    stored.borrow(&one, 0xFFFFFFFFUL - 96);
    EXPECT_NO_THROW(library.checkDependentFields());
    EXPECT_EQ(library.getSaveLength(), 0xFFFFFFFFU);
    stored.borrow(&one, 0xFFFFFFFFUL - 95);
    char const* const message = "The size of a dll grew to big to save it!";
    EXPECT_TRUE(throws<std::runtime_error>([&] { library.checkDependentFields(); }, message));
    EXPECT_TRUE(throws<std::runtime_error>([&] { library.getSaveLength(); }, message));
    std::byte untouched[8] = {};
    EXPECT_TRUE(throws<std::runtime_error>([&] { library.Save(untouched); }, message));
    for (std::byte const each : untouched) {
        EXPECT_EQ(each, std::byte{0}) << "nothing is written before the check";
    }
}

TEST(LibraryTag, CopiesOwnTheirBytesAndAreFree)
{
    ZUL zul;
    Bytes bytes = libraryBytes("filter", 1, "library", 7);
    ZUL_dll library(&zul);
    library.Load(bytes.data(), bytes.size());
    ZUL_dll copy(library);
    ZUL_dll copyOfPointer(&std::as_const(library));
    bytes.setU32(96, 0);
    library.setName("changed");
    for (ZUL_dll* const each : {&copy, &copyOfPointer}) {
        EXPECT_EQ(each->getParent(), nullptr);
        EXPECT_EQ(savedBytes(*each), libraryBytes("filter", 1, "library", 7));
    }
}

TEST(LibraryTag, AssignmentTakesEverythingAndKeepsTheContainer)
{
    ZUL zul;
    Bytes const bytes = libraryBytes("filter", 1, "library", 7);
    ZUL_dll source = freeLibrary();
    source.Load(bytes.data(), bytes.size());
    ZUL_dll target(&zul);
    target.setName("target");
    target.setData("old", 3);
    target = source;
    EXPECT_EQ(target.getParent(), &zul);
    EXPECT_NE(target.getLib(), source.getLib());
    EXPECT_EQ(savedBytes(target), bytes);
    target = freeLibrary();
    EXPECT_EQ(savedBytes(target), libraryBytes("", 0, "", 0));
}

TEST(LibraryTag, SelfAssignmentChangesNothing)
{
    Bytes const bytes = libraryBytes("filter", 1, "library", 7);
    ZUL_dll library = freeLibrary();
    library.Load(bytes.data(), bytes.size());
    auto const& alias = library;
    library = alias;
    EXPECT_EQ(library.getLib(), bytes.data() + 96) << "not even the loaded bytes are copied";
    EXPECT_EQ(savedBytes(library), bytes);
}

TEST(LibraryTag, ContainerKnowsItByAChangedNameOrSystem)
{
    ZUL zul;
    auto* const library = new ZUL_dll(&zul);
    library->setName("first");
    zul.AddLib(library);
    ZUL_dll probe = freeLibrary();
    auto const known = [&zul, &probe](char const* name, std::uint32_t system) {
        probe.setName(name);
        probe.setSystem(zul_opsys{system});
        return zul.hasLib(&probe);
    };
    ASSERT_TRUE(known("first", 0));
    library->setName("second");
    EXPECT_TRUE(known("second", 0));
    EXPECT_FALSE(known("first", 0));
    library->setSystem(zul_opsys{7});
    EXPECT_TRUE(known("second", 7));
    EXPECT_FALSE(known("second", 0));
    ZUL_dll other = freeLibrary();
    other.setName("third");
    *library = other;
    EXPECT_TRUE(known("third", 0));
    EXPECT_FALSE(known("second", 7));
    Bytes const bytes = libraryBytes("fourth", 0, "", 9);
    library->Load(bytes.data(), bytes.size());
    EXPECT_TRUE(known("fourth", 9));
    library->setName(nullptr);
    EXPECT_FALSE(known(nullptr, 9)) << "no name equals no other";
}

TEST(LibraryTag, VisitShowsEveryByteOnce)
{
    ZUL_dll library = freeLibrary();
    Bytes const bytes = libraryBytes("filter", 1, "library");
    VisitRecord const record = visited(library, bytes);
    EXPECT_TRUE(coversOnce(record, bytes.size()));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_EQ(record.at(8).kind, FieldKind::Zero);
    EXPECT_STREQ(record.at(16).name, "system");
    EXPECT_EQ(record.at(16).number(), 0x01020304U);
    EXPECT_EQ(record.at(20).kind, FieldKind::Zero);
    EXPECT_STREQ(record.at(24).name, "compressed");
    EXPECT_STREQ(record.at(28).name, "name");
    EXPECT_EQ(record.at(28).text(), "filter");
    EXPECT_EQ(record.at(92).kind, FieldKind::Zero);
    EXPECT_STREQ(record.at(96).name, "library");
    EXPECT_EQ(record.at(96).width, 7U);
    expectCutsAreShown(freeLibrary, bytes, 96);
    Bytes const broken = libraryBytes("filter", 1, "").setU32(4, 95);
    VisitRecord const damaged = visited(library, broken);
    ASSERT_EQ(damaged.problems.size(), 1U);
    EXPECT_EQ(damaged.problems[0].kind, TagProblem::Kind::BadLength);
}

} // namespace
