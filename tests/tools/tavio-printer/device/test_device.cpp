#include "tools/tavio-printer/device/test_device.h"

#include <gtest/gtest.h>

namespace tavio::virtual_printer::testing {

DeviceSettings smallDevice() {
    DeviceSettings settings;
    settings.printer.size = kSmallTicket;
    return settings;
}

std::string graphics(std::size_t count, Byte value) {
    std::string text = "<G";
    text.append(std::to_string(count)).append(1, '>');
    return text.append(count, static_cast<char>(value));
}

std::vector<std::string> linesOf(const ProblemList& problems) {
    std::vector<std::string> lines;
    for (const Problem& problem : problems.kept()) {
        lines.push_back(std::to_string(problem.offset).append(": ").append(problem.text));
    }
    return lines;
}

TestDevice::TestDevice(const DeviceSettings& settings)
    : device(settings, [this](DeviceTicket ticket) { tickets.push_back(std::move(ticket)); }) {}

void TestDevice::pass(nanoseconds time) {
    now += time;
    device.advance(now);
}

std::size_t TestDevice::offer(std::string_view text) {
    std::size_t taken = 0;
    while (taken < text.size()) {
        const std::size_t count = std::min(room(), text.size() - taken);
        if (count == 0) break;
        device.receive(bytesOf(text.substr(taken, count)), now);
        taken += count;
    }
    return taken;
}

std::size_t TestDevice::send(std::string_view text) {
    std::size_t sent = offer(text);
    while (sent < text.size() && device.nextEvent()) {
        now = std::max(now, *device.nextEvent());
        device.advance(now);
        sent += offer(text.substr(sent));
    }
    return sent;
}

void TestDevice::print(std::string_view text) {
    connect();
    EXPECT_EQ(send(text), text.size());
    end();
    while (!device.isDone() && device.nextEvent()) {
        pass(*device.nextEvent() - now);
        reply();
    }
    EXPECT_TRUE(device.isDone());
    disconnect();
    EXPECT_TRUE(device.isFree());
}

std::optional<nanoseconds> TestDevice::untilEvent() const {
    if (!device.nextEvent()) return std::nullopt;
    return *device.nextEvent() - now;
}

std::vector<std::string> TestDevice::streams() const {
    std::vector<std::string> all;
    for (const DeviceTicket& ticket : tickets) all.push_back(textOf(ticket.bytes));
    return all;
}

std::vector<std::string> TestDevice::problemsOf(std::size_t ticket) const {
    return linesOf(tickets.at(ticket).problems);
}

}  // namespace tavio::virtual_printer::testing
