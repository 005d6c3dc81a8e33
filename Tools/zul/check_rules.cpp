#include "check_rules.h"

#include <array>

std::vector<Finding> findingsOf(Walk const& walk)
{
    Findings findings;
    checkStructure(walk, findings);
    if (walk.end == WalkEnd::NoContainer) {
        return findings.take();
    }
    auto const layout = makeLayoutRules(walk, findings);
    std::array const themes{makeReferenceRules(findings), makeTextRules(findings),
                            makeRegisterRules(findings),  makeRegisterNameRules(findings),
                            makeParameterRules(findings), makeConfigurationRules(findings),
                            makeIdentityRules(findings),  makeLibraryRules(walk, findings)};
    for (WalkedTag const& tag : walk.tags) {
        TagFields const fields(tag);
        layout->tag(tag, fields);
        bool const isBroken = walk.end == WalkEnd::BadLength && tag.index + 1 == walk.tags.size();
        for (auto const& theme : themes) {
            if (!isBroken) { // where a tag ends is not known, so neither is what it says
                theme->tag(tag, fields);
            }
        }
    }
    for (auto const& theme : themes) {
        theme->end();
    }
    return findings.take();
}
