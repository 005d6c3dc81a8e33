#pragma once

#include "tag_text.h"
#include "zul_records.h"

#include <cstddef>
#include <memory>

class ZUL_channel_param;
class ZUL_module;
class ZUL_param;
struct zul_module_ext_lists;

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
struct zul_module_ext {
public:
    /// @param module not null
    explicit zul_module_ext(ZUL_module* module);
    /// An extension that shows the parameters and channels of @p twin, those added later included: modules with one
    /// index have the same ones, and holding them for each would cost the product of both numbers.
    zul_module_ext(ZUL_module* module, zul_module_ext const& twin);
    zul_module_ext(zul_module_ext const&) = delete;
    zul_module_ext& operator=(zul_module_ext const&) = delete;
    ~zul_module_ext();

    /// @param position of the module among all modules of the design; 0 at first
    void setIndex(int position) noexcept { m_position = position; }
    /// What setIndex was given; not the index that the module tag carries.
    int GetModuleIndex() const noexcept { return m_position; }
    /// The id of the module's process; 0xFFFFFFFF when there is none.
    unsigned int GetProcessId() const noexcept;
    ZUL_module* getModule() const noexcept { return m_module; }

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
    ZUL_module* m_module;
    int m_position = 0;
    std::shared_ptr<zul_module_ext_lists> m_lists;
    TagText m_libraryFileName;
    TagText m_factoryName;
};
