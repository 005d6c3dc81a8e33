#include "points.h"
#include "sweep.h"

#include "environment.h"
#include "private_tmp.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <ostream>

namespace {

struct Case {
    Scenario scenario;
    FaultKind kind;
};

void PrintTo(Case const& tried, std::ostream* out)
{
    *out << tried.scenario.name;
}

class EveryFailure : public testing::TestWithParam<Case> {
    EnvironmentVariable m_installation{"KOVADIR5_64", "/tmp/installation"};
};

TEST_P(EveryFailure, IsTakenCleanly)
{
    inPrivateTmp([] {
        auto const& [scenario, kind] = GetParam();
        SweepResult const result = sweep(scenario, kind);
        EXPECT_EQ(result.tried != 0, result.calls != 0);
        if (everyPointIsTried()) {
            std::puts(row(scenario, kind, result).c_str());
            std::fflush(stdout);
        }
    });
}

std::vector<Case> all(FaultKind kind)
{
    std::vector<Case> cases;
    for (auto const& scenarios : {designScenarios(), savingScenarios(), verbScenarios()}) {
        for (Scenario const& scenario : scenarios) {
            cases.push_back({scenario, kind});
        }
    }
    return cases;
}

std::string nameOf(testing::TestParamInfo<Case> const& info)
{
    return identifier(info.param.scenario.name);
}

INSTANTIATE_TEST_SUITE_P(OfMemory, EveryFailure, testing::ValuesIn(all(FaultKind::Allocation)), nameOf);
INSTANTIATE_TEST_SUITE_P(OfFiles, EveryFailure, testing::ValuesIn(all(FaultKind::SystemCall)), nameOf);

} // namespace
