#include "each_tag.h"
#include "exported_queries.h"
#include "text_output.h"
#include "zullib.h"

#include <set>
#include <utility>

namespace {

using Design = fpga_design const*;

using ArgumentList = std::vector<QueryArguments>;

/// A number that nothing has.
constexpr unsigned int missing = 0xFFFFFFFE;

ArgumentList numbers(unsigned int first, int count)
{
    ArgumentList list;
    for (unsigned int i = 0; i < static_cast<unsigned int>(count); ++i) {
        list.push_back({.first = first + i});
    }
    list.push_back({.first = first + static_cast<unsigned int>(count), .isMiss = true});
    return list;
}

/// @param countOf how many there are of a module
template <class CountOf>
ArgumentList perModule(Design design, CountOf const& countOf)
{
    ArgumentList list;
    for (unsigned int i = 0; i < static_cast<unsigned int>(ZulGetNrOfModules(design)); ++i) {
        for (unsigned int j = 0; j < countOf(i); ++j) {
            list.push_back({.first = i, .second = j});
        }
    }
    list.push_back({.first = static_cast<unsigned int>(ZulGetNrOfModules(design)), .isMiss = true});
    return list;
}

ArgumentList moduleParams(Design design)
{
    return perModule(design,
                     [=](unsigned int i) { return static_cast<unsigned int>(ZulGetNrOfParam(design, i)); });
}

ArgumentList moduleAbsolutes(Design design)
{
    ArgumentList list = moduleParams(design);
    for (QueryArguments& arguments : list) {
        arguments.second =
            static_cast<unsigned int>(ZulGetAbsolutParamIndex(design, arguments.first, arguments.second));
    }
    return list;
}

std::set<int> processIds(Design design)
{
    std::set<int> ids;
    for (unsigned int i = 0; i < static_cast<unsigned int>(ZulGetNrOfProcess(design)); ++i) {
        ids.insert(ZulGetProcessId(design, i));
    }
    return ids;
}

ArgumentList processes(Design design)
{
    ArgumentList list;
    for (int const id : processIds(design)) {
        list.push_back({.first = static_cast<unsigned int>(id)});
    }
    list.push_back({.first = missing, .isMiss = true});
    return list;
}

ArgumentList processCameras(Design design)
{
    ArgumentList list;
    for (int const id : processIds(design)) {
        for (unsigned int n = 0; n < static_cast<unsigned int>(ZulGetNrOfCamsPerProcess(design, id)); ++n) {
            list.push_back({.first = n, .second = static_cast<unsigned int>(id)});
        }
    }
    list.push_back({.first = 0, .second = missing, .isMiss = true});
    return list;
}

/// Every name once, in the order of the list.
class Names {
public:
    void add(char const* name)
    {
        if (name != nullptr && m_known.insert(name).second) {
            m_list.push_back({.name = name});
        }
    }
    ArgumentList withMiss()
    {
        m_list.push_back({.name = "no such name", .isMiss = true});
        return std::move(m_list);
    }

private:
    std::set<std::string> m_known;
    ArgumentList m_list;
};

ArgumentList registerNames(ZUL const& zul)
{
    Names names;
    forEach<ZUL_register>(zul, [&names](ZUL_register const& reg) { names.add(reg.getName()); });
    forEach<ZUL_register_link>(zul, [&names](ZUL_register_link const& link) { names.add(link.getAlias()); });
    return names.withMiss();
}

ArgumentList userInfoNames(ZUL const& zul)
{
    Names names;
    names.add("##_RZ3_DESIGN_SETTINGS");
    names.add("DESIGN_NAME");
    forEach<ZUL_user_info>(zul, [&names](ZUL_user_info const& info) { names.add(info.getInfo()); });
    return names.withMiss();
}

ArgumentList configurations(ZUL const& zul)
{
    ArgumentList list;
    for (unsigned int i = 0; i < zul.getConfigCount(); ++i) {
        ZUL_multi_data const& config = *zul.getConfigAt(i);
        list.push_back({.first = config.getIndex(), .second = config.getBoardType()});
    }
    list.push_back({.first = missing, .isMiss = true});
    return list;
}

ArgumentList systems(ZUL const& zul)
{
    std::set<unsigned int> known;
    forEach<ZUL_dll>(zul, [&known](ZUL_dll const& library) { known.insert(library.getSystem()); });
    ArgumentList list;
    for (unsigned int const system : known) {
        list.push_back({.first = system});
    }
    list.push_back({.first = missing, .isMiss = true});
    return list;
}

int eventCount(Design design)
{
    unsigned int count = 0;
    while (ZulGetEvent(design, count) != nullptr) {
        ++count;
    }
    return static_cast<int>(count);
}

bool takesNames(QueryOver over)
{
    return over == QueryOver::RegisterNames || over == QueryOver::UserInfoNames;
}

bool takesTwo(QueryOver over)
{
    return over == QueryOver::ModuleParams || over == QueryOver::ModuleChannels ||
           over == QueryOver::ModuleAbsolute || over == QueryOver::ProcessCameras ||
           over == QueryOver::Configurations;
}

} // namespace

std::vector<QueryArguments> argumentsFor(QueryOver over, fpga_design const* design, ZUL const& zul)
{
    switch (over) {
    case QueryOver::Design:
        return {{}};
    case QueryOver::Modules:
        return numbers(0, ZulGetNrOfModules(design));
    case QueryOver::Processes:
        return numbers(0, ZulGetNrOfProcess(design));
    case QueryOver::ModuleParams:
        return moduleParams(design);
    case QueryOver::ModuleChannels:
        return perModule(design, [=](unsigned int i) {
            return ZulModuleGetChannelCount(ZulGetModuleByNumber(design, i));
        });
    case QueryOver::ModuleAbsolute:
        return moduleAbsolutes(design);
    case QueryOver::Params:
        return numbers(0, ZulGetNrOfParameter(design));
    case QueryOver::Dmas:
        return numbers(0, ZulGetNrOfDmas(design));
    case QueryOver::Cameras:
        return numbers(0, ZulGetNrOfCams(design));
    case QueryOver::ProcessIds:
        return processes(design);
    case QueryOver::ProcessCameras:
        return processCameras(design);
    case QueryOver::Registers:
        return numbers(1, ZulGetNrOfRegister(design));
    case QueryOver::RegisterNames:
        return registerNames(zul);
    case QueryOver::UserInfos:
        return numbers(0, ZulGetNrOfUserInfos(design));
    case QueryOver::UserInfoNames:
        return userInfoNames(zul);
    case QueryOver::Events:
        return numbers(0, eventCount(design));
    case QueryOver::Configurations:
        return configurations(zul);
    case QueryOver::Systems:
        return systems(zul);
    }
    return {};
}

std::string argumentsText(QueryOver over, QueryArguments const& arguments)
{
    if (over == QueryOver::Design) {
        return "";
    }
    if (takesNames(over)) {
        return asQuoted(arguments.name);
    }
    std::string const first = std::to_string(arguments.first);
    return takesTwo(over) ? first + ", " + std::to_string(arguments.second) : first;
}

Json argumentsJson(QueryOver over, QueryArguments const& arguments)
{
    if (over == QueryOver::Design) {
        return Json::array();
    }
    if (takesNames(over)) {
        return Json::array({jsonText(arguments.name)});
    }
    return takesTwo(over) ? Json::array({arguments.first, arguments.second}) : Json::array({arguments.first});
}
