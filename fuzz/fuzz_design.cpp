// A design is loaded, asked everything, merged with a second one, asked again, stripped, and what that gives is loaded.
// The first two bytes are the length of the first container, the rest behind it is the second.

#include "quiet_output.h"
#include "zulrt.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace {

using Input = std::span<std::uint8_t const>;

struct Unload {
    void operator()(fpga_design* design) const { ZulUnloadZulFile(design); }
};
using Design = std::unique_ptr<fpga_design, Unload>;

Design load(Input bytes)
{
    errno = 0;
    Design design(ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), 0));
    must(design != nullptr || errno == EINVAL || errno == EFAULT, "a design that does not load says why");
    return design;
}

/// Everything that a design answers, folded into one number.
class Answers {
public:
    explicit Answers(fpga_design const* design) : m_design(design)
    {
        askOnce();
        askModules();
        askNumbered();
        askRegisters();
        askInfos();
    }
    bool operator==(Answers const& other) const { return m_digest == other.m_digest; }

private:
    void note(char const* text) { note(std::string_view(text == nullptr ? "(null)" : text)); }
    void note(std::string_view text)
    {
        for (char const character : text) {
            note(static_cast<std::uint64_t>(static_cast<unsigned char>(character)));
        }
    }
    void note(std::uint64_t number) { m_digest = (m_digest ^ number) * 0x100000001B3U; }
    void note(int number) { note(static_cast<std::uint64_t>(number)); }
    void note(unsigned int number) { note(std::uint64_t{number}); }
    void note(double number)
    {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &number, sizeof bits);
        note(bits);
    }
    void noteBytes(void const* data, std::size_t length)
    {
        note(std::string_view(static_cast<char const*>(data), data == nullptr ? 0 : length));
    }
    template <class... Functions>
    void noteEach(unsigned int i, Functions... functions)
    {
        (note(functions(m_design, i)), ...);
    }
    template <class... Functions>
    void noteEach(unsigned int i, unsigned int j, Functions... functions)
    {
        (note(functions(m_design, i, j)), ...);
    }
    static unsigned int upTo(int count) { return static_cast<unsigned int>(count) + 1; } // one miss

    void askOnce()
    {
        int version = 0;
        int revision = 0;
        std::uint16_t fixedVersion = 0;
        std::uint16_t fixedRevision = 0;
        note(ZulGetDesignVersion(m_design));
        note(ZulGetDesignVersionNumber(m_design, &version, &revision));
        note(version);
        note(revision);
        note(ZulGetRequiredFixedVersion(m_design, &fixedVersion, &fixedRevision));
        note(fixedVersion * 65536U + fixedRevision);
        note(ZulGetModuleDllDir(m_design));
        note(ZulGetOperatorDir(m_design));
        note(ZulSupportsOs(m_design, 516));
        note(ZulGetMaxConfigIndex(m_design));
        for (int index = 0; index <= ZulGetMaxConfigIndex(m_design) && index < 300; ++index) {
            unsigned long length = 0;
            void const* const bitstream =
                ZulGetConfigData(m_design, static_cast<unsigned int>(index), 0, &length);
            noteBytes(bitstream, length);
        }
    }

    void askModules()
    {
        for (unsigned int i = 0; i < upTo(ZulGetNrOfModules(m_design)); ++i) {
            noteEach(i, ZulGetModuleName, ZulGetModuleTyp, ZulGetModuleFullName, ZulGetModuleDllName,
                     ZulGetModuleDecoratedName, ZulGetModuleProcessName, ZulGetModuleProcessId,
                     ZulGetNrOfParam);
            zul_module_ext const* const module = ZulGetModuleByNumber(m_design, i);
            // Modules of one index show the same parameters: a few are enough, all would be their product.
            for (unsigned int j = 0; j < std::min(upTo(ZulGetNrOfParam(m_design, i)), 20U); ++j) {
                noteEach(i, j, ZulGetParamName, ZulGetParamFullName, ZulGetParamFullNameHier,
                         ZulGetParamValue, ZulGetParamValue64, ZulGetParamValueDouble, ZulGetParamFlags,
                         ZulGetAbsolutParamIndex);
                noteRecord(ZulModuleGetParam(module, j));
            }
            for (unsigned int j = 0; j < std::min(ZulModuleGetChannelCount(module) + 1, 20U); ++j) {
                zul_channel_param const* const channel = ZulModuleGetChannel(module, j);
                note(channel == nullptr ? "none" : channel->name);
            }
        }
    }
    void noteRecord(zul_param const* param)
    {
        if (param != nullptr) {
            noteBytes(param->field, std::size_t{param->field_size} * 8);
            note(param->param_string);
            note(param->name);
        }
    }

    void askNumbered()
    {
        for (unsigned int i = 0; i < upTo(ZulGetNrOfProcess(m_design)); ++i) {
            noteEach(i, ZulGetProcessName, ZulGetProcessId, ZulGetProcessClk);
            int const process = ZulGetProcessId(m_design, i);
            note(ZulGetNrOfCamsPerProcess(m_design, process));
            note(ZulGetCamChannelPerProcess(m_design, 0, process));
        }
        for (unsigned int i = 0; i < upTo(ZulGetNrOfParameter(m_design)); ++i) {
            noteEach(i, ZulGetParameterName, ZulGetParameterFullName, ZulGetParamModuleIndex,
                     ZulGetAbsolutParamValue);
            note(ZulGetRelativeParamIndex(m_design, 0, i));
        }
        for (unsigned int i = 0; i < upTo(ZulGetNrOfDmas(m_design)); ++i) {
            noteEach(i, ZulGetDmaWidth, ZulGetDmaHeight, ZulGetDmaFormat, ZulGetDmaBitWidth,
                     ZulGetDmaModuleNr, ZulGetDmaChannel, ZulGetProcessNrFromDmaChannel);
        }
        for (unsigned int i = 0; i < upTo(ZulGetNrOfCams(m_design)); ++i) {
            noteEach(i, ZulGetCamChannel);
        }
        zul_event_record const* event = nullptr;
        for (unsigned int i = 0; (event = ZulGetEvent(m_design, i)) != nullptr; ++i) {
            note(event->queue * 65536U + event->bit * 256U + event->data_length);
            note(event->name);
            note(event->register_index);
            note(event->firmware);
        }
    }

    void askRegisters()
    {
        for (unsigned int i = 0; i < upTo(ZulGetNrOfRegister(m_design)) + 1; ++i) {
            noteEach(i, ZulGetRegisterBitRange, ZulGetRegisterBitPos, ZulGetRegisterInitValue,
                     ZulGetRegisterDirection, ZulGetRegisterAddress, ZulGetRegisterName);
            note(ZulGetRegisterByName(m_design, ZulGetRegisterName(m_design, i)));
        }
    }

    void askInfos()
    {
        for (unsigned int i = 0; i < upTo(ZulGetNrOfUserInfos(m_design)); ++i) {
            int const type = ZulGetUserInfoTypByNumber(m_design, i);
            void const* const data = ZulGetUserInfoByNumber(m_design, i);
            note(type);
            type == 300 ? note(static_cast<char const*>(data)) : noteBytes(data, 4);
        }
        note(static_cast<char const*>(ZulGetUserInfoByName(m_design, "DESIGN_NAME")));
        noteBytes(ZulGetUserInfoByName(m_design, "##_RZ3_DESIGN_SETTINGS"), sizeof(rz3_design_settings));
    }

    fpga_design const* m_design;
    std::uint64_t m_digest = 0xCBF29CE484222325U;
};

