#pragma once

#include "format.h"

/// Names of all registers, in an order that no format was written in.
std::vector<std::string> namesToLookUp(Content const& content);

/// Asks a format everything that is measured, of its bytes and of what it saves.
/// @throws std::runtime_error when an answer is not that of the content
void checkAnswers(Format const& format, std::span<std::byte const> bytes, Content const& content,
                  std::span<std::string const> names);
