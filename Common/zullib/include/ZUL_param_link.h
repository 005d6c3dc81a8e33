#pragma once

#include "laid_out_tag.h"
#include "tag_text.h"

#include <cstdint>

class ZUL_module;

/// Links a parameter of one module, the source, to a parameter of another, the destination. Both ends are
/// given by module and parameter index and by name.
class ZUL_param_link : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x815E000;

    /// Both parameter indices are -1, there are no texts, the flag is true.
    /// @param source not owned, has to outlive this tag; may be null
    /// @param destination not owned, has to outlive this tag; may be null
    ZUL_param_link(ZUL* parent, ZUL_module const* source, ZUL_module const* destination)
        : LaidOutTag(parent), m_sourceModule(source), m_destinationModule(destination)
    {
    }
    ZUL_param_link(ZUL_param_link const& other) = default;
    explicit ZUL_param_link(ZUL_param_link const* other) : ZUL_param_link(*other) {}
    ZUL_param_link& operator=(ZUL_param_link const& other) = default;

    // Texts are kept whole; one with more than 0x7FFFFFFE characters cannot be saved. Null and "" leave none.
    // Getters answer null when there is none; what they point to is valid until the next change of that text.

    void setSourceModule(ZUL_module const* module) noexcept { m_sourceModule = module; }
    /// Null when there is none.
    ZUL_module const* getSourceModule() const noexcept { return m_sourceModule; }
    /// The index of the source module; -1 when there is none.
    int getSourceModuleIndex() const noexcept;
    void setSourceParamIndex(int index) noexcept { m_sourceParamIndex = index; }
    int getSourceParamIndex() const noexcept { return m_sourceParamIndex; }
    void setSourceName(char const* name) { m_sourceName.set(name); }
    char const* getSourceName() const noexcept { return m_sourceName.get(); }

    void setDestinationModule(ZUL_module const* module) noexcept { m_destinationModule = module; }
    /// Null when there is none.
    ZUL_module const* getDestinationModule() const noexcept { return m_destinationModule; }
    /// The index of the destination module; -1 when there is none.
    int getDestinationModuleIndex() const noexcept;
    void setDestinationParamIndex(int index) noexcept { m_destinationParamIndex = index; }
    int getDestinationParamIndex() const noexcept { return m_destinationParamIndex; }
    void setDestinationName(char const* name) { m_destinationName.set(name); }
    char const* getDestinationName() const noexcept { return m_destinationName.get(); }
    void setDestinationModuleName(char const* name) { m_destinationModuleName.set(name); }
    char const* getDestinationModuleName() const noexcept { return m_destinationModuleName.get(); }

    /// Meant for the design tool; carried unchanged.
    void setFlag(bool flag) noexcept { m_flag = flag; }
    bool getFlag() const noexcept { return m_flag; }

    /// @throws std::runtime_error when a module is missing
    void checkDependentFields() override;
    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;

    bool m_flag = true;
    std::int32_t m_sourceParamIndex = -1;
    std::int32_t m_destinationParamIndex = -1;
    ZUL_module const* m_sourceModule;
    ZUL_module const* m_destinationModule;
    TagText m_sourceName;
    TagText m_destinationName;
    TagText m_destinationModuleName;
};
