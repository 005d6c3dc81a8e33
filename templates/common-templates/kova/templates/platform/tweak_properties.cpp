#include "kova/templates/platform/tweak_properties.h"

#include <algorithm>
#include <array>
#include <boost/algorithm/string/predicate.hpp>
#include <cstdlib>
#include <locale>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace kova::templates::platform {

namespace {

bool isEmpty(char const* text)
{
    return text == nullptr || *text == '\0';
}

bool equalsIgnoringCase(std::string_view left, std::string_view right)
{
    return boost::algorithm::iequals(left, right, std::locale::classic());
}

/// What @p argument sets @p option to, if it does.
std::optional<std::string> valueIn(std::string_view argument, char const* option)
{
    argument.remove_prefix(std::min(argument.find_first_not_of('-'), argument.size()));
    std::size_t const equals = argument.find('=');
    if (equals == std::string_view::npos || !equalsIgnoringCase(argument.substr(0, equals), option)) {
        return std::nullopt;
    }
    return std::string(argument.substr(equals + 1));
}

std::optional<std::string> valueOnCommandLine(char const* option, int argc, char** argv)
{
    if (isEmpty(option) || argv == nullptr) {
        return std::nullopt;
    }
    for (int i = argc - 1; i >= 0; --i) {
        if (argv[i] == nullptr) {
            continue;
        }
        if (std::optional<std::string> value = valueIn(argv[i], option)) {
            return value;
        }
    }
    return std::nullopt;
}

std::runtime_error noValidValue(std::string const& key)
{
    return std::runtime_error("TweakProperties: No valid value found for property '" + key + "'");
}

} // namespace

void TweakProperties::propertyEntriesToPropertyEntryMap(TweakPropertyEntry const* table, EntryMap& map)
{
    for (; table->key != nullptr; ++table) {
        map.emplace(table->key, table);
    }
}

PropertiesFile& TweakProperties::internalPropertiesFile(std::string const& file)
{
    RecursiveMutexGuard const guard(&m_mutex);
    if (!m_isFileLoaded) {
        m_file.load(file);
        m_isFileLoaded = true;
    }
    return m_file;
}

TweakPropertyEntry const& TweakProperties::entryOf(TweakPropertyEntry const* table, std::string const& key)
{
    RecursiveMutexGuard const guard(&m_mutex);
    if (!m_areEntriesKnown) {
        propertyEntriesToPropertyEntryMap(table, m_entries);
        m_areEntriesKnown = true;
    }
    auto const entry = m_entries.find(key);
    if (entry == m_entries.end()) {
        throw std::runtime_error("TweakProperties: Unknown property requested: '" + key + "'");
    }
    return *entry->second;
}

ResolvedProperty TweakProperties::resolve(TweakPropertyEntry const* table, std::string const& file,
                                          std::string const& key, int argc, char** argv)
{
    TweakPropertyEntry const& entry = entryOf(table, key);
    if (std::optional<std::string> const value = valueOnCommandLine(entry.option, argc, argv)) {
        return {*value, PropertySource::CommandLine};
    }
    if (!file.empty() && !key.empty()) {
        std::string const value = internalPropertiesFile(file).property(key, nullptr);
        if (!value.empty()) {
            return {value, PropertySource::File};
        }
    }
    if (!isEmpty(entry.environmentVariable)) {
        if (char const* const value = ::secure_getenv(entry.environmentVariable)) {
            return {value, PropertySource::Environment};
        }
    }
    if (entry.defaultValue == nullptr) {
        throw noValidValue(key);
    }
    return {entry.defaultValue, PropertySource::Default};
}

bool TweakProperties::resolveValue(std::string const& text, bool* result)
{
    static constexpr std::array<char const*, 4> meaningTrue{"yes", "true", "on", "1"};
    *result = std::any_of(meaningTrue.begin(), meaningTrue.end(),
                          [&text](char const* word) { return equalsIgnoringCase(text, word); });
    return true;
}

template <>
bool TweakProperties::property<bool>(TweakPropertyEntry const* table, std::string const& file,
                                     std::string const& key, int argc, char** argv)
{
    bool value = false;
    resolveValue(resolve(table, file, key, argc, argv).text, &value); // every text means one of the two
    return value;
}

} // namespace kova::templates::platform
