// Reports of a link on a slow network. The far end's socket tells how much has arrived, so that the
// tests do not depend on when a thread runs.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <optional>
#include <random>
#include <string>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "links/rate/slow_network.h"
#include "tavio/links/tcp_link.h"

namespace tavio::links {
namespace {

std::span<const Byte> bytesOf(const std::string& text) {
    return {reinterpret_cast<const Byte*>(text.data()), text.size()};
}

// A printer that reads nothing before it is told to; its system holds what has come.
class PatientPrinter {
  public:
    PatientPrinter() : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* any = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(::bind(listener_, any, size), 0);
        EXPECT_EQ(::listen(listener_, 1), 0);
        EXPECT_EQ(::getsockname(listener_, any, &size), 0);
        address_ = "127.0.0.1:" + std::to_string(::ntohs(address.sin_port));
    }
    PatientPrinter(const PatientPrinter&) = delete;
    PatientPrinter& operator=(const PatientPrinter&) = delete;
    ~PatientPrinter() {
        hangUp();
        ::close(listener_);
    }

    const std::string& address() const { return address_; }
    bool accept() {
        connection_ = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        return connection_ >= 0;
    }

    std::size_t bytesThere() const {
        int count = 0;
        EXPECT_EQ(::ioctl(connection_, FIONREAD, &count), 0);
        return static_cast<std::size_t>(count);
    }
    std::string take() const {
        std::string bytes(bytesThere(), '\0');
        EXPECT_EQ(::recv(connection_, bytes.data(), bytes.size(), 0),
                  static_cast<ssize_t>(bytes.size()));
        return bytes;
    }
    void hangUp() {
        if (connection_ >= 0) ::close(connection_);
        connection_ = -1;
    }

  private:
    int listener_;
    int connection_ = -1;
    std::string address_;
};

constexpr std::size_t kMaxInAPacket = 1'400;
constexpr std::size_t kPiece = 500;

std::string randomBytes(std::size_t size, std::mt19937& random) {
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
}

// The printer is asked after the link: its bytes can only have grown in between.
void expectNoMoreAcknowledgedThanThere(const TcpLink& link, const PatientPrinter& printer) {
    const auto acknowledged = link.report().acknowledged;
    ASSERT_TRUE(acknowledged);
    const std::size_t there = printer.bytesThere();
    EXPECT_LE(*acknowledged, there);
}

TEST(TcpLinkOnASlowNetwork, IsDrainedOnlyWhenTheFarEndHasEverything) {
    // Entered once per process, for a network cannot be left again.
    if (!test::enterSlowNetwork()) GTEST_SKIP() << "no network of our own, or no tc, here";
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    PatientPrinter printer;
    TcpLink link(Deadlines{});
    ASSERT_TRUE(link.open(printer.address())) << link.failure();
    ASSERT_TRUE(printer.accept());

    std::string sent;
    auto write = [&](std::size_t size) {
        const std::string piece = randomBytes(size, random);
        sent += piece;
        return link.write(bytesOf(piece));
    };
    auto expectDrainedWithEverythingThere = [&] {
        const bool drained = link.drain();
        EXPECT_EQ(printer.bytesThere(), sent.size());
        EXPECT_TRUE(drained) << link.failure();
        EXPECT_EQ(link.report().acknowledged, sent.size());
    };
    link.observeProgress(
        [&](const Progress&) { expectNoMoreAcknowledgedThanThere(link, printer); });

    // In pieces of one packet, each of which is acknowledged before the next one sets out.
    for (std::size_t size : {kMaxInAPacket, kMaxInAPacket, kPiece, kPiece, kPiece}) {
        ASSERT_TRUE(write(size)) << link.failure();
        expectDrainedWithEverythingThere();
    }

    // At once: the system takes all of it, and it is under way for seconds to come.
    ASSERT_TRUE(write(3 * test::kBurst)) << link.failure();
    EXPECT_EQ(link.report().accepted, sent.size());
    EXPECT_LT(printer.bytesThere(), sent.size());
    expectDrainedWithEverythingThere();

    EXPECT_TRUE(printer.take() == sent);
    printer.hangUp();
    link.close();
    EXPECT_EQ(link.report().acknowledged, sent.size());
    EXPECT_EQ(link.report().failure, "");
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
}

}  // namespace
}  // namespace tavio::links
