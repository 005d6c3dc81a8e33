#include "sample_design.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

namespace sample {

namespace {

using Integers = std::vector<std::int64_t>;
using Reals = std::vector<double>;
using Value = std::variant<unsigned long long, double, char const*, Integers, Reals>;

// What the tool that made this design means by the types that have no name.
constexpr QL_ParamType int32{1};
constexpr QL_ParamType uint32{2};
constexpr QL_ParamType int64{3};
constexpr QL_ParamType uint64{4};
constexpr QL_ParamType real{5};
constexpr QL_ParamType text{13};
constexpr QL_ParamType fileName{14};
constexpr QL_ParamType choice{16};

enum Flags : unsigned int { fixedAtBuild = 0, writable = 1, writableWhileRunning = 3, status = 4 };

struct Parameter {
    char const* module;
    char const* name;
    QL_ParamType type;
    Value value;
    unsigned int flags;
};

Integers squareTable()
{
    constexpr std::int64_t last = 255;
    Integers table;
    for (std::int64_t i = 0; i <= last; ++i) {
        table.push_back(i * i * 4095 / (last * last));
    }
    return table;
}

// clang-format off
std::vector<Parameter> parameters()
{
    return {
        {"Camera0",  "Width",           uint32,         2048ULL,                   writable},
        {"Camera0",  "Height",          uint32,         1088ULL,                   writable},
        {"Camera0",  "Taps",            int32,          10ULL,                     fixedAtBuild},
        {"Camera0",  "ExposureTime",    real,           850.5,                     writableWhileRunning},
        {"Camera0",  "PixelFormat",     choice,         "Mono8",                   writable},
        {"Camera0",  "Settings",        fileName,       "camera0.cfg",             writable},
        {"Camera0",  "Timestamp",       uint64,         0x1122334455ULL,           status},
        {"Buffer0",  "Width",           uint32,         2048ULL,                   writable},
        {"Buffer0",  "Height",          uint32,         1088ULL,                   writable},
        {"Buffer0",  "StartAddress",    uint64,         0ULL,                      fixedAtBuild},
        {"Buffer0",  "FillLevel",       int32,          0ULL,                      status},
        {"Fir0",     "Width",           uint32,         2048ULL,                   writable},
        {"Fir0",     "Gain",            real,           1.25,                      writableWhileRunning},
        {"Fir0",     "Coefficients",    QL_SINTFIELD,   Integers{-1, 4, 10, 4, -1}, writableWhileRunning},
        {"Fir0",     "Description",     text,           "sharpens along the line", fixedAtBuild},
        {"Lut0",     "Gamma",           real,           0.5,                       writableWhileRunning},
        {"Lut0",     "Table",           QL_UINTFIELD,   squareTable(),             writableWhileRunning},
        {"Lut0",     "TableFile",       fileName,       "",                        writable},
        {"Dma0",     "Width",           uint32,         2048ULL,                   writable},
        {"Dma0",     "Timeout",         uint32,         5000ULL,                   writableWhileRunning},
        {"Dma0",     "BytesMoved",      uint64,         0ULL,                      status},
        {"Encoder0", "StepsPerEdge",    int32,          4ULL,                      writable},
        {"Encoder0", "Position",        int64,          0ULL,                      status},
        {"Encoder0", "Inputs",          choice,         "AB",                      writable},
        {"Trigger0", "Divider",         uint32,         4ULL,                      writableWhileRunning},
        {"Trigger0", "DelayClocks",     uint32,         250ULL,                    writableWhileRunning},
        {"Trigger0", "Sequence",        QL_DOUBLEFIELD, Reals{0.0, 12.5, 25.0, 50.0}, writable},
        {"Camera1",  "Width",           uint32,         1024ULL,                   writable},
        {"Camera1",  "Height",          uint32,         1024ULL,                   writable},
        {"Camera1",  "ExposureTime",    real,           4000.0,                    writableWhileRunning},
        {"Camera1",  "PixelFormat",     choice,         "Mono8",                   writable},
        {"Buffer1",  "Width",           uint32,         1024ULL,                   writable},
        {"Buffer1",  "Height",          uint32,         1024ULL,                   writable},
        {"Sampler1", "Step",            uint32,         2ULL,                      writable},
        {"Sampler1", "Description",     text,           "keeps each second pixel", fixedAtBuild},
        {"Dma1",     "Width",           uint32,         512ULL,                    writable},
        {"Dma1",     "Timeout",         uint32,         5000ULL,                   writableWhileRunning},
        {"Strobe1",  "PulseClocks",     uint32,         6250ULL,                   writableWhileRunning},
        {"Strobe1",  "Currents",        QL_DOUBLEFIELD, Reals{0.35, 0.7, 1.05, 1.4}, writableWhileRunning},
    };
}

struct Link {
    char const* sourceModule;
    char const* source;
    char const* destinationModule;
    char const* destination;
    bool flag;
};

constexpr Link links[] = {
    {"Camera0",  "Width",        "Buffer0",  "Width",       true},
    {"Camera0",  "Height",       "Buffer0",  "Height",      true},
    {"Buffer0",  "Width",        "Fir0",     "Width",       true},
    {"Fir0",     "Width",        "Dma0",     "Width",       true},
    {"Encoder0", "StepsPerEdge", "Trigger0", "Divider",     false},
    {"Camera1",  "Width",        "Buffer1",  "Width",       true},
    {"Camera1",  "Height",       "Buffer1",  "Height",      true},
};
// clang-format on

/// Gives a parameter its value, each kind in its own way.
struct SetValue {
    ZUL_param& parameter;

    void operator()(unsigned long long value) const { parameter.setValue(value); }
    void operator()(double value) const { parameter.setValue(value); }
    void operator()(char const* value) const { parameter.setParamString(value); }
    void operator()(Integers const& value) const { setField(value, ZUL_param::FIELD_INTEGER); }
    void operator()(Reals const& value) const { setField(value, ZUL_param::FIELD_DOUBLE); }

    template <class Field>
    void setField(Field const& value, ZUL_param::fieldType kind) const
    {
        parameter.setField(value.data(), kind, static_cast<unsigned int>(value.size()));
    }
};

/// Position of a parameter among those of its module: what links count in.
int positionOf(ZUL const& design, ZUL_module const& owner, std::string_view name)
{
    int position = 0;
    for (ZUL_param const* each : all<ZUL_param>(design)) {
        if (each->getModule() == &owner) {
            if (each->getName() == name) {
                return position;
            }
            ++position;
        }
    }
    throw std::invalid_argument("no parameter " + std::string(name) + " in " + owner.getInstance());
}

} // namespace

void addParameters(ZUL& design)
{
    for (Parameter const& each : parameters()) {
        auto& added = add<ZUL_param>(design, each.type, &module(design, each.module));
        added.setName(each.name);
        added.setFlags(each.flags);
        std::visit(SetValue{added}, each.value);
    }
}

void addParameterLinks(ZUL& design)
{
    for (Link const& each : links) {
        ZUL_module const& source = module(design, each.sourceModule);
        ZUL_module const& destination = module(design, each.destinationModule);
        auto& added = add<ZUL_param_link>(design, &source, &destination);
        added.setSourceParamIndex(positionOf(design, source, each.source));
        added.setSourceName(each.source);
        added.setDestinationParamIndex(positionOf(design, destination, each.destination));
        added.setDestinationName(each.destination);
        added.setDestinationModuleName(destination.getFullName());
        added.setFlag(each.flag);
    }
}

} // namespace sample
