// A door: a listener for clients, and a connected client.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "tavio/virtual-printer/command_reader.h"

namespace tavio::virtual_printer {

// The result of reading from a client.
struct Received {
    enum class Outcome : std::uint8_t {
        kBytes,  // `count` of them, 1 or more
        kNothing,
        kEnd,   // it sends no more; it may still read
        kGone,  // it has disconnected
    };

    Outcome outcome = Outcome::kNothing;
    std::size_t count = 0;
};

// A connected client. No operation blocks.
class Client {
  public:
    Client() = default;
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    virtual ~Client() = default;  // closes the connection if it is open

    virtual int descriptor() const = 0;  // to poll
    virtual Received read(std::span<Byte> room) = 0;

    // Sends as much of the text's beginning as possible and removes it from the text. False if the
    // client has disconnected.
    virtual bool write(std::string& text) = 0;

    // True if no byte can be read after poll() has reported a hang-up.
    virtual bool losesBytesAtHangUp() const = 0;

    virtual void close() = 0;  // orderly: the client reads the end of the stream
    virtual void reset() = 0;  // at once; the client gets an error, if the transport can do that
};

class Door {
  public:
    Door() = default;
    Door(const Door&) = delete;
    Door& operator=(const Door&) = delete;
    virtual ~Door() = default;

    // Readable when a client waits; -1 if the caller has to poll accept().
    virtual int descriptor() const = 0;

    // Null if no client waits. The door must outlive the client.
    virtual std::unique_ptr<Client> accept() = 0;
};

}  // namespace tavio::virtual_printer
