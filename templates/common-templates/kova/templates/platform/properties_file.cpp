#include "kova/templates/platform/properties_file.h"

#include "kova/templates/platform/descriptor.h"

#include <algorithm>
#include <array>
#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <cerrno>
#include <fcntl.h>
#include <locale>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace kova::templates::platform {

namespace {

constexpr std::string_view sectionSeparator = "::";

/// @return 0 or the errno for what is not read
int whyNotReadable(struct stat const& status)
{
    if (S_ISREG(status.st_mode)) {
        return 0;
    }
    return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
}

/// Everything that is left in @p file; nothing, with errno set, when reading fails.
std::optional<std::string> restOf(Descriptor const& file)
{
    std::string text;
    std::array<char, 16384> part{};
    for (;;) {
        ssize_t const count = ::read(file.get(), part.data(), part.size());
        if (count == 0) {
            return text;
        }
        if (count > 0) {
            text.append(part.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return std::nullopt;
        }
    }
}

std::optional<std::string> textOf(std::string const& path)
{
    // Without O_NONBLOCK the open itself would wait for somebody to write into a FIFO.
    Descriptor const file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        return std::nullopt;
    }
    if (int const error = whyNotReadable(status); error != 0) {
        errno = error;
        return std::nullopt;
    }
    return restOf(file);
}

std::string_view trimmed(std::string_view text)
{
    return boost::algorithm::trim_copy(text, std::locale::classic());
}

/// The first line of @p text, which loses it.
std::string_view takeLine(std::string_view& text)
{
    std::string_view const line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    return line;
}

/// What is between the brackets of a section's line.
std::optional<std::string_view> sectionName(std::string_view line)
{
    if (!line.starts_with('[') || !line.ends_with(']')) {
        return std::nullopt;
    }
    return trimmed(line.substr(1, line.size() - 2));
}

} // namespace

std::string PropertiesFile::storedForm(std::string_view key) const
{
    std::string form(key);
    if (!m_isCaseSensitive) {
        boost::algorithm::to_upper(form, std::locale::classic());
    }
    return form;
}

PropertiesFile::Contents PropertiesFile::contentsOf(std::string_view text) const
{
    Contents contents;
    Section* section = &contents.beforeSections;
    for (std::size_t number = 1; !text.empty(); ++number) {
        std::string_view const whole = takeLine(text);
        std::string_view const line = trimmed(whole.substr(0, whole.find('#')));
        std::size_t const equals = line.find('=');
        if (std::optional<std::string_view> const name = sectionName(line); m_hasSections && name) {
            section = &contents.sections[storedForm(*name)];
        } else if (equals != std::string_view::npos) {
            (*section)[storedForm(trimmed(line.substr(0, equals)))] = {
                std::string(trimmed(line.substr(equals + 1))), number};
        }
    }
    return contents;
}

bool PropertiesFile::load(std::string const& file, bool, bool)
{
    RecursiveMutexGuard const guard(&m_mutex);
    m_contents = {};
    std::optional<std::string> const text = textOf(file);
    if (text) {
        m_contents = contentsOf(*text);
    }
    return text.has_value();
}

PropertiesFile::Value const* PropertiesFile::find(std::string_view storedKey) const
{
    Value const* last = nullptr;
    auto const look = [&last](Section const& section, std::string_view key) {
        auto const value = section.find(key);
        if (value != section.end() && (last == nullptr || value->second.line > last->line)) {
            last = &value->second;
        }
    };
    look(m_contents.beforeSections, storedKey);
    // Names of sections and keys may themselves hold the separator.
    for (std::size_t at = 0; (at = storedKey.find(sectionSeparator, at)) != std::string_view::npos; ++at) {
        auto const section = m_contents.sections.find(storedKey.substr(0, at));
        if (section != m_contents.sections.end()) {
            look(section->second, storedKey.substr(at + sectionSeparator.size()));
        }
    }
    return last;
}

std::string PropertiesFile::property(std::string const& key, bool* found) const
{
    RecursiveMutexGuard const guard(&m_mutex);
    Value const* const value = find(storedForm(key));
    if (found != nullptr) {
        *found = value != nullptr;
    }
    return value == nullptr ? std::string() : value->text;
}

} // namespace kova::templates::platform
