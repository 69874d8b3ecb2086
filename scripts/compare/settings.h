// The steps of a job that concern the settings.
#pragma once

#include "random.h"

namespace compare {

// All settings by ChangeConfiguration, with values that are usual, odd, and out of range.
void configure(Random& random);

// Some of the public variables, as applications may write them.
void assignVariables(Random& random);

}  // namespace compare
