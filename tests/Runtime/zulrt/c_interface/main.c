/* Every function of the C interface, called from C, over the sample design: with a null handle, with what is there and
   with what is not.

   usage: c_interface SAMPLE_DESIGN */

#include "zulrt.h"

#include "expect.h"

#include <errno.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { farAway = 1000000 };

/* What is there, and what is behind it. */

static void askAboutModules(fpga_design const* d)
{
    expectInt(ZulGetNrOfModules(d), 12, "modules");
    expectText(ZulGetModuleName(d, 2), "Fir0", "name");
    expectText(ZulGetModuleTyp(d, 2), "ImageOperators", "type");
    expectText(ZulGetModuleFullName(d, 2), "Inspection\\Fir0", "full name");
    expectText(ZulGetModuleDllName(d, 2), "libImageOperators.dylib", "library");
    expectText(ZulGetModuleDecoratedName(d, 2), "ImageOperatorsQelLocalCreate", "factory");
    expectText(ZulGetModuleProcessName(d, 11), "Overview", "process name");
    expectInt(ZulGetModuleProcessId(d, 11), 1, "process id");
    expectNull(ZulGetModuleDllDir(d), "directory without libraries");
    expectNull(ZulGetOperatorDir(d), "operators without libraries");
    expectNull(ZulGetModuleByNumber(d, 12), "module 12");
    expectNull(ZulGetModuleName(d, 12), "name 12");
    expectNull(ZulGetModuleTyp(d, 12), "type 12");
    expectNull(ZulGetModuleFullName(d, farAway), "full name far away");
    expectNull(ZulGetModuleDllName(d, farAway), "library far away");
    expectNull(ZulGetModuleDecoratedName(d, farAway), "factory far away");
    expectNull(ZulGetModuleProcessName(d, farAway), "process name far away");
    expectInt(ZulGetModuleProcessId(d, farAway), -1, "process id far away");
}

static void askAboutProcesses(fpga_design const* d)
{
    expectInt(ZulGetNrOfProcess(d), 2, "processes");
    expectText(ZulGetProcessName(d, 0), "Inspection", "process");
    expectInt(ZulGetProcessId(d, 1), 1, "process id");
    expectInt(ZulGetProcessClk(d, 0), 125000000, "clock");
    expectNull(ZulGetProcessName(d, 2), "process 2");
    expectInt(ZulGetProcessId(d, 2), -1, "id 2");
    expectInt(ZulGetProcessClk(d, 2), 0, "clock 2");
}

static void askAModule(fpga_design const* d)
{
    zul_module_ext const* const fir = ZulGetModuleByNumber(d, 2);
    expectInt(ZulModuleGetParamCount(fir), 4, "params of Fir0");
    zul_param const* const coefficients = ZulModuleGetParam(fir, 2);
    expect(coefficients != NULL && strcmp(coefficients->name, "Coefficients") == 0, "name in the record");
    expect(coefficients != NULL && coefficients->field_size == 5 && coefficients->type == 6,
           "field in the record");
    expectNull(ZulModuleGetParam(fir, 4), "param 4 of Fir0");
    expectInt(ZulModuleGetChannelCount(fir), 2, "channels of Fir0");
    zul_channel_param const* const in = ZulModuleGetChannel(fir, 0);
    expect(in != NULL && in->input == 1 && in->kernel_columns == 5 && in->parallel == 8, "channel record");
    expectNull(ZulModuleGetChannel(fir, 2), "channel 2 of Fir0");
}

static void askAboutParameters(fpga_design const* d)
{
    expectInt(ZulGetNrOfParam(d, 2), 4, "params of module 2");
    expectInt(ZulGetNrOfParam(d, 12), -1, "params of module 12");
    expectText(ZulGetParamName(d, 2, 1), "Gain", "param");
    expectText(ZulGetParamFullName(d, 2, 1), "Inspection_Fir0_Gain", "param full name");
    expectText(ZulGetParamFullNameHier(d, 2, 1), "Inspection\\Fir0\\Gain", "param hierarchy");
    expectInt(ZulGetParamValue(d, 0, 6), 0x22334455, "lower half");
    expectInt((long long)ZulGetParamValue64(d, 0, 6), 0x1122334455, "value");
    expect(fabs(ZulGetParamValueDouble(d, 2, 1) - 1.25) < 1e-9, "double");
    expect(isnan(ZulGetParamValueDouble(d, 0, 0)), "double of an integer");
    expectInt(ZulGetParamFlags(d, 2, 1), 3, "flags");
    expectInt(ZulGetAbsolutParamIndex(d, 2, 1), 12, "absolute index");
    expectInt(ZulGetRelativeParamIndex(d, 2, 12), 1, "relative index");
    expectInt(ZulGetRelativeParamIndex(d, 3, 12), 0, "relative index in another module");
    expectInt(ZulGetRelativeParamIndex(d, 12, 12), -1, "relative index in no module");
    expectNull(ZulGetParamName(d, 2, 4), "param 4");
    expectNull(ZulGetParamFullName(d, 2, 4), "param full name 4");
    expectNull(ZulGetParamFullNameHier(d, 12, 0), "param hierarchy of module 12");
    expectInt(ZulGetParamValue(d, 2, 4), 0, "value 4");
    expectInt((long long)ZulGetParamValue64(d, 2, 4), 0, "value64 4");
    expectInt(ZulGetParamFlags(d, 2, 4), 0, "flags 4");
    expectInt(ZulGetAbsolutParamIndex(d, 2, 4), -1, "absolute index 4");
}

