#pragma once

#include "kova/templates/platform/properties_file.h"
#include "kova/templates/platform/recursive_mutex.h"

#include <map>
#include <string>

namespace kova::templates::platform {

/// A property that can be set. A table of them ends with an entry of null texts.
struct TweakPropertyEntry {
    char const* key;                 ///< its name in the configuration file: section, "::" and name
    char const* environmentVariable; ///< empty or null for none
    char const* option;              ///< of the command line, without dashes; empty or null for none
    char const* defaultValue;
};

/// Where a property's value was found, from the source that goes first to the one that goes last.
enum class PropertySource { CommandLine, File, Environment, Default };

struct ResolvedProperty {
    std::string text;
    PropertySource source;
};

/// Finds the values of properties. The first source that has a value ends the search, whatever the value says.
///
/// An object builds its map of keys from the first table and reads the first file that it is asked about, and neither
/// of them again. May be used from several threads at once.
class TweakProperties {
public:
    using EntryMap = std::map<std::string, TweakPropertyEntry const*>;

    /// @throws std::system_error when the system cannot make a mutex
    TweakProperties() = default;

    /// The value of @p key. There is bool only: true for "yes", "true", "on" and "1", upper and lower case being the
    /// same, and false for every other text.
    /// @throws as resolve() does
    template <class Type>
    Type property(TweakPropertyEntry const* table, std::string const& file, std::string const& key, int argc,
                  char** argv) = delete;

    /// The text that @p key has, and where it comes from:
    /// - the last argument "OPTION=TEXT", with any number of dashes before it, upper and lower case of the option being
    ///   the same;
    /// - the file, unless its text is empty;
    /// - the environment variable, if set, even to nothing; privileged programs ignore it;
    /// - the default.
    /// @param file empty for none; one that cannot be read sets nothing
    /// @param key compared exactly; empty or not, it has to be in @p table
    /// @param argc number of @p argv, which may be null
    /// @throws std::runtime_error "TweakProperties: Unknown property requested: '...'"; "TweakProperties: No valid value
    ///         found for property '...'" when nothing has a value and the default is null
    ResolvedProperty resolve(TweakPropertyEntry const* table, std::string const& file, std::string const& key,
                             int argc, char** argv);

    /// Turns a text into a truth value, as property() says.
    /// @param result not null
    /// @return whether @p text is valid: always
    static bool resolveValue(std::string const& text, bool* result);

    /// The configuration file; @p file is read the first time.
    PropertiesFile& internalPropertiesFile(std::string const& file);

    /// Adds the entries of @p table; of two with one key the first counts.
    static void propertyEntriesToPropertyEntryMap(TweakPropertyEntry const* table, EntryMap& map);

private:
    TweakPropertyEntry const& entryOf(TweakPropertyEntry const* table, std::string const& key);

    PropertiesFile m_file{true, false};
    bool m_isFileLoaded = false;
    EntryMap m_entries;
    bool m_areEntriesKnown = false;
    RecursiveMutex m_mutex;
};

template <>
bool TweakProperties::property<bool>(TweakPropertyEntry const* table, std::string const& file,
                                     std::string const& key, int argc, char** argv);

} // namespace kova::templates::platform
