// What happens when there is no more memory.
#pragma once

namespace tavio::pdf_helper {

// Called by whichever part of this program, libraries included, asks for memory that is not there,
// in place of its own way of failing. Does not return and takes no memory.
using OutOfMemoryAction = void (*)();

// No action to begin with: a failed request then just returns null.
void setOutOfMemoryAction(OutOfMemoryAction action);

}  // namespace tavio::pdf_helper
