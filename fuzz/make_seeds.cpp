#include "container_bytes.h"
#include "sample_tags.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>
#include <zlib.h>

namespace {

namespace fs = std::filesystem;

void write(fs::path const& path, Bytes const& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<char const*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

Bytes registersAndLinks()
{
    return ContainerBytes()
        .tag(sample::oldRegister("status"))
        .tag(sample::newRegister("control"))
        .tag(sample::registerLink("first", "second"))
        .tag(sample::registerLink("second", "control"))
        .tag(sample::registerLink("self", "self"))
        .tag(sample::event("done", "first"))
        .build(8);
}

/// Names that begin with NUL: they are "", which is not the same as none.
Bytes emptyNames()
{
    std::string_view const empty("\0x", 2);
    return ContainerBytes()
        .tag(sample::newRegister("control"))
        .tag(sample::newRegister(empty))
        .tag(sample::event(empty, "control"))
        .tag(sample::event("done", empty))
        .build(8);
}

Bytes hierarchy()
{
    return ContainerBytes()
        .tag(sample::process(3))
        .tag(sample::process(1))
        .tag(sample::module(0, 3))
        .tag(sample::module(1, 1))
        .tag(sample::integerParam("gain", 0))
        .tag(sample::textParam("mode", 1, "free run"))
        .tag(sample::fieldParam("kernel", 1))
        .tag(sample::paramLink(0, 1))
        .tag(sample::cameraParam(2, 0))
        .tag(sample::cameraParam(1, 1))
        .build(8);
}

Bytes configurations()
{
    return ContainerBytes()
        .tag(sample::destination(0))
        .tag(sample::destination(0, 0xB50))
        .config(sample::config(0))
        .config(sample::config(1))
        .tag(sample::library("operators"))
        .tag(sample::library("operators"))
        .tag(sample::versionNumber(0, 0, 0))
        .build(8);
}

/// A first byte that chooses the load mode, then a container.
void writeContainers(fs::path const& folder, bool withMode)
{
    fs::create_directories(folder);
    std::vector<std::pair<std::string, Bytes>> const containers{
        {"every-kind", sample::everyKind()},
        {"registers", registersAndLinks()},
        {"hierarchy", hierarchy()},
        {"empty-names", emptyNames()},
        {"configurations", configurations()},
        {"unknown", ContainerBytes().tag(sample::unknown(0x8150015)).tag(sample::author()).build()},
    };
    for (auto const& [name, bytes] : containers) {
        for (unsigned mode = 0; mode < (withMode ? 3U : 1U); ++mode) {
            Bytes seed;
            if (withMode) {
                seed.u8(mode);
            }
            write(folder / (name + "-" + std::to_string(mode)), seed.append(bytes));
        }
    }
}

/// The length of a first container in two bytes, that container, and a second one to merge into it.
void writeDesigns(fs::path const& folder)
{
    fs::create_directories(folder);
    auto const pair = [&folder](char const* name, Bytes const& first, Bytes const& second) {
        write(folder / name, Bytes().u16(first.size()).append(first).append(second));
    };
    pair("two-hierarchies", hierarchy(), hierarchy());
    pair("registers-into-kinds", sample::everyKind(), configurations());
    pair("kinds-into-hierarchy", hierarchy(), sample::everyKind());
    pair("the-same-registers", registersAndLinks(), registersAndLinks());
    pair("configurations", configurations(), hierarchy());
}

void writeEdits(fs::path const& folder)
{
    fs::create_directories(folder);
    Bytes every;
    for (unsigned i = 0; i < 96; ++i) {
        every.u8(i).u8(i * 7).u8(i * 13);
    }
    write(folder / "every-operation", every);
    write(folder / "names", Bytes().chars("\1ab\1cd\2ab\2ba\3ab\4ab\5ab\6ab\7ab"));
}

void writeLibraries(fs::path const& folder)
{
    fs::create_directories(folder);
    std::string const code = "the code of an operator library, the code of an operator library";
    std::vector<Bytef> packed(compressBound(static_cast<uLong>(code.size())));
    uLongf length = packed.size();
    if (compress(packed.data(), &length, reinterpret_cast<Bytef const*>(code.data()),
                 static_cast<uLong>(code.size())) != Z_OK) {
        throw std::runtime_error("cannot compress");
    }
    Bytes compressed;
    compressed.u8(1).chars({reinterpret_cast<char const*>(packed.data()), length});
    write(folder / "compressed", compressed);
    write(folder / "raw", Bytes().u8(0).chars(code));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: make_seeds FOLDER\n";
        return 2;
    }
    fs::path const folder = argv[1];
    writeContainers(folder / "load", true);
    writeContainers(folder / "roundtrip", false);
    writeDesigns(folder / "design");
    writeEdits(folder / "edit");
    writeLibraries(folder / "library");
    return 0;
}
