// The permissions that the process takes from every new file.
#pragma once

#include <optional>
#include <sys/types.h>

namespace tavio::links {

// Of the calling thread; none where the system does not tell. Read from a file of the system:
// the call umask() cannot read it without changing it, and a file that another thread made in that
// moment would have the wrong permissions.
std::optional<mode_t> currentUmask();

}  // namespace tavio::links
