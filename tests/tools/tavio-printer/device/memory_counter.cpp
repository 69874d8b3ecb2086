#include "tools/tavio-printer/device/memory_counter.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

std::atomic<std::int64_t> allocated{0};
std::atomic<std::int64_t> highest{0};

std::int64_t sizeOf(void* memory) {
    return static_cast<std::int64_t>(malloc_usable_size(memory));
}

}  // namespace

void* operator new(std::size_t size) {
    void* memory = std::malloc(size);
    if (memory == nullptr) throw std::bad_alloc();
    const std::int64_t now = allocated += sizeOf(memory);
    if (now > highest) highest = now;
    return memory;
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) allocated -= sizeOf(memory);
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace tavio::virtual_printer::testing {

MemoryCounter::MemoryCounter() : before_(allocated) {
    highest = before_;
}

std::int64_t MemoryCounter::peak() const {
    return highest - before_;
}

}  // namespace tavio::virtual_printer::testing
