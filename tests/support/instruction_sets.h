// Running a check with every form of the kernels.
#pragma once

#include <gtest/gtest.h>

#include "TavioIpadSDK/platform/instruction_set.h"

namespace tavio::test {

// Calls `check` once with each instruction set of this processor in use, then goes back to the one
// that was. A failure inside says which it was.
template <typename Check>
void withEachInstructionSet(Check check) {
    const platform::InstructionSet before = platform::instructionSet();
    for (const platform::InstructionSet set : platform::availableInstructionSets()) {
        SCOPED_TRACE(platform::nameOf(set));
        platform::useInstructionSet(set);
        check();
    }
    platform::useInstructionSet(before);
}

}  // namespace tavio::test