void mergeInto(fpga_design* design, Input second)
{
    Answers const before(design);
    // The second container's bytes go before the design does.
    auto const copy = std::make_unique<std::uint8_t[]>(second.size());
    std::copy(second.begin(), second.end(), copy.get());
    errno = 0;
    int const result = MergeFpgaDesignWithMem(design, copy.get(), second.size());
    must(result == 0 || errno == EINVAL, "a refused merge says why");
    must(result == 0 || before == Answers(design), "a refused merge changes nothing");
}

void strip(fpga_design const* design)
{
    unsigned long length = 0;
    if (must(ZulStripConfigs(design, nullptr, &length) == -1, "without a buffer, the length is asked for");
        length == 0) {
        return; // something in it cannot be saved
    }
    std::vector<std::uint8_t> stripped(length, 0xA5);
    unsigned long tooShort = length - 1;
    must(ZulStripConfigs(design, stripped.data(), &tooShort) == -1 && tooShort == length,
         "too few bytes are refused");
    must(ZulStripConfigs(design, stripped.data(), &length) == 0, "as many bytes as were asked for suffice");
    if (Design const again = load(stripped)) {
        must(ZulGetMaxConfigIndex(again.get()) == -1, "a stripped design has no configuration");
        Answers const askedAgain(again.get());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    keepOutputQuiet();
    if (size < 2) {
        return 0;
    }
    Input const input(data + 2, size - 2);
    Input const first =
        input.first(std::min(input.size(), std::size_t{data[0]} + std::size_t{data[1]} * 256));
    Design const design = load(first);
    if (design == nullptr) {
        return 0;
    }
    Answers const loaded(design.get());
    mergeInto(design.get(), input.subspan(first.size()));
    Answers const merged(design.get());
    strip(design.get());
    return 0;
}
