// Loading any bytes, in every mode, ends with 0, -22 or an error of the container's own family; whatever was filed can
// be looked at and destroyed.

#include "quiet_output.h"
#include "zullib.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

/// Looks at what was filed through the lookups that the format's names and numbers feed.
void lookAround(ZUL const& zul)
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
    for (unsigned i = 0; i < zul.getTagCount(ZUL_module::tag_id); ++i) {
        auto const* const module = static_cast<ZUL_module*>(zul.getTagAt(ZUL_module::tag_id, i));
        must(zul.getModuleAt(static_cast<unsigned>(module->getIndex())) != nullptr,
             "a module is found by its index");
        must(module->getProcess() != nullptr, "a loaded module has a process");
    }
    unsigned last = 0;
    for (unsigned i = 0; i < zul.getTagCount(ZUL_camparam::tag_id); ++i) {
        auto const* const camera = static_cast<ZUL_camparam*>(zul.getTagAt(ZUL_camparam::tag_id, i));
        must(zul.getLoadMode() != ZUL_LOAD_STRICT || camera->getChannel() >= last, "cameras are in order");
        last = camera->getChannel();
    }
    for (unsigned i = 0; i < zul.getConfigCount(); ++i) {
        zul.getConfig(zul.getConfigAt(i)->getIndex(), 0);
    }
}

/// Errors of the head leave a load in every mode: the walk has not begun.
bool hasGoodHead(std::uint8_t const* data, std::size_t size)
{
    std::uint32_t length = 0;
    std::uint32_t version = 0;
    if (size < 24) {
        return false;
    }
    std::memcpy(&length, data + 4, sizeof length);
    std::memcpy(&version, data + 16, sizeof version);
    return length == 24 && version == 1;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    keepOutputQuiet();
    if (size == 0) {
        return 0;
    }
    ZUL zul;
    zul.setLoadMode(static_cast<ZULLoadMode>(data[0] % 3));
    int result = 0;
    try {
        result = zul.Load(data + 1, size - 1);
    } catch (ZUL_runtime_error const&) {
        must(zul.getLoadMode() != ZUL_LOAD_TOLERANT || !hasGoodHead(data + 1, size - 1),
             "a tolerant walk does not throw");
        return 0;
    }
    must(result == 0 || result == -22, "a load answers 0 or -22");
    if (result == 0) {
        lookAround(zul);
    }
    return 0;
}
