#include "operator_catalog.h"

namespace {

using namespace examples;

// Signals are runs of samples, one for each clock of the process: 0 is low, anything else is high.

bool risesAt(Samples const& signal, std::size_t i)
{
    return signal[i] != 0 && (i == 0 || signal[i - 1] == 0);
}

/// Lets each n-th rising edge pass.
class Trigger final : public Operator {
public:
    char const* kind() const noexcept override { return "Trigger"; }

    bool set(char const* parameter, double value) override
    {
        return std::string_view(parameter) == "Divider" && setWithin(m_divider, value, 1, 65535);
    }

    Samples run(Samples const& line) const override
    {
        Samples pulses(line.size());
        auto const divider = static_cast<std::size_t>(m_divider);
        std::size_t edges = 0;
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (risesAt(line, i)) {
                pulses[i] = edges % divider == 0 ? 1 : 0;
                ++edges;
            }
        }
        return pulses;
    }

private:
    double m_divider = 1;
};

/// Counts rising edges.
class Encoder final : public Operator {
public:
    char const* kind() const noexcept override { return "Encoder"; }

    bool set(char const* parameter, double value) override
    {
        return std::string_view(parameter) == "StepsPerEdge" && setWithin(m_steps, value, 1, 4);
    }

    Samples run(Samples const& line) const override
    {
        Samples positions(line.size());
        std::uint32_t position = 0;
        for (std::size_t i = 0; i < line.size(); ++i) {
            position += risesAt(line, i) ? static_cast<std::uint32_t>(m_steps) : 0;
            positions[i] = static_cast<std::uint16_t>(position & 0xFFFF);
        }
        return positions;
    }

private:
    double m_steps = 1;
};

/// Stretches each rising edge to a pulse of fixed length.
class Strobe final : public Operator {
public:
    char const* kind() const noexcept override { return "Strobe"; }

    bool set(char const* parameter, double value) override
    {
        return std::string_view(parameter) == "PulseClocks" && setWithin(m_clocks, value, 1, 65535);
    }

    Samples run(Samples const& line) const override
    {
        Samples pulses(line.size());
        std::size_t end = 0;
        for (std::size_t i = 0; i < line.size(); ++i) {
            end = risesAt(line, i) ? i + static_cast<std::size_t>(m_clocks) : end;
            pulses[i] = i < end ? 1 : 0;
        }
        return pulses;
    }

private:
    double m_clocks = 1;
};

constexpr OperatorKind kinds[] = {
    {"Trigger", makeOperator<Trigger>},
    {"Encoder", makeOperator<Encoder>},
    {"Strobe", makeOperator<Strobe>},
};

} // namespace

examples::Operator* SignalOperatorsQelLocalCreate(char const* instance)
{
    return examples::createOperator(kinds, instance);
}
