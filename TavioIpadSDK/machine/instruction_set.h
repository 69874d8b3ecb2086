// Which of the processor's vector instructions the kernels use.
//
// A kernel is one function that works on every dot of a picture. It is written once for vectors of
// any length, compiled for several instruction sets, and picked at run time. Beside it stands a
// plain form that works dot by dot. All forms give the same bytes.
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

// The instruction sets that this processor has and that the kernels were compiled for, the slowest
// first. kPlain is always one of them.
std::vector<InstructionSet> availableInstructionSets();

// The instruction set in use: at first the last available one.
InstructionSet instructionSet();

// Makes all kernels use this instruction set; for tests and benchmarks. A set that is not available
// changes nothing. Do not call it while a job is running.
void useInstructionSet(InstructionSet set);

}  // namespace tavio::machine
