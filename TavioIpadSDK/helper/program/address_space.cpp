#include "TavioIpadSDK/helper/program/address_space.h"

#include <array>
#include <charconv>
#include <fcntl.h>
#include <unistd.h>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::helper_program {

// The file's first number is the total, in pages. Read without memory of its own.
rlim_t addressSpace() {
    const machine::Descriptor file(::open("/proc/self/statm", O_RDONLY | O_CLOEXEC));
    std::array<char, 64> text{};
    const ssize_t count = ::read(file.get(), text.data(), text.size());
    rlim_t pages = 0;
    if (count > 0) std::from_chars(text.data(), text.data() + count, pages);
    return pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

}  // namespace tavio::helper_program
