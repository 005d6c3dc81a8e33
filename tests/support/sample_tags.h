#pragma once

#include "bytes.h"

#include <cstdint>
#include <string_view>

/// One honest tag of every kind, written by hand; container tests put them together.
namespace sample {

Bytes comment(std::string_view text = "made by hand");
Bytes author(std::string_view name = "A. Noether");
Bytes designName(std::string_view name = "double rate");
Bytes designVersion(std::string_view version = "2.7");
Bytes versionNumber(std::uint8_t index, std::uint16_t version, std::uint16_t revision);
Bytes destination(std::uint8_t index, std::uint16_t board = 0xA44, std::uint16_t revision = 1);
Bytes fpgaInfo();
/// A configuration whose bitstream is @p bits.
Bytes config(std::uint32_t index, std::string_view bits = "bitstream", std::uint32_t fpgaType = 0x00012345);
Bytes oldRegister(std::string_view name, std::uint32_t address = 0x100);
Bytes newRegister(std::string_view name, std::uint32_t address = 0x200);
Bytes registerLink(std::string_view alias, std::string_view target);
Bytes dmaCountRegister(std::uint32_t channel, std::uint32_t address = 0x300);
Bytes interruptVector();
Bytes dmaTagRegister();
Bytes localInterrupt();
Bytes readQueue();
Bytes writeQueue();
Bytes library(std::string_view name, std::string_view bytes = "library bytes", std::uint32_t system = 516);
Bytes event(std::string_view name, std::string_view registerName);
Bytes process(std::uint32_t id, std::string_view name = "acquisition");
Bytes module(std::uint32_t index, std::uint32_t processId, std::string_view processName = "acquisition");
Bytes userInfo(std::string_view info, std::string_view value);
Bytes userInfo(std::string_view info, std::uint32_t value);
Bytes integerParam(std::string_view name, std::uint32_t moduleIndex, std::uint64_t value = 42);
Bytes textParam(std::string_view name, std::uint32_t moduleIndex, std::string_view value);
/// Three elements: 1, 2 and 3.
Bytes fieldParam(std::string_view name, std::uint32_t moduleIndex);
Bytes paramLink(std::uint32_t sourceModule, std::uint32_t destinationModule);
Bytes channel(std::string_view name, std::uint32_t moduleIndex);
Bytes cameraParam(std::uint32_t channel, std::uint32_t moduleIndex);
Bytes dmaParam(std::uint32_t channel, std::uint32_t moduleIndex);
/// A tag of a kind that is not in the format.
Bytes unknown(std::uint32_t id, std::string_view payload = "whatever");

/// A container with every kind of tag, parameters of every storage, and an id: saving it changes no count.
Bytes everyKind();

} // namespace sample
