// The action that is taken when there is no more memory.
#pragma once

namespace tavio::helper_program {

// Called when any part of this program, libraries included, asks for memory that is not there. It
// must not return and must take no memory.
using OutOfMemoryAction = void (*)();

// Without an action, a failed request returns null.
void setOutOfMemoryAction(OutOfMemoryAction action);

}  // namespace tavio::helper_program
