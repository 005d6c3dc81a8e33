#pragma once

#include "zul_class.h"

#include <cstdint>
#include <string>
#include <vector>

/// A process or module of the design that is merged in.
struct Renumbered {
    std::string name;
    std::uint32_t from; ///< its process id or module index
    std::uint32_t to;   ///< in the merged design
};

/// Something that the merged design does without.
struct DroppedTag {
    char side; ///< 'A' or 'B'
    std::string what;
    std::string why;
};

/// What a merge did, or why it was refused.
struct MergeReport {
    std::vector<Renumbered> processes;
    std::vector<Renumbered> modules;
    char movedSide = '\0';        ///< whose events moved up to other interrupt queues: 'A', 'B' or '\0'
    unsigned int movedEvents = 0; ///< how many
    std::vector<DroppedTag> dropped;
    std::vector<std::string> conflicts; ///< empty when the merge succeeded

    bool succeeded() const noexcept { return conflicts.empty(); }
};

/// How far events move up.
constexpr unsigned int queueShift = 16;

/// Merges @p b into @p a as a loaded design does: register links are checked first, and requests for a fixed firmware are
/// dropped. Since the result becomes a file, it goes further in two points: of version numbers with one index only that of
/// @p a stays, because no file with both can be loaded, and no id stays, because libraries that were unpacked under it
/// would be used for the merged design. When the merge is refused both containers are of no use any more.
/// @throws std::bad_alloc
MergeReport mergeAndReport(ZUL& a, ZUL& b);
