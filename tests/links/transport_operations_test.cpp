#include "tavio/links/transport_operations.h"

#include <array>
#include <limits>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/session/transport.h"
#include "tavio/links/recording_link.h"

namespace tavio::links {
namespace {

constexpr std::array<Byte, 3> kBytes{0x00, 0xFF, 0x1B};

std::string recorded(const RecordingLink& link) {
    return {link.bytes().begin(), link.bytes().end()};
}

// Notes every call; each of them can be made to throw.
class NotingLink : public Link {
  public:
    explicit NotingLink(bool throwing = false) : throwing_(throwing) {}

    std::vector<std::string> calls;

    bool open(const std::string& address) override {
        note("open " + address);
        return true;
    }
    bool write(std::span<const Byte> bytes) override {
        note("write " + std::to_string(bytes.size()));
        return true;
    }
    Text read() override {
        note("read");
        return "ready";
    }
    bool drain() override { return true; }
    void close() override { note("close"); }
    void cancel() noexcept override { calls.emplace_back("cancel"); }
    std::string failure() const override { return ""; }
    LinkReport report() const override { return report_; }
    void observeProgress(ProgressObserver /*observer*/) override {}

    void setReport(LinkReport report) { report_ = std::move(report); }

  private:
    void note(const std::string& call) {
        calls.push_back(call);
        if (throwing_) throw std::runtime_error(call);
    }

    bool throwing_;
    LinkReport report_;
};

class TransportOperations : public testing::Test {
  protected:
    ~TransportOperations() override {
        observeOperations({});
        useLink(nullptr);
        Mode = "";
    }
};

TEST_F(TransportOperations, CollectExactlyTheBytesInOrder) {
    auto link = std::make_shared<RecordingLink>();
    useLink(link);
    EXPECT_TRUE(Open_WF("192.0.2.7"));
    Write_WF("<P1>\xC3\xA9");
    Write_WF_Data(kBytes.data(), 3);
    Write_BT(std::string("a\0b", 3));
    Write_BT_Data(kBytes.data(), 1);
    Close_WF();
    EXPECT_EQ(recorded(*link), std::string("<P1>\xC3\xA9\0\xFF\x1B"
                                           "a\0b\0",
                                           13));
}

TEST_F(TransportOperations, WriteNothingForNoText) {
    auto link = std::make_shared<RecordingLink>();
    useLink(link);
    Write_WF(std::nullopt);
    Write_BT(std::nullopt);
    Write_WF("");
    EXPECT_EQ(recorded(*link), "");
}

TEST_F(TransportOperations, WriteNothingForANegativeSizeOrANullPointer) {
    auto link = std::make_shared<RecordingLink>();
    useLink(link);
    Write_WF_Data(kBytes.data(), -1);
    Write_BT_Data(kBytes.data(), std::numeric_limits<std::int32_t>::min());
    Write_WF_Data(nullptr, 3);
    Write_BT_Data(nullptr, -3);
    Write_BT_Data(kBytes.data(), 0);
    EXPECT_EQ(recorded(*link), "");
}

TEST_F(TransportOperations, FailToOpenAndWriteNowhereWithoutAPrinter) {
    EXPECT_FALSE(Open_WF("not an address"));
    EXPECT_FALSE(Open_BT());
    Write_WF("x");
    Write_BT("x");
    Write_WF_Data(kBytes.data(), 3);
    Write_BT_Data(kBytes.data(), 3);
    EXPECT_EQ(Read_WF(), std::nullopt);
    EXPECT_EQ(Read_BT(), std::nullopt);
    ClearStatus_WF();
    ClearStatus_BT();
    Close_WF();
    Close_BT();
}

TEST_F(TransportOperations, LeadBothTransportsToTheSameLink) {
    auto link = std::make_shared<NotingLink>();
    useLink(link);
    Open_BT();
    Write_BT("ab");
    Write_BT_Data(kBytes.data(), 3);
    EXPECT_EQ(Read_BT(), "ready");
    ClearStatus_BT();
    Close_BT();
    Open_WF("192.0.2.7");
    Write_WF("ab");
    Write_WF_Data(kBytes.data(), 3);
    EXPECT_EQ(Read_WF(), "ready");
    ClearStatus_WF();
    Close_WF();
    EXPECT_EQ(link->calls,
              (std::vector<std::string>{"open ", "write 2", "write 3", "read", "close",
                                        "open 192.0.2.7", "write 2", "write 3", "read", "close"}));
}

TEST_F(TransportOperations, DoNotLetALinksExceptionOut) {
    auto link = std::make_shared<NotingLink>(true);
    useLink(link);
    EXPECT_FALSE(Open_WF("x"));
    EXPECT_FALSE(Open_BT());
    Write_WF("x");
    Write_BT_Data(kBytes.data(), 3);
    EXPECT_EQ(Read_WF(), std::nullopt);
    Close_WF();
    EXPECT_EQ(link->calls.size(), 6U);
}

TEST_F(TransportOperations, TellTheObserverNameAndSize) {
    useLink(std::make_shared<NotingLink>());
    std::vector<std::string> seen;
    observeOperations([&](const Operation& operation) {
        seen.push_back(std::string(operation.name) + (operation.carriesData ? " data " : " ") +
                       (operation.size ? std::to_string(*operation.size) : "-"));
    });
    Open_WF("x");
    Write_WF("\xC3\xA9");
    Write_WF(std::nullopt);
    Write_WF_Data(kBytes.data(), 3);
    Write_WF_Data(kBytes.data(), -3);
    Read_WF();
    ClearStatus_WF();
    Close_WF();
    Open_BT();
    Write_BT("x");
    Write_BT_Data(kBytes.data(), 2);
    Read_BT();
    ClearStatus_BT();
    Close_BT();
    EXPECT_EQ(seen, (std::vector<std::string>{
                        "Open_WF -", "Write_WF data 2", "Write_WF data -", "Write_WF_Data data 3",
                        "Write_WF_Data data 0", "Read_WF data 5", "ClearStatus_WF -", "Close_WF -",
                        "Open_BT -", "Write_BT data 1", "Write_BT_Data data 2", "Read_BT data 5",
                        "ClearStatus_BT -", "Close_BT -"}));
}

TEST_F(TransportOperations, DoNotLetAnObserversExceptionOut) {
    auto link = std::make_shared<RecordingLink>();
    useLink(link);
    observeOperations([](const Operation&) { throw std::runtime_error("observer"); });
    EXPECT_TRUE(Open_WF("x"));
    Write_WF("kept");
    EXPECT_EQ(recorded(*link), "kept");
}

TEST_F(TransportOperations, CarryASessionOfTheLibrary) {
    auto link = std::make_shared<RecordingLink>();
    link->setReply("paper low");
    useLink(link);
    ASSERT_TRUE(OpenSessionWiFi("192.0.2.7"));
    SendString("<RC1,2>");
    SendData(kBytes.data(), 3);
    EXPECT_EQ(ReadPrinter(), "paper low");
    PrintCut();
    CloseSessionWiFi();
    EXPECT_EQ(recorded(*link), std::string("<RC1,2>\0\xFF\x1B<p>", 13));
}

TEST_F(TransportOperations, TakeRawDataWithNoSessionOpen) {
    auto link = std::make_shared<RecordingLink>();
    useLink(link);
    SendData(kBytes.data(), 3);
    SendString("dropped");
    EXPECT_EQ(recorded(*link), std::string("\0\xFF\x1B", 3));
}

}  // namespace
}  // namespace tavio::links
