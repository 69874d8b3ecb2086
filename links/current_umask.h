// The process's umask.
#pragma once

#include <optional>
#include <sys/types.h>

namespace tavio::links {

// The umask of the calling thread; none if it is not known. It is read from /proc, because umask()
// cannot read it without changing it, and a file that another thread creates in that moment would
// get the wrong permissions.
std::optional<mode_t> currentUmask();

}  // namespace tavio::links
