#include "shapes.h"
#include "zulrt.h"

#include <cstdlib>
#include <iostream>

namespace {

/// Asks what a host asks while it walks a design from end to end.
void walk(fpga_design const* design)
{
    for (unsigned int i = 0; i < static_cast<unsigned int>(ZulGetNrOfModules(design)); ++i) {
        ZulGetModuleName(design, i);
        ZulGetNrOfParam(design, i);
    }
    for (unsigned int i = 0; i < static_cast<unsigned int>(ZulGetNrOfParameter(design)); ++i) {
        ZulGetParameterName(design, i);
        ZulGetRelativeParamIndex(design, 0, i);
    }
    for (unsigned int i = 1; i <= static_cast<unsigned int>(ZulGetNrOfRegister(design)); ++i) {
        ZulGetRegisterByName(design, ZulGetRegisterName(design, i));
    }
    for (unsigned int i = 0; i < static_cast<unsigned int>(ZulGetNrOfProcess(design)); ++i) {
        int const process = ZulGetProcessId(design, i);
        // Processes may share an id: each one's cameras are asked for to the tenth.
        for (unsigned int n = 0; n < 10 && ZulGetCamChannelPerProcess(design, n, process) != -1; ++n) {
        }
    }
    for (unsigned int i = 0; ZulGetEvent(design, i) != nullptr; ++i) {
        ZulGetUserInfoByNumber(design, i);
    }
    ZulGetUserInfoByName(design, "##_RZ3_DESIGN_SETTINGS");
}

} // namespace

/// What an instruction counter is to count: one load, a walk over the design, and the unload.
/// @return 0 when it loads
extern "C" __attribute__((noinline)) int measuredLoad(Bytes const& container)
{
    fpga_design* const design = ZulLoadDesignFromBuffer(container.data(), container.size(), 0);
    if (design != nullptr) {
        walk(design);
    }
    return ZulUnloadZulFile(design);
}

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr
            << "usage: design_probe SHAPE TAGS\nLoads a design of that shape once and walks it. Shapes:\n";
        for (Shape const& shape : shapes()) {
            std::cerr << "  " << shape.name << '\n';
        }
        return 2;
    }
    Bytes const container =
        shapeNamed(argv[1]).make(static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10)));
    return measuredLoad(container) == 0 ? 0 : 1;
}
