#pragma once

#include "byte_ranges.h"

#include <string>

/// Bytes that carry nothing: reserved ones, whether they are written or not.
bool isFiller(FieldKind kind) noexcept;

/// The value of a complete field for people, escaped: 12 (0xc), 'name', 300 bytes.
std::string valueText(TagField const& field);

/// "clock = 62500000 (0x3b9aca0)", or what the bytes are where they are no value of a field.
/// @param full do not cut long texts
std::string annotation(ByteRange const& range, bool full);

/// The shortest decimal text that gives @p number again.
std::string realText(double number);
