#include "sample_tags.h"

#include "container_bytes.h"

namespace sample {

namespace {

Bytes header(std::uint32_t id, std::size_t length)
{
    return Bytes().u32(id).u32(length);
}

Bytes param(std::string_view name, std::uint32_t moduleIndex, std::uint32_t type, std::size_t tail)
{
    return header(0x815A000, 192 + tail)
        .u32(moduleIndex)
        .zeros(4)
        .text(name, 64)
        .u64(0) // integer value
        .real(0)
        .u32(7) // flags
        .u32(type)
        .u32(0) // element count
        .zeros(12)
        .u32(0) // text length
        .zeros(68);
}

} // namespace

Bytes comment(std::string_view text)
{
    return header(0x8150010, 268).text(text, 256).zeros(4);
}

Bytes author(std::string_view name)
{
    return header(0x8150070, 72).text(name, 64);
}

Bytes designName(std::string_view name)
{
    return header(0x8155000, 72).text(name, 64);
}

Bytes designVersion(std::string_view version)
{
    return header(0x8156000, 72).text(version, 64);
}

Bytes versionNumber(std::uint8_t index, std::uint16_t version, std::uint16_t revision)
{
    return header(0x8156001, 16).u16(version).u16(revision).u8(index).zeros(3);
}

Bytes destination(std::uint8_t index, std::uint16_t board, std::uint16_t revision)
{
    return header(0x8150099, 16).u16(board).u16(revision).u8(index).zeros(3);
}

Bytes fpgaInfo()
{
    return header(0x8150084, 12).u8(1).u8(2).u8(3).u8(0);
}

Bytes config(std::uint32_t index, std::string_view bits, std::uint32_t fpgaType)
{
    return header(0x8150120, 88 + bits.size())
        .u32(fpgaType)
        .u32(2)  // speed grade
        .u32(3)  // package
        .u32(62) // clocks
        .u32(125)
        .u32(250)
        .zeros(48)
        .u32(index)
        .zeros(4)
        .chars(bits);
}

Bytes oldRegister(std::string_view name, std::uint32_t address)
{
    return header(0x8151000, 104)
        .u32(1) // access
        .u32(address)
        .u32(5)  // value
        .u32(1)  // writable
        .u32(1)  // lsb
        .u32(32) // msb
        .text(name, 64)
        .zeros(8);
}

Bytes newRegister(std::string_view name, std::uint32_t address)
{
    return header(0x8151002, 32 + name.size())
        .u8(2)  // access
        .u8(0)  // read-only
        .u8(1)  // lsb
        .u8(63) // msb
        .u32(address)
        .u64(0x0123456789ABCDEF)
        .u32(name.size())
        .u32(0)
        .chars(name);
}

Bytes registerLink(std::string_view alias, std::string_view target)
{
    return header(0x8151001, 204).u8(1).u8(1).text(target, 64).text(alias, 128).zeros(2);
}

Bytes dmaCountRegister(std::uint32_t channel, std::uint32_t address)
{
    return header(0x8151020, 20).u32(channel).u32(address).u32(4);
}

Bytes interruptVector()
{
    return header(0x8151030, 20).u32(0x400).u32(0x404).u32(0x408);
}

Bytes dmaTagRegister()
{
    return header(0x8151040, 24).u32(0x500).u32(0xFF).u32(8).u32(1);
}

Bytes localInterrupt()
{
    return header(0x8151050, 12).u32(0x600);
}

Bytes readQueue()
{
    return header(0x8151060, 28).u32(0x700).u32(1).u32(2).u32(512).u32(0);
}

Bytes writeQueue()
{
    return header(0x8151070, 28).u32(0x800).u32(1).u32(3).u32(256).u32(16);
}

Bytes library(std::string_view name, std::string_view bytes, std::uint32_t system)
{
    return header(0x8154000, 96 + bytes.size())
        .zeros(8)
        .u32(system)
        .u32(0)
        .u32(0) // not compressed
        .text(name, 64)
        .u32(0)
        .chars(bytes);
}

Bytes event(std::string_view name, std::string_view registerName)
{
    return header(0x8156576, 16 + name.size() + registerName.size())
        .u8(2) // queue
        .u8(9) // bit
        .u8(4) // data length
        .u8(name.size())
        .u32(registerName.size())
        .chars(name)
        .chars(registerName);
}

Bytes process(std::uint32_t id, std::string_view name)
{
    return header(0x8158000, 80).u32(id).text(name, 64).u32(62'500'000);
}

Bytes module(std::uint32_t index, std::uint32_t processId, std::string_view processName)
{
    return header(0x8157000, 120 + 7 + 4)
        .u32(index)
        .u16(7) // "Camera"
        .u16(4) // "cam"
        .u16(0)
        .zeros(6)
        .u32(0) // parameters
        .u32(0) // channels
        .u32(processId)
        .text(processName, 64)
        .zeros(20)
        .charsZ("Camera")
        .charsZ("cam");
}

Bytes userInfo(std::string_view info, std::string_view value)
{
    return header(0x8159000, 144).text(info, 64).u16(300).zeros(2).u32(0).text(value, 64);
}

Bytes userInfo(std::string_view info, std::uint32_t value)
{
    return header(0x8159000, 144).text(info, 64).u16(200).zeros(2).u32(value).zeros(64);
}

Bytes integerParam(std::string_view name, std::uint32_t moduleIndex, std::uint64_t value)
{
    return param(name, moduleIndex, 2, 0).setU32(80, static_cast<std::uint32_t>(value));
}

Bytes textParam(std::string_view name, std::uint32_t moduleIndex, std::string_view value)
{
    return param(name, moduleIndex, 13, value.size())
        .setU32(120, static_cast<std::uint32_t>(value.size()))
        .chars(value);
}

Bytes fieldParam(std::string_view name, std::uint32_t moduleIndex)
{
    return param(name, moduleIndex, 6, 24).setU32(104, 3).u64(1).u64(2).u64(3);
}

Bytes paramLink(std::uint32_t sourceModule, std::uint32_t destinationModule)
{
    return header(0x815E000, 52 + 6 + 6)
        .u32(sourceModule)
        .u32(destinationModule)
        .u32(0) // source parameter
        .u32(1) // destination parameter
        .zeros(12)
        .u32(6)
        .u32(6)
        .u32(0)
        .u32(1) // flag
        .charsZ("width")
        .charsZ("limit");
}

Bytes channel(std::string_view name, std::uint32_t moduleIndex)
{
    return header(0x815B000, 124)
        .u32(1) // input
        .u32(moduleIndex)
        .u32(2) // link index
        .text(name, 64)
        .u32(3)
        .u32(4)
        .u32(5)
        .u32(8)
        .u32(0)
        .u32(16)
        .u32(1)
        .u32(1)
        .u32(1024)
        .u32(1024);
}

Bytes cameraParam(std::uint32_t channel, std::uint32_t moduleIndex)
{
    return header(0x815D000, 16).u32(channel).u32(moduleIndex);
}

Bytes dmaParam(std::uint32_t channel, std::uint32_t moduleIndex)
{
    return header(0x815C000, 32).u32(channel).u32(moduleIndex).u32(1024).u32(768).u32(1).u32(8);
}

Bytes unknown(std::uint32_t id, std::string_view payload)
{
    return header(id, 8 + payload.size()).chars(payload);
}

Bytes everyKind()
{
    return ContainerBytes()
        .tag(designVersion())
        .tag(author())
        .tag(designName())
        .tag(comment())
        .tag(versionNumber(0, 2, 7))
        .tag(fpgaInfo())
        .tag(destination(1))
        .tag(oldRegister("CameraControl"))
        .tag(newRegister("FrameCounter"))
        .tag(registerLink("Frames", "FrameCounter"))
        .tag(dmaCountRegister(0))
        .tag(interruptVector())
        .tag(dmaTagRegister())
        .tag(localInterrupt())
        .tag(readQueue())
        .tag(writeQueue())
        .tag(event("FrameEnd", "FrameCounter"))
        .tag(library("camera"))
        .tag(process(0))
        .tag(module(0, 0))
        .tag(integerParam("width", 0))
        .tag(fieldParam("limits", 0))
        .tag(textParam("label", 0, "left"))
        .tag(channel("link0", 0))
        .tag(dmaParam(0, 0))
        .tag(cameraParam(0, 0))
        .tag(paramLink(0, 0))
        .tag(userInfo("__ZUL_ID__", "4711"))
        .config(config(1))
        .build();
}

} // namespace sample
