// HTTP by hand, for what a well-behaved client does not send, and for streams.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::test {

class RawConnection {
  public:
    explicit RawConnection(std::uint16_t port);

    // False when the other side has closed.
    bool send(std::string_view text);

    // Says that there is no more to send.
    void finishSending();

    // Reads on until what was received, from the first byte on, contains the text: everything
    // received so far; without the text where the other side closes or a long time passes before.
    const std::string& readUntil(std::string_view text);

    // Reads on until the other side closes.
    const std::string& readToEnd();

    // The other side has closed, and all was read.
    bool isClosed() const { return closed_; }

  private:
    bool readSome();

    machine::Descriptor socket_;
    std::string received_;
    bool closed_ = false;
};

// The port in "http://127.0.0.1:9180/".
std::uint16_t portOf(const std::string& url);

// A GET of the path, complete.
std::string getRequest(std::string_view path, std::string_view moreHeaders = "");

// How often the text is there.
std::size_t countOf(std::string_view text, std::string_view in);

}  // namespace tavio::test
