// Memory that fails on request. A test program that links this has its own operator new.
#pragma once

#include <cstdint>

namespace tavio::test {

enum class Failure { kOnce, kFromThenOn };

// While it exists, the allocation of this number (from 0) fails, or all from there on. One at a time.
class FailingMemory {
  public:
    FailingMemory(std::int64_t number, Failure failure);
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;
    ~FailingMemory();

    // True if an allocation has failed.
    static bool hasFailed();
};

}  // namespace tavio::test
