// Large arrays of bytes whose memory is not written before it is used.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::machine {

// Like std::allocator, but an element made without a value is not initialised.
template <typename T>
struct UnclearedAllocator : std::allocator<T> {
    template <typename U>
    struct rebind {
        using other = UnclearedAllocator<U>;
    };

    template <typename U>
    void construct(U* place) noexcept {
        ::new (static_cast<void*>(place)) U;
    }
    template <typename U, typename... Arguments>
    void construct(U* place, Arguments&&... arguments) {
        ::new (static_cast<void*>(place)) U(std::forward<Arguments>(arguments)...);
    }
};

// resize(n) does not initialise the new bytes; the caller writes them. So the system hands out the
// memory of a large array while it is being filled, not all of it before the first byte is written.
using UnclearedBytes = std::vector<Byte, UnclearedAllocator<Byte>>;

inline bool operator==(const UnclearedBytes& a, const Bytes& b) {
    return std::ranges::equal(a, b);
}

}  // namespace tavio::machine