static void askAboutAllParameters(fpga_design const* d)
{
    expectInt(ZulGetNrOfParameter(d), 39, "absolute params");
    expectInt(ZulGetParamModuleIndex(d, 12), 2, "module index");
    expectInt(ZulGetAbsolutParamValue(d, 0), 2048, "absolute value");
    expectText(ZulGetParameterName(d, 12), "Gain", "absolute name");
    expectText(ZulGetParameterFullName(d, 12), "Inspection\\Fir0\\Gain", "absolute full name");
    expectInt(ZulGetParamModuleIndex(d, 39), 0, "module index 39");
    expectInt(ZulGetAbsolutParamValue(d, 39), 0, "absolute value 39");
    expectNull(ZulGetParameterName(d, 39), "absolute name 39");
    expectNull(ZulGetParameterFullName(d, 39), "absolute full name 39");
}

static void askAboutChannels(fpga_design const* d)
{
    expectInt(ZulGetNrOfDmas(d), 2, "DMAs");
    expectInt(ZulGetDmaWidth(d, 1), 1024, "DMA width");
    expectInt(ZulGetDmaHeight(d, 1), 2048, "DMA height");
    expectInt(ZulGetDmaFormat(d, 0), 2, "DMA format");
    expectInt(ZulGetDmaBitWidth(d, 0), 16, "DMA bits");
    expectInt(ZulGetDmaModuleNr(d, 1), 10, "DMA module");
    expectInt(ZulGetDmaChannel(d, 1), 1, "DMA channel");
    expectInt(ZulGetProcessNrFromDmaChannel(d, 1), 1, "DMA process");
    expectInt(ZulGetDmaWidth(d, 2), -1, "DMA width 2");
    expectInt(ZulGetDmaHeight(d, 2), -1, "DMA height 2");
    expectInt(ZulGetDmaFormat(d, 2), -1, "DMA format 2");
    expectInt(ZulGetDmaBitWidth(d, 2), -1, "DMA bits 2");
    expectInt(ZulGetDmaModuleNr(d, 2), -1, "DMA module 2");
    expectInt(ZulGetDmaChannel(d, 2), -1, "DMA channel 2");
    expectInt(ZulGetProcessNrFromDmaChannel(d, 2), -1, "DMA process 2");
    expectInt(ZulGetNrOfCams(d), 2, "cameras");
    expectInt(ZulGetCamChannel(d, 1), 1, "camera");
    expectInt(ZulGetCamChannel(d, 2), -1, "camera 2");
    expectInt(ZulGetNrOfCamsPerProcess(d, 1), 1, "process's cameras");
    expectInt(ZulGetNrOfCamsPerProcess(d, 7), 0, "cameras of no process");
    expectInt(ZulGetCamChannelPerProcess(d, 0, 1), 1, "process's camera");
    expectInt(ZulGetCamChannelPerProcess(d, 1, 1), -1, "process's camera 1");
}

static void askAboutRegisters(fpga_design const* d)
{
    unsigned int const taps = ZulGetRegisterByName(d, "Camera0_TapGeometry");
    expectInt(ZulGetNrOfRegister(d), 31, "registers");
    expect(taps >= 1 && taps <= 31, "register");
    expectText(ZulGetRegisterName(d, taps), "Camera0_TapGeometry", "register name");
    expectInt(ZulGetRegisterBitRange(d, taps), 4, "bits");
    expectInt(ZulGetRegisterBitPos(d, taps), 4, "lowest bit");
    expectInt(ZulGetRegisterDirection(d, taps), 1, "direction");
    expectInt(ZulGetRegisterAddress(d, taps), 0x201000, "address");
    expectInt((long long)ZulGetRegisterInitValue(d, ZulGetRegisterByName(d, "Camera0_Width")), 2048, "value");
    expectInt(ZulGetRegisterDirection(d, ZulGetRegisterByName(d, "Camera0_Status")), 0, "read-only");
    expectInt(ZulGetRegisterByName(d, "Overview\\Sampler1\\Step"), ZulGetRegisterByName(d, "Sampler1_Step"),
              "alias");
    expectInt(ZulGetRegisterByName(d, "nobody's"), 0, "unknown register");
    expectInt(ZulGetRegisterByName(d, NULL), 0, "register without name");
    for (unsigned int n = 0; n <= 32; n += 32) {
        expectInt(ZulGetRegisterBitRange(d, n), 0, "bits of a miss");
        expectInt(ZulGetRegisterBitPos(d, n), 0, "lowest bit of a miss");
        expectInt((long long)ZulGetRegisterInitValue(d, n), 0, "value of a miss");
        expectInt(ZulGetRegisterDirection(d, n), 0, "direction of a miss");
        expectInt(ZulGetRegisterAddress(d, n), -1, "address of a miss");
        expectNull(ZulGetRegisterName(d, n), "name of a miss");
    }
}

