#include "TavioIpadSDK/machine/large_pages.h"

#include <cstdint>
#include <sys/mman.h>

namespace tavio::machine {

void preferLargePages(std::span<const std::byte> memory) {
    constexpr std::uintptr_t kLargePage = std::uintptr_t{1} << 21;
    const auto begin = reinterpret_cast<std::uintptr_t>(memory.data());
    const std::uintptr_t first = (begin + kLargePage - 1) / kLargePage * kLargePage;
    const std::uintptr_t end = (begin + memory.size()) / kLargePage * kLargePage;
    if (first >= end) return;
    void* const aligned = const_cast<std::byte*>(memory.data()) + (first - begin);
    ::madvise(aligned, end - first, MADV_HUGEPAGE);  // if refused, small pages are used
}

}  // namespace tavio::machine
