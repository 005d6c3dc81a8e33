#include "design_settings.h"

#include "tag_cast.h"
#include "zullib.h"

#include <iterator>

namespace {

// clang-format off
constexpr rz3_design_settings defaults = {
    .format                = 1,
    .interrupt_vector_base = 0x208020,
    .interrupt_acknowledge = 0x200004,
    .interrupt_start       = 0x200008,
    .dma_count_address     = {0x208000, 0x208004, 0, 0},
    .reserved_32           = 0,
    .dma_tag               = {{.address = 0x208008, .mask = 0xFFFFFFFF, .right_shift = 0, .channel = 0},
                              {.address = 0x20800C, .mask = 0xFFFFFFFF, .right_shift = 0, .channel = 1},
                              {}, {}},
    .local_interrupt       = 0x200000,
    .queue                 = {{.address = 0x208010, .right_shift = 0, .number = 0, .depth = 1024,
                               .direction = ZUL_usrintqueue_read::tag_id, .max_burst_length = 0},
                              {}, {}, {}, {}, {}, {}, {}},
    .reserved_296          = 0,
};
// clang-format on

/// Overwrites a settings block with what tags say; keeps to the first tag where only one counts.
class SettingsReader {
public:
    explicit SettingsReader(rz3_design_settings& block) : m_block(block) {}

    void read(ZUL_intvectorreg const& tag)
    {
        if (!m_hasVector) {
            m_block.interrupt_vector_base = tag.getBaseAddress();
            m_block.interrupt_acknowledge = tag.getAckAddress();
            m_block.interrupt_start = tag.getStartAddress();
            m_hasVector = true;
        }
    }
    void read(ZUL_localintreg const& tag)
    {
        if (!m_hasLocal) {
            m_block.local_interrupt = tag.getAddress();
            m_hasLocal = true;
        }
    }
    void read(ZUL_dmacnt_register const& tag)
    {
        if (tag.getChannel() < std::size(m_block.dma_count_address)) {
            m_block.dma_count_address[tag.getChannel()] = tag.getAddress();
        }
    }
    void read(ZUL_dmatag_register const& tag)
    {
        if (tag.getChannel() < std::size(m_block.dma_tag)) {
            m_block.dma_tag[tag.getChannel()] = {tag.getAddress(), tag.getMask(), tag.getShiftr(),
                                                 tag.getChannel()};
        }
    }
    void read(ZUL_usrintqueue const& tag)
    {
        if (tag.getQueueNumber() < std::size(m_block.queue)) {
            m_block.queue[tag.getQueueNumber()] = {tag.getAddress(),     tag.getShiftr(),
                                                   tag.getQueueNumber(), tag.getQueueDepth(),
                                                   tag.getTagId(),       tag.getMaxBurstLength()};
        }
    }

private:
    rz3_design_settings& m_block;
    bool m_hasVector = false;
    bool m_hasLocal = false;
};

template <class Tag>
void readIf(ZUL_tag& tag, SettingsReader& reader)
{
    if (auto const* const cast = tagOfKind<Tag>(&tag)) {
        reader.read(*cast);
    }
}

} // namespace

rz3_design_settings settingsOf(ZUL const& zul)
{
    rz3_design_settings block = defaults;
    SettingsReader reader(block);
    zul.forEachTag([&reader](ZUL_tag& tag) {
        readIf<ZUL_intvectorreg>(tag, reader);
        readIf<ZUL_localintreg>(tag, reader);
        readIf<ZUL_dmacnt_register>(tag, reader);
        readIf<ZUL_dmatag_register>(tag, reader);
        readIf<ZUL_usrintqueue_read>(tag, reader);
    });
    // A write queue takes the place of a read queue with its number, wherever it stands.
    zul.forEachTag([&reader](ZUL_tag& tag) { readIf<ZUL_usrintqueue_write>(tag, reader); });
    return block;
}

rz3_design_settings const& DesignSettings::get(ZUL const& zul) const
{
    std::call_once(m_once, [&] { m_block = settingsOf(zul); });
    return m_block;
}
