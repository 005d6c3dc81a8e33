#include "look_around.h"

#include "run.h"
#include "zullib.h"

#include <cstddef>

namespace {

void lookAtRegisters(ZUL const& zul)
{
    unsigned const older = zul.getTagCount(ZUL_register::old_tag_id);
    unsigned const newer = zul.getTagCount(ZUL_register::new_tag_id);
    for (unsigned number = 1; number <= older + newer; ++number) {
        ZUL_register const* const reg = zul.getRegisterAt(number);
        must(reg != nullptr, "every register has a number");
        if (reg->getName() != nullptr) {
            must(zul.findRegister(reg->getName()) == reg, "a register is found by its name");
            must(zul.getRegisterByName(reg->getName()) == number, "a name leads to the register's number");
        }
    }
}

void lookAtModules(ZUL const& zul)
{
    for (unsigned i = 0; i < zul.getTagCount(ZUL_module::tag_id); ++i) {
        auto const* const module = static_cast<ZUL_module*>(zul.getTagAt(ZUL_module::tag_id, i));
        must(zul.getModuleAt(static_cast<unsigned>(module->getIndex())) != nullptr,
             "a module is found by its index");
        must(module->getProcess() != nullptr, "a loaded module has a process");
    }
}

/// The first byte and the last: a sanitizer sees whether they are there.
void touch(void const* data, std::size_t size)
{
    if (size != 0) {
        auto const* const bytes = static_cast<unsigned char const volatile*>(data);
        static_cast<void>(bytes[0]);
        static_cast<void>(bytes[size - 1]);
    }
}

void lookAtPayloads(ZUL const& zul)
{
    for (unsigned i = 0; i < zul.getTagCount(ZUL_dll::tag_id); ++i) {
        auto const* const library = static_cast<ZUL_dll*>(zul.getTagAt(ZUL_dll::tag_id, i));
        touch(library->getLib(), library->getLibLength());
    }
    for (unsigned i = 0; i < zul.getConfigCount(); ++i) {
        ZUL_multi_data const* const config = zul.getConfigAt(i);
        must(zul.getConfig(config->getIndex(), 0) != nullptr, "a configuration is found by its index");
        touch(config->getData(), config->getLength());
    }
}

} // namespace

void lookAround(ZUL const& zul)
{
    lookAtRegisters(zul);
    lookAtModules(zul);
    lookAtPayloads(zul);
}
