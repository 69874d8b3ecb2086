// Which of the processor's vector instructions the kernels use.
//
// A kernel is one function that does the work on every picture dot. Each is written once, for
// vectors of any length, compiled for several instruction sets, and picked at run time; beside it
// stands a plain form, which says the same thing dot by dot. All forms give the same bytes.
#pragma once

#include <string>
#include <vector>

namespace tavio::machine {

enum class InstructionSet {
    kPlain,   // C++ dot by dot, on every processor
    kSse4,    // x86-64, 16 bytes at once
    kAvx2,    // x86-64, 32 bytes at once
    kAvx512,  // x86-64, 64 bytes at once
    kNeon,    // AArch64, 16 bytes at once
};

// "plain", "SSE4", "AVX2", "AVX-512", "NEON"
std::string nameOf(InstructionSet set);

// Those that this processor has and that the kernels were compiled for, the slowest first: kPlain
// is always one of them.
std::vector<InstructionSet> availableInstructionSets();

// The one in use: at first the last of those available.
InstructionSet instructionSet();

// Makes all kernels use this one from now on; for tests and benchmarks. One that is not available
// leaves things as they are. Not to be called while a job is running.
void useInstructionSet(InstructionSet set);

}  // namespace tavio::machine
