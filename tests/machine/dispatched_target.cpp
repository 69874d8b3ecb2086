#include "machine/dispatched_target.h"

#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "machine/dispatched_target.cpp"
#include <hwy/foreach_target.h>
// Must follow foreach_target.h.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tavio::test::HWY_NAMESPACE {

std::int64_t ownTarget() {
    return HWY_TARGET;
}

}  // namespace tavio::test::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::test {
namespace {

HWY_EXPORT(ownTarget);

}  // namespace

std::string dispatchedTarget() {
    return hwy::TargetName(HWY_DYNAMIC_DISPATCH(ownTarget)());
}

}  // namespace tavio::test
#endif
