#include "TavioIpadSDK/machine/instruction_set.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "machine/dispatched_target.h"

namespace tavio::machine {
namespace {

constexpr std::array kAll = {InstructionSet::kPlain, InstructionSet::kSse4, InstructionSet::kAvx2,
                             InstructionSet::kAvx512, InstructionSet::kNeon};

// Leaves the instruction set as it was.
class InstructionSets : public testing::Test {
  protected:
    ~InstructionSets() override { useInstructionSet(before_); }

  private:
    InstructionSet before_ = instructionSet();
};

bool isAvailable(InstructionSet set) {
    const std::vector<InstructionSet> sets = availableInstructionSets();
    return std::find(sets.begin(), sets.end(), set) != sets.end();
}

TEST_F(InstructionSets, HaveNames) {
    EXPECT_EQ(nameOf(InstructionSet::kPlain), "plain");
    EXPECT_EQ(nameOf(InstructionSet::kSse4), "SSE4");
    EXPECT_EQ(nameOf(InstructionSet::kAvx2), "AVX2");
    EXPECT_EQ(nameOf(InstructionSet::kAvx512), "AVX-512");
    EXPECT_EQ(nameOf(InstructionSet::kNeon), "NEON");
}

TEST_F(InstructionSets, BeginWithThePlainForms) {
    ASSERT_FALSE(availableInstructionSets().empty());
    EXPECT_EQ(availableInstructionSets().front(), InstructionSet::kPlain);
}

TEST_F(InstructionSets, AreListedOnceEach) {
    std::vector<InstructionSet> sets = availableInstructionSets();
    std::sort(sets.begin(), sets.end());
    EXPECT_EQ(std::adjacent_find(sets.begin(), sets.end()), sets.end());
}

TEST_F(InstructionSets, AreThoseOfTheProcessorsOwnKind) {
#if defined(__aarch64__) && TAVIO_VECTORS
    EXPECT_EQ(availableInstructionSets(),
              (std::vector{InstructionSet::kPlain, InstructionSet::kNeon}));
#else
    EXPECT_FALSE(isAvailable(InstructionSet::kNeon));
#endif
#if defined(__x86_64__)
    // Each needs the one before it.
    const std::vector all{InstructionSet::kPlain, InstructionSet::kSse4, InstructionSet::kAvx2,
                          InstructionSet::kAvx512};
    const std::vector<InstructionSet> sets = availableInstructionSets();
    ASSERT_LE(sets.size(), all.size());
    EXPECT_TRUE(std::equal(sets.begin(), sets.end(), all.begin()));
#else
    EXPECT_FALSE(isAvailable(InstructionSet::kSse4));
    EXPECT_FALSE(isAvailable(InstructionSet::kAvx2));
    EXPECT_FALSE(isAvailable(InstructionSet::kAvx512));
#endif
}

TEST_F(InstructionSets, StayAvailableWhicheverIsInUse) {
    const std::vector<InstructionSet> sets = availableInstructionSets();
    for (const InstructionSet set : sets) {
        useInstructionSet(set);
        EXPECT_EQ(availableInstructionSets(), sets) << nameOf(set);
    }
}

TEST_F(InstructionSets, AreInUseOnceChosen) {
    const std::vector<InstructionSet> sets = availableInstructionSets();
    for (const InstructionSet first : sets) {
        for (const InstructionSet second : sets) {
            useInstructionSet(first);
            EXPECT_EQ(instructionSet(), first);
            useInstructionSet(second);
            EXPECT_EQ(instructionSet(), second);
        }
    }
}

TEST_F(InstructionSets, ThatAreChosenAreWhatKernelsRun) {
    const std::map<InstructionSet, std::string> expected = {{InstructionSet::kSse4, "SSE4"},
                                                            {InstructionSet::kAvx2, "AVX2"},
                                                            {InstructionSet::kAvx512, "AVX3"},
                                                            {InstructionSet::kNeon, "NEON"}};
    for (const auto& [set, name] : expected) {
        if (!isAvailable(set)) continue;
        useInstructionSet(InstructionSet::kPlain);
        useInstructionSet(set);
        EXPECT_EQ(test::dispatchedTarget(), name);
    }
}

TEST_F(InstructionSets, ChangeNothingWhereTheyAreNotAvailable) {
    for (const InstructionSet used : availableInstructionSets()) {
        useInstructionSet(used);
        const std::string target = test::dispatchedTarget();
        for (const InstructionSet other : kAll) {
            if (isAvailable(other)) continue;
            useInstructionSet(other);
            EXPECT_EQ(instructionSet(), used) << nameOf(other);
            EXPECT_EQ(test::dispatchedTarget(), target) << nameOf(other);
        }
    }
}

// Before any test has chosen one.
const InstructionSet kAtFirst = instructionSet();

TEST_F(InstructionSets, AreAtFirstTheBestOne) {
    EXPECT_EQ(kAtFirst, availableInstructionSets().back());
}

}  // namespace
}  // namespace tavio::machine
