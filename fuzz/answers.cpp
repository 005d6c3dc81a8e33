#include "answers.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace {

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
    std::uint64_t digest() const { return m_digest; }

private:
    void note(char const* text) { note(std::string_view(text == nullptr ? "(null)" : text)); }
    /// Eight bytes at a time: most of what is asked for is text.
    void note(std::string_view text)
    {
        for (; text.size() >= sizeof(std::uint64_t); text.remove_prefix(sizeof(std::uint64_t))) {
            std::uint64_t word = 0;
            std::memcpy(&word, text.data(), sizeof word);
            note(word);
        }
        std::uint64_t word = text.size();
        for (char const character : text) {
            word = (word << 8U) | static_cast<unsigned char>(character);
        }
        note(word);
    }
    void note(std::uint64_t number)
    {
        m_digest = (m_digest ^ number) * 0x9E3779B97F4A7C15U;
        m_digest ^= m_digest >> 29U;
    }
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

} // namespace

std::uint64_t answersOf(fpga_design const* design)
{
    return Answers(design).digest();
}
