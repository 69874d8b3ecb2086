// Jobs, networks, printers and mishaps as the dice have them.
#pragma once

#include <cstdint>

#include "scenarios/scenario.h"

namespace tavio::scenarios {

// The same seed, the same plan.
Plan randomPlan(std::uint64_t seed);

}  // namespace tavio::scenarios
