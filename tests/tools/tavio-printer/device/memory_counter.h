// Counts the memory that the program takes with new. A test program that links this has its own
// operator new.
#pragma once

#include <cstdint>

namespace tavio::virtual_printer::testing {

class MemoryCounter {
  public:
    MemoryCounter();

    // Bytes at most beyond those at the counter's beginning. One counter at a time.
    std::int64_t peak() const;

  private:
    std::int64_t before_;
};

}  // namespace tavio::virtual_printer::testing
