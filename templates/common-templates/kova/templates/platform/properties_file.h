#pragma once

#include "kova/templates/platform/recursive_mutex.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace kova::templates::platform {

/// The keys and values of a configuration file.
///
/// A "#" begins a comment, anywhere in a line. A line "[NAME]" begins a section, a line "KEY = VALUE" sets a key; both
/// may have white space at either end and around their parts. Other lines are ignored, and so is the global locale.
/// May be used from several threads at once.
class PropertiesFile {
public:
    /// @param sections whether lines in brackets begin sections; the keys that follow one are then stored as section,
    ///        "::" and key, keys before the first one as they are
    /// @param caseSensitive whether sections and keys have to be asked for in the case that the file has them in
    /// @throws std::system_error when the system cannot make a mutex
    PropertiesFile(bool sections, bool caseSensitive)
        : m_hasSections(sections), m_isCaseSensitive(caseSensitive)
    {
    }

    /// Reads @p file in place of whatever was read before. The two flags change nothing.
    /// @return whether the file was read; if not, no key is set and errno says why: what open() and read() give,
    ///         EISDIR for a directory, EINVAL for what is no regular file
    /// @throws std::bad_alloc, with no key set
    bool load(std::string const& file, bool = false, bool = false);

    /// The value that the last line for @p key has.
    /// @param found set to whether there is such a line; may be null
    /// @return the value, which may be empty; empty when there is none
    std::string property(std::string const& key, bool* found) const;

private:
    struct Value {
        std::string text;
        std::size_t line = 0;
    };
    using Section = std::map<std::string, Value, std::less<>>;
    // A section's name is held once, not in front of each of its keys: it may be as long as the file.
    struct Contents {
        Section beforeSections;
        std::map<std::string, Section, std::less<>> sections;
    };

    Contents contentsOf(std::string_view text) const;
    std::string storedForm(std::string_view key) const;
    Value const* find(std::string_view storedKey) const;

    bool m_hasSections;
    bool m_isCaseSensitive;
    mutable RecursiveMutex m_mutex;
    Contents m_contents;
};

} // namespace kova::templates::platform
