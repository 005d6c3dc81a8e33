#pragma once

#include "random.h"

/// Changes a container as somebody would who knows tags: repeats, drops, swaps and inserts them, breaks fields, copies
/// names from one to the other; lengths and counts mostly fit afterwards. Now and then it changes bytes only.
void mutateContainer(RawBytes& container, std::size_t mostBytes, Random& random);

/// Tags of the one container, then tags of the other.
RawBytes crossContainers(RawBytes const& left, RawBytes const& right, std::size_t mostBytes, Random& random);
