#include "container_format.h"

#include "floor.h"
#include "little_endian.h"

#include <stdexcept>

namespace {

/// A field that lies @p offset bytes into the tag, its header included.
template <class T>
T field(Floor::Tag const& tag, std::size_t offset)
{
    return little_endian::read<T>(tag.payload.data() + offset - 8);
}

/// The floor's load, a list of parameters for each module, and a list of the bitstreams.
class FloorDesign : public OpenDesign {
public:
    explicit FloorDesign(std::span<std::byte const> bytes)
    {
        if (!m_floor.load(bytes)) {
            throw std::runtime_error("a tag has a wrong length");
        }
        for (auto const& tag : m_floor.tags()) {
            if (tag->id == 0x8157000) {
                m_parameters.emplace_back();
            } else if (tag->id == 0x815A000) {
                // The modules of this content are numbered as they follow each other.
                m_parameters.at(field<std::uint32_t>(*tag, 8))
                    .push_back(static_cast<Floor::NamedTag const*>(tag.get()));
            } else if (tag->id == 0x8150120) {
                m_bitstreams.push_back(tag->payload.subspan(80));
            }
        }
    }

    LookedUp lookUp(std::span<std::string const> names) override
    {
        LookedUp all;
        for (std::string const& name : names) {
            if (Floor::Tag const* const found = m_floor.findRegister(name)) {
                all.add(field<std::uint32_t>(*found, 12));
            }
        }
        return all;
    }

    Walked walk() override
    {
        Walked walked;
        for (auto const& module : m_parameters) {
            for (Floor::NamedTag const* const param : module) {
                walked.add(field<std::uint64_t>(*param, 80), param->name.front());
            }
        }
        return walked;
    }

    std::vector<std::span<std::byte const>> bitstreams() override { return m_bitstreams; }
    Stored save() override { throw std::logic_error("the floor does not save"); }

private:
    Floor m_floor;
    std::vector<std::vector<Floor::NamedTag const*>> m_parameters;
    std::vector<std::span<std::byte const>> m_bitstreams;
};

class FloorFormat : public ContainerFormat {
    std::string name() const override { return "floor"; }
    bool canSave() const override { return false; }
    std::unique_ptr<OpenDesign> open(std::span<std::byte const> bytes) const override
    {
        return std::make_unique<FloorDesign>(bytes);
    }
};

} // namespace

std::unique_ptr<Format> floorFormat()
{
    return std::make_unique<FloorFormat>();
}
