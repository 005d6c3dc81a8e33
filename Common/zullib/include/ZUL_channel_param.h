#pragma once

#include "laid_out_tag.h"
#include "tag_text.h"

#include <cstdint>

class ZUL_module;

/// One image channel, input or output, of a module.
class ZUL_channel_param : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x815B000;

    /// All numbers are 0.
    /// @param module not owned, has to outlive this tag; may be null
    /// @param name as for setName; null leaves the channel without a name
    ZUL_channel_param(ZUL* parent, bool input, ZUL_module const* module, char const* name);
    ZUL_channel_param(ZUL_channel_param const& other) = default;
    explicit ZUL_channel_param(ZUL_channel_param const* other) : ZUL_channel_param(*other) {}
    ZUL_channel_param& operator=(ZUL_channel_param const& other) = default;

    /// Keeps at most 64 characters.
    void setName(char const* name) { m_name.set(name, nameWidth); }
    /// Null when there is none; valid until the next change of the name.
    char const* getName() const noexcept { return m_name.get(); }
    void setModule(ZUL_module const* module) noexcept { m_module = module; }
    /// Null when there is none.
    ZUL_module const* getModule() const noexcept { return m_module; }
    /// The index of the module; 0xFFFFFFFF when there is none.
    unsigned int getModuleIndex() const noexcept;
    void setInputChannel(bool input) noexcept { m_input = input; }
    bool getInputChannel() const noexcept { return m_input; }

    // Numbers of the design tool, carried unchanged.

    void setLinkIndex(unsigned int const& index) noexcept { m_linkIndex = index; }
    unsigned int getLinkIndex() const noexcept { return m_linkIndex; }
    void setFormatIndex(unsigned int const& index) noexcept { m_formatIndex = index; }
    unsigned int getFormatIndex() const noexcept { return m_formatIndex; }
    void setArith(unsigned int const& arith) noexcept { m_arith = arith; }
    unsigned int getArith() const noexcept { return m_arith; }
    void setFlavor(unsigned int const& flavor) noexcept { m_flavor = flavor; }
    unsigned int getFlavor() const noexcept { return m_flavor; }
    void setWidth(unsigned int const& width) noexcept { m_width = width; }
    unsigned int getWidth() const noexcept { return m_width; }
    void setPosition(unsigned int const& position) noexcept { m_position = position; }
    unsigned int getPosition() const noexcept { return m_position; }
    void setParallel(unsigned int const& parallel) noexcept { m_parallel = parallel; }
    unsigned int getParallel() const noexcept { return m_parallel; }
    void setKernelRows(unsigned int const& rows) noexcept { m_kernelRows = rows; }
    unsigned int getKernelRows() const noexcept { return m_kernelRows; }
    void setKernelColumns(unsigned int const& columns) noexcept { m_kernelColumns = columns; }
    unsigned int getKernelColumns() const noexcept { return m_kernelColumns; }
    void setMaxWidth(unsigned int const& width) noexcept { m_maxWidth = width; }
    unsigned int getMaxWidth() const noexcept { return m_maxWidth; }
    void setMaxHeight(unsigned int const& height) noexcept { m_maxHeight = height; }
    unsigned int getMaxHeight() const noexcept { return m_maxHeight; }

    /// @throws std::runtime_error when there is no module
    void checkDependentFields() override;
    std::uint32_t getTagId() const override { return tag_id; }

private:
    static constexpr std::uint64_t nameWidth = 64;

    void layout(TagLayout& row) override;

    bool m_input;
    std::uint32_t m_linkIndex = 0;
    std::uint32_t m_formatIndex = 0;
    std::uint32_t m_arith = 0;
    std::uint32_t m_flavor = 0;
    std::uint32_t m_width = 0;
    std::uint32_t m_position = 0;
    std::uint32_t m_parallel = 0;
    std::uint32_t m_kernelRows = 0;
    std::uint32_t m_kernelColumns = 0;
    std::uint32_t m_maxWidth = 0;
    std::uint32_t m_maxHeight = 0;
    ZUL_module const* m_module;
    TagText m_name;
};
