// Running a check with every form of the kernels.
#pragma once

#include <gtest/gtest.h>

#include "TavioIpadSDK/machine/instruction_set.h"

namespace tavio::test {

// Calls `check` once with each instruction set of this processor in use, then goes back to the one
// that was. A failure inside says which it was.
template <typename Check>
void withEachInstructionSet(Check check) {
    const machine::InstructionSet before = machine::instructionSet();
    for (const machine::InstructionSet set : machine::availableInstructionSets()) {
        SCOPED_TRACE(machine::nameOf(set));
        machine::useInstructionSet(set);
        check();
    }
    machine::useInstructionSet(before);
}

}  // namespace tavio::test
