// A network of the test's own that is as slow as a serial line.
#pragma once

#include <cstddef>

namespace tavio::links::test {

// Moves this process, which must have one thread only, into a network of its own whose only
// interface, the loopback one, passes 9,600 bits per second: 1,200 bytes. Nothing is dropped on it.
// False where the machine does not permit that, or has no tc (Debian's package iproute2).
bool enterSlowNetwork();

// The most bytes, headers included, that pass at full speed before it becomes slow.
inline constexpr std::size_t kBurst = 1540;

}  // namespace tavio::links::test
