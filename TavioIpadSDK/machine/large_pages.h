// Memory that is quick to be had for the first time.
#pragma once

#include <cstddef>
#include <span>

namespace tavio::machine {

// Asks the system to back this memory, none of it used yet, with large pages, so that touching it
// for the first time takes hundreds of times fewer interruptions: without, a page of dots takes
// longer to be had than to be filled. A request only; memory too small for it is left alone.
void preferLargePages(std::span<const std::byte> memory);

// array.reserve(size), asking for large pages for the room that is not used yet.
template <typename Array>
void reserveOnLargePages(Array& array, std::size_t size) {
    array.reserve(size);
    const std::span unused(array.data() + array.size(), array.capacity() - array.size());
    preferLargePages(std::as_bytes(unused));
}

}  // namespace tavio::machine
