#include "container_format.h"

#include "zulrt.h"

#include <stdexcept>

namespace {

class LoadedDesign : public OpenDesign {
public:
    explicit LoadedDesign(std::span<std::byte const> bytes)
        : m_design(ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), 0))
    {
        if (m_design == nullptr) {
            throw std::runtime_error("the design does not load");
        }
    }
    ~LoadedDesign() override { ZulUnloadZulFile(m_design); }

    LookedUp lookUp(std::span<std::string const> names) override
    {
        LookedUp all;
        for (std::string const& name : names) {
            if (auto const number = ZulGetRegisterByName(m_design, name.c_str())) {
                all.add(static_cast<std::uint32_t>(ZulGetRegisterAddress(m_design, number)));
            }
        }
        return all;
    }

    Walked walk() override
    {
        Walked walked;
        auto const modules = static_cast<unsigned int>(ZulGetNrOfModules(m_design));
        for (unsigned int module = 0; module < modules; ++module) {
            auto const params = static_cast<unsigned int>(ZulGetNrOfParam(m_design, module));
            for (unsigned int param = 0; param < params; ++param) {
                walked.add(ZulGetParamValue64(m_design, module, param),
                           *ZulGetParamName(m_design, module, param));
            }
        }
        return walked;
    }

    std::vector<std::span<std::byte const>> bitstreams() override
    {
        std::vector<std::span<std::byte const>> all;
        for (int index = 0; index <= ZulGetMaxConfigIndex(m_design); ++index) {
            unsigned long length = 0;
            void const* const data = ZulGetConfigData(m_design, static_cast<unsigned int>(index), 0, &length);
            all.emplace_back(static_cast<std::byte const*>(data), length);
        }
        return all;
    }

    Stored save() override { throw std::logic_error("a host does not save designs"); }

private:
    fpga_design* m_design;
};

class CInterface : public ContainerFormat {
    std::string name() const override { return "ZUL C interface"; }
    bool canSave() const override { return false; }
    std::unique_ptr<OpenDesign> open(std::span<std::byte const> bytes) const override
    {
        return std::make_unique<LoadedDesign>(bytes);
    }
};

} // namespace

std::unique_ptr<Format> cInterface()
{
    return std::make_unique<CInterface>();
}
