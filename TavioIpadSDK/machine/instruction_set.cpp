#include "TavioIpadSDK/machine/instruction_set.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <hwy/highway.h>

namespace tavio::machine {
namespace {

struct Target {
    InstructionSet set;
    std::int64_t bit;  // as the vector library numbers it; 0 for the plain forms
    const char* name;
};

// The slowest first.
constexpr std::array<Target, 5> kTargets = {{
    {InstructionSet::kPlain, 0, "plain"},
    {InstructionSet::kNeon, HWY_NEON, "NEON"},
    {InstructionSet::kSse4, HWY_SSE4, "SSE4"},
    {InstructionSet::kAvx2, HWY_AVX2, "AVX2"},
    {InstructionSet::kAvx512, HWY_AVX3, "AVX-512"},
}};

const Target& targetOf(InstructionSet set) {
    return *std::find_if(kTargets.begin(), kTargets.end(),
                         [set](const Target& target) { return target.set == set; });
}

// The instruction sets that the processor has and that the kernels were compiled for.
// useInstructionSet() does not change them.
std::int64_t availableBits() {
    // Every AArch64 processor has NEON. The vector library also asks for AES, which no kernel uses,
    // and complains on standard error where it is missing.
    if constexpr (HWY_ARCH_ARM_A64 != 0) return HWY_NEON;
    static const std::int64_t bits = hwy::SupportedTargets() & HWY_TARGETS;
    return bits;
}

bool isAvailable(const Target& target) {
    return target.bit == 0 || (availableBits() & target.bit) != 0;
}

InstructionSet best() {
    const auto found = std::find_if(kTargets.rbegin(), kTargets.rend(), isAvailable);
    return found->set;
}

std::atomic<InstructionSet>& chosen() {
    static std::atomic<InstructionSet> set = best();
    return set;
}

}  // namespace

std::string nameOf(InstructionSet set) {
    return targetOf(set).name;
}

std::vector<InstructionSet> availableInstructionSets() {
    std::vector<InstructionSet> sets;
    for (const Target& target : kTargets) {
        if (isAvailable(target)) sets.push_back(target.set);
    }
    return sets;
}

InstructionSet instructionSet() {
    return chosen();
}

void useInstructionSet(InstructionSet set) {
    const Target& target = targetOf(set);
    if (!isAvailable(target)) return;
    chosen() = set;
    hwy::GetChosenTarget().Update(target.bit != 0 ? target.bit : availableBits());
}

}  // namespace tavio::machine
