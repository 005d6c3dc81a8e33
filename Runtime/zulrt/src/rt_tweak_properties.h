#pragma once

#include "kova/templates/platform/tweak_properties.h"

#include <string>

/// The properties of the runtime and of its sibling components: one vocabulary, one file. Ends with null texts.
extern kova::templates::platform::TweakPropertyEntry const rt_tweak_properties[];

/// What the installation's switches are set to.
class RtTweakProperties {
public:
    /// The value of a property of rt_tweak_properties; there is bool only. The configuration file is read anew.
    /// @param argc, argv a command line to look at first; 0 and null for none
    /// @throws std::runtime_error when @p key is not in the table; std::bad_alloc
    template <class Type>
    static Type property(std::string const& key, int argc, char** argv) = delete;

    /// The path of the configuration file, whether or not there is one: "tweak.conf" in the installation directory.
    /// Empty when that is not known.
    static std::string fileName();
};

template <>
bool RtTweakProperties::property<bool>(std::string const& key, int argc, char** argv);
