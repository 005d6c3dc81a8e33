#pragma once

#include "container_bytes.h"
#include "fpga_design.h"
#include "sample_tags.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Designs put together tag by tag. Included by the tests of the design object and of the C interface only.
namespace designs {

/// A module; empty texts are absent.
inline Bytes module(std::uint32_t index, std::uint32_t process, std::string_view type,
                    std::string_view instance, std::string_view fullName)
{
    auto const stored = [](std::string_view text) { return text.empty() ? 0 : text.size() + 1; };
    Bytes bytes = Bytes()
                      .u32(0x8157000)
                      .u32(120 + stored(type) + stored(instance) + stored(fullName))
                      .u32(index)
                      .u16(stored(type))
                      .u16(stored(instance))
                      .u16(stored(fullName))
                      .zeros(6 + 4 + 4)
                      .u32(process)
                      .zeros(64 + 20);
    for (std::string_view const text : {type, instance, fullName}) {
        if (!text.empty()) {
            bytes.charsZ(text);
        }
    }
    return bytes;
}

/// A module with the full name @p fullName that stands for itself.
inline Bytes module(std::uint32_t index, std::string_view fullName)
{
    return module(index, 0, "Filter", "filter", fullName);
}

struct Link {
    std::uint32_t source = 0;
    std::uint32_t destination = 0;
    std::uint32_t destinationParam = 77;
    std::string_view name = {};       // of the destination parameter
    std::string_view moduleName = {}; // full name of the destination module
};

inline Bytes paramLink(Link const& link)
{
    auto const stored = [](std::string_view text) { return text.empty() ? 0 : text.size() + 1; };
    Bytes bytes = Bytes()
                      .u32(0x815E000)
                      .u32(52 + stored(link.name) + stored(link.moduleName))
                      .u32(link.source)
                      .u32(link.destination)
                      .u32(0)
                      .u32(link.destinationParam)
                      .zeros(12)
                      .u32(0)
                      .u32(stored(link.name))
                      .u32(stored(link.moduleName))
                      .u32(1);
    for (std::string_view const text : {link.name, link.moduleName}) {
        if (!text.empty()) {
            bytes.charsZ(text);
        }
    }
    return bytes;
}

inline Bytes event(unsigned queue, unsigned bit, std::string_view name, std::string_view registerName)
{
    return sample::event(name, registerName).setU8(8, queue).setU8(9, bit);
}

inline Bytes doubleParam(std::string_view name, std::uint32_t moduleIndex, double value)
{
    Bytes bytes = sample::integerParam(name, moduleIndex, 0).setU32(100, 5);
    std::memcpy(bytes.data() + 88, &value, sizeof value);
    return bytes;
}

/// The block of fields behind the header of an interrupt or DMA tag.
inline Bytes fields(std::uint32_t id, std::initializer_list<std::uint32_t> values)
{
    Bytes bytes = Bytes().u32(id).u32(8 + 4 * values.size());
    for (std::uint32_t const value : values) {
        bytes.u32(value);
    }
    return bytes;
}

/// A design object that was loaded from bytes which end exactly where they end and live as long as it does.
class Loaded {
public:
    /// @throws std::runtime_error when loading returns anything but 0
    explicit Loaded(Bytes const& bytes) : m_bytes(bytes.data(), bytes.data() + bytes.size())
    {
        if (int const result = m_design.LoadDesignFromBuffer(m_bytes.data(), m_bytes.size()); result != 0) {
            throw std::runtime_error("the design is refused with " + std::to_string(result));
        }
    }
    explicit Loaded(ContainerBytes const& container) : Loaded(container.build()) {}

