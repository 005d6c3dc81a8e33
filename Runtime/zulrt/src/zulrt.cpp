#include "zulrt.h"

#include "fpga_design.h"
#include "outcome.h"

#include <cerrno>
#include <functional>
#include <memory>

namespace {

/// What @p question answers for the handle's object, or @p none for a null handle.
template <class Handle, class None, class Question, class... Arguments>
None ask(Handle const* handle, None none, Question question, Arguments... arguments) noexcept
{
    return handle == nullptr ? none : static_cast<None>(std::invoke(question, *handle, arguments...));
}

/// The same for questions about pointers.
template <class Handle, class Question, class... Arguments>
auto ask(Handle const* handle, std::nullptr_t, Question question, Arguments... arguments) noexcept
{
    return handle == nullptr ? nullptr : std::invoke(question, *handle, arguments...);
}

/// What @p work returns; @p otherwise, with errno, when it throws: nothing may be thrown into C.
template <class Result, class Work>
Result guarded(Result otherwise, Work const& work) noexcept
{
    Result result = otherwise;
    int const outcome = outcomeOf([&] {
        result = work();
        return 0;
    });
    if (outcome != 0) {
        errno = -outcome;
    }
    return result;
}

/// A new design after @p load; null, with errno, when that returns a negated error number.
template <class Load>
fpga_design* newDesign(Load const& load) noexcept
{
    return guarded<fpga_design*>(nullptr, [&]() -> fpga_design* {
        auto design = std::make_unique<fpga_design>();
        if (int const result = load(*design); result < 0) {
            design.reset(); // before errno is set: it removes a directory
            errno = -result;
        }
        return design.release();
    });
}

} // namespace

fpga_design* ZulLoadZulFile(char const* name, int opsys)
{
    return ZulLoadZulFileWithType(name, 0, opsys);
}

fpga_design* ZulLoadZulFileWithType(char const* name, int boardType, int opsys)
{
    return newDesign(
        [=](fpga_design& design) { return design.LoadDesignWithType(name, nullptr, boardType, opsys); });
}

fpga_design* ZulLoadZulFileWithTypeEx(char const* name, char** path, int boardType, int opsys)
{
    std::unique_ptr<char[]> used;
    fpga_design* const loaded = newDesign([&](fpga_design& design) {
        char* found = nullptr;
        int const result = design.LoadDesignWithType(name, &found, boardType, opsys);
        used.reset(found);
        return result;
    });
    if (path != nullptr) {
        *path = loaded == nullptr ? nullptr : used.release();
    }
    return loaded;
}

fpga_design* ZulLoadDesignFromBuffer(void const* data, unsigned long length, int opsys)
{
    return newDesign([=](fpga_design& design) {
        int const result = design.LoadDesignFromBuffer(data, length);
        return result != 0 || opsys == 0 ? result : design.unpackLibs(static_cast<unsigned int>(opsys));
    });
}

int ZulUnloadZulFile(fpga_design* design)
{
    std::unique_ptr<fpga_design> const owned(design);
    return design == nullptr ? -1 : 0;
}

fpga_design* ZulFirmwareTrampoline(int version, int revision)
{
    return fpga_design::createTrampoline(static_cast<unsigned char>(version),
                                         static_cast<unsigned char>(revision));
}

int MergeFpgaDesign(fpga_design* design, char const* file)
{
    return guarded(-1, [=] { return mergeFpgaDesign(design, file); });
}

int MergeFpgaDesignWithMem(fpga_design* design, void const* data, unsigned long length)
{
    return guarded(-1, [=] { return mergeFpgaDesign(design, data, length); });
}

char const* ZulGetModuleName(fpga_design const* design, unsigned int module)
{
    return design->GetModuleName(
        module); // no null test: hosts have relied on the crash to find their error here
}

// clang-format off

using D = fpga_design;
using M = zul_module_ext;

// Function                                                                                  Null      Question                     Arguments

int              ZulGetNrOfModules(D const* d)                                { return ask(d, -1,      &D::GetNrOfModules); }
zul_module_ext*  ZulGetModuleByNumber(D const* d, unsigned int i)             { return ask(d, nullptr, &D::GetModuleByNumber,       i); }
char const*      ZulGetModuleTyp(D const* d, unsigned int i)                  { return ask(d, nullptr, &D::GetModuleTyp,            i); }
char const*      ZulGetModuleFullName(D const* d, unsigned int i)             { return ask(d, nullptr, &D::GetModuleFullName,       i); }
char const*      ZulGetModuleDllName(D const* d, unsigned int i)              { return ask(d, nullptr, &D::GetModuleDllName,        i); }
char const*      ZulGetModuleDllDir(D const* d)                               { return ask(d, nullptr, &D::GetModuleDllDir); }
char const*      ZulGetModuleDecoratedName(D const* d, unsigned int i)        { return ask(d, nullptr, &D::GetModuleDecoratedName,  i); }
char const*      ZulGetModuleProcessName(D const* d, unsigned int i)          { return ask(d, nullptr, &D::GetModuleProcessName,    i); }
int              ZulGetModuleProcessId(D const* d, unsigned int i)            { return ask(d, -1,      &D::GetModuleProcessId,      i); }