static void askAboutUserInfos(fpga_design const* d)
{
    uint32_t const* const number = ZulGetUserInfoByName(d, "BuildNumber");
    rz3_design_settings const* const settings = ZulGetUserInfoByName(d, "##_RZ3_DESIGN_SETTINGS");
    expect(ZulGetNrOfUserInfos(d) >= 4, "infos");
    expect(number != NULL && *number == 1482, "number");
    expectText(ZulGetUserInfoByName(d, "BuildDate"), "2023-10-17", "text");
    expectText(ZulGetUserInfoByName(d, "DESIGN_NAME"), "DualAreaInspection", "design name");
    expect(settings != NULL && settings->format == 1 && settings->queue[1].direction == 0x8151070,
           "settings");
    expectInt(ZulGetUserInfoTypByName(d, "BuildNumber"), 200, "type of a number");
    expectInt(ZulGetUserInfoTypByName(d, "BuildDate"), 300, "type of a text");
    expect(ZulGetUserInfoByNumber(d, 0) != NULL, "info 0");
    expectInt(ZulGetUserInfoTypByNumber(d, 0), 200, "type of info 0");
    expectNull(ZulGetUserInfoByNumber(d, farAway), "info far away");
    expectInt(ZulGetUserInfoTypByNumber(d, farAway), 0, "type far away");
    expectNull(ZulGetUserInfoByName(d, "nobody's"), "unknown info");
    expectNull(ZulGetUserInfoByName(d, NULL), "info without name");
    expectInt(ZulGetUserInfoTypByName(d, "nobody's"), 0, "type of an unknown info");
    expectInt(ZulGetUserInfoTypByName(d, NULL), 0, "type without name");
}

static void askAboutTheDesign(fpga_design const* d)
{
    int version = 0;
    int revision = 0;
    unsigned long length = 0;
    expectText(ZulGetDesignVersion(d), "2.3.01", "version");
    expectInt(ZulGetDesignVersionNumber(d, &version, &revision), 0, "version number");
    expect(version == 2 && revision == 3, "numbers of the version");
    expectInt(ZulGetDesignVersionNumber(d, NULL, &revision), -1, "version number without version");
    expectInt(ZulGetDesignVersionNumber(d, &version, NULL), -1, "version number without revision");
    expect(ZulGetMaxConfigIndex(d) >= 0, "configurations");
    expect(ZulGetConfigData(d, (unsigned int)ZulGetMaxConfigIndex(d), 0, &length) != NULL && length > 0,
           "bitstream");
    expectNull(ZulGetConfigData(d, farAway, 0, NULL), "bitstream far away");
    expectInt(ZulSupportsOs(d, 516), 1, "system");
    expectInt(ZulSupportsOs(d, farAway), 0, "unknown system");
    expectNull(ZulGetDesignData(d), "data");
    expectInt(ZulGetDesignLength(d), 0, "length");
    expectInt(ZulGetDesignTyp(d), 0, "type");
}

static void askAboutEvents(fpga_design const* d)
{
    zul_event_record const* const event = ZulGetEvent(d, 3);
    expect(event != NULL, "event 3");
    if (event != NULL) {
        expectText(event->name, "Inspection_Trigger0_Missed", "event name");
        expect(event->queue == 0 && event->bit == 3 && event->data_length == 4, "numbers of the event");
        expectInt(event->register_index, ZulGetRegisterByName(d, "Trigger0_Missed"), "event register");
        expectInt(event->firmware, 0, "firmware flag");
        expectInt((char const*)ZulGetEvent(d, 4) - (char const*)event, 24, "distance of records");
    }
    expectNull(ZulGetEvent(d, 5), "event 5");
}

static void askAboutTables(void)
{
    char const* const part = FPGAtype2RBTstring(0xBBEA1);
    expect(part != NULL, "part of an FPGA type");
    expectInt(RBTstring2FPGAtype(part), 0xBBEA1, "type of that part");
    expectInt(RBTstring2FPGAtype(NULL), 0xFFFFFFFF, "type of no part");
    expectNull(FPGAtype2RBTstring(-1), "part of an unknown type");
    expect(FPGA2dirname(0xBBEA1) != NULL, "directory of an FPGA type");
    expectNull(FPGA2dirname(-1), "directory of an unknown type");
}

