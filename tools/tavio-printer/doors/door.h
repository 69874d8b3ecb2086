// Where clients come in, and what can be done with one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "tavio/virtual-printer/command_reader.h"

namespace tavio::virtual_printer {

// What came of reading from a client.
struct Received {
    enum class Outcome : std::uint8_t {
        kBytes,  // `count` of them, 1 or more
        kNothing,
        kEnd,   // it will send no more; it may still read
        kGone,  // it is no longer there
    };

    Outcome outcome = Outcome::kNothing;
    std::size_t count = 0;
};

// A connected client. Nothing of it blocks.
class Client {
  public:
    Client() = default;
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    virtual ~Client() = default;  // closes the connection, if that has not been done

    virtual int descriptor() const = 0;  // to poll
    virtual Received read(std::span<Byte> room) = 0;

    // Sends the beginning of the text, as much as goes, and removes it there. False when the client
    // is gone.
    virtual bool write(std::string& text) = 0;

    // Whether nothing can be read any more once poll() reports that the client has hung up.
    virtual bool losesBytesAtHangUp() const = 0;

    virtual void close() = 0;  // orderly: the client finds the end of the stream
    virtual void reset() = 0;  // at once, with an error at the client where there is such a thing
};

class Door {
  public:
    Door() = default;
    Door(const Door&) = delete;
    Door& operator=(const Door&) = delete;
    virtual ~Door() = default;

    // Readable when a client is there; -1 where that has to be found out by accept() now and then.
    virtual int descriptor() const = 0;

    // Null when there is none. The door must outlive the client.
    virtual std::unique_ptr<Client> accept() = 0;
};

}  // namespace tavio::virtual_printer
