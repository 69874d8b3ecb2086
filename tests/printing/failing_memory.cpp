#include "printing/failing_memory.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

std::atomic<std::int64_t> untilFailure{kNever};
std::atomic<bool> failsOnce{false};
std::atomic<bool> failed{false};

bool mustFail() {
    if (untilFailure.load() == kNever) return false;
    const std::int64_t left = untilFailure--;
    return left == 0 || (left < 0 && !failsOnce);
}

}  // namespace

void* operator new(std::size_t size) {
    if (mustFail()) {
        failed = true;
        throw std::bad_alloc();
    }
    void* memory = std::malloc(size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace tavio::test {

FailingMemory::FailingMemory(std::int64_t number, Failure failure) {
    failed = false;
    failsOnce = failure == Failure::kOnce;
    untilFailure = number;
}

FailingMemory::~FailingMemory() {
    untilFailure = kNever;
}

bool FailingMemory::hasFailed() {
    return failed;
}

}  // namespace tavio::test
