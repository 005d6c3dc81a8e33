#include "scenario.h"

#include "captured_output.h"
#include "design_answers.h"
#include "designs.h"
#include "files.h"
#include "library_designs.h"
#include "listing.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <utility>

namespace {

namespace fs = std::filesystem;

constexpr int noLibraries = 0;
constexpr int keep = 516; // the libraries that are there
constexpr unsigned board = 2624;
constexpr char file[] = "/tmp/design.zul";
constexpr char cache[] = "/tmp/zulcache_3F2A";

struct Unload {
    void operator()(fpga_design* design) const { ZulUnloadZulFile(design); }
};
using Handle = std::unique_ptr<fpga_design, Unload>;

int errorOf(bool isDone)
{
    return isDone ? 0 : errno;
}

void expectRich(fpga_design const* design)
{
    EXPECT_EQ(ZulGetNrOfModules(design), 3);
    EXPECT_EQ(ZulGetNrOfParam(design, 1), 3);
    EXPECT_EQ(ZulGetCamChannelPerProcess(design, 1, -1), 5);
    EXPECT_EQ(ZulGetRegisterByName(design, "Frames"), 2U);
    EXPECT_STREQ(ZulGetEvent(design, 0)->name, "acq_FrameEnd");
}

Bytes const& libraryContents()
{
    static Bytes const bytes = noise(10'000);
    return bytes;
}

/// A design with a compressed library and one that is not.
Bytes const& withLibraries(char const* id)
{
    static std::map<std::string, Bytes> designs;
    Bytes& design = designs[id];
    if (design.size() == 0) {
        design = ContainerBytes()
                     .tag(sample::userInfo("__ZUL_ID__", id))
                     .tag(sample::library("qel", "the marker"))
                     .tag(compressedLibraryTag("camera", deflated(libraryContents())))
                     .build();
    }
    return design;
}

void expectLibraries(fpga_design const* design)
{
    std::string const directory = ZulGetModuleDllDir(design);
    EXPECT_EQ(entriesOf(directory), (std::vector<std::string>{"libcamera.dylib", "libqel.dylib"}));
    EXPECT_TRUE(readFile(directory + "/libqel.dylib") == Bytes().chars("the marker"));
    EXPECT_TRUE(readFile(directory + "/libcamera.dylib") == libraryContents());
}

void unpackBefore(Bytes const& design)
{
    CapturedOutput const quiet;
    EXPECT_NE(Handle(ZulLoadDesignFromBuffer(design.data(), design.size(), keep)), nullptr);
}

/// A load that @p load makes, of a design that @p expect knows.
Scenario loading(std::string name, std::function<void()> prepare, std::function<fpga_design*()> load,
                 void (*expect)(fpga_design const*))
{
    auto const design = std::make_shared<Handle>();
    return {.name = std::move(name),
            .prepare = std::move(prepare),
            .act =
                [design, load] {
                    errno = 0;
                    design->reset(load());
                    return errorOf(*design != nullptr);
                },
            .verify =
                [design, expect](int result) {
                    if (result == 0) {
                        expect(design->get());
                    }
                },
            .release = [design] { design->reset(); }};
}

fpga_design* loadWithPath(char const* name)
{
    char* path = nullptr;
    fpga_design* const design = ZulLoadZulFileWithTypeEx(name, &path, board, noLibraries);
    delete[] path;
    return design;
}

void install()
{
    std::string const directory = "/tmp/installation/Hardware Applets/kova_2624";
    fs::create_directories(directory);
    writeFile(directory + "/design.zul", designs::rich());
}

void makePrivateOnly()
{
    fs::create_directory(cache);
    writeFile(std::string(cache) + "/other", Bytes().chars("keeps the name taken"));
    writeFile(file, withLibraries("3F2A"));
}

std::vector<Scenario> loads()
{
    auto const load = [](int opsys) { return [opsys] { return ZulLoadZulFile(file, opsys); }; };
    auto const loadBuffer = [](Bytes const& bytes, int opsys) {
        return [&bytes, opsys] { return ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), opsys); };
    };
    static Bytes const rich = designs::rich();
    Bytes const& own = withLibraries("3F2A");
    Bytes const& shared = withLibraries(sharedId);
    std::vector<Scenario> scenarios{
        loading(
            "load by path", [] { writeFile(file, rich); }, load(noLibraries), expectRich),
        loading(
            "load by name", install, [] { return loadWithPath("design.zul"); }, expectRich),
        loading(
            "load by buffer", [] {}, loadBuffer(rich, noLibraries), expectRich),
        loading(
            "load, unpack cold", [&own] { writeFile(file, own); }, load(keep), expectLibraries),
        loading(
            "load, unpack warm",
            [&own] {
                unpackBefore(own);
                writeFile(file, own);
            },
            load(keep), expectLibraries),
        loading("load, name of cache taken", makePrivateOnly, load(keep), expectLibraries),
        loading(
            "load by buffer, unpack cold", [] {}, loadBuffer(own, keep), expectLibraries),
        loading(
            "load by buffer, shared id, warm", [&shared] { unpackBefore(shared); }, loadBuffer(shared, keep),
            expectLibraries)};
    for (Scenario& scenario : scenarios) {
        scenario.otherResults = {ENOENT,
                                 EFAULT}; // a design that is not found, whyever; no directory for libraries
        scenario.removesDirectory = true;
    }
    return scenarios;
}

