#include "TavioIpadSDK/helper/pipe.h"

#include <array>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace tavio::helper {

using machine::Descriptor;

namespace {

Descriptor raised(Descriptor file) {
    return file.get() > STDERR_FILENO ? std::move(file) : aboveStandardStreams(file);
}

}  // namespace

Descriptor aboveStandardStreams(const Descriptor& file) {
    return Descriptor(::fcntl(file.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

Pipe makePipe() {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
    return {raised(Descriptor(ends[0])), raised(Descriptor(ends[1]))};
}

}  // namespace tavio::helper
