#include "fpga_design.h"
#include "query.h"
#include "zullib.h"

#include <algorithm>

namespace {

int widthOf(ZUL_register const& reg)
{
    return reg.getMSB() - reg.getLSB() + 1;
}

int isWritable(ZUL_register const& reg)
{
    return reg.isReadOnly() ? 0 : 1;
}

struct ByProcess {
    bool operator()(DesignTags::CameraOfProcess const& camera, int process) const
    {
        return camera.process < process;
    }
    bool operator()(int process, DesignTags::CameraOfProcess const& camera) const
    {
        return process < camera.process;
    }
};

auto camerasOf(DesignTags const& tags, int process)
{
    return std::equal_range(tags.camerasByProcess.begin(), tags.camerasByProcess.end(), process, ByProcess());
}

} // namespace

// clang-format off

unsigned int fpga_design::GetNrOfDmas()      const noexcept { return countOf(m_tags.dmas); }
unsigned int fpga_design::GetNrOfCams()      const noexcept { return countOf(m_tags.cameras); }
unsigned int fpga_design::getRegisterCount() const noexcept { return countOf(m_tags.registers); }

int fpga_design::GetDmaWidth(unsigned int i)    const noexcept { return of(m_tags.dmas, i, &ZUL_dma_param::getMaxWidth,    -1); }
int fpga_design::GetDmaHeight(unsigned int i)   const noexcept { return of(m_tags.dmas, i, &ZUL_dma_param::getMaxHeight,   -1); }
int fpga_design::GetDmaFormat(unsigned int i)   const noexcept { return of(m_tags.dmas, i, &ZUL_dma_param::getFormat,      -1); }
int fpga_design::GetDmaBitWidth(unsigned int i) const noexcept { return of(m_tags.dmas, i, &ZUL_dma_param::getBitwidth,    -1); }
int fpga_design::GetDmaModuleNr(unsigned int i) const noexcept { return of(m_tags.dmas, i, &ZUL_dma_param::getModuleIndex, -1); }
int fpga_design::GetDmaChannel(unsigned int i)  const noexcept { return of(m_tags.dmas, i, &ZUL_dma_param::getDmaChannel,  -1); }
int fpga_design::GetCamChannel(unsigned int i)  const noexcept { return of(m_tags.cameras, i, &ZUL_camparam::getChannel,   -1); }

int           fpga_design::GetRegisterBitRange(unsigned int n)   const noexcept { return of(getRegisterAt(n), widthOf,                   0); }
int           fpga_design::GetRegisterBitPos(unsigned int n)     const noexcept { return of(getRegisterAt(n), &ZUL_register::getLSB,     0); }
std::uint64_t fpga_design::GetRegisterInitValue(unsigned int n)  const noexcept { return of(getRegisterAt(n), &ZUL_register::getCache,   std::uint64_t{0}); }
int           fpga_design::GetRegisterDirection(unsigned int n)  const noexcept { return of(getRegisterAt(n), isWritable,                0); }
int           fpga_design::GetRegisterAddress(unsigned int n)    const noexcept { return of(getRegisterAt(n), &ZUL_register::getAddress, -1); }
char const*   fpga_design::GetRegisterName(unsigned int n)       const noexcept { return of(getRegisterAt(n), &ZUL_register::getName,    nullptr); }

// clang-format on

int fpga_design::GetProcessNrFromDmaChannel(unsigned int dma) const noexcept
{
    ZUL_dma_param const* const tag = m_tags.dmas.at(dma);
    zul_module_ext const* const module =
        tag == nullptr ? nullptr : GetModuleByNumber(static_cast<unsigned int>(tag->getModuleIndex()));
    return of(module, &zul_module_ext::GetProcessId, -1);
}

int fpga_design::GetNrOfCamsPerProcess(int process) const noexcept
{
    auto const [first, last] = camerasOf(m_tags, process);
    return static_cast<int>(last - first);
}

int fpga_design::GetCamChannelPerProcess(unsigned int n, int process) const noexcept
{
    auto const [first, last] = camerasOf(m_tags, process);
    return n < static_cast<std::size_t>(last - first) ? first[n].channel : -1;
}

std::uint32_t fpga_design::getRegisterByName(char const* name) const noexcept
{
    return answer(0U, [&] { return m_zul == nullptr ? 0U : m_zul->getRegisterByName(name); });
}

ZUL_register* fpga_design::getRegisterAt(unsigned int number) const noexcept
{
    return number == 0 ? nullptr : m_tags.registers.at(number - 1);
}

zul_event_record* fpga_design::getEvent(unsigned int event) const noexcept
{
    bool const isThere = !m_events.empty() && event < m_events.back().count;
    return isThere ? &m_events.back().records[event] : nullptr;
}
