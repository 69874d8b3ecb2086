// The kinds of failures and remarks, for every kind of link.

#include <array>
#include <cerrno>
#include <filesystem>
#include <new>
#include <stdexcept>

#include <gtest/gtest.h>

#include "links/replaced_radio.h"
#include "links/tcp_job.h"
#include "tavio/links/file_link.h"
#include "tavio/links/job_links.h"
#include "tavio/links/recording_link.h"
#include "tavio/links/rfcomm_link.h"
#include "tavio/links/serial_link.h"

namespace tavio::links {
namespace {

using std::chrono::milliseconds;
using test::bytesOf;
using test::ReplacedRadio;
using test::VirtualTcp;
using TcpFailureKind = test::TcpJob;

FailureKind kindAfterOpening(Link& link, const std::string& address) {
    EXPECT_FALSE(link.open(address));
    EXPECT_NE(link.failure(), "");
    const FailureKind kind = link.report().failureKind;
    link.close();
    EXPECT_EQ(link.report().failureKind, kind) << "it stays";
    return kind;
}

FailureKind kindOfTcp(VirtualTcp& calls, const std::string& address) {
    TcpLink link(Deadlines{}, calls);
    return kindAfterOpening(link, address);
}

// ---- Opening ------------------------------------------------------------------------------------

TEST(FailureKinds, TellAMalformedOrMissingAddress) {
    VirtualTcp calls;
    EXPECT_EQ(kindOfTcp(calls, ""), FailureKind::kBadAddress);
    EXPECT_EQ(kindOfTcp(calls, "printer:0"), FailureKind::kBadAddress);
    for (const char* address : {"", "printer"}) {
        RfcommLink bluetooth(address, Deadlines{}, calls);
        EXPECT_EQ(kindAfterOpening(bluetooth, ""), FailureKind::kBadAddress);
    }
    for (const char* device : {"", "/dev/ttyUSB0?baud=1"}) {
        SerialLink serial(device, Deadlines{}, calls);
        EXPECT_EQ(kindAfterOpening(serial, ""), FailureKind::kBadAddress);
    }
    JobLinks links;
    EXPECT_FALSE(links.open(Transport::kBluetooth, ""));
    EXPECT_EQ(links.lastReport().failureKind, FailureKind::kBadAddress);
}

TEST(FailureKinds, TellThatNoConnectionCameAbout) {
    VirtualTcp refusing;
    refusing.connects = {ECONNREFUSED};
    EXPECT_EQ(kindOfTcp(refusing, "192.0.2.7"), FailureKind::kNotReached);
    VirtualTcp silent;
    silent.connects = {EINPROGRESS};
    EXPECT_EQ(kindOfTcp(silent, "192.0.2.7"), FailureKind::kNotReached);
    VirtualTcp nameless;
    nameless.onLookUp = [](std::vector<SocketAddress>&) { return 0; };
    EXPECT_EQ(kindOfTcp(nameless, "printer.example"), FailureKind::kNotReached);
    ReplacedRadio radio;
    radio.connectError = EHOSTDOWN;
    RfcommLink bluetooth("00:1A:7D:DA:71:F3", Deadlines{}, radio);
    EXPECT_EQ(kindAfterOpening(bluetooth, ""), FailureKind::kNotReached);
    ReplacedRadio none;
    none.fail("socket", EAFNOSUPPORT);
    RfcommLink withoutRadio("00:1A:7D:DA:71:F3", Deadlines{}, none);
    EXPECT_EQ(kindAfterOpening(withoutRadio, ""), FailureKind::kNotReached);
    SerialLink serial("/nowhere/tty", Deadlines{});
    EXPECT_EQ(kindAfterOpening(serial, ""), FailureKind::kNotReached);
    SerialLink noDevice("/dev/null", Deadlines{});
    EXPECT_EQ(kindAfterOpening(noDevice, ""), FailureKind::kNotReached);
}

TEST(FailureKinds, TellACancelledOpening) {
    VirtualTcp calls;
    calls.connects = {EINPROGRESS};
    TcpLink link(Deadlines{}, calls);
    calls.after(milliseconds(100), [&] { link.cancel(); });
    EXPECT_EQ(kindAfterOpening(link, "192.0.2.7"), FailureKind::kCancelled);
    EXPECT_EQ(kindAfterOpening(link, "192.0.2.7"), FailureKind::kCancelled);
}

TEST(FailureKinds, AreForgottenWhenTheLinkIsOpenedAgain) {
    VirtualTcp calls;
    calls.connects = {ECONNREFUSED, 0};
    TcpLink link(Deadlines{}, calls);
    EXPECT_EQ(kindAfterOpening(link, "192.0.2.7"), FailureKind::kNotReached);
    EXPECT_TRUE(link.open("192.0.2.7"));
    EXPECT_EQ(link.report().failureKind, FailureKind::kNone);
}

// ---- Sending ------------------------------------------------------------------------------------

TEST_F(TcpFailureKind, OfAPrinterThatAcknowledgesNothingIsATimeOut) {
    EXPECT_FALSE(link_.drain());
    EXPECT_EQ(link_.report().failureKind, FailureKind::kTimeOut);
}

TEST_F(TcpFailureKind, OfAPrinterThatTakesNothingIsATimeOut) {
    EXPECT_FALSE(link_.write(bytesOf(std::string(100'000, 'x'))));
    EXPECT_EQ(link_.report().failureKind, FailureKind::kTimeOut);
}

TEST_F(TcpFailureKind, OfAResetIsBrokenOff) {
    calls_.breakOff(ECONNRESET);
    EXPECT_FALSE(link_.drain());
    EXPECT_EQ(link_.report().failureKind, FailureKind::kBrokenOff);
}

TEST_F(TcpFailureKind, OfAConnectionThatCannotBeWaitedForIsBrokenOff) {
    calls_.fail("poll", ENOMEM);
    EXPECT_FALSE(link_.drain());
    EXPECT_EQ(link_.report().failureKind, FailureKind::kBrokenOff);
}

TEST_F(TcpFailureKind, OfACancelledJobIsCancelled) {
    calls_.after(milliseconds(100), [&] { link_.cancel(); });
    EXPECT_FALSE(link_.drain());
    EXPECT_EQ(link_.report().failureKind, FailureKind::kCancelled);
}

TEST_F(TcpFailureKind, OfAnAllocationThatFailsIsOutOfMemory) {
    calls_.onCall = [](const std::string& name) {
        if (name == "send") throw std::bad_alloc();
    };
    EXPECT_FALSE(link_.write(bytesOf("x")));
    EXPECT_EQ(link_.report().failureKind, FailureKind::kOutOfMemory);
}

TEST_F(TcpFailureKind, IsThatOfTheFirstFailure) {
    calls_.breakOff(ECONNRESET);
    EXPECT_FALSE(link_.drain());
    link_.cancel();
    EXPECT_FALSE(link_.drain());
    EXPECT_EQ(link_.report().failureKind, FailureKind::kBrokenOff);
}

// ---- Remarks ------------------------------------------------------------------------------------

TEST_F(TcpFailureKind, OfAPlainSuccessIsNone) {
    acknowledgeAll();
    link_.close();
    EXPECT_EQ(link_.report().failureKind, FailureKind::kNone);
    EXPECT_EQ(link_.report().remarkKind, LinkRemark::kNone);
}

TEST_F(TcpFailureKind, IsARemarkIfThePrinterBreaksOffAfterTheJob) {
    acknowledgeAll();
    EXPECT_TRUE(link_.drain());
    calls_.breakOff(ECONNRESET);
    link_.close();
    EXPECT_EQ(link_.report().failureKind, FailureKind::kNone);
    EXPECT_EQ(link_.report().remarkKind, LinkRemark::kBrokenOff);
}

TEST_F(TcpFailureKind, IsARemarkIfThePrinterEndsItsSideBeforeTheJob) {
    calls_.end();
    calls_.after(milliseconds(100), [&] { acknowledgeAll(); });
    link_.close();
    EXPECT_EQ(link_.report().failureKind, FailureKind::kNone);
    EXPECT_EQ(link_.report().remarkKind, LinkRemark::kEndedEarly);
}

TEST_F(TcpFailureKind, IsARemarkIfThePrinterDoesNotEndItsSide) {
    calls_.endsWhenWeEnd = false;
    acknowledgeAll();
    link_.close();
    EXPECT_EQ(link_.report().failureKind, FailureKind::kNone);
    EXPECT_EQ(link_.report().remarkKind, LinkRemark::kNotEnded);
}

// ---- Links without a connection -----------------------------------------------------------------

TEST(FailureKinds, TellACancelledRecording) {
    RecordingLink link;
    ASSERT_TRUE(link.open(""));
    link.cancel();
    EXPECT_FALSE(link.write(bytesOf("x")));
    EXPECT_EQ(link.report().failureKind, FailureKind::kCancelled);
    EXPECT_EQ(kindAfterOpening(link, ""), FailureKind::kCancelled);
}

TEST(FailureKinds, TellAFileThatCannotBeWritten) {
    FileLink link("/nowhere/job.bin");
    EXPECT_EQ(kindAfterOpening(link, ""), FailureKind::kOther);
}

// Fails as it is told to.
class TellingLink : public LocalLink {
  public:
    std::function<bool(TellingLink&)> onTake;
    using LocalLink::fail;

  protected:
    bool take(std::span<const Byte> /*bytes*/) override { return onTake(*this); }
};

FailureKind kindOfTaking(const std::function<bool(TellingLink&)>& onTake) {
    TellingLink link;
    link.onTake = onTake;
    EXPECT_TRUE(link.open(""));
    EXPECT_FALSE(link.write(bytesOf("x")));
    return link.report().failureKind;
}

TEST(FailureKinds, AreThoseThatALinkOfTheApplicationGives) {
    EXPECT_EQ(kindOfTaking([](TellingLink&) { return false; }), FailureKind::kOther);
    EXPECT_EQ(kindOfTaking([](TellingLink& link) { return link.fail("no"); }), FailureKind::kOther);
    EXPECT_EQ(kindOfTaking([](TellingLink&) -> bool { throw std::bad_alloc(); }),
              FailureKind::kOutOfMemory);
    EXPECT_EQ(kindOfTaking([](TellingLink&) -> bool { throw std::runtime_error("no"); }),
              FailureKind::kOther);
    EXPECT_EQ(kindOfTaking([](TellingLink& link) {
                  return link.fail(Failure{FailureKind::kTimeOut, "too slow"});
              }),
              FailureKind::kTimeOut);
}

}  // namespace
}  // namespace tavio::links
