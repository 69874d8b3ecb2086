// Memory that takes few page faults when it is first used.
#pragma once

#include <cstddef>
#include <span>

namespace tavio::machine {

// Asks the system to back this memory, none of it used yet, with large pages, so that the first use
// of it takes hundreds of times fewer page faults. Without them, the faults of a page of dots take
// longer than filling it. It is only a request; memory too small for a large page is left alone.
void preferLargePages(std::span<const std::byte> memory);

// array.reserve(size), asking for large pages for the part that is not used yet.
template <typename Array>
void reserveOnLargePages(Array& array, std::size_t size) {
    array.reserve(size);
    const std::span unused(array.data() + array.size(), array.capacity() - array.size());
    preferLargePages(std::as_bytes(unused));
}

// array.resize(size), the same way.
template <typename Array>
void resizeOnLargePages(Array& array, std::size_t size) {
    reserveOnLargePages(array, size);
    array.resize(size);
}

}  // namespace tavio::machine
