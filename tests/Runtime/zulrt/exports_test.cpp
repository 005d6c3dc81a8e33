#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

// What hosts find in the library, by hand: removing one of them breaks hosts, and anything else is nobody's business.
Lines const exported = {
    "FPGA2dirname",
    "FPGAtype2RBTstring",
    "MergeFpgaDesign",
    "MergeFpgaDesignWithMem",
    "RBTstring2FPGAtype",
    "ZulFirmwareTrampoline",
    "ZulGetAbsolutParamIndex",
    "ZulGetAbsolutParamValue",
    "ZulGetCamChannel",
    "ZulGetCamChannelPerProcess",
    "ZulGetConfigData",
    "ZulGetDesignData",
    "ZulGetDesignLength",
    "ZulGetDesignTyp",
    "ZulGetDesignVersion",
    "ZulGetDesignVersionNumber",
    "ZulGetDmaBitWidth",
    "ZulGetDmaChannel",
    "ZulGetDmaFormat",
    "ZulGetDmaHeight",
    "ZulGetDmaModuleNr",
    "ZulGetDmaWidth",
    "ZulGetEvent",
    "ZulGetMaxConfigIndex",
    "ZulGetModuleByNumber",
    "ZulGetModuleDecoratedName",
    "ZulGetModuleDllDir",
    "ZulGetModuleDllName",
    "ZulGetModuleFullName",
    "ZulGetModuleName",
    "ZulGetModuleProcessId",
    "ZulGetModuleProcessName",
    "ZulGetModuleTyp",
    "ZulGetNrOfCams",
    "ZulGetNrOfCamsPerProcess",
    "ZulGetNrOfDmas",
    "ZulGetNrOfModules",
    "ZulGetNrOfParam",
    "ZulGetNrOfParameter",
    "ZulGetNrOfProcess",
    "ZulGetNrOfRegister",
    "ZulGetNrOfUserInfos",
    "ZulGetOperatorDir",
    "ZulGetParamFlags",
    "ZulGetParamFullName",
    "ZulGetParamFullNameHier",
    "ZulGetParamModuleIndex",
    "ZulGetParamName",
    "ZulGetParamValue",
    "ZulGetParamValue64",
    "ZulGetParamValueDouble",
    "ZulGetParameterFullName",
    "ZulGetParameterName",
    "ZulGetProcessClk",
    "ZulGetProcessId",
    "ZulGetProcessName",
    "ZulGetProcessNrFromDmaChannel",
    "ZulGetRegisterAddress",
    "ZulGetRegisterBitPos",
    "ZulGetRegisterBitRange",
    "ZulGetRegisterByName",
    "ZulGetRegisterDirection",
    "ZulGetRegisterInitValue",
    "ZulGetRegisterName",
    "ZulGetRelativeParamIndex",
    "ZulGetRequiredFixedVersion",
    "ZulGetUserInfoByName",
    "ZulGetUserInfoByNumber",
    "ZulGetUserInfoTypByName",
    "ZulGetUserInfoTypByNumber",
    "ZulLoadDesignFromBuffer",
    "ZulLoadZulFile",
    "ZulLoadZulFileWithType",
    "ZulLoadZulFileWithTypeEx",
    "ZulModuleGetChannel",
    "ZulModuleGetChannelCount",
    "ZulModuleGetParam",
    "ZulModuleGetParamCount",
    "ZulStripConfigs",
    "ZulSupportsOs",
    "ZulUnloadZulFile",
};

std::string outputOf(std::string const& command)
{
    FILE* const pipe = popen(command.c_str(), "r");
    std::string output;
    char chunk[4096];
    for (std::size_t length = 0; (length = fread(chunk, 1, sizeof chunk, pipe)) > 0;) {
        output.append(chunk, length);
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    return output;
}

Lines linesOf(std::string const& command)
{
    std::istringstream output(outputOf(command));
    Lines lines;
    for (std::string line; std::getline(output, line);) {
        lines.push_back(line);
    }
    return lines;
}

TEST(Exports, AreTheseAndNoOthersEachInTheVersionNode)
{
    Lines expected = {"ZULRT_5 A"}; // the node itself
    for (std::string const& function : exported) {
        expected.push_back(function + "@@ZULRT_5 T");
    }
    Lines found;
    for (std::string const& line :
         linesOf("nm -D --defined-only --with-symbol-versions -P '" ZUL_RUNTIME_LIBRARY "'")) {
        found.push_back(line.substr(0, line.find(' ', line.find(' ') + 1)));
    }
    std::sort(expected.begin(), expected.end());
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, expected);
}

TEST(Exports, AreOfTheLibraryWithThisName)
{
    std::string const dynamic = outputOf("readelf -d '" ZUL_RUNTIME_LIBRARY "'");
    EXPECT_NE(dynamic.find("Library soname: [libzulrt.so.5]"), std::string::npos) << dynamic;
}

} // namespace
