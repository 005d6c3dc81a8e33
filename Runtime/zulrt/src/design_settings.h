#pragma once

#include "zulrt.h"

#include <mutex>

class ZUL;

/// The block of interrupt and DMA registers of a design, made when it is first asked for.
class DesignSettings {
public:
    /// The block for what @p zul holds at the first call; the same one afterwards. Safe from any number of threads.
    rz3_design_settings const& get(ZUL const& zul) const;

private:
    mutable std::once_flag m_once;
    mutable rz3_design_settings m_block{};
};

/// The block for what @p zul holds: the defaults of boards whose designs do not say otherwise, overwritten by its tags.
rz3_design_settings settingsOf(ZUL const& zul);