    fpga_design* get() noexcept { return &m_design; }
    fpga_design* operator->() noexcept { return &m_design; }
    fpga_design& operator*() noexcept { return m_design; }

private:
    std::vector<std::byte> m_bytes;
    fpga_design m_design; // after the bytes: it goes first
};

/// A design with everything that the exported functions ask for, most of it more than once, and with numbers that differ
/// from their positions.
inline Bytes rich()
{
    return ContainerBytes()
        .tag(sample::designVersion("1.0.02"))
        .tag(sample::author())
        .tag(sample::designName("double rate"))
        .tag(sample::versionNumber(0, 2, 7))
        .tag(sample::versionNumber(1, 3, 9))
        .tag(sample::fpgaInfo())
        .tag(sample::destination(1, 0xA44, 1))
        .tag(sample::destination(2, 0xA45, 2))
        .tag(sample::newRegister("FrameCounter", 0x200))
        .tag(sample::oldRegister("CameraControl", 0x100))
        .tag(sample::oldRegister("CameraStatus", 0x104))
        .tag(sample::registerLink("Frames", "CameraStatus"))
        .tag(sample::dmaCountRegister(0))
        .tag(sample::dmaCountRegister(2, 0x304))
        .tag(sample::interruptVector())
        .tag(sample::dmaTagRegister())
        .tag(sample::localInterrupt())
        .tag(sample::readQueue())
        .tag(sample::writeQueue())
        .tag(event(2, 9, "acq\\FrameEnd", "FrameCounter"))
        .tag(event(3, 255, "acq\\Overflow", "CameraStatus"))
        .tag(sample::library("camera"))
        .tag(sample::process(3, "acquisition"))
        .tag(sample::process(4, "output"))
        .tag(module(10, 3, "Camera", "cam", "acq\\cam"))
        .tag(module(11, 3, "Filter", "fir", "acq\\fir"))
        .tag(module(12, 4, "", "", ""))
        .tag(sample::integerParam("width", 10, 2048))
        .tag(sample::integerParam("order", 11, 5))
        .tag(sample::integerParam("height", 10, 1088))
        .tag(doubleParam("gain", 11, 2.5))
        .tag(sample::fieldParam("taps", 11))
        .tag(sample::textParam("label", 10, "left"))
        .tag(sample::channel("link0", 10))
        .tag(sample::channel("link1", 11))
        .tag(sample::dmaParam(0, 10))
        .tag(sample::dmaParam(1, 12))
        // Cameras are sorted by channel; their module "index" is a position for the questions about processes.
        .tag(sample::cameraParam(5, 10))
        .tag(sample::cameraParam(4, 11))
        .tag(paramLink({.source = 10, .destination = 10, .name = "gain", .moduleName = "acq\\fir"}))
        .tag(sample::userInfo("__ZUL_ID__", "4711"))
        .tag(sample::userInfo("BuildNumber", 1482U))
        .tag(sample::userInfo("DESIGN_NAME", "not this one"))
        .config(sample::config(1, "first bitstream"))
        .config(sample::config(2, "second"))
        .build();
}

/// A design with two libraries of this system, one of them the marker.
inline Bytes withLibraries(char const* id)
{
    return ContainerBytes()
        .tag(sample::userInfo("__ZUL_ID__", id))
        .tag(sample::library("qel", "the marker"))
        .tag(sample::library("camera", "operators"))
        .build();
}

/// Two author tags, of which the second is refused.
inline Bytes damaged()
{
    return ContainerBytes().tag(sample::author("A")).tag(sample::author("B")).build();
}

/// One tag where three are announced.
inline Bytes withCountsThatDiffer()
{
    return headBytes(3).append(sample::author());
}

/// A design that rich() can be merged with: other names, other interrupt queues.
inline Bytes addition()
{
    return ContainerBytes()
        .tag(sample::fpgaInfo())
        .tag(sample::destination(1, 0xB00, 3))
        .tag(sample::oldRegister("OutputControl", 0x400))
        .tag(event(7, 1, "out\\Done", "OutputControl"))
        .tag(sample::library("output"))
        .tag(sample::process(0, "display"))
        .tag(module(0, 0, "Screen", "screen", "out\\screen"))
        .tag(sample::integerParam("brightness", 0, 80))
        .tag(sample::textParam("title", 0, "right"))
        .tag(sample::channel("link2", 0))
        .tag(sample::dmaParam(3, 0))
        .tag(sample::cameraParam(9, 0))
        .tag(sample::userInfo("maker", "second"))
        .config(sample::config(1, "third bitstream"))
        .build();
}

/// Merges from a buffer that is overwritten and released at once.
inline int mergeFrom(fpga_design* design, Bytes const& bytes)
{
    std::vector<std::byte> buffer(bytes.data(), bytes.data() + bytes.size());
    int const result = MergeFpgaDesignWithMem(design, buffer.data(), buffer.size());
    std::fill(buffer.begin(), buffer.end(), std::byte{0xA5});
    return result;
}

} // namespace designs