/// Something that is done with a loaded design.
Scenario with(std::string name, std::function<Handle()> load, std::function<int(fpga_design*)> act,
              std::function<void(fpga_design*, int)> verify)
{
    auto const design = std::make_shared<Handle>();
    return {.name = std::move(name),
            .prepare =
                [design, load] {
                    CapturedOutput const quiet;
                    *design = load();
                },
            .act =
                [design, act] {
                    errno = 0;
                    return act(design->get());
                },
            .verify = [design, verify](int result) { verify(design->get(), result); },
            .release = [design] { design->reset(); }};
}

Handle loadedRich()
{
    static Bytes const rich = designs::rich();
    return Handle(ZulLoadDesignFromBuffer(rich.data(), rich.size(), noLibraries));
}

/// Asks everything. What a query answers may be its miss; the same questions are answered afterwards.
int askEverything(fpga_design* design)
{
    answers::askEverything(design, [](char const*, unsigned, unsigned, auto) {});
    return 0;
}

void expectAnswers(fpga_design* design, int)
{
    expectRich(design);
    EXPECT_NE(ZulGetUserInfoByName(design, "##_RZ3_DESIGN_SETTINGS"), nullptr);
    EXPECT_STREQ(ZulGetParamFullName(design, 0, 1), "acq_cam_height");
}

void expectMerged(fpga_design* design, int result)
{
    EXPECT_EQ(ZulGetNrOfModules(design), result == 0 ? 4 : 3);
    EXPECT_EQ(ZulGetNrOfProcess(design), result == 0 ? 3 : 2);
    EXPECT_EQ(ZulGetRegisterByName(design, "Frames"), 2U);
    EXPECT_EQ(ZulGetRegisterByName(design, "OutputControl") != 0, result == 0);
}

int strip(fpga_design* design)
{
    static std::array<std::byte, 100'000> buffer;
    unsigned long length = buffer.size();
    int const result = ZulStripConfigs(design, buffer.data(), &length);
    EXPECT_EQ(length == buffer.size(), result != 0);
    return result == 0 ? 0 : errno;
}

Scenario unloading()
{
    auto const design = std::make_shared<Handle>();
    return {.name = "unload, private directory",
            .prepare =
                [design] {
                    makePrivateOnly();
                    CapturedOutput const quiet;
                    design->reset(ZulLoadZulFile(file, keep));
                },
            .act =
                [design] {
                    design->reset();
                    return 0;
                },
            .removesDirectory = true};
}

std::vector<Scenario> otherwise()
{
    static Bytes const addition = designs::addition();
    Scenario mergeFile = with(
        "merge by path",
        [] {
            writeFile(file, addition);
            return loadedRich();
        },
        [](fpga_design* design) { return errorOf(MergeFpgaDesign(design, file) == 0); }, expectMerged);
    Scenario mergeBuffer = with(
        "merge by buffer", loadedRich,
        [](fpga_design* design) {
            return errorOf(MergeFpgaDesignWithMem(design, addition.data(), addition.size()) == 0);
        },
        expectMerged);
    Scenario trampoline = loading(
        "trampoline", [] {}, [] { return ZulFirmwareTrampoline(3, 7); },
        [](fpga_design const* design) {
            std::uint16_t version = 0;
            EXPECT_EQ(ZulGetRequiredFixedVersion(design, &version, nullptr), 0);
            EXPECT_EQ(version, 3);
        });
    trampoline.withoutMemory = {ENOMEM, 0};
    return {with("all queries", loadedRich, askEverything, expectAnswers), mergeFile,  mergeBuffer,
            with("strip to buffer", loadedRich, strip, expectAnswers),     trampoline, unloading()};
}

} // namespace

std::vector<Scenario> designScenarios()
{
    std::vector<Scenario> scenarios = loads();
    for (Scenario& scenario : otherwise()) {
        scenarios.push_back(std::move(scenario));
    }
    return scenarios;
}
