#pragma once

#include "json_output.h"
#include "tag_fields.h"

#include <string>

/// The value of a parameter tag for people, escaped: a number, 'text', or the first elements of a field.
std::string parameterText(TagFields const& parameter);
/// The value of a parameter tag: a number, a text, an array; null when its type has no value.
Json parameterJson(TagFields const& parameter);