zul_param*         ZulModuleGetParam(M const* m, unsigned int i)              { return ask(m, nullptr, &M::GetParam,                static_cast<int>(i)); }
unsigned int       ZulModuleGetParamCount(M const* m)                         { return ask(m, 0U,      &M::GetNrOfParam); }
zul_channel_param* ZulModuleGetChannel(M const* m, unsigned int i)            { return ask(m, nullptr, &M::GetChannel,              static_cast<int>(i)); }
unsigned int       ZulModuleGetChannelCount(M const* m)                       { return ask(m, 0U,      &M::GetNrOfChannel); }

int              ZulGetNrOfProcess(D const* d)                                { return ask(d, -1,      &D::GetNrOfProcess); }
char const*      ZulGetProcessName(D const* d, unsigned int i)                { return ask(d, nullptr, &D::GetProcessName,          i); }
int              ZulGetProcessId(D const* d, unsigned int i)                  { return ask(d, -1,      &D::GetProcessId,            i); }
int              ZulGetProcessClk(D const* d, unsigned int i)                 { return ask(d, -1,      &D::GetProcessClk,           i); }

int              ZulGetNrOfParam(D const* d, unsigned int i)                             { return ask(d, -1,      &D::GetNrOfParams,        i); }
char const*      ZulGetParamName(D const* d, unsigned int i, unsigned int j)             { return ask(d, nullptr, &D::GetParamName,         i, j); }
char const*      ZulGetParamFullName(D const* d, unsigned int i, unsigned int j)         { return ask(d, nullptr, &D::GetParamFullName,     i, j); }
char const*      ZulGetParamFullNameHier(D const* d, unsigned int i, unsigned int j)     { return ask(d, nullptr, &D::GetParamFullNameHier, i, j); }
uint32_t         ZulGetParamValue(D const* d, unsigned int i, unsigned int j)            { return ask(d, uint32_t{0}, &D::GetParamValue,    i, j); }
uint64_t         ZulGetParamValue64(D const* d, unsigned int i, unsigned int j)          { return ask(d, uint64_t{0}, &D::GetParamValue64,  i, j); }
double           ZulGetParamValueDouble(D const* d, unsigned int i, unsigned int j)      { return ask(d, 0.0,     &D::GetParamValueDouble,  i, j); }
uint32_t         ZulGetParamFlags(D const* d, unsigned int i, unsigned int j)            { return ask(d, uint32_t{0}, &D::GetParamFlags,    i, j); }
int              ZulGetAbsolutParamIndex(D const* d, unsigned int i, unsigned int j)     { return ask(d, -1,      &D::GetAbsolutParamIndex, i, j); }
int              ZulGetRelativeParamIndex(D const* d, unsigned int i, unsigned int a)    { return ask(d, -1,      &D::GetRelativeParamIndex, i, a); }
int              ZulGetNrOfParameter(D const* d)                              { return ask(d, -1,      &D::getParamCount); }
int              ZulGetParamModuleIndex(D const* d, unsigned int a)           { return ask(d, -1,      &D::GetParamModuleIndex,     a); }
uint32_t         ZulGetAbsolutParamValue(D const* d, unsigned int a)          { return ask(d, uint32_t{0}, &D::GetAbsolutParamValue, a); }
char const*      ZulGetParameterName(D const* d, unsigned int a)              { return ask(d, nullptr, &D::GetParameterName,        a); }
char const*      ZulGetParameterFullName(D const* d, unsigned int a)          { return ask(d, nullptr, &D::GetParameterFullName,    a); }

