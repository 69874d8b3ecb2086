// Ten thousand runs with everything that can go wrong left to chance: no wrong outcome, no silent
// loss, no deadline overrun. TAVIO_RUNS=NUMBER and TAVIO_SEED=SEED choose others.

#include <cstdlib>
#include <iostream>
#include <random>

#include <gtest/gtest.h>

#include "scenarios/honesty.h"
#include "scenarios/random_plan.h"

namespace tavio::scenarios {
namespace {

constexpr std::uint64_t kRuns = TAVIO_SANITIZED ? 2'000 : 10'000;

constexpr std::uint64_t kFixedSeed = 20'240'607;

std::uint64_t fromEnvironment(const char* name, std::uint64_t otherwise) {
    const char* value = std::getenv(name);
    return value == nullptr ? otherwise : std::strtoull(value, nullptr, 10);
}

// The errors in the run of a seed's plan, with its whole record; "" if there were none.
std::string accountOf(std::uint64_t seed) {
    const Plan plan = randomPlan(seed);
    Trial trial(plan);
    carryOut(plan, trial);
    const std::vector<std::string> objections = objectionsTo(plan, trial);
    if (objections.empty()) return {};
    Trial again(plan);
    again.network.events().keepTrace();
    carryOut(plan, again);
    std::string account;
    for (const std::string& objection : objections) account.append(objection).append("\n");
    return account.append(describe(plan, again));
}

void judgeRuns(std::uint64_t firstSeed, std::uint64_t count) {
    for (std::uint64_t seed = firstSeed; seed < firstSeed + count; ++seed) {
        const std::string account = accountOf(seed);
        ASSERT_TRUE(account.empty()) << "TAVIO_SEED=" << seed << " TAVIO_RUNS=1\n" << account;
    }
}

TEST(RandomRuns, ReportHonestlyAndInTimeWhateverGoesWrong) {
    const std::uint64_t seed = fromEnvironment("TAVIO_SEED", std::random_device()());
    const std::uint64_t runs = fromEnvironment("TAVIO_RUNS", kRuns / 2);
    std::cout << "seed " << seed << "\n";
    judgeRuns(seed, runs);
}

TEST(RandomRuns, OfAFixedListReportHonestlyAndInTime) {
    judgeRuns(kFixedSeed, kRuns / 2);
}

}  // namespace
}  // namespace tavio::scenarios
