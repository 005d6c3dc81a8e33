#pragma once

#include "ZUL_destination.h"
#include "ZUL_multi_data.h"
#include "bytes.h"
#include "zul_class.h"

#include <string>

/// A configuration as it lies in a file. All fields differ; @p reserved fills the bytes that have no meaning.
inline Bytes configBytes(std::string_view bitstream, unsigned reserved = 0, std::uint32_t index = 0x01020304)
{
    return Bytes()
        .u32(0x8150120)
        .u32(88 + bitstream.size())
        .u32(0x00012345) // FPGA type
        .u32(2)          // speed grade
        .u32(676)        // package
        .u32(100)        // clocks
        .u32(200)
        .u32(300)
        .fill(reserved, 48)
        .u32(index)
        .fill(reserved, 4)
        .chars(bitstream);
}

inline std::string bitstreamOf(ZUL_multi_data const& config)
{
    return config.getData() == nullptr
               ? ""
               : std::string(static_cast<char const*>(config.getData()), config.getLength());
}

/// A configuration without container.
inline ZUL_multi_data freeConfig()
{
    return ZUL_multi_data(static_cast<ZUL*>(nullptr));
}

/// A configuration that the container owns.
inline ZUL_multi_data* fileConfig(ZUL& zul, unsigned index)
{
    auto* const config = new ZUL_multi_data(&zul);
    config->setIndex(index);
    zul.AddConfig(config, nullptr);
    return config;
}

/// A destination that the container owns.
inline ZUL_destination* fileDestination(ZUL& zul, unsigned char index, unsigned short board,
                                        unsigned short revision)
{
    auto* const destination = new ZUL_destination(&zul, index, board, revision);
    zul.AddTag(destination);
    return destination;
}
