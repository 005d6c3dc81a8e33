#include "exported_queries.h"

#include <cmath>

namespace {

using Design = fpga_design const*;
using Arguments = QueryArguments const&;

// Answers as JSON.

Json toJson(char const* text)
{
    return text == nullptr ? Json() : Json(jsonText(text));
}
Json toJson(int number)
{
    return number;
}
Json toJson(std::uint32_t number)
{
    return number;
}
Json toJson(std::uint64_t number)
{
    return number;
}
Json toJson(double number)
{
    return std::isfinite(number) ? Json(number)
                                 : Json(std::isnan(number) ? "NaN"
                                        : number > 0       ? "Infinity"
                                                           : "-Infinity");
}
Json toJson(zul_param const* param)
{
    return param == nullptr ? Json()
                            : Json{{"module_index", param->module_index},
                                   {"param_index", param->param_index},
                                   {"name", jsonText(param->name)},
                                   {"value", param->value},
                                   {"double_value", toJson(param->double_value)},
                                   {"flags", param->flags},
                                   {"type", param->type},
                                   {"field_size", param->field_size},
                                   {"param_string", toJson(param->param_string)},
                                   {"string_length", param->string_length}};
}
Json toJson(zul_channel_param const* channel)
{
    return channel == nullptr ? Json()
                              : Json{{"input", channel->input},
                                     {"module_index", channel->module_index},
                                     {"link_index", channel->link_index},
                                     {"name", jsonText(channel->name)},
                                     {"format_index", channel->format_index},
                                     {"arith", channel->arith},
                                     {"flavor", channel->flavor},
                                     {"width", channel->width},
                                     {"position", channel->position},
                                     {"parallel", channel->parallel},
                                     {"kernel_rows", channel->kernel_rows},
                                     {"kernel_columns", channel->kernel_columns},
                                     {"max_width", channel->max_width},
                                     {"max_height", channel->max_height}};
}
Json toJson(zul_event_record const* event)
{
    return event == nullptr ? Json()
                            : Json{{"queue", event->queue},
                                   {"bit", event->bit},
                                   {"data_length", event->data_length},
                                   {"name", toJson(event->name)},
                                   {"register_index", event->register_index},
                                   {"firmware", event->firmware}};
}
Json toJson(zul_module_ext const* module)
{
    return module == nullptr ? Json()
                             : Json{{"parameters", ZulModuleGetParamCount(module)},
                                    {"channels", ZulModuleGetChannelCount(module)}};
}

Json bytesJson(void const* data, std::size_t length)
{
    if (data == nullptr) {
        return {};
    }
    std::span const bytes(static_cast<std::byte const*>(data), length);
    return {{"bytes", length}, {"sha256", sha256Text(bytes)}};
}

Json userInfoJson(void const* data, int type)
{
    if (data == nullptr) {
        return {};
    }
    return type == 300 ? toJson(static_cast<char const*>(data))
                       : Json(*static_cast<std::uint32_t const*>(data));
}

/// Lists are made as such: a null value that becomes one when memory runs out cannot be destroyed.
Json dmaTagsJson(rz3_design_settings const& block)
{
    Json list = Json::array();
    for (rz3_dma_tag_register const& dma : block.dma_tag) {
        list.push_back({{"address", dma.address},
                        {"mask", dma.mask},
                        {"right_shift", dma.right_shift},
                        {"channel", dma.channel}});
    }
    return list;
}

Json queuesJson(rz3_design_settings const& block)
{
    Json list = Json::array();
    for (rz3_user_interrupt_queue const& queue : block.queue) {
        list.push_back({{"address", queue.address},
                        {"right_shift", queue.right_shift},
                        {"number", queue.number},
                        {"depth", queue.depth},
                        {"direction", queue.direction},
                        {"max_burst_length", queue.max_burst_length}});
    }
    return list;
}

Json settingsJson(rz3_design_settings const& block)
{
    return {{"format", block.format},
            {"interrupt_vector_base", block.interrupt_vector_base},
            {"interrupt_acknowledge", block.interrupt_acknowledge},
            {"interrupt_start", block.interrupt_start},
            {"dma_count_address", block.dma_count_address},
            {"dma_tag", dmaTagsJson(block)},
            {"local_interrupt", block.local_interrupt},
            {"queue", queuesJson(block)}};
}

Json userInfoByName(Design design, Arguments arguments)
{
    void const* const data = ZulGetUserInfoByName(design, arguments.name.c_str());
    if (data == nullptr) {
        return {};
    }
    if (arguments.name == "##_RZ3_DESIGN_SETTINGS") {
        return settingsJson(*static_cast<rz3_design_settings const*>(data));
    }
    bool const isText = arguments.name == "DESIGN_NAME";
    return userInfoJson(data, isText ? 300 : ZulGetUserInfoTypByName(design, arguments.name.c_str()));
}

Json designVersionNumber(Design design, Arguments)
{
    int version = 0;
    int revision = 0;
    int const result = ZulGetDesignVersionNumber(design, &version, &revision);
    return result != 0 ? Json{{"result", result}}
                       : Json{{"result", result}, {"version", version}, {"revision", revision}};
}

Json requiredFixedVersion(Design design, Arguments)
{
    std::uint16_t version = 0;
    std::uint16_t revision = 0;
    int const result = ZulGetRequiredFixedVersion(design, &version, &revision);
    return result != 0 ? Json{{"result", result}}
                       : Json{{"result", result}, {"version", version}, {"revision", revision}};
}

Json configData(Design design, Arguments arguments)
{
    unsigned long length = 0;
    void const* const data = ZulGetConfigData(design, arguments.first, arguments.second, &length);
    return bytesJson(data, length);
}

Json stripConfigs(Design design, Arguments)
{
    unsigned long length = 0;
    int const result = ZulStripConfigs(design, nullptr, &length);
    return {{"result", result}, {"length", length}};
}

template <auto Function>
Json ofDesign(Design design, Arguments)
{
    return toJson(Function(design));
}
template <auto Function>
Json ofOne(Design design, Arguments arguments)
{
    return toJson(Function(design, arguments.first));
}
template <auto Function>
Json ofTwo(Design design, Arguments arguments)
{
    return toJson(Function(design, arguments.first, arguments.second));
}
template <auto Function>
Json ofProcessId(Design design, Arguments arguments)
{
    return toJson(Function(design, static_cast<int>(arguments.first)));
}
template <auto Function>
Json ofProcessCamera(Design design, Arguments arguments)
{
    return toJson(Function(design, arguments.first, static_cast<int>(arguments.second)));
}
template <auto Function>
Json ofName(Design design, Arguments arguments)
{
    return toJson(Function(design, arguments.name.c_str()));
}
template <auto Function>
Json ofModuleHandle(Design design, Arguments arguments)
{
    return toJson(Function(ZulGetModuleByNumber(design, arguments.first)));
}
template <auto Function>
Json ofModuleHandleAndOne(Design design, Arguments arguments)
{
    return toJson(Function(ZulGetModuleByNumber(design, arguments.first), arguments.second));
}
Json userInfoByNumber(Design design, Arguments arguments)
{
    return userInfoJson(ZulGetUserInfoByNumber(design, arguments.first),
                        ZulGetUserInfoTypByNumber(design, arguments.first));
}
Json designData(Design design, Arguments)
{
    return bytesJson(ZulGetDesignData(design), 0);
}

// clang-format off
constexpr ExportedQuery queries[] = {
    {"ZulGetNrOfModules",             QueryOver::Design,         ofDesign<ZulGetNrOfModules>},
    {"ZulGetModuleByNumber",          QueryOver::Modules,        ofOne<ZulGetModuleByNumber>},
    {"ZulGetModuleName",              QueryOver::Modules,        ofOne<ZulGetModuleName>},
    {"ZulGetModuleTyp",               QueryOver::Modules,        ofOne<ZulGetModuleTyp>},
    {"ZulGetModuleFullName",          QueryOver::Modules,        ofOne<ZulGetModuleFullName>},
    {"ZulGetModuleDllName",           QueryOver::Modules,        ofOne<ZulGetModuleDllName>},
    {"ZulGetModuleDllDir",            QueryOver::Design,         ofDesign<ZulGetModuleDllDir>},
    {"ZulGetModuleDecoratedName",     QueryOver::Modules,        ofOne<ZulGetModuleDecoratedName>},
    {"ZulGetModuleProcessName",       QueryOver::Modules,        ofOne<ZulGetModuleProcessName>},
    {"ZulGetModuleProcessId",         QueryOver::Modules,        ofOne<ZulGetModuleProcessId>},
    {"ZulModuleGetParam",             QueryOver::ModuleParams,   ofModuleHandleAndOne<ZulModuleGetParam>},
    {"ZulModuleGetParamCount",        QueryOver::Modules,        ofModuleHandle<ZulModuleGetParamCount>},
    {"ZulModuleGetChannel",           QueryOver::ModuleChannels, ofModuleHandleAndOne<ZulModuleGetChannel>},
    {"ZulModuleGetChannelCount",      QueryOver::Modules,        ofModuleHandle<ZulModuleGetChannelCount>},
    {"ZulGetNrOfProcess",             QueryOver::Design,         ofDesign<ZulGetNrOfProcess>},
    {"ZulGetProcessName",             QueryOver::Processes,      ofOne<ZulGetProcessName>},
    {"ZulGetProcessId",               QueryOver::Processes,      ofOne<ZulGetProcessId>},
    {"ZulGetProcessClk",              QueryOver::Processes,      ofOne<ZulGetProcessClk>},
    {"ZulGetNrOfParam",               QueryOver::Modules,        ofOne<ZulGetNrOfParam>},
    {"ZulGetParamName",               QueryOver::ModuleParams,   ofTwo<ZulGetParamName>},
    {"ZulGetParamFullName",           QueryOver::ModuleParams,   ofTwo<ZulGetParamFullName>},
    {"ZulGetParamFullNameHier",       QueryOver::ModuleParams,   ofTwo<ZulGetParamFullNameHier>},
    {"ZulGetParamValue",              QueryOver::ModuleParams,   ofTwo<ZulGetParamValue>},
    {"ZulGetParamValue64",            QueryOver::ModuleParams,   ofTwo<ZulGetParamValue64>},
    {"ZulGetParamValueDouble",        QueryOver::ModuleParams,   ofTwo<ZulGetParamValueDouble>},
    {"ZulGetParamFlags",              QueryOver::ModuleParams,   ofTwo<ZulGetParamFlags>},
    {"ZulGetAbsolutParamIndex",       QueryOver::ModuleParams,   ofTwo<ZulGetAbsolutParamIndex>},
    {"ZulGetRelativeParamIndex",      QueryOver::ModuleAbsolute, ofTwo<ZulGetRelativeParamIndex>},
    {"ZulGetNrOfParameter",           QueryOver::Design,         ofDesign<ZulGetNrOfParameter>},
    {"ZulGetParamModuleIndex",        QueryOver::Params,         ofOne<ZulGetParamModuleIndex>},
    {"ZulGetAbsolutParamValue",       QueryOver::Params,         ofOne<ZulGetAbsolutParamValue>},
    {"ZulGetParameterName",           QueryOver::Params,         ofOne<ZulGetParameterName>},
    {"ZulGetParameterFullName",       QueryOver::Params,         ofOne<ZulGetParameterFullName>},
    {"ZulGetNrOfDmas",                QueryOver::Design,         ofDesign<ZulGetNrOfDmas>},
    {"ZulGetDmaWidth",                QueryOver::Dmas,           ofOne<ZulGetDmaWidth>},
    {"ZulGetDmaHeight",               QueryOver::Dmas,           ofOne<ZulGetDmaHeight>},
    {"ZulGetDmaFormat",               QueryOver::Dmas,           ofOne<ZulGetDmaFormat>},
    {"ZulGetDmaBitWidth",             QueryOver::Dmas,           ofOne<ZulGetDmaBitWidth>},
    {"ZulGetDmaModuleNr",             QueryOver::Dmas,           ofOne<ZulGetDmaModuleNr>},
    {"ZulGetDmaChannel",              QueryOver::Dmas,           ofOne<ZulGetDmaChannel>},
    {"ZulGetProcessNrFromDmaChannel", QueryOver::Dmas,           ofOne<ZulGetProcessNrFromDmaChannel>},
    {"ZulGetNrOfCams",                QueryOver::Design,         ofDesign<ZulGetNrOfCams>},
    {"ZulGetCamChannel",              QueryOver::Cameras,        ofOne<ZulGetCamChannel>},
    {"ZulGetNrOfCamsPerProcess",      QueryOver::ProcessIds,     ofProcessId<ZulGetNrOfCamsPerProcess>},
    {"ZulGetCamChannelPerProcess",    QueryOver::ProcessCameras, ofProcessCamera<ZulGetCamChannelPerProcess>},
    {"ZulGetNrOfRegister",            QueryOver::Design,         ofDesign<ZulGetNrOfRegister>},
    {"ZulGetRegisterByName",          QueryOver::RegisterNames,  ofName<ZulGetRegisterByName>},
    {"ZulGetRegisterBitRange",        QueryOver::Registers,      ofOne<ZulGetRegisterBitRange>},
    {"ZulGetRegisterBitPos",          QueryOver::Registers,      ofOne<ZulGetRegisterBitPos>},
    {"ZulGetRegisterInitValue",       QueryOver::Registers,      ofOne<ZulGetRegisterInitValue>},
    {"ZulGetRegisterDirection",       QueryOver::Registers,      ofOne<ZulGetRegisterDirection>},
    {"ZulGetRegisterAddress",         QueryOver::Registers,      ofOne<ZulGetRegisterAddress>},
    {"ZulGetRegisterName",            QueryOver::Registers,      ofOne<ZulGetRegisterName>},
    {"ZulGetNrOfUserInfos",           QueryOver::Design,         ofDesign<ZulGetNrOfUserInfos>},
    {"ZulGetUserInfoByNumber",        QueryOver::UserInfos,      userInfoByNumber},
    {"ZulGetUserInfoByName",          QueryOver::UserInfoNames,  userInfoByName},
    {"ZulGetUserInfoTypByNumber",     QueryOver::UserInfos,      ofOne<ZulGetUserInfoTypByNumber>},
    {"ZulGetUserInfoTypByName",       QueryOver::UserInfoNames,  ofName<ZulGetUserInfoTypByName>},
    {"ZulGetDesignVersion",           QueryOver::Design,         ofDesign<ZulGetDesignVersion>},
    {"ZulGetDesignVersionNumber",     QueryOver::Design,         designVersionNumber},
    {"ZulGetRequiredFixedVersion",    QueryOver::Design,         requiredFixedVersion},
    {"ZulGetMaxConfigIndex",          QueryOver::Design,         ofDesign<ZulGetMaxConfigIndex>},
    {"ZulGetConfigData",              QueryOver::Configurations, configData},
    {"ZulGetOperatorDir",             QueryOver::Design,         ofDesign<ZulGetOperatorDir>},
    {"ZulSupportsOs",                 QueryOver::Systems,        ofOne<ZulSupportsOs>},
    {"ZulGetEvent",                   QueryOver::Events,         ofOne<ZulGetEvent>},
    {"ZulGetDesignData",              QueryOver::Design,         designData},
    {"ZulGetDesignLength",            QueryOver::Design,         ofDesign<ZulGetDesignLength>},
    {"ZulGetDesignTyp",               QueryOver::Design,         ofDesign<ZulGetDesignTyp>},
    {"ZulStripConfigs",               QueryOver::Design,         stripConfigs},
};
// clang-format on

} // namespace

std::span<ExportedQuery const> exportedQueries()
{
    return queries;
}
