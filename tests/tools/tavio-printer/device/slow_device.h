// A device in slow motion: the same printer, told millisecond by millisecond and byte by byte.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "tools/tavio-printer/device/device.h"

namespace tavio::virtual_printer::testing {

// Shares nothing with Device but the interpreter of the stream. All times are whole milliseconds.
class SlowDevice {
  public:
    // `passing`: milliseconds that a ticket's paper takes. `rate`: bytes a millisecond, 0 for any.
    SlowDevice(const DeviceSettings& settings, int passing, int rate);

    void tick();  // a millisecond passes

    void connect();
    void endOfStream();
    void disconnect();
    void loadPaper();
    bool isFree() const { return !connected_ && !open_; }
    std::size_t room() const;
    void receive(Byte byte);
    std::string takeReply();
    ConnectionWish wish() const;
    bool isDone() const;
    DeviceState state() const;

    // Everything of each ticket in one text.
    std::vector<std::string> tickets;

  private:
    struct Waiting {
        int byte = 0;  // -1: some were lost here
        std::uint64_t lost = 0;
    };

    bool isOutOfPaper() const;
    void interpret();
    void interpretByte(Byte byte);
    void end();
    void out(const Ticket& ticket, TicketEnd end, Orientation orientation, bool marked,
             std::uint64_t number);

    DeviceSettings settings_;
    int passing_;
    int rate_;
    Printer printer_;
    std::deque<Waiting> waiting_;
    std::size_t waitingBytes_ = 0;

    bool connected_ = false;
    bool ended_ = false;
    bool open_ = false;
    std::uint64_t connection_ = 0;
    std::uint64_t received_ = 0;
    int sinceConnect_ = 0;
    bool silent_ = false;
    int credit_ = 0;
    bool linkOpen_ = false;

    int moving_ = 0;
    std::uint64_t count_ = 0;
    std::uint64_t sincePaper_ = 0;
    std::vector<int> replies_;  // milliseconds until each is due
    int due_ = 0;

    bool suppress_ = false;  // the printer's blank ticket for a stream of nothing
    std::string stream_;     // bytes of the ticket
    std::vector<std::string> problems_;
    std::uint64_t begin_ = 0;
    std::uint64_t ofStream_ = 0;  // tickets of the stream
};

// A ticket in the same words.
std::string describe(const DeviceTicket& ticket);

}  // namespace tavio::virtual_printer::testing
