#pragma once

#include "json_output.h"

struct ContainerFile;
struct LoadOutcome;
struct Overview;

/// A design as `zul info --json` shows it.
Json designJson(ContainerFile const& container, Overview const& overview, LoadOutcome const& load);
