// A serial line for tests: the link opens one end by its path, the test holds the printer's.
#pragma once

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <string>
#include <termios.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::links::test {

class PseudoTerminal {
  public:
    PseudoTerminal() : printer_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK)) {
        if (!printer_.isOpen() || ::grantpt(printer_.get()) != 0 || ::unlockpt(printer_.get()) != 0)
            return;
        std::array<char, 256> name{};
        if (::ptsname_r(printer_.get(), name.data(), name.size()) != 0) return;
        path_ = name.data();
        // Keeps the settings and the pending bytes while no link has the device open.
        device_.reset(::open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK));
    }

    bool exists() const { return device_.isOpen(); }
    const std::string& path() const { return path_; }

    termios settings() const {
        termios settings{};
        EXPECT_EQ(::tcgetattr(device_.get(), &settings), 0);
        return settings;
    }
    void set(const termios& settings) const {
        EXPECT_EQ(::tcsetattr(device_.get(), TCSANOW, &settings), 0);
    }

    // Waits for bytes at the printer's end; "" if none come.
    std::string take(std::size_t maxBytes) const {
        std::string bytes(maxBytes, '\0');
        if (!waitFor(printer_.get(), POLLIN)) return {};
        const ssize_t count = ::read(printer_.get(), bytes.data(), bytes.size());
        bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return bytes;
    }
    std::string takeAll(std::size_t size) const {
        std::string bytes;
        while (bytes.size() < size) {
            const std::string more = take(size - bytes.size());
            if (more.empty()) break;
            bytes += more;
        }
        return bytes;
    }
    bool hasNothing() const {
        pollfd watched{printer_.get(), POLLIN, 0};
        return ::poll(&watched, 1, 0) == 0;
    }

    // Writes as much as the line holds, and returns the number of bytes.
    std::size_t say(std::string_view text) const {
        if (!waitFor(printer_.get(), POLLOUT)) return 0;
        const ssize_t count = ::write(printer_.get(), text.data(), text.size());
        return count > 0 ? static_cast<std::size_t>(count) : 0;
    }

    // Waits until the written bytes have come to the device.
    bool awaitInput() const { return waitFor(device_.get(), POLLIN); }

    void hangUp() { printer_.reset(); }

  private:
    // Far longer than any machine needs.
    static bool waitFor(int descriptor, short events) {
        pollfd watched{descriptor, events, 0};
        return ::poll(&watched, 1, 60'000) == 1;
    }

    machine::Descriptor printer_;
    machine::Descriptor device_;
    std::string path_;
};

}  // namespace tavio::links::test
