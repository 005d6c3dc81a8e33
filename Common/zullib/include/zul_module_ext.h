#pragma once

#include "tag_text.h"

#include <cstddef>
#include <cstdint>
#include <memory>

class ZUL_channel_param;
class ZUL_module;
class ZUL_param;
struct zul_module_ext_private;

/// What callers of the C interface see of a parameter. Order, widths and offsets of the fields are part of
/// that interface. The pointers lead into the parameter tag: they live as long as it does and its value is
/// not changed.
struct zul_param {
    std::uint64_t reserved;      ///< 0
    std::uint32_t module_index;  ///< index of the parameter's module
    std::int32_t param_index;    ///< position among all parameters of the design
    char name[64];               ///< the first 63 characters, padded with NUL; empty when there is no name
    std::uint64_t value;         ///< 0 unless the type is an integer one
    double double_value;         ///< NaN unless the type is the double one
    std::uint32_t flags;         ///< of the design tool
    std::uint32_t type;          ///< a QL_ParamType
    std::uint32_t field_size;    ///< number of field elements
    void const* field;           ///< the elements, 8 bytes each and not aligned, or null
    void const* field_again;     ///< the same
    char const* param_string;    ///< the text, or null
    std::uint32_t string_length; ///< characters of the text
};

static_assert(offsetof(zul_param, reserved) == 0);
static_assert(offsetof(zul_param, module_index) == 8);
static_assert(offsetof(zul_param, param_index) == 12);
static_assert(offsetof(zul_param, name) == 16);
static_assert(offsetof(zul_param, value) == 80);
static_assert(offsetof(zul_param, double_value) == 88);
static_assert(offsetof(zul_param, flags) == 96);
static_assert(offsetof(zul_param, type) == 100);
static_assert(offsetof(zul_param, field_size) == 104);
static_assert(offsetof(zul_param, field) == 112);
static_assert(offsetof(zul_param, field_again) == 120);
static_assert(offsetof(zul_param, param_string) == 128);
static_assert(offsetof(zul_param, string_length) == 136);
static_assert(sizeof(zul_param) == 144);

/// What callers of the C interface see of an image channel. Order, widths and offsets of the fields are part
/// of that interface.
struct zul_channel_param {
    std::uint64_t reserved;     ///< 0
    std::uint32_t input;        ///< 1 for an input channel, 0 for an output
    std::uint32_t module_index; ///< index of the channel's module
    std::uint32_t link_index;
    char name[64]; ///< the first 63 characters, padded with NUL; empty when there is no name
    std::uint32_t format_index;
    std::uint32_t arith;
    std::uint32_t flavor;
    std::uint32_t width;
    std::uint32_t position;
    std::uint32_t parallel;
    std::uint32_t kernel_rows;
    std::uint32_t kernel_columns;
    std::uint32_t max_width;
    std::uint32_t max_height;
};

static_assert(offsetof(zul_channel_param, reserved) == 0);
static_assert(offsetof(zul_channel_param, input) == 8);
static_assert(offsetof(zul_channel_param, module_index) == 12);
static_assert(offsetof(zul_channel_param, link_index) == 16);
static_assert(offsetof(zul_channel_param, name) == 20);
static_assert(offsetof(zul_channel_param, format_index) == 84);
static_assert(offsetof(zul_channel_param, arith) == 88);
static_assert(offsetof(zul_channel_param, flavor) == 92);
static_assert(offsetof(zul_channel_param, width) == 96);
static_assert(offsetof(zul_channel_param, position) == 100);
static_assert(offsetof(zul_channel_param, parallel) == 104);
static_assert(offsetof(zul_channel_param, kernel_rows) == 108);
static_assert(offsetof(zul_channel_param, kernel_columns) == 112);
static_assert(offsetof(zul_channel_param, max_width) == 116);
static_assert(offsetof(zul_channel_param, max_height) == 120);
static_assert(sizeof(zul_channel_param) == 128);

/// A module with its parameters and channels, gathered for callers of the C interface.
///
/// The tags are not owned and have to outlive the extension. The records are owned: each is filled when its
/// tag is added, keeps its address, and is not updated afterwards.
class zul_module_ext {
public:
    /// @param module not null
    explicit zul_module_ext(ZUL_module* module);
    zul_module_ext(zul_module_ext const&) = delete;
    zul_module_ext& operator=(zul_module_ext const&) = delete;
    ~zul_module_ext();

    /// @param position of the module among all modules of the design; 0 at first
    void setIndex(int position) noexcept;
    /// What setIndex was given; not the index that the module tag carries.
    int GetModuleIndex() const noexcept;
    /// The id of the module's process; 0xFFFFFFFF when there is none.
    unsigned int GetProcessId() const noexcept;
    ZUL_module* getModule() const noexcept;

    /// Appends @p parameter and a record of it; neither when this throws.
    /// @param paramIndex its position among all parameters of the design
    void AddParam(ZUL_param* parameter, int paramIndex);
    unsigned int GetNrOfParam() const noexcept;
    /// The @p i-th parameter added, or null.
    ZUL_param* getParam(unsigned int i) const noexcept;
    /// The record of the @p i-th parameter added, or null.
    zul_param* GetParam(int i) const noexcept;

    /// Appends @p channel and a record of it; neither when this throws.
    void AddChannel(ZUL_channel_param* channel);
    unsigned int GetNrOfChannel() const noexcept;
    /// The record of the @p i-th channel added, or null.
    zul_channel_param* GetChannel(int i) const noexcept;

    // For whoever locates the module's operator library; null at first.

    void setLibraryFileName(char const* name) { m_libraryFileName.set(name); }
    char const* getLibraryFileName() const noexcept { return m_libraryFileName.get(); }
    void setFactoryName(char const* name) { m_factoryName.set(name); }
    char const* getFactoryName() const noexcept { return m_factoryName.get(); }

private:
    std::unique_ptr<zul_module_ext_private> m_private;
    TagText m_libraryFileName;
    TagText m_factoryName;
};
