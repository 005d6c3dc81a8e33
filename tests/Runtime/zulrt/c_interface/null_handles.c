#include "zulrt.h"

#include "expect.h"

#include <stddef.h>

static void askNullAboutModules(void)
{
    expectInt(ZulGetNrOfModules(NULL), -1, "modules of null");
    expectNull(ZulGetModuleByNumber(NULL, 0), "module of null");
    expectNull(ZulGetModuleTyp(NULL, 0), "type of null");
    expectNull(ZulGetModuleFullName(NULL, 0), "full name of null");
    expectNull(ZulGetModuleDllName(NULL, 0), "library of null");
    expectNull(ZulGetModuleDllDir(NULL), "directory of null");
    expectNull(ZulGetModuleDecoratedName(NULL, 0), "factory of null");
    expectNull(ZulGetModuleProcessName(NULL, 0), "process name of null");
    expectInt(ZulGetModuleProcessId(NULL, 0), -1, "process id of null");
    expectNull(ZulModuleGetParam(NULL, 0), "param of null");
    expectInt(ZulModuleGetParamCount(NULL), 0, "params of null");
    expectNull(ZulModuleGetChannel(NULL, 0), "channel of null");
    expectInt(ZulModuleGetChannelCount(NULL), 0, "channels of null");
    expectInt(ZulGetNrOfProcess(NULL), -1, "processes of null");
    expectNull(ZulGetProcessName(NULL, 0), "process of null");
    expectInt(ZulGetProcessId(NULL, 0), -1, "id of null");
    expectInt(ZulGetProcessClk(NULL, 0), -1, "clock of null");
}

static void askNullAboutParameters(void)
{
    expectInt(ZulGetNrOfParam(NULL, 0), -1, "relative params of null");
    expectNull(ZulGetParamName(NULL, 0, 0), "param name of null");
    expectNull(ZulGetParamFullName(NULL, 0, 0), "param full name of null");
    expectNull(ZulGetParamFullNameHier(NULL, 0, 0), "param hierarchy of null");
    expectInt(ZulGetParamValue(NULL, 0, 0), 0, "value of null");
    expectInt((long long)ZulGetParamValue64(NULL, 0, 0), 0, "value64 of null");
    expect(ZulGetParamValueDouble(NULL, 0, 0) >= 0 && ZulGetParamValueDouble(NULL, 0, 0) <= 0,
           "double of null");
    expectInt(ZulGetParamFlags(NULL, 0, 0), 0, "flags of null");
    expectInt(ZulGetAbsolutParamIndex(NULL, 0, 0), -1, "absolute index of null");
    expectInt(ZulGetRelativeParamIndex(NULL, 0, 0), -1, "relative index of null");
    expectInt(ZulGetNrOfParameter(NULL), -1, "absolute params of null");
    expectInt(ZulGetParamModuleIndex(NULL, 0), -1, "module index of null");
    expectInt(ZulGetAbsolutParamValue(NULL, 0), 0, "absolute value of null");
    expectNull(ZulGetParameterName(NULL, 0), "absolute name of null");
    expectNull(ZulGetParameterFullName(NULL, 0), "absolute full name of null");
}

static void askNullAboutHardware(void)
{
    expectInt(ZulGetNrOfDmas(NULL), -1, "DMAs of null");
    expectInt(ZulGetDmaWidth(NULL, 0), -1, "DMA width of null");
    expectInt(ZulGetDmaHeight(NULL, 0), -1, "DMA height of null");
    expectInt(ZulGetDmaFormat(NULL, 0), -1, "DMA format of null");
    expectInt(ZulGetDmaBitWidth(NULL, 0), -1, "DMA bits of null");
    expectInt(ZulGetDmaModuleNr(NULL, 0), -1, "DMA module of null");
    expectInt(ZulGetDmaChannel(NULL, 0), -1, "DMA channel of null");
    expectInt(ZulGetProcessNrFromDmaChannel(NULL, 0), -1, "DMA process of null");
    expectInt(ZulGetNrOfCams(NULL), -1, "cameras of null");
    expectInt(ZulGetCamChannel(NULL, 0), -1, "camera of null");
    expectInt(ZulGetNrOfCamsPerProcess(NULL, 0), -1, "process's cameras of null");
    expectInt(ZulGetCamChannelPerProcess(NULL, 0, 0), -1, "process's camera of null");
    expectInt(ZulGetNrOfRegister(NULL), -1, "registers of null");
    expectInt(ZulGetRegisterByName(NULL, "Camera0_Width"), 0, "register of null");
    expectInt(ZulGetRegisterBitRange(NULL, 1), -1, "bits of null");
    expectInt(ZulGetRegisterBitPos(NULL, 1), -1, "bit of null");
    expectInt((long long)ZulGetRegisterInitValue(NULL, 1), 0, "register value of null");
    expectInt(ZulGetRegisterDirection(NULL, 1), -1, "direction of null");
    expectInt(ZulGetRegisterAddress(NULL, 1), 0, "address of null");
    expectNull(ZulGetRegisterName(NULL, 1), "register name of null");
}

static void askNullAboutTheDesign(void)
{
    int number = 7;
    uint16_t version = 7;
    unsigned long length = 7;
    expectInt(ZulGetNrOfUserInfos(NULL), -1, "infos of null");
    expectNull(ZulGetUserInfoByNumber(NULL, 0), "info of null");
    expectNull(ZulGetUserInfoByName(NULL, "DESIGN_NAME"), "named info of null");
    expectInt(ZulGetUserInfoTypByNumber(NULL, 0), -1, "info type of null");
    expectInt(ZulGetUserInfoTypByName(NULL, "BuildNumber"), -1, "named info type of null");
    expectNull(ZulGetDesignVersion(NULL), "version of null");
    expectInt(ZulGetDesignVersionNumber(NULL, &number, &number), -1, "version number of null");
    expectInt(ZulGetRequiredFixedVersion(NULL, &version, &version), -1, "fixed version of null");
    expectInt(ZulGetMaxConfigIndex(NULL), -1, "configurations of null");
    expectNull(ZulGetConfigData(NULL, 0, 0, &length), "bitstream of null");
    expectNull(ZulGetOperatorDir(NULL), "operators of null");
    expectInt(ZulSupportsOs(NULL, 516), -1, "system of null");
    expectNull(ZulGetEvent(NULL, 0), "event of null");
    expectNull(ZulGetDesignData(NULL), "data of null");
    expectInt(ZulGetDesignLength(NULL), -1, "length of null");
    expectInt(ZulGetDesignTyp(NULL), -1, "type of null");
    expectInt(ZulStripConfigs(NULL, NULL, &length), -1, "strip of null");
    expectInt(ZulUnloadZulFile(NULL), -1, "unload of null");
    expect(number == 7 && version == 7 && length == 7, "nothing is stored for null");
}

void askNull(void)
{
    askNullAboutModules();
    askNullAboutParameters();
    askNullAboutHardware();
    askNullAboutTheDesign();
}
