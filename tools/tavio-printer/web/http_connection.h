// A connection whose request has arrived: its head is read, an answer is written.
#pragma once

#include <chrono>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::virtual_printer {

class HttpConnection {
  public:
    // The answer is given up if the browser takes no byte for kMaxStall, or not all bytes of one
    // write within kMaxWrite.
    static constexpr std::chrono::seconds kMaxStall{5};
    static constexpr std::chrono::seconds kMaxWrite{30};

    HttpConnection(machine::Descriptor socket, std::string head)
        : socket_(std::move(socket)), head_(std::move(head)) {}

    // Ends the sending direction and waits a little for the browser to read the answer: closing at
    // once could drop the end of it.
    void finish();

    // Bytes of the head that have not been read.
    bool hasMore() const { return taken_ < head_.size(); }
    std::size_t read(std::span<char> into);

    // True if the browser is still connected.
    bool isConnected() const;

    bool write(std::string_view bytes);  // all of them; false if that is not possible

    int socket() const { return socket_.get(); }

  private:
    machine::Descriptor socket_;
    std::string head_;
    std::size_t taken_ = 0;  // bytes of the head
};

}  // namespace tavio::virtual_printer
