// Fuzzes the printer's device with any clients at any times: no crash, no more bytes taken than
// announced, and the same result whether bytes come one by one or together and however often the
// device is polled.

#include <algorithm>
#include <cstdlib>
#include <span>
#include <string>

#include "tools/tavio-printer/device/device.h"

namespace {

using namespace tavio;
using namespace tavio::virtual_printer;
using std::chrono::milliseconds;

// The input, read from its beginning. Zeros follow its end.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

    bool empty() const { return rest_.empty(); }

    unsigned next() {
        if (rest_.empty()) return 0;
        const unsigned value = rest_.front();
        rest_ = rest_.subspan(1);
        return value;
    }

    std::span<const Byte> next(std::size_t count) {
        const auto bytes = rest_.first(std::min(count, rest_.size()));
        rest_ = rest_.subspan(bytes.size());
        return bytes;
    }

  private:
    std::span<const Byte> rest_;
};

DeviceSettings settingsOf(Input& input) {
    DeviceSettings settings;
    settings.printer = {TicketSize{10, 100, 127}, Orientation::kLandscape, 1000};
    const unsigned flags = input.next();
    settings.physics.receiveBuffer = 1 + input.next();
    settings.physics.dropWhenFull = (flags & 1U) != 0;
    if ((flags & 2U) != 0) settings.physics.bytesPerSecond = 50.5 * (1 + input.next());
    if ((flags & 4U) != 0) settings.physics.millimetresPerSecond = 1 + input.next();
    if ((flags & 8U) != 0) settings.faults.paperOutAfter = input.next() % 8;
    if ((flags & 16U) != 0) settings.faults.resetAfter = input.next();
    if ((flags & 32U) != 0) settings.faults.closeAfter = input.next();
    if ((flags & 64U) != 0) settings.reply.text = "ok";
    if ((flags & 128U) != 0) settings.reply.delay = milliseconds(input.next());
    return settings;
}

class Run {
  public:
    Run(const std::uint8_t* data, std::size_t size, bool patient)
        : input_(data, size),
          patient_(patient),
          settings_(settingsOf(input_)),
          device_(settings_, [this](const DeviceTicket& ticket) { note(ticket); }) {}

    std::string seen() {
        while (!input_.empty()) {
            step();
            device_.advance(now_);
            const DeviceState state = device_.state();
            if (state.waitingBytes > settings_.physics.receiveBuffer) std::abort();
            seen_ += std::to_string(state.received) + '/' + std::to_string(state.waitingBytes) +
                     '/' + std::to_string(state.logoBytes) + (device_.isDone() ? "d" : "") +
                     (device_.isFree() ? "f" : "") + (state.moving ? "m " : " ");
        }
        return seen_;
    }

  private:
    void note(const DeviceTicket& ticket) {
        if (ticket.bytes.size() != ticket.byteCount) std::abort();
        seen_ += ticket.ticket.toText();
        seen_.append(ticket.bytes.begin(), ticket.bytes.end());
        for (const Problem& problem : ticket.problems.kept()) {
            if (problem.offset > ticket.byteCount) std::abort();
            seen_ += std::to_string(problem.offset) + problem.text;
        }
    }

    void step() {
        switch (input_.next() % 10) {
            case 0:
                device_.connect(now_);
                break;
            case 1:
                device_.endOfStream(now_);
                break;
            case 2:
                device_.disconnect(now_);
                break;
            case 3:
                device_.loadPaper(now_);
                break;
            case 4:
                seen_ += device_.takeReply(now_);
                break;
            case 5:
                pass(milliseconds(input_.next() * input_.next() / 16));
                break;
            default:
                send(input_.next(input_.next()));
                break;
        }
    }

    void pass(milliseconds time) {
        if (patient_) {
            for (int i = 0; i < 7; ++i) device_.advance(now_ + time * i / 7);
        }
        now_ += time;
    }

    void send(std::span<const Byte> bytes) {
        device_.advance(now_);
        bytes = bytes.first(std::min(bytes.size(), device_.room(now_)));
        if (!patient_) device_.receive(bytes, now_);
        for (std::size_t i = 0; patient_ && i < bytes.size(); ++i) {
            device_.receive(bytes.subspan(i, 1), now_);
        }
    }

    Input input_;
    bool patient_;
    DeviceSettings settings_;
    Device::Time now_{};
    std::string seen_;
    Device device_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (Run(data, size, false).seen() != Run(data, size, true).seen()) std::abort();
    return 0;
}
