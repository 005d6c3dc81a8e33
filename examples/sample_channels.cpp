#include "sample_design.h"

namespace sample {

namespace {

struct Format {
    unsigned int index;
    unsigned int arith;
    unsigned int flavor;
    unsigned int bits;
};

constexpr Format gray8{0, 0, 1, 8};
constexpr Format gray12{1, 0, 1, 12};
constexpr Format gray16{2, 0, 1, 16};
constexpr Format wire{8, 0, 0, 1};

/// A stream from the output of one module to the input of another; both ends carry its number.
struct Stream {
    char const* from;
    char const* output;
    char const* to;
    char const* input;
    Format format;
    unsigned int parallel; // pixels in one clock
    unsigned int kernelColumns;
    unsigned int maxWidth;
    unsigned int maxHeight;
};

// clang-format off
constexpr Stream streams[] = {
    {"Encoder0", "Edges",    "Trigger0", "In",      wire,    1, 1,    1,    1},
    {"Trigger0", "Out",      "Camera0",  "Trigger", wire,    1, 1,    1,    1},
    {"Camera0",  "Out",      "Buffer0",  "In",      gray8,  10, 1, 4096, 4096},
    {"Buffer0",  "Out",      "Fir0",     "In",      gray8,   8, 5, 4096, 4096},
    {"Fir0",     "Out",      "Lut0",     "In",      gray12,  8, 1, 4096, 4096},
    {"Lut0",     "Out",      "Dma0",     "In",      gray16,  8, 1, 4096, 4096},
    {"Camera1",  "Out",      "Buffer1",  "In",      gray8,   4, 1, 2048, 2048},
    {"Buffer1",  "Out",      "Sampler1", "In",      gray8,   4, 1, 2048, 2048},
    {"Sampler1", "Out",      "Dma1",     "In",      gray8,   4, 1, 1024, 2048},
    {"Camera1",  "Exposure", "Strobe1",  "In",      wire,    1, 1,    1,    1},
};
// clang-format on

void addEnd(ZUL& design, bool input, unsigned int number, Stream const& stream)
{
    auto& end = add<ZUL_channel_param>(design, input, &module(design, input ? stream.to : stream.from),
                                       input ? stream.input : stream.output);
    end.setLinkIndex(number);
    end.setFormatIndex(stream.format.index);
    end.setArith(stream.format.arith);
    end.setFlavor(stream.format.flavor);
    end.setWidth(stream.format.bits);
    end.setParallel(stream.parallel);
    end.setKernelRows(1);
    end.setKernelColumns(stream.kernelColumns);
    end.setMaxWidth(stream.maxWidth);
    end.setMaxHeight(stream.maxHeight);
}

void addDma(ZUL& design, unsigned int channel, char const* instance, Format const& format, unsigned int width,
            unsigned int height)
{
    auto& dma = add<ZUL_dma_param>(design, channel, &module(design, instance));
    dma.setMaxWidth(width);
    dma.setMaxHeight(height);
    dma.setFormat(format.index);
    dma.setBitwidth(format.bits);
}

} // namespace

void addChannels(ZUL& design)
{
    unsigned int number = 0;
    for (Stream const& stream : streams) {
        addEnd(design, false, number, stream);
        addEnd(design, true, number, stream);
        ++number;
    }
}

void addCamerasAndDmas(ZUL& design)
{
    add<ZUL_camparam>(design, 0U, &module(design, "Camera0"));
    add<ZUL_camparam>(design, 1U, &module(design, "Camera1"));
    addDma(design, 0, "Dma0", gray16, 4096, 4096);
    addDma(design, 1, "Dma1", gray8, 1024, 2048);
}

} // namespace sample
