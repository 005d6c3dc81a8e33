#include "results.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <ostream>

namespace {

constexpr double width = 860;
constexpr double height = 540;
constexpr double left = 78;
constexpr double right = 660;
constexpr double top = 78;
constexpr double bottom = 478;
constexpr double nameHeight = 20;

// Colours that can be told apart on white and on black, one a format; the first one stands out by its weight as well.
constexpr std::array lightColours{"#0b57d0", "#12a4b8", "#7a7f87", "#d1495b", "#e8871e",
                                  "#2e8b57", "#8e5bd0", "#b08900", "#c2477f"};
constexpr std::array darkColours{"#7cb4ff", "#4fd1e0", "#a3a9b2", "#ff7f8e", "#ffb25c",
                                 "#63d197", "#c3a0ff", "#e6c34a", "#ff8fc0"};

/// A logarithmic axis.
struct Axis {
    double first; // logarithms
    double last;
    double from; // pixels
    double to;

    double at(double value) const
    {
        return from + (to - from) * (std::log10(value) - first) / (last - first);
    }
    /// The powers of ten that lie on it.
    int firstDecade() const { return static_cast<int>(std::ceil(first)); }
    int lastDecade() const { return static_cast<int>(std::floor(last)); }
};

/// @param margin room before the lowest and behind the highest value, as a factor
Axis axisOver(double lowest, double highest, double margin, double from, double to)
{
    return {std::log10(lowest / margin), std::log10(highest * margin), from, to};
}

std::string fixed(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

/// 1, 10, 100, 1,000 ... of the largest unit that fits.
std::string timeLabel(int power)
{
    constexpr std::array units{"µs", "ms", "s"};
    int const unit = std::clamp(power + 6, 0, 8) / 3;
    return std::to_string(static_cast<int>(std::lround(std::pow(10, power + 6 - 3 * unit)))) + " " +
           units.at(static_cast<std::size_t>(unit));
}

class Plot {
public:
    Plot(std::ostream& out, std::span<SizeResult const> results)
        : m_out(out), m_results(results), m_x(xAxis(results)), m_y(yAxis(results))
    {
    }

    void print()
    {
        printHead();
        printGrid();
        // The first format is drawn last, on top of the others.
        for (std::size_t format = formatCount(); format-- > 0;) {
            printLine(format);
        }
        printNames();
        m_out << "</svg>\n";
    }

private:
    static Axis xAxis(std::span<SizeResult const> results)
    {
        auto const [least, most] =
            std::minmax_element(results.begin(), results.end(),
                                [](auto const& a, auto const& b) { return a.records < b.records; });
        return axisOver(least->records, most->records, 1.05, left, right);
    }

    static Axis yAxis(std::span<SizeResult const> results)
    {
        double least = std::numeric_limits<double>::infinity();
        double most = 0;
        for (SizeResult const& size : results) {
            for (FormatResult const& format : size.formats) {
                least = std::min(least, format.median(wholeJob));
                most = std::max(most, format.median(wholeJob));
            }
        }
        return axisOver(least, most, 1.6, bottom, top);
    }

    std::size_t formatCount() const { return m_results.front().formats.size(); }

    double pointX(SizeResult const& size) const { return m_x.at(size.records); }
    double pointY(SizeResult const& size, std::size_t format) const
    {
        return m_y.at(size.formats.at(format).median(wholeJob));
    }

    void printColours(std::span<char const* const> colours, char const* paper, char const* text,
                      char const* grid)
    {
        m_out << ".paper{fill:" << paper << "}text{fill:" << text << "}.grid{stroke:" << grid << "}";
        for (std::size_t i = 0; i < formatCount(); ++i) {
            char const* const colour = colours[i % colours.size()];
            m_out << ".f" << i << "{stroke:" << colour << "}.f" << i << " circle,.n" << i
                  << "{fill:" << colour << "}";
        }
    }

    void printHead()
    {
        m_out << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " << width << ' ' << height
              << "\" role=\"img\" aria-labelledby=\"title\">\n"
              << "<title id=\"title\">Time to open a design, look up every register, walk every parameter "
                 "and close "
                 "it, over the number of records, for each format</title>\n"
              << "<style>text{font:14px system-ui,-apple-system,'Segoe UI','DejaVu Sans',sans-serif}"
                 ".head{font-size:18px;font-weight:600}.small{font-size:13px}.name{font-weight:500}"
                 ".first{font-weight:700}.grid{stroke-width:1}"
                 ".line{fill:none;stroke-width:2;stroke-linejoin:round;stroke-linecap:round}.line "
                 "circle{stroke:none}"
                 ".f0{stroke-width:4}.lead{stroke-width:1;fill:none;opacity:.7}";
        printColours(lightColours, "#ffffff", "#1f2328", "#d8dce1");
        m_out << "@media(prefers-color-scheme:dark){";
        printColours(darkColours, "#0d1117", "#e6edf3", "#363c44");
        m_out << "}</style>\n"
              << "<rect class=\"paper\" width=\"100%\" height=\"100%\" rx=\"10\"/>\n"
              << "<text class=\"head\" x=\"" << left
              << "\" y=\"30\">Open, look up every register, walk every "
                 "parameter, close</text>\n"
              << "<text class=\"small\" x=\"" << left
              << "\" y=\"52\">time of the whole job; both axes are "
                 "logarithmic, lower is better</text>\n";
    }

    void printGrid()
    {
        for (int power = m_y.firstDecade(); power <= m_y.lastDecade(); ++power) {
            std::string const y = fixed(m_y.at(std::pow(10, power)));
            m_out << "<line class=\"grid\" x1=\"" << left << "\" x2=\"" << right << "\" y1=\"" << y
                  << "\" y2=\"" << y << "\"/><text class=\"small\" text-anchor=\"end\" x=\"" << left - 10
                  << "\" y=\"" << y << "\" dy=\"4.5\">" << timeLabel(power) << "</text>\n";
        }
        for (int power = m_x.firstDecade(); power <= m_x.lastDecade(); ++power) {
            std::string const x = fixed(m_x.at(std::pow(10, power)));
            m_out << "<line class=\"grid\" y1=\"" << top << "\" y2=\"" << bottom << "\" x1=\"" << x
                  << "\" x2=\"" << x << "\"/><text class=\"small\" text-anchor=\"middle\" x=\"" << x
                  << "\" y=\"" << bottom + 22 << "\">"
                  << withThousands(static_cast<std::uint64_t>(std::llround(std::pow(10, power))))
                  << "</text>\n";
        }
        m_out << "<text class=\"small\" text-anchor=\"middle\" x=\"" << (left + right) / 2 << "\" y=\""
              << bottom + 46 << "\">records</text>\n";
    }

    void printLine(std::size_t format)
    {
        m_out << "<g class=\"line f" << format << "\"><polyline points=\"";
        for (SizeResult const& size : m_results) {
            m_out << fixed(pointX(size)) << ',' << fixed(pointY(size, format)) << ' ';
        }
        m_out << "\"/>";
        for (SizeResult const& size : m_results) {
            m_out << "<circle cx=\"" << fixed(pointX(size)) << "\" cy=\"" << fixed(pointY(size, format))
                  << "\" r=\"" << (format == 0 ? 5 : 3.5) << "\"/>";
        }
        m_out << "</g>\n";
    }

    struct Name {
        std::size_t format;
        double end; // of its line
        double y;
    };

    /// Names as near to the ends of their lines as they can stand without touching each other.
    std::vector<Name> placedNames() const
    {
        std::vector<Name> names;
        for (std::size_t format = 0; format < formatCount(); ++format) {
            double const end = pointY(m_results.back(), format);
            names.push_back({format, end, end});
        }
        std::sort(names.begin(), names.end(), [](Name const& a, Name const& b) { return a.end < b.end; });
        // Two that touch move apart by the same distance, until none do: enough rounds for every name to pass it on.
        for (std::size_t round = 0; round < 100 * names.size(); ++round) {
            names.front().y = std::max(names.front().y, top);
            for (std::size_t i = 1; i < names.size(); ++i) {
                double const overlap = names[i - 1].y + nameHeight - names[i].y;
                names[i - 1].y -= std::max(overlap, 0.0) / 2;
                names[i].y += std::max(overlap, 0.0) / 2;
            }
        }
        return names;
    }

    void printNames()
    {
        double const x = pointX(m_results.back());
        for (Name const& name : placedNames()) {
            m_out << "<path class=\"lead f" << name.format << "\" d=\"M" << fixed(x + 8) << ' '
                  << fixed(name.end) << 'L' << fixed(x + 22) << ' ' << fixed(name.y)
                  << "\"/><text class=\"name n" << name.format << (name.format == 0 ? " first" : "")
                  << "\" x=\"" << fixed(x + 28) << "\" y=\"" << fixed(name.y) << "\" dy=\"5\">"
                  << m_results.front().formats.at(name.format).format << "</text>\n";
        }
    }

    std::ostream& m_out;
    std::span<SizeResult const> m_results;
    Axis m_x;
    Axis m_y;
};

} // namespace

void printSvg(std::ostream& out, std::span<SizeResult const> results)
{
    Plot(out, results).print();
}
