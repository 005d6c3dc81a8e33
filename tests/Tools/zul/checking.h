#pragma once

#include "bytes.h"
#include "check_rules.h"
#include "container_bytes.h"
#include "sample_tags.h"

#include <span>
#include <string>

/// A container with an id, which lies in tag 0 at offset 24; the next tag begins at 168.
inline ContainerBytes identified()
{
    return ContainerBytes().tag(sample::userInfo("__ZUL_ID__", "4711"));
}

/// One line a finding: "Z0105 tag 1 at 172, length: at most 72, not 73".
inline std::string findingsIn(std::span<std::byte const> bytes)
{
    std::string lines;
    for (Finding const& finding : findingsOf(walkContainer(bytes))) {
        std::string const owner =
            finding.tag == Finding::noTag ? "file" : "tag " + std::to_string(finding.tag);
        lines += idOf(finding.rule) + " " + owner + " at " + std::to_string(finding.offset) + ", " +
                 finding.field + ": " + finding.expected + ", not " + finding.found + "\n";
    }
    return lines;
}

inline std::string findingsIn(Bytes const& bytes)
{
    return findingsIn(std::span<std::byte const>(bytes.data(), bytes.size()));
}

inline std::string findingsIn(ContainerBytes const& container)
{
    return findingsIn(container.build());
}
