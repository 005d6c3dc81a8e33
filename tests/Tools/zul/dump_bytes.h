#pragma once

#include "bytes.h"

#include <nlohmann/json.hpp>

/// The bytes of the file that `zul dump --payload` showed, from what docs/dump-schema.md says and nothing else.
Bytes bytesOfDump(nlohmann::ordered_json const& dump);
