// How a helper program ends.
#pragma once

namespace tavio::helper_program {

inline constexpr int kAnswered = 0;
inline constexpr int kFailed = 1;
inline constexpr int kBadUsage = 2;

}  // namespace tavio::helper_program
