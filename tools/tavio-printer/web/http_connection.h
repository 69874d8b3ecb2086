// A connection whose request has arrived, as the HTTP library sees it.
#pragma once

#include <chrono>
#include <cstddef>
#include <httplib.h>
#include <string>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::virtual_printer {

class HttpConnection final : public httplib::Stream {
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

    bool is_readable() const override { return taken_ < head_.size(); }

    // True if the browser is still connected.
    bool is_writable() const override;

    ssize_t read(char* to, std::size_t size) override;            // reads the head only
    ssize_t write(const char* bytes, std::size_t size) override;  // all, or -1
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return socket_.get(); }

  private:
    machine::Descriptor socket_;
    std::string head_;
    std::size_t taken_ = 0;  // bytes of the head
};

}  // namespace tavio::virtual_printer
