// The libraries that this program uses handle a failed allocation differently: one aborts, one
// throws, one leaves out what it was about to draw. A page with a missing picture must not be
// printed, and an abort looks like a crash. So this program wraps the C library's allocation
// functions, and all parts of it get their memory here.
#include "TavioIpadSDK/helper/program/memory_guard.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <dlfcn.h>

namespace tavio::helper_program {

namespace {

constinit OutOfMemoryAction action = nullptr;

// The C library's own function, kept in `remembered` because looking it up is slow. A local static
// would not do: its lock may need memory.
template <typename Function>
Function* original(Function*& remembered, const char* name) {
    if (remembered == nullptr) {
        remembered = reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
    }
    return remembered;
}

void* checked(void* memory, bool wanted) {
    if (memory == nullptr && wanted && action != nullptr) action();
    return memory;
}

using Malloc = void*(std::size_t);
using Calloc = void*(std::size_t, std::size_t);
using Realloc = void*(void*, std::size_t);
using AlignedAlloc = void*(std::size_t, std::size_t);
using PosixMemalign = int(void**, std::size_t, std::size_t);

constinit Malloc* originalMalloc = nullptr;
constinit Calloc* originalCalloc = nullptr;
constinit Realloc* originalRealloc = nullptr;
constinit AlignedAlloc* originalAlignedAlloc = nullptr;
constinit PosixMemalign* originalPosixMemalign = nullptr;

}  // namespace

void setOutOfMemoryAction(OutOfMemoryAction newAction) {
    action = newAction;
}

}  // namespace tavio::helper_program

using namespace tavio::helper_program;

extern "C" {

void* malloc(std::size_t size) noexcept {
    return checked(original(originalMalloc, "malloc")(size), size != 0);
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    return checked(original(originalCalloc, "calloc")(count, size), count != 0 && size != 0);
}

void* realloc(void* memory, std::size_t size) noexcept {
    return checked(original(originalRealloc, "realloc")(memory, size), size != 0);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return checked(original(originalAlignedAlloc, "aligned_alloc")(alignment, size), size != 0);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
    const int error = original(originalPosixMemalign, "posix_memalign")(memory, alignment, size);
    if (error == ENOMEM) checked(nullptr, true);
    return error;
}

}  // extern "C"
