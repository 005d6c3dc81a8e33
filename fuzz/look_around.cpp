#include "look_around.h"

#include "run.h"
#include "zullib.h"

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

} // namespace

void lookAround(ZUL const& zul)
{
    lookAtRegisters(zul);
    lookAtModules(zul);
    for (unsigned i = 0; i < zul.getConfigCount(); ++i) {
        must(zul.getConfig(zul.getConfigAt(i)->getIndex(), 0) != nullptr,
             "a configuration is found by its index");
    }
}
