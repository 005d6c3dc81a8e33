#pragma once

#include "byte_ranges.h"
#include "json_output.h"

/// How bytes that no number and no text shows are written.
enum class Payload {
    Digest, ///< length and SHA-256
    Base64, ///< whole
    Hex     ///< whole, in hexadecimal digits
};

/// @p range as JSON: name, offset, width, kind, value, and, where the value alone does not give the bytes back, the
/// bytes. docs/dump-schema.md describes it.
Json fieldJson(ByteRange const& range, Payload payload);
/// What a tag's bytes break.
Json problemsJson(TagFields const& fields);
