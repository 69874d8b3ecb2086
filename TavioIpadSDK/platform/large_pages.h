// Memory that is quick to be had for the first time.
#pragma once

#include <cstddef>
#include <span>

namespace tavio::platform {

// Asks the system to back this memory, none of it used yet, with large pages, so that touching it
// for the first time takes hundreds of times fewer interruptions: without, a page of dots takes
// longer to be had than to be filled. A request only; memory too small for it is left alone.
void preferLargePages(std::span<const std::byte> memory);

}  // namespace tavio::platform
