#include "scenario.h"

#include "ZUL_dll.h"
#include "files.h"
#include "libraries.h"
#include "loaded_container.h"
#include "sample_tags.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <utility>

namespace {

namespace fs = std::filesystem;

constexpr char file[] = "/tmp/directory/design.zul";

Bytes const& sampleBytes()
{
    static Bytes const bytes = sample::everyKind();
    return bytes;
}

/// Saving a loaded container to @p path, in a directory where @p prepare has put something.
Scenario saving(std::string name, char const* path, std::function<void()> prepare)
{
    auto const container = std::make_shared<std::unique_ptr<LoadedContainer>>();
    return {.name = std::move(name),
            .prepare =
                [container, prepare] {
                    fs::create_directory("/tmp/directory");
                    prepare();
                    *container = std::make_unique<LoadedContainer>(sampleBytes());
                },
            .act = [container, path] { return -(*container)->zul.Save(path); },
            .verify = [container](int) { EXPECT_TRUE(savedContainer((*container)->zul) == sampleBytes()); },
            .release = [container] { container->reset(); },
            .withoutMemory = {ENOMEM, EFAULT},
            .writes = true};
}

void writeOld()
{
    writeFile(file, Bytes().chars("old"));
    chmod(file, 0600); // is kept
}

/// Saving a container that is loaded from the very file, which has a second name, and so is written in place.
Scenario savingInPlace()
{
    auto const zul = std::make_shared<std::unique_ptr<ZUL>>();
    return {.name = "save in place, over what is loaded",
            .prepare =
                [zul] {
                    fs::create_directory("/tmp/directory");
                    writeFile(file, sampleBytes());
                    fs::create_hard_link(file, "/tmp/directory/second name");
                    *zul = std::make_unique<ZUL>();
                    EXPECT_EQ((*zul)->Load(file), 0);
                    (*zul)->setAuthor("another author");
                },
            .act = [zul] { return -(*zul)->Save(file); },
            .release = [zul] { zul->reset(); },
            .withoutMemory = {ENOMEM, EFAULT},
            .writes = true,
            .writesDirectly = true};
}

Scenario savingToBuffer()
{
    struct Subject {
        LoadedContainer container{sampleBytes()};
        Bytes buffer = Bytes().zeros(sampleBytes().size());
    };
    auto const subject = std::make_shared<std::unique_ptr<Subject>>();
    return {
        .name = "save to buffer",
        .prepare = [subject] { *subject = std::make_unique<Subject>(); },
        .act =
            [subject] {
                try {
                    Bytes& buffer = (*subject)->buffer;
                    return -(*subject)->container.zul.Save(buffer.data(), buffer.size());
                } catch (std::bad_alloc const&) {
                    return ENOMEM;
                }
            },
        .verify = [subject](int result) { EXPECT_TRUE(result != 0 || (*subject)->buffer == sampleBytes()); },
        .release = [subject] { subject->reset(); }};
}

/// Work on a library tag.
Scenario library(std::string name, std::function<void()> prepare, std::function<int(ZUL_dll&)> act)
{
    auto const tag = std::make_shared<std::unique_ptr<ZUL_dll>>();
    return {.name = std::move(name),
            .prepare =
                [tag, prepare] {
                    writeFile("/tmp/libother.dylib", Bytes().fill('x', 100'000));
                    prepare();
                    *tag = std::make_unique<ZUL_dll>(static_cast<ZUL*>(nullptr));
                    (*tag)->setName("camera");
                    EXPECT_EQ((*tag)->setLib("/tmp/libother.dylib", zul_opsys_of_library()), 0);
                    EXPECT_TRUE((*tag)->isCompressed());
                },
            .act =
                [tag, act] {
                    try {
                        return -act(**tag);
                    } catch (std::bad_alloc const&) {
                        return ENOMEM;
                    }
                },
            .verify = [tag](int) { EXPECT_STREQ((*tag)->getName(), "camera"); },
            .release = [tag] { tag->reset(); },
            .writes = true,
            .writesDirectly = true};
}

} // namespace

std::vector<Scenario> savingScenarios()
{
    auto const nothing = [] {};
    auto const old = [] { writeFile("/tmp/libcamera.dylib", Bytes().chars("old")); };
    auto const link = [] { fs::create_symlink("design.zul", "/tmp/directory/link"); };
    auto const unpack = [](ZUL_dll::savepolicy policy) {
        return [policy](ZUL_dll& tag) { return tag.toFile("/tmp", policy); };
    };
    Scenario overwriting = library("overwrite a library", old, unpack(ZUL_dll::overwrite));
    overwriting.writes = false; // a file without permission stays, and that is a success
    auto const linkToOld = [link] {
        writeOld();
        link();
    };
    auto const twoNames = [] {
        writeOld();
        fs::create_hard_link(file, "/tmp/directory/second name");
    };
    Scenario inPlace = saving("save over a file with two names", file, twoNames);
    inPlace.writesDirectly = true;
    return {savingToBuffer(),
            saving("save to a new file", file, nothing),
            saving("save over a file", file, writeOld),
            saving("save over a file, by a link", "/tmp/directory/link", linkToOld),
            saving("save to a new file, by a link", "/tmp/directory/link", link),
            inPlace,
            savingInPlace(),
            library("take a library from a file", nothing,
                    [](ZUL_dll& tag) { return tag.setLib("/tmp/libother.dylib", zul_opsys_of_library()); }),
            library("unpack a library", nothing, unpack(ZUL_dll::keep)),
            overwriting,
            library("replace a library", old, unpack(ZUL_dll::replace))};
}
