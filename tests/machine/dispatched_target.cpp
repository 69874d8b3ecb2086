#include "machine/dispatched_target.h"

#include <cstdint>

#include "TavioIpadSDK/machine/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "machine/dispatched_target.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::test::HWY_NAMESPACE {

std::int64_t ownTarget() {
    return HWY_TARGET;
}

}  // namespace tavio::test::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::test {
std::string dispatchedTarget() {
#if TAVIO_VECTORS
    return hwy::TargetName(TAVIO_CHOSEN_FORM(ownTarget)());
#else
    return TAVIO_CHOSEN_FORM(ownTarget)() == HWY_SCALAR ? "SCALAR" : "";
#endif
}

}  // namespace tavio::test
#endif
