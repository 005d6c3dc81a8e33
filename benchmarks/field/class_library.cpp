#include "container_format.h"

#include "zullib.h"

#include <stdexcept>
#include <vector>

namespace {

class ClassLibraryDesign : public OpenDesign {
public:
    explicit ClassLibraryDesign(std::span<std::byte const> bytes)
    {
        if (m_zul.Load(bytes.data(), bytes.size()) != 0) {
            throw std::runtime_error("the container does not load");
        }
        // A parameter knows its module; the other way round is the caller's.
        m_zul.forEachTag([this](ZUL_tag& tag) {
            if (tag.getTagId() == ZUL_module::tag_id) {
                m_parameters.emplace_back();
            } else if (tag.getTagId() == ZUL_param::tag_id) {
                // The modules of this content are numbered as they follow each other.
                auto const& param = static_cast<ZUL_param const&>(tag);
                m_parameters.at(static_cast<std::size_t>(param.getModuleIndex())).push_back(&param);
            }
        });
    }

    LookedUp lookUp(std::span<std::string const> names) override
    {
        LookedUp all;
        for (std::string const& name : names) {
            if (ZUL_register const* const found = m_zul.findRegister(name)) {
                all.add(found->getAddress());
            }
        }
        return all;
    }

    Walked walk() override
    {
        Walked walked;
        for (auto const& module : m_parameters) {
            for (ZUL_param const* const param : module) {
                walked.add(param->getValue(), *param->getName());
            }
        }
        return walked;
    }

    std::vector<std::span<std::byte const>> bitstreams() override
    {
        std::vector<std::span<std::byte const>> all;
        for (unsigned int i = 0; i < m_zul.getConfigCount(); ++i) {
            ZUL_multi_data const& config = *m_zul.getConfigAt(i);
            all.emplace_back(static_cast<std::byte const*>(config.getData()), config.getLength());
        }
        return all;
    }

    Stored save() override
    {
        std::size_t const length = m_zul.getSaveLength();
        auto const bytes = std::make_shared_for_overwrite<std::byte[]>(length);
        if (m_zul.Save(bytes.get(), length) != 0) {
            throw std::runtime_error("the container cannot be saved");
        }
        return {bytes, {bytes.get(), length}};
    }

private:
    ZUL m_zul;
    std::vector<std::vector<ZUL_param const*>> m_parameters;
};

class ClassLibrary : public ContainerFormat {
    std::string name() const override { return "ZUL class library"; }
    std::unique_ptr<OpenDesign> open(std::span<std::byte const> bytes) const override
    {
        return std::make_unique<ClassLibraryDesign>(bytes);
    }
};

} // namespace

std::unique_ptr<Format> classLibrary()
{
    return std::make_unique<ClassLibrary>();
}
