#pragma once

#include "json_output.h"
#include "zul_class.h"
#include "zulrt.h"

#include <span>
#include <string>
#include <vector>

/// The arguments of one call after the handle; how many of them count, and which, depends on the function.
struct QueryArguments {
    unsigned int first = 0;
    unsigned int second = 0;
    std::string name{};
    bool isMiss = false; ///< made to show what a miss answers
};

/// What a function is asked about one after the other.
enum class QueryOver {
    Design,         ///< once, without arguments
    Modules,        ///< module
    Processes,      ///< process
    ModuleParams,   ///< module, parameter within it
    ModuleChannels, ///< module, channel within it
    ModuleAbsolute, ///< module, parameter of the design
    Params,         ///< parameter of the design
    Dmas,           ///< DMA channel
    Cameras,        ///< camera
    ProcessIds,     ///< process id
    ProcessCameras, ///< camera within the process, process id
    Registers,      ///< register, from 1
    RegisterNames,  ///< name
    UserInfos,      ///< user info
    UserInfoNames,  ///< name
    Events,         ///< event
    Configurations, ///< configuration index, board
    Systems         ///< system of a library
};

/// One function of the C interface that asks a design something.
struct ExportedQuery {
    char const* function;
    QueryOver over;
    /// The answer as the caller gets it; null pointers are null, records objects, bytes their number and digest.
    Json (*ask)(fpga_design const* design, QueryArguments const& arguments);
};

/// All of them in the order of zulrt.h.
std::span<ExportedQuery const> exportedQueries();

/// The arguments that make sense for @p design; as the last ones, except for those without arguments, some that miss.
/// @param zul the container of the design: it knows the names and numbers that the C interface does not list
std::vector<QueryArguments> argumentsFor(QueryOver over, fpga_design const* design, ZUL const& zul);

/// The arguments as text, such as 3, 'Width' or 0, 1.
std::string argumentsText(QueryOver over, QueryArguments const& arguments);
/// The same as a list.
Json argumentsJson(QueryOver over, QueryArguments const& arguments);
