#pragma once

#include "laid_out_tag.h"
#include "tag_text.h"

#include <cstdint>

class ZUL_process;

/// One operator instance of the design. It belongs to a process; parameters, links and channels refer to it
/// by its index.
class ZUL_module : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8157000;

    /// A module with index -1 and without texts.
    /// @param process not owned, has to outlive the module; may be null
    ZUL_module(ZUL* parent, ZUL_process const* process) : LaidOutTag(parent), m_process(process) {}
    /// A module without container. The process is shared; the counts are those of a new module.
    ZUL_module(ZUL_module const& other);
    explicit ZUL_module(ZUL_module const* other) : ZUL_module(*other) {}
    /// Takes over everything but the container and the counts.
    ZUL_module& operator=(ZUL_module const& other);

    void setProcess(ZUL_process const* process) noexcept { m_process = process; }
    /// Null when there is none.
    ZUL_process const* getProcess() const noexcept { return m_process; }
    /// The name of the process; null when there is no process or it has no name.
    char const* getProcessName() const noexcept;
    /// The id of the process; 0xFFFFFFFF when there is none.
    unsigned int getProcessId() const noexcept;

    // The texts are kept whole; one with more than 65534 characters cannot be saved. Null and "" leave none.
    // Getters answer null when there is none; what they point to is valid until the next change of that text.

    void setType(char const* type) { m_type.set(type); }
    char const* getType() const noexcept { return m_type.get(); }
    void setInstance(char const* instance) { m_instance.set(instance); }
    char const* getInstance() const noexcept { return m_instance.get(); }
    void setFullName(char const* fullName) { m_fullName.set(fullName); }
    char const* getFullName() const noexcept { return m_fullName.get(); }

    void setIndex(int index);
    int getIndex() const noexcept { return m_index; }
    /// The number of parameters that the loaded tag states; nothing else sets it.
    unsigned int getParamCount() const noexcept { return m_paramCount; }
    /// The number of channels that the loaded tag states; nothing else sets it.
    unsigned int getChanCount() const noexcept { return m_channelCount; }

    /// @throws std::runtime_error when there is no process
    void checkDependentFields() override;
    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;

    std::int32_t m_index = -1;
    std::uint32_t m_paramCount = 0;
    std::uint32_t m_channelCount = 0;
    ZUL_process const* m_process;
    TagText m_type;
    TagText m_instance;
    TagText m_fullName;
};
