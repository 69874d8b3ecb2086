// The one owner of a file descriptor.
#pragma once

#include <cerrno>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::machine {

// Closes its file descriptor at the end of its scope; -1 is none.
//
//   const Descriptor file(::open(path, O_RDONLY | O_CLOEXEC));
//   if (!file.isOpen()) return errno;
class TAVIO_API Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { reset(); }

    bool isOpen() const { return number_ >= 0; }

    // Negative if none is open.
    int get() const { return number_; }

    // The caller closes it.
    [[nodiscard]] int release() { return std::exchange(number_, -1); }

    // Closes it, and owns `number` from then on. errno stays as it was.
    void reset(int number = -1) noexcept {
        const int error = errno;
        if (number_ >= 0) ::close(number_);
        number_ = number;
        errno = error;
    }

    // Closes it and returns 0 or the errno. Some file systems report a failed write only here. The
    // descriptor is closed in any case.
    [[nodiscard]] int close() noexcept {
        if (number_ < 0) return EBADF;
        return ::close(release()) == 0 || errno == EINTR ? 0 : errno;
    }

  private:
    int number_ = -1;
};

}  // namespace tavio::machine
