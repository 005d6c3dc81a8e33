#pragma once

#include "ZUL_module.h"
#include "ZUL_process.h"
#include "bytes.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <cstdint>

/// A container with two processes, 3 and 4, and two modules of the first, with the indices 5 and 6.
class Modules : public testing::Test {
protected:
    Modules()
    {
        zul.AddTag(process);
        zul.AddTag(otherProcess);
        zul.AddTag(module);
        zul.AddTag(otherModule);
        module->setIndex(5);
        otherModule->setIndex(6);
    }

    // A number that no process and no module has.
    static constexpr std::uint32_t nobody = 77;

    ZUL zul;
    ZUL_process* process = new ZUL_process(&zul, 3, "acquisition"); // owned by the container, as all of these
    ZUL_process* otherProcess = new ZUL_process(&zul, 4, "output");
    ZUL_module* module = new ZUL_module(&zul, process);
    ZUL_module* otherModule = new ZUL_module(&zul, process);
};
