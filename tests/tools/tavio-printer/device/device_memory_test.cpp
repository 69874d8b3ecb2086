// However long a stream is and whatever is in it, a device takes no more memory than it says.
#include <gtest/gtest.h>

#include "tools/tavio-printer/device/memory_counter.h"
#include "tools/tavio-printer/device/test_device.h"

namespace tavio::virtual_printer::testing {
namespace {

constexpr std::int64_t kMebibyte = std::int64_t{1} << 20U;

// The peak memory of a device that gets one piece again and again.
std::int64_t memoryFor(const DeviceSettings& settings, std::string_view piece, int times,
                       bool readsReplies = true) {
    const MemoryCounter counter;
    Device device(settings, nullptr);
    const Device::Time now{};
    device.connect(now);
    for (int i = 0; i < times; ++i) {
        std::string_view rest = piece;
        while (!rest.empty()) {
            const std::size_t size = std::min(device.room(now), rest.size());
            if (size == 0) break;
            device.receive(bytesOf(rest.substr(0, size)), now);
            rest.remove_prefix(size);
        }
        if (readsReplies) device.takeReply(now);
    }
    device.disconnect(now);
    return counter.peak();
}

TEST(DeviceMemory, StaysSmallWithTicketsWithoutEnd) {
    EXPECT_LT(memoryFor(smallDevice(), "<RC1,1>text<p>", 200'000), kMebibyte);
}

TEST(DeviceMemory, HoldsOneTicketsBytesAndNoMore) {
    const std::string piece = "<RC0,0>" + graphics(60'000, 0);
    const std::int64_t ticket = static_cast<std::int64_t>(kMaxTicketBytes);
    const std::int64_t taken = memoryFor(smallDevice(), piece, 1'200);
    EXPECT_GT(taken, ticket);
    EXPECT_LT(taken, 2 * ticket + kMebibyte);  // twice while the vector grows
}

TEST(DeviceMemory, KeepsAFixedNumberOfProblems) {
    DeviceSettings settings = smallDevice();
    EXPECT_LT(memoryFor(settings, "<X><p>", 100'000), kMebibyte);
    EXPECT_LT(memoryFor(settings, "<X>", 300'000), 4 * kMebibyte);
    EXPECT_LT(memoryFor(settings, "\x1B", 1'000'000), 4 * kMebibyte);
}

TEST(DeviceMemory, KeepsAFixedAmountOfLogos) {
    DeviceSettings settings = smallDevice();
    settings.printer.logoMemory = 100'000;
    std::string logos;
    for (int number = 0; number < 2000; ++number) {
        logos.append("<").append(std::to_string(number)).append(">\x1B");
        logos.append(graphics(200)).append("\x1B<p>");
    }
    EXPECT_LT(memoryFor(settings, logos, 10), kMebibyte);
}

TEST(DeviceMemory, KeepsAFixedNumberOfAnswersThatNobodyTakes) {
    DeviceSettings settings = smallDevice();
    settings.reply.text.assign(100, 'x');
    EXPECT_LT(memoryFor(settings, "<p>", 100'000, false), kMebibyte);
    settings.reply.delay = std::chrono::hours(1);
    EXPECT_LT(memoryFor(settings, "<p>", 100'000, false), kMebibyte);
}

TEST(DeviceMemory, OfABufferThatLosesBytesIsThatOfTheBuffer) {
    DeviceSettings settings = smallDevice();
    settings.physics.receiveBuffer = 10'000;
    settings.physics.dropWhenFull = true;
    settings.faults.paperOutAfter = 1;
    EXPECT_LT(memoryFor(settings, "<p>abcdefgh", 300'000), kMebibyte);
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
