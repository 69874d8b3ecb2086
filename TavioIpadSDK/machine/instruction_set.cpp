#include "TavioIpadSDK/machine/instruction_set.h"

#include <algorithm>
#include <array>
#include <atomic>

#include "TavioIpadSDK/machine/vectors-inl.h"
#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

namespace tavio::machine {
namespace {

// Each is true if the processor has all the instructions that the vector library enables for a set,
// and the operating system saves the registers.
#if defined(__x86_64__) || defined(__i386__)

bool hasSse4() {
    return __builtin_cpu_supports("sse4.1") != 0 && __builtin_cpu_supports("sse4.2") != 0 &&
           __builtin_cpu_supports("aes") != 0 && __builtin_cpu_supports("pclmul") != 0;
}

// The compilers do not know this one by name.
bool convertsHalfFloats() {
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    return __get_cpuid(1, &a, &b, &c, &d) != 0 && (c & bit_F16C) != 0;
}

bool hasAvx2() {
    return hasSse4() && convertsHalfFloats() && __builtin_cpu_supports("avx2") != 0 &&
           __builtin_cpu_supports("bmi") != 0 && __builtin_cpu_supports("bmi2") != 0 &&
           __builtin_cpu_supports("fma") != 0;
}

bool hasAvx512() {
    return hasAvx2() && __builtin_cpu_supports("avx512f") != 0 &&
           __builtin_cpu_supports("avx512vl") != 0 && __builtin_cpu_supports("avx512dq") != 0 &&
           __builtin_cpu_supports("avx512bw") != 0;
}

#else

bool hasSse4() {
    return false;
}
bool hasAvx2() {
    return false;
}
bool hasAvx512() {
    return false;
}

#endif

bool isThere() {
    return true;
}

#if TAVIO_VECTORS
constexpr bool isCompiledFor(std::int64_t target) {
    return (HWY_TARGETS & target) != 0;
}
constexpr bool kForSse4 = isCompiledFor(HWY_SSE4);
constexpr bool kForAvx2 = isCompiledFor(HWY_AVX2);
constexpr bool kForAvx512 = isCompiledFor(HWY_AVX3);
constexpr bool kForNeon = HWY_ARCH_ARM_A64 != 0 && isCompiledFor(HWY_NEON);
#else
constexpr bool kForSse4 = false;
constexpr bool kForAvx2 = false;
constexpr bool kForAvx512 = false;
constexpr bool kForNeon = false;
#endif

struct Target {
    InstructionSet set;
    bool isCompiled;  // the kernels were compiled for it
    bool (*isThere)();
    const char* name;
};

// The slowest first, which is the order of InstructionSet too.
constexpr std::array<Target, 5> kTargets = {{
    {InstructionSet::kPlain, true, isThere, "plain"},
    {InstructionSet::kSse4, kForSse4, hasSse4, "SSE4"},
    {InstructionSet::kAvx2, kForAvx2, hasAvx2, "AVX2"},
    {InstructionSet::kAvx512, kForAvx512, hasAvx512, "AVX-512"},
    {InstructionSet::kNeon, kForNeon, isThere, "NEON"},  // every AArch64 processor has it
}};

const Target& targetOf(InstructionSet set) {
    return *std::find_if(kTargets.begin(), kTargets.end(),
                         [set](const Target& target) { return target.set == set; });
}

// True if the kernels were compiled for it and the processor has it. useInstructionSet() does not
// change that.
bool isAvailable(const Target& target) {
    return target.isCompiled && target.isThere();
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
    if (isAvailable(targetOf(set))) chosen() = set;
}

}  // namespace tavio::machine
