#include "sample_design.h"

#include <cstdio>
#include <exception>

namespace {

/// @param libraries paths of shared libraries, ended by null
void build(ZUL& design, char const* const* libraries)
{
    using namespace sample;

    addIdentity(design);
    addDestinations(design);
    addProcesses(design);
    addModules(design);
    addParameters(design);
    addParameterLinks(design);
    addChannels(design);
    addCamerasAndDmas(design);
    stateCounts(design);
    addRegisters(design);
    addRegisterLinks(design);
    addInterrupts(design);
    addEvents(design);
    for (; *libraries != nullptr; ++libraries) {
        addLibrary(design, *libraries);
    }
    makeId(design);
    addConfigurations(design);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fputs("Usage: make_sample_design FILE [LIBRARY]...\n"
                   "Writes a design for two frame grabbers, with the given operator libraries, to FILE.\n",
                   stderr);
        return 2;
    }
    try {
        ZUL design;
        build(design, argv + 2);
        int const result = design.Save(argv[1]);
        if (result != 0) {
            std::fprintf(stderr, "make_sample_design: cannot write %s (%d)\n", argv[1], result);
        }
        return result == 0 ? 0 : 3;
    } catch (std::exception const& error) {
        std::fprintf(stderr, "make_sample_design: %s\n", error.what());
        return 1;
    }
}
