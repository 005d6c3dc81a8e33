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

/// Its events move to other queues in a merge when its configuration has the higher index.
Bytes events(unsigned config, std::string_view event)
{
    return ContainerBytes()
        .tag(sample::newRegister(event))
        .tag(sample::event(event, event))
        .config(sample::config(config))
        .build(8);
}

/// The four bytes that every input begins with: no allocation fails.
Bytes prefix(unsigned variant)
{
    return Bytes().zeros(3).u8(variant);
}

void writeContainers(fs::path const& folder)
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
        for (unsigned mode = 0; mode < 3; ++mode) {
            write(folder / (name + "-" + std::to_string(mode)), prefix(mode).append(bytes));
        }
    }
}

/// The length of a first container in two bytes, that container, and a second one to merge into it.
void writePairs(fs::path const& folder)
{
    fs::create_directories(folder);
    auto const pair = [&folder](std::string const& name, Bytes const& first, Bytes const& second) {
        for (unsigned variant = 0; variant < 4; ++variant) {
            write(folder / (name + "-" + std::to_string(variant)),
                  prefix(variant).u16(first.size()).append(first).append(second));
        }
    };
    pair("two-hierarchies", hierarchy(), hierarchy());
    pair("registers-into-kinds", sample::everyKind(), configurations());
    pair("kinds-into-hierarchy", hierarchy(), sample::everyKind());
    pair("the-same-registers", registersAndLinks(), registersAndLinks());
    pair("configurations", configurations(), hierarchy());
    pair("other-events", events(1, "start"), events(0, "end"));
    pair("higher-events", events(0, "start"), events(1, "end"));
    pair("the-same-queue", events(0, "start"), events(0, "end"));
    pair("empty-names", emptyNames(), Bytes());
}

void writeEdits(fs::path const& folder)
{
    fs::create_directories(folder);
    Bytes every = prefix(0);
    for (unsigned i = 0; i < 28; ++i) {
        every.u8(i).u8(i * 7).u8(i * 13).u8(i * 3);
    }
    write(folder / "every-operation", every);
    Bytes names = prefix(0);
    for (unsigned name = 0; name < 7; ++name) {
        names.u8(name % 2 * 2)
            .u8(name)
            .zeros(2)
            .u8(4)
            .u8(name + 1)
            .u8(name)
            .u8(0)
            .u8(16)
            .u8(name)
            .u8(30)
            .u8(0);
    }
    write(folder / "names", names);
}

void writePayloads(fs::path const& folder)
{
    fs::create_directories(folder);
    std::string const code = "the code of an operator library, the code of an operator library";
    std::vector<Bytef> packed(compressBound(static_cast<uLong>(code.size())));
    uLongf length = packed.size();
    if (compress(packed.data(), &length, reinterpret_cast<Bytef const*>(code.data()),
                 static_cast<uLong>(code.size())) != Z_OK) {
        throw std::runtime_error("cannot compress");
    }
    write(folder / "compressed", prefix(1).chars({reinterpret_cast<char const*>(packed.data()), length}));
    write(folder / "raw", prefix(0).chars(code));
    write(folder / "stored", prefix(2).chars(std::string(8, 'x') + std::string(400, 'y') + code));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: make_seeds FOLDER\n";
        return 2;
    }
    fs::path const folder = argv[1];
    writeContainers(folder / "load");
    writePairs(folder / "cycle");
    writeEdits(folder / "edit");
    writePayloads(folder / "payload");
    return 0;
}