/* Changing and deriving. */

static void stripAndLoad(fpga_design const* d)
{
    unsigned long length = 0;
    expectInt(ZulStripConfigs(d, NULL, &length), -1, "question for the length");
    expect(length > 24, "length of the stripped copy");
    void* const copy = malloc(length);
    expectInt(ZulStripConfigs(d, copy, &length), 0, "strip");
    fpga_design* const stripped = ZulLoadDesignFromBuffer(copy, length, 0);
    expectInt(ZulGetNrOfModules(stripped), 12, "modules of the stripped copy");
    expectInt(ZulGetMaxConfigIndex(stripped), -1, "configurations of the stripped copy");
    expectInt(ZulUnloadZulFile(stripped), 0, "unload of the stripped copy");
    errno = 0;
    expectInt(ZulStripConfigs(d, copy, NULL), -1, "strip without length");
    expectInt(errno, EINVAL, "errno of strip without length");
    free(copy);
}

static void merge(fpga_design const* d, char const* file)
{
    unsigned long length = 0;
    ZulStripConfigs(d, NULL, &length);
    void* const copy = malloc(length);
    ZulStripConfigs(d, copy, &length);
    fpga_design* const firmware = ZulFirmwareTrampoline(0x103, 7);
    uint16_t version = 0;
    uint16_t revision = 0;
    expectInt(ZulGetRequiredFixedVersion(firmware, &version, &revision), 0, "fixed version");
    expect(version == 3 && revision == 7, "numbers of the fixed version");
    expectInt(MergeFpgaDesignWithMem(firmware, copy, length), 0, "merge");
    memset(copy, 0xA5, length);
    free(copy);
    expectInt(ZulGetRequiredFixedVersion(firmware, &version, &revision), -1, "fixed version after a merge");
    expectText(ZulGetModuleFullName(firmware, 2), "Inspection\\Fir0", "merged module");
    errno = 0;
    expectInt(MergeFpgaDesign(firmware, file), -113, "merge of what is there already");
    expectInt(errno, EINVAL, "errno of a refused merge");
    expectInt(MergeFpgaDesign(firmware, "/nonexistent/design.zul"), -1, "merge of no file");
    expectInt(errno, ENOENT, "errno of a merge of no file");
    expectInt(MergeFpgaDesignWithMem(NULL, NULL, 0), -1, "merge into null");
    expectInt(MergeFpgaDesign(NULL, file), -1, "merge of a file into null");
    expectInt(errno, EINVAL, "errno of a merge into null");
    expectInt(ZulUnloadZulFile(firmware), 0, "unload of the merged design");
}

static void failToLoad(void)
{
    char* path = (char*)&failures;
    errno = 0;
    expectNull(ZulLoadZulFile("/nonexistent/design.zul", 0), "load of no file");
    expectInt(errno, ENOENT, "errno of no file");
    expectNull(ZulLoadZulFileWithType(NULL, 0, 0), "load without name");
    expectInt(errno, EINVAL, "errno without name");
    expectNull(ZulLoadZulFileWithTypeEx("/nonexistent/design.zul", &path, 0, 0), "load of no file with path");
    expectNull(path, "path of no file");
    expectNull(ZulLoadDesignFromBuffer(NULL, 100, 0), "load of nothing");
    expectInt(errno, EINVAL, "errno of nothing");
}

static void askEverything(fpga_design const* d)
{
    askAboutModules(d);
    askAboutProcesses(d);
    askAModule(d);
    askAboutParameters(d);
    askAboutAllParameters(d);
    askAboutChannels(d);
    askAboutRegisters(d);
    askAboutUserInfos(d);
    askAboutTheDesign(d);
    askAboutEvents(d);
}

int main(int argc, char** argv)
{
    if (argc != 2) {
        fputs("usage: c_interface SAMPLE_DESIGN\n", stderr);
        return 2;
    }
    askNull();
    askAboutTables();
    failToLoad();
    char* path = NULL;
    fpga_design* const design = ZulLoadZulFileWithTypeEx(argv[1], &path, 0, 0);
    expectText(path, argv[1], "path");
    free(path);
    if (design != NULL) {
        askEverything(design);
        stripAndLoad(design);
        merge(design, argv[1]);
        askEverything(design);
    }
    expectInt(ZulUnloadZulFile(design), 0, "unload");
    expectInt(ZulUnloadZulFile(ZulLoadZulFile(argv[1], 0)), 0, "load without a type");
    expectInt(ZulUnloadZulFile(ZulLoadZulFileWithType(argv[1], 2625, 0)), 0, "load with a type");
    return failures == 0 ? 0 : 1;
}
