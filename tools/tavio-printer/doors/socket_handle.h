// A descriptor with an owner, who closes it.
#pragma once

#include <unistd.h>
#include <utility>

namespace tavio::virtual_printer {

class SocketHandle {
  public:
    SocketHandle() = default;
    explicit SocketHandle(int descriptor) : descriptor_(descriptor) {}
    ~SocketHandle() { close(); }
    SocketHandle(SocketHandle&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    SocketHandle& operator=(SocketHandle&& other) noexcept {
        if (this != &other) {
            close();
            descriptor_ = std::exchange(other.descriptor_, -1);
        }
        return *this;
    }
    SocketHandle(const SocketHandle&) = delete;
    SocketHandle& operator=(const SocketHandle&) = delete;

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }

    void close() {
        if (descriptor_ >= 0) ::close(descriptor_);
        descriptor_ = -1;
    }

  private:
    int descriptor_ = -1;
};

}  // namespace tavio::virtual_printer
