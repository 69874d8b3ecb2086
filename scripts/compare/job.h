// Random jobs.
#pragma once

#include <string>

#include "random.h"

namespace compare {

// Runs one job. It begins with the library's variables as the job before left them. The record
// holds each step, transport call, notice and result, and the variables at the end.
// `examples`: the folder with the project's sample documents.
void runJob(Random& random, const std::string& examples);

}  // namespace compare
