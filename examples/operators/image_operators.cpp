#include "operator_catalog.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using namespace examples;

constexpr double maxPixel = 0xFFFF;

std::uint16_t pixel(double value)
{
    return static_cast<std::uint16_t>(std::lround(std::clamp(value, 0.0, maxPixel)));
}

/// Camera, Buffer and Dma: they move pixels and change none, but end a line at their width.
class Transfer : public Operator {
public:
    explicit Transfer(char const* kind) : m_kind(kind) {}

    char const* kind() const noexcept override { return m_kind; }

    bool set(char const* parameter, double value) override
    {
        return std::string_view(parameter) == "Width" && setWithin(m_width, value, 1, maxPixel);
    }

    Samples run(Samples const& line) const override
    {
        auto const width = std::min(line.size(), static_cast<std::size_t>(m_width));
        return {line.begin(), line.begin() + static_cast<std::ptrdiff_t>(width)};
    }

private:
    char const* m_kind;
    double m_width = 2048;
};

class Camera final : public Transfer {
public:
    Camera() : Transfer("Camera") {}
};

class Buffer final : public Transfer {
public:
    Buffer() : Transfer("Buffer") {}
};

class Dma final : public Transfer {
public:
    Dma() : Transfer("Dma") {}
};

/// A symmetric filter of five taps; pixels outside of the line count like those at its ends.
class Fir final : public Operator {
public:
    char const* kind() const noexcept override { return "Fir"; }

    bool set(char const* parameter, double value) override
    {
        return std::string_view(parameter) == "Gain" && setWithin(m_gain, value, 0, 16);
    }

    Samples run(Samples const& line) const override
    {
        Samples filtered(line.size());
        for (std::size_t i = 0; i < line.size(); ++i) {
            filtered[i] = pixel(m_gain * weightedSum(line, i));
        }
        return filtered;
    }

private:
    static constexpr std::array<double, 5> taps{1. / 16, 4. / 16, 6. / 16, 4. / 16, 1. / 16};

    static double weightedSum(Samples const& line, std::size_t center)
    {
        double sum = 0;
        for (std::size_t tap = 0; tap < taps.size(); ++tap) {
            std::size_t const right = std::max(center + tap, taps.size() / 2) - taps.size() / 2;
            sum += taps[tap] * line[std::min(right, line.size() - 1)];
        }
        return sum;
    }

    double m_gain = 1;
};

/// Gamma correction by table.
class Lut final : public Operator {
public:
    char const* kind() const noexcept override { return "Lut"; }

    bool set(char const* parameter, double value) override
    {
        return std::string_view(parameter) == "Gamma" && setWithin(m_gamma, value, 0.1, 10);
    }

    Samples run(Samples const& line) const override
    {
        Samples corrected(line.size());
        std::transform(line.begin(), line.end(), corrected.begin(), [this](std::uint16_t value) {
            return pixel(maxPixel * std::pow(value / maxPixel, 1 / m_gamma));
        });
        return corrected;
    }

private:
    double m_gamma = 1;
};

/// Keeps the first pixel of each group.
class Sampler final : public Operator {
public:
    char const* kind() const noexcept override { return "Sampler"; }

    bool set(char const* parameter, double value) override
    {
        return std::string_view(parameter) == "Step" && setWithin(m_step, value, 1, 64);
    }

    Samples run(Samples const& line) const override
    {
        Samples sampled;
        for (std::size_t i = 0; i < line.size(); i += static_cast<std::size_t>(m_step)) {
            sampled.push_back(line[i]);
        }
        return sampled;
    }

private:
    double m_step = 2;
};

constexpr OperatorKind kinds[] = {
    {"Camera", makeOperator<Camera>}, {"Buffer", makeOperator<Buffer>}, {"Fir", makeOperator<Fir>},
    {"Lut", makeOperator<Lut>},       {"Dma", makeOperator<Dma>},       {"Sampler", makeOperator<Sampler>},
};

} // namespace

examples::Operator* ImageOperatorsQelLocalCreate(char const* instance)
{
    return examples::createOperator(kinds, instance);
}
