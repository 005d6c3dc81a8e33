#pragma once

#include <cstddef>
#include <vector>

class ZUL;
class ZUL_camparam;
class ZUL_channel_param;
class ZUL_design_version_nr;
class ZUL_dll;
class ZUL_dma_param;
class ZUL_event;
class ZUL_fixed_fpga_info;
class ZUL_module;
class ZUL_param;
class ZUL_param_link;
class ZUL_process;
class ZUL_register;
class ZUL_user_info;

/// The tags of one kind in the order of the container; a number beyond the end is answered with null.
template <class Tag>
class TagList {
public:
    void add(Tag* tag) { m_tags.push_back(tag); }
    std::size_t size() const noexcept { return m_tags.size(); }
    Tag* at(std::size_t i) const noexcept { return i < m_tags.size() ? m_tags[i] : nullptr; }
    auto begin() const noexcept { return m_tags.begin(); }
    auto end() const noexcept { return m_tags.end(); }

private:
    std::vector<Tag*> m_tags;
};

/// What the queries of a design number and count, gathered in one walk over its container. Queries that read it need
/// neither locks nor memory, whatever kinds they ask for in turn.
struct DesignTags {
    DesignTags() = default;
    /// @throws std::bad_alloc
    explicit DesignTags(ZUL const& zul);

    struct CameraOfProcess {
        int process; ///< id of the process of the camera's module; -1 when there is none
        int channel;
    };

    TagList<ZUL_process> processes;
    TagList<ZUL_module> modules;
    TagList<ZUL_param> params;
    TagList<ZUL_channel_param> channels;
    TagList<ZUL_param_link> paramLinks;
    TagList<ZUL_dma_param> dmas;
    TagList<ZUL_camparam> cameras;
    TagList<ZUL_user_info> userInfos;
    TagList<ZUL_event> events;
    TagList<ZUL_dll> libraries;
    TagList<ZUL_design_version_nr> versionNumbers;
    TagList<ZUL_fixed_fpga_info> fixedInfos;
    TagList<ZUL_register> registers; ///< those of the older layout first, as they are numbered
    std::vector<CameraOfProcess>
        camerasByProcess; ///< ascending by process, those of one in the order of cameras

private:
    void sortCameras();
};