int              ZulGetNrOfDmas(D const* d)                                   { return ask(d, -1,      &D::GetNrOfDmas); }
int              ZulGetDmaWidth(D const* d, unsigned int i)                   { return ask(d, -1,      &D::GetDmaWidth,             i); }
int              ZulGetDmaHeight(D const* d, unsigned int i)                  { return ask(d, -1,      &D::GetDmaHeight,            i); }
int              ZulGetDmaFormat(D const* d, unsigned int i)                  { return ask(d, -1,      &D::GetDmaFormat,            i); }
int              ZulGetDmaBitWidth(D const* d, unsigned int i)                { return ask(d, -1,      &D::GetDmaBitWidth,          i); }
int              ZulGetDmaModuleNr(D const* d, unsigned int i)                { return ask(d, -1,      &D::GetDmaModuleNr,          i); }
int              ZulGetDmaChannel(D const* d, unsigned int i)                 { return ask(d, -1,      &D::GetDmaChannel,           i); }
int              ZulGetProcessNrFromDmaChannel(D const* d, unsigned int i)    { return ask(d, -1,      &D::GetProcessNrFromDmaChannel, i); }
int              ZulGetNrOfCams(D const* d)                                   { return ask(d, -1,      &D::GetNrOfCams); }
int              ZulGetCamChannel(D const* d, unsigned int i)                 { return ask(d, -1,      &D::GetCamChannel,           i); }
int              ZulGetNrOfCamsPerProcess(D const* d, int p)                  { return ask(d, -1,      &D::GetNrOfCamsPerProcess,   p); }
int              ZulGetCamChannelPerProcess(D const* d, unsigned int n, int p) { return ask(d, -1,     &D::GetCamChannelPerProcess, n, p); }

int              ZulGetNrOfRegister(D const* d)                               { return ask(d, -1,      &D::getRegisterCount); }
uint32_t         ZulGetRegisterByName(D const* d, char const* name)           { return ask(d, uint32_t{0}, &D::getRegisterByName,   name); }
int              ZulGetRegisterBitRange(D const* d, unsigned int n)           { return ask(d, -1,      &D::GetRegisterBitRange,     n); }
int              ZulGetRegisterBitPos(D const* d, unsigned int n)             { return ask(d, -1,      &D::GetRegisterBitPos,       n); }
uint64_t         ZulGetRegisterInitValue(D const* d, unsigned int n)          { return ask(d, uint64_t{0}, &D::GetRegisterInitValue, n); }
int              ZulGetRegisterDirection(D const* d, unsigned int n)          { return ask(d, -1,      &D::GetRegisterDirection,    n); }
int              ZulGetRegisterAddress(D const* d, unsigned int n)            { return ask(d, 0,       &D::GetRegisterAddress,      n); }
char const*      ZulGetRegisterName(D const* d, unsigned int n)               { return ask(d, nullptr, &D::GetRegisterName,         n); }

int              ZulGetNrOfUserInfos(D const* d)                              { return ask(d, -1,      &D::GetNrOfUserInfos); }
void const*      ZulGetUserInfoByNumber(D const* d, unsigned int i)           { return ask(d, nullptr, &D::GetUserInfoByNumber,     i); }
void const*      ZulGetUserInfoByName(D const* d, char const* name)           { return ask(d, nullptr, &D::GetUserInfoByName,       name); }
int              ZulGetUserInfoTypByNumber(D const* d, unsigned int i)        { return ask(d, -1,      &D::GetUserInfoTypByNumber,  i); }
int              ZulGetUserInfoTypByName(D const* d, char const* name)        { return ask(d, -1,      &D::GetUserInfoTypByName,    name); }

char const*      ZulGetDesignVersion(D const* d)                              { return ask(d, nullptr, &D::getDesignVersionString); }
int              ZulGetDesignVersionNumber(D const* d, int* v, int* r)        { return ask(d, -1,      &D::getDesignVersionNumber,  v, r); }
int              ZulGetRequiredFixedVersion(D const* d, uint16_t* v, uint16_t* r) { return ask(d, -1,  &D::getRequiredFixedVersion, v, r); }
int              ZulGetMaxConfigIndex(D const* d)                             { return ask(d, -1,      &D::getMaxConfigIndex); }
void const*      ZulGetConfigData(D const* d, unsigned int i, unsigned int j, unsigned long* length) { return ask(d, nullptr, &D::GetFpgaConfig, i, j, length); }
char const*      ZulGetOperatorDir(D const* d)                                { return ask(d, nullptr, &D::getOperatorDir); }
int              ZulSupportsOs(D const* d, unsigned int opsys)                { return ask(d, -1,      &D::supportsOs,              opsys); }
zul_event_record const* ZulGetEvent(D const* d, unsigned int i)               { return ask(d, nullptr, &D::getEvent,                i); }
int              ZulStripConfigs(D const* d, void* buffer, unsigned long* length) { return ask(d, -1,  &D::stripConfigs,            buffer, length); }

// Designs once held one block of data of their own; hosts still ask for it.
void const*      ZulGetDesignData(D const*)                                   { return nullptr; }
int              ZulGetDesignLength(D const* d)                               { return d == nullptr ? -1 : 0; }
int              ZulGetDesignTyp(D const* d)                                  { return d == nullptr ? -1 : 0; }

// clang-format on
