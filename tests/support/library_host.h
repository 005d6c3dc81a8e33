#pragma once

#include "files.h"
#include "libraries.h"
#include "library_designs.h"
#include "listing.h"
#include "zulrt.h"

#include <memory>
#include <string>

/// A program that loads designs for their libraries, through the C interface.
namespace library_host {

inline constexpr char designFile[] = "/tmp/design.zul";

/// Libraries that need many writes: stored, compressed and longer than what is inflated at once, and the marker.
inline Bytes const& stored()
{
    static Bytes const bytes = noise(20'000);
    return bytes;
}
inline Bytes const& inflated()
{
    static Bytes const bytes = noise(150'000, 2);
    return bytes;
}

/// A design with these libraries, and with one of another system that is never unpacked.
inline Bytes design(std::string const& id)
{
    std::string const camera(reinterpret_cast<char const*>(stored().data()), stored().size());
    return ContainerBytes()
        .tag(sample::userInfo("__ZUL_ID__", id))
        .tag(sample::library("camera", camera))
        .tag(sample::library("other", "not for here", 517))
        .tag(compressedLibraryTag("filter", deflated(inflated())))
        .tag(sample::library("qel", "the marker"))
        .build();
}

inline void writeDesign(std::string const& path, std::string const& id)
{
    writeFile(path, design(id));
}

/// Whether all of them and nothing else are in @p directory, byte for byte.
inline bool holdsTheLibraries(std::string const& directory)
{
    return entriesOf(directory) ==
               std::vector<std::string>{"libcamera.dylib", "libfilter.dylib", "libqel.dylib"} &&
           readFile(directory + "/libcamera.dylib") == stored() &&
           readFile(directory + "/libfilter.dylib") == inflated() &&
           readFile(directory + "/libqel.dylib") == Bytes().chars("the marker");
}

struct Unload {
    void operator()(fpga_design* design) const { ZulUnloadZulFile(design); }
};
using Handle = std::unique_ptr<fpga_design, Unload>;

/// Loads the design in @p path with its libraries; null when that fails, and errno says why.
inline Handle loaded(std::string const& path)
{
    return Handle(ZulLoadZulFileWithType(path.c_str(), 0, 516));
}

/// Whether a load of the design in @p path gives its libraries.
inline bool loadsWell(std::string const& path)
{
    Handle const handle = loaded(path);
    return handle != nullptr && holdsTheLibraries(ZulGetModuleDllDir(handle.get()));
}

} // namespace library_host
