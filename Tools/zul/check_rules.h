#pragma once

#include "findings.h"
#include "tag_fields.h"
#include "walker.h"

#include <memory>
#include <vector>

/// Rules of one theme. They see every tag of a walk once, in file order, and keep no more than they need: the work is
/// linear in the file whatever the file says.
class RuleSet {
public:
    explicit RuleSet(Findings& findings) : m_findings(findings) {}
    RuleSet(RuleSet const&) = delete;
    RuleSet& operator=(RuleSet const&) = delete;
    virtual ~RuleSet() = default;

    virtual void tag(WalkedTag const& tag, TagFields const& fields) = 0;
    /// After the last tag.
    virtual void end() {}

protected:
    Findings& m_findings;
};

/// Lengths, values, counts and what lies behind the tags: of the head and the file as a whole.
void checkStructure(Walk const& walk, Findings& findings);

/// What the layout of each tag demands, single instances and repeated versions.
std::unique_ptr<RuleSet> makeLayoutRules(Walk const& walk, Findings& findings);
/// Processes and modules that tags refer to by number.
std::unique_ptr<RuleSet> makeReferenceRules(Findings& findings);
/// Texts that do not fit the place they are kept in.
std::unique_ptr<RuleSet> makeTextRules(Findings& findings);
/// Bits and values of registers.
std::unique_ptr<RuleSet> makeRegisterRules(Findings& findings);
/// Names of registers, links between them and events.
std::unique_ptr<RuleSet> makeRegisterNameRules(Findings& findings);
/// Counts of the modules and the links between parameters.
std::unique_ptr<RuleSet> makeParameterRules(Findings& findings);
/// Configurations, their destinations and FPGA types, the design's settings.
std::unique_ptr<RuleSet> makeConfigurationRules(Findings& findings);
/// The container's id and the board code of the design version.
std::unique_ptr<RuleSet> makeIdentityRules(Findings& findings);
/// @param walk gives the size of the file, which bounds the work of inflating
std::unique_ptr<RuleSet> makeLibraryRules(Walk const& walk, Findings& findings);

/// Everything that is wrong with the bytes of a container, in file order.
std::vector<Finding> findingsOf(Walk const& walk);
