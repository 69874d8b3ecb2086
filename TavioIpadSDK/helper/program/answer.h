// The answer of a helper program, on what was its standard output.
#pragma once

#include <cstddef>
#include <span>

namespace tavio::helper_program {

// Takes the standard output for the answer alone: libraries may print to standard output and error,
// which go nowhere from now on. False if that is not possible.
bool takeOverStandardOutput();

// The answer goes to this descriptor.
void answerOn(int descriptor);

// Writes the next bytes of the answer. False if nobody reads them.
bool answerWith(std::span<const std::byte> bytes);

// From now on, a request for memory that is not there ends the process: with this answer if nothing
// was answered before, else with an answer that is cut short. The bytes must stay where they are.
void answerWhenOutOfMemory(std::span<const std::byte> answer);

// Ends the process as if memory had run out.
[[noreturn]] void endOutOfMemory();

}  // namespace tavio::helper_program
