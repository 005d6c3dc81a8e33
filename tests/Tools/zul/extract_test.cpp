#include "program_run.h"

#include "files.h"
#include "json_output.h"
#include "zullib.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

namespace {

using testing::HasSubstr;

class ExtractedDesign : public testing::Test {
protected:
    TemporaryDirectory const directory;
    std::string const target = directory / "out";

    ProgramRun extract(std::vector<std::string> const& more,
                       std::string const& design = ZUL_SAMPLE_DESIGN) const
    {
        std::vector<std::string> arguments{"extract", design, "-O", target};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runZul(arguments);
    }
    std::set<std::string> files() const
    {
        std::set<std::string> names;
        for (auto const& entry : std::filesystem::recursive_directory_iterator(target)) {
            if (entry.is_regular_file()) {
                names.insert(std::filesystem::relative(entry.path(), target).string());
            }
        }
        return names;
    }
    /// A design file made of @p zul.
    std::string saved(ZUL& zul) const
    {
        std::string const path = directory / "made.zul";
        EXPECT_EQ(zul.Save(path.c_str()), 0);
        return path;
    }
};

void addLibrary(ZUL& zul, char const* name, zul_opsys system, char const* bytes)
{
    auto library = std::make_unique<ZUL_dll>(&zul);
    library->setName(name);
    library->setSystem(system);
    library->setData(bytes, std::strlen(bytes));
    zul.AddLib(library.get());
    static_cast<void>(library.release());
}

TEST_F(ExtractedDesign, AllOfItWithAManifest)
{
    auto const json = [&] {
        ProgramRun const run = extract({"all", "--json"});
        EXPECT_EQ(run.code, ExitCode::Clean) << run.err;
        return run.json();
    }();
    EXPECT_EQ(files(), (std::set<std::string>{"bitstream-0-index0-board2625-rev1.bin",
                                              "bitstream-1-index1-board2628-rev2.bin",
                                              "libImageOperators.dylib", "libSignalOperators.dylib",
                                              "libqel.dylib", "manifest.json", "user-infos.json"}));
    EXPECT_EQ(json["schema"], "zul-extract");
    ASSERT_EQ(json["files"].size(), 6U);
    for (auto const& entry : json["files"]) {
        Bytes const bytes = readFile(target + "/" + entry["file"].get<std::string>());
        EXPECT_EQ(entry["bytes"], bytes.size());
        EXPECT_EQ(entry["sha256"], sha256Text({bytes.data(), bytes.size()}));
    }
    EXPECT_EQ(json["files"][0]["fpgaType"], 0xBBEA0);
    EXPECT_EQ(nlohmann::ordered_json::parse(
                  std::string(reinterpret_cast<char const*>(readFile(target + "/manifest.json").data()),
                              readFile(target + "/manifest.json").size())),
              json);
}

TEST_F(ExtractedDesign, LibrariesAreWhatUnpackingWrites)
{
    EXPECT_EQ(extract({"libraries"}).code, ExitCode::Clean);
    ZUL zul;
    ASSERT_EQ(zul.Load(ZUL_SAMPLE_DESIGN), 0);
    TemporaryDirectory const unpacked;
    ASSERT_EQ(zul.saveLibs(unpacked.path(), zul_opsys_of_library(), ZUL_dll::replace), 0);
    for (char const* const name : {"libImageOperators.dylib", "libSignalOperators.dylib", "libqel.dylib"}) {
        EXPECT_EQ(readFile(target + "/" + name), readFile(unpacked / name)) << name;
    }
}

TEST_F(ExtractedDesign, LibrariesOfOtherSystemsLieApart)
{
    ZUL zul;
    addLibrary(zul, "same", zul_opsys_of_library(), "ours");
    addLibrary(zul, "same", zul_opsys{7}, "theirs");
    EXPECT_EQ(extract({"libraries"}, saved(zul)).code, ExitCode::Clean);
    EXPECT_EQ(readFile(target + "/libsame.dylib"), Bytes().chars("ours"));
    EXPECT_EQ(readFile(target + "/system-7/libsame.dylib"), Bytes().chars("theirs"));
}

TEST_F(ExtractedDesign, NothingIsWrittenOutsideOfTheDirectory)
{
    ZUL zul;
    addLibrary(zul, "/../../escaped", zul_opsys_of_library(), "bytes");
    ProgramRun const run = extract({"libraries"}, saved(zul));
    EXPECT_EQ(run.code, ExitCode::Refused);
    EXPECT_THAT(run.err, HasSubstr("would be written somewhere else"));
    EXPECT_FALSE(std::filesystem::exists(target));
}

TEST_F(ExtractedDesign, TwoFilesOfOneNameAreRefused)
{
    ZUL zul;
    addLibrary(zul, nullptr, zul_opsys_of_library(), "first");
    addLibrary(zul, nullptr, zul_opsys_of_library(), "second");
    EXPECT_EQ(extract({"all"}, saved(zul)).code, ExitCode::Refused);
    EXPECT_EQ(files(), std::set<std::string>());
}

TEST_F(ExtractedDesign, ACorruptLibraryIsToldAndTheRestIsWritten)
{
    ZUL zul;
    addLibrary(zul, "good", zul_opsys_of_library(), "bytes");
    addLibrary(zul, "bad", zul_opsys_of_library(), "no zlib stream");
    std::string const design = saved(zul);
    Bytes bytes = readFile(design);
    std::size_t const second = 24 + 96 + 5;
    bytes.setU8(second + 24, 1); // compressed, it says
    writeFile(design, bytes);
    ProgramRun const run = extract({"libraries", "--json"}, design);
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_THAT(run.err, HasSubstr("libbad.dylib: cannot make its contents"));
    EXPECT_EQ(files(), (std::set<std::string>{"libgood.dylib", "manifest.json"}));
    EXPECT_TRUE(run.json()["files"][1].contains("error"));
}

TEST_F(ExtractedDesign, ExistingFilesStayUnlessForced)
{
    ASSERT_EQ(extract({"infos"}).code, ExitCode::Clean);
    ProgramRun const again = extract({"infos"});
    EXPECT_EQ(again.code, ExitCode::Refused);
    EXPECT_THAT(again.err, HasSubstr("exists; --force overwrites it"));
    EXPECT_EQ(extract({"infos", "--force"}).code, ExitCode::Clean);
    EXPECT_EQ(files(), (std::set<std::string>{"manifest.json", "user-infos.json"}));
}

TEST_F(ExtractedDesign, OfADamagedFileIsWhatCanBeRead)
{
    std::string const design = target + ".zul";
    Bytes bytes = readFile(ZUL_SAMPLE_DESIGN);
    bytes.cut(bytes.size() - 1000); // within the last bitstream
    writeFile(design, bytes);
    ProgramRun const run = extract({"bitstreams", "infos"}, design);
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_THAT(run.err, HasSubstr("what was read before is extracted"));
    EXPECT_EQ(files(), (std::set<std::string>{"bitstream-0-index0-board2625-rev1.bin", "manifest.json",
                                              "user-infos.json"}));
}

TEST_F(ExtractedDesign, WhatIsUnknownIsRefused)
{
    EXPECT_EQ(extract({"everything"}).code, ExitCode::Usage);
    EXPECT_EQ(extract({}).code, ExitCode::Usage);
}

} // namespace
