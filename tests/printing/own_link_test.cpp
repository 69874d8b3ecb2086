// Links and functions of the application that do not keep to what is said of them.

#include <new>
#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

#include "printing/test_jobs.h"
#include "tavio/links/local_link.h"

namespace tavio::printing {
namespace {

using links::Outcome;
using test::jobOf;
using test::kindsOf;
using Fates = std::vector<ElementFate>;
using Kinds = std::vector<RemarkKind>;

// Throws in one of its operations; does what a link does in the others.
class ThrowingLink : public links::LocalLink {
  public:
    using Thrower = std::function<void()>;

    ThrowingLink(std::string where, Thrower thrower)
        : where_(std::move(where)), thrower_(std::move(thrower)) {}

    bool open(const std::string& address) override {
        at("open");
        return LocalLink::open(address);
    }
    bool write(std::span<const Byte> bytes) override {
        at("write");
        return LocalLink::write(bytes);
    }
    bool drain() override {
        at("drain");
        return LocalLink::drain();
    }
    Text read() override {
        at("read");
        return LocalLink::read();
    }
    void close() override {
        if (isOpen()) at("close");
        LocalLink::close();
    }
    links::LinkReport report() const override {
        at("report");
        return LocalLink::report();
    }
    void observeProgress(links::ProgressObserver observer) override {
        at("observeProgress");
        LocalLink::observeProgress(std::move(observer));
    }

    Bytes taken;

  protected:
    bool take(std::span<const Byte> bytes) override {
        taken.insert(taken.end(), bytes.begin(), bytes.end());
        return true;
    }
    Text answer() override { return "OK"; }

  private:
    void at(const std::string& operation) const {
        if (operation == where_) thrower_();
    }

    std::string where_;
    Thrower thrower_;
};

PrintResult printOver(const std::shared_ptr<ThrowingLink>& link) {
    Printer printer([&] { return link; });
    return printer.print(
        jobOf({"Row B", "<p>"}),
        {.readyBefore = true, .readyAfter = true, .progress = [](std::uint64_t, std::uint64_t) {}});
}

void throwText() {
    throw std::runtime_error("no cable");
}

TEST(OwnLink, MayThrowBeforeTheJob) {
    for (const char* where : {"open", "read", "observeProgress"}) {
        SCOPED_TRACE(where);
        const auto link = std::make_shared<ThrowingLink>(where, throwText);
        const PrintResult result = printOver(link);
        EXPECT_TRUE(link->taken.empty());
        EXPECT_EQ(result.outcome, Outcome::kNothingSent);
        EXPECT_EQ(result.total, 8U);
        EXPECT_EQ(result.elements, Fates(2, ElementFate::kNotSent));
        ASSERT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kLinkFailed});
        EXPECT_EQ(result.remarks.at(0).sentence, "the link failed: no cable");
    }
}

TEST(OwnLink, MayHaveSentAllWhenItThrows) {
    for (const char* where : {"write", "drain", "close", "report"}) {
        SCOPED_TRACE(where);
        const PrintResult result = printOver(std::make_shared<ThrowingLink>(where, throwText));
        EXPECT_EQ(result.outcome, Outcome::kPartlySent);
        EXPECT_EQ(result.accepted, 8U);
        EXPECT_EQ(result.acknowledged, std::nullopt);
        EXPECT_EQ(result.elements, Fates(2, ElementFate::kPartlySent));
        EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kLinkFailed});
        EXPECT_FALSE(result.isGood());
    }
}

TEST(OwnLink, MayThrowAnything) {
    const PrintResult number = printOver(std::make_shared<ThrowingLink>("write", [] { throw 7; }));
    EXPECT_EQ(number.remarks.at(0).sentence, "the link failed");
    const PrintResult memory =
        printOver(std::make_shared<ThrowingLink>("write", [] { throw std::bad_alloc(); }));
    EXPECT_EQ(kindsOf(memory.remarks), Kinds{RemarkKind::kOutOfMemory});
    EXPECT_EQ(memory.remarks.at(0).sentence, "out of memory");
}

TEST(OwnLink, MayThrowWhenItsStatusIsAsked) {
    for (const char* where : {"open", "read", "close", "report"}) {
        SCOPED_TRACE(where);
        const auto link = std::make_shared<ThrowingLink>(where, throwText);
        const StatusResult status = Printer([&] { return link; }).status();
        EXPECT_EQ(kindsOf(status.remarks), Kinds{RemarkKind::kLinkFailed});
    }
}

TEST(OwnLink, MayBeMissing) {
    for (const LinkMaker& maker :
         {LinkMaker([] { return nullptr; }),
          LinkMaker([]() -> std::shared_ptr<links::Link> { throw std::runtime_error("none"); }),
          LinkMaker([]() -> std::shared_ptr<links::Link> { throw 7; })}) {
        Printer printer(maker);
        const PrintResult result = printer.print(jobOf({"<p>"}));
        EXPECT_EQ(result.outcome, Outcome::kNothingSent);
        EXPECT_EQ(result.elements, Fates{ElementFate::kNotSent});
        EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kLinkFailed});
        EXPECT_EQ(kindsOf(printer.status().remarks), Kinds{RemarkKind::kLinkFailed});
    }
}

// ---- Reports ------------------------------------------------------------------------------------

// Says of itself what it is told to.
class TellingLink : public links::Link {
  public:
    explicit TellingLink(links::LinkReport report) : report_(std::move(report)) {}
    bool open(const std::string& /*address*/) override { return true; }
    bool write(std::span<const Byte> /*bytes*/) override { return report_.failure.empty(); }
    bool drain() override { return report_.failure.empty(); }
    Text read() override { return std::nullopt; }
    void close() override {}
    void cancel() noexcept override {}
    std::string failure() const override { return report_.failure; }
    links::LinkReport report() const override { return report_; }
    void observeProgress(links::ProgressObserver /*observer*/) override {}

  private:
    links::LinkReport report_;
};

// Of a job with elements of 3, 0, 3 and 2 bytes.
PrintResult resultOf(const links::LinkReport& report) {
    Printer printer([&] { return std::make_shared<TellingLink>(report); });
    return printer.print(jobOf({"012", "", "345", "67"}));
}

TEST(OwnLink, DecidesTheFatesOfTheElementsByItsCounts) {
    constexpr ElementFate kNot = ElementFate::kNotSent;
    constexpr ElementFate kPart = ElementFate::kPartlySent;
    constexpr ElementFate kSent = ElementFate::kSent;
    constexpr ElementFate kHere = ElementFate::kArrived;
    struct Case {
        std::uint64_t accepted;
        std::optional<std::uint64_t> acknowledged;
        bool hasFailed;
        Outcome outcome;
        Fates fates;
    };
    for (const Case& each :
         {Case{0, 0, true, Outcome::kNothingSent, {kNot, kNot, kNot, kNot}},
          {0, {}, true, Outcome::kNothingSent, {kNot, kNot, kNot, kNot}},
          {1, 0, true, Outcome::kPartlySent, {kPart, kNot, kNot, kNot}},
          {3, 2, true, Outcome::kPartlySent, {kPart, kPart, kNot, kNot}},
          {3, 3, true, Outcome::kPartlySent, {kHere, kHere, kNot, kNot}},
          {4, 3, true, Outcome::kPartlySent, {kHere, kHere, kPart, kNot}},
          {6, {}, true, Outcome::kPartlySent, {kPart, kPart, kPart, kNot}},
          {8, {}, true, Outcome::kPartlySent, {kPart, kPart, kPart, kPart}},
          {8, 7, true, Outcome::kPartlySent, {kHere, kHere, kHere, kPart}},
          {8, 8, true, Outcome::kSentUnconfirmed, {kHere, kHere, kHere, kHere}},
          {8, {}, false, Outcome::kSentUnconfirmed, {kSent, kSent, kSent, kSent}},
          {8, 8, false, Outcome::kSentUnconfirmed, {kHere, kHere, kHere, kHere}}}) {
        links::LinkReport report;
        report.offered = each.accepted;  // an early failure: the link does not know of all bytes
        report.accepted = each.accepted;
        report.acknowledged = each.acknowledged;
        if (each.hasFailed) report.failure = "no cable";
        const PrintResult result = resultOf(report);
        SCOPED_TRACE(result.describe());
        EXPECT_EQ(result.outcome, each.outcome);
        EXPECT_EQ(result.elements, each.fates);
        EXPECT_EQ(result.total, 8U);
        EXPECT_EQ(result.has(RemarkKind::kLinkFailed), each.hasFailed);
    }
}

TEST(OwnLink, CountsNoMoreBytesThanTheJobHas) {
    links::LinkReport report;
    report.offered = 5;
    report.accepted = 1'000;
    report.acknowledged = 2'000;
    const PrintResult result = resultOf(report);
    EXPECT_EQ(result.total, 8U);
    EXPECT_EQ(result.accepted, 8U);
    EXPECT_EQ(result.acknowledged, 8U);
}

TEST(OwnLink, IsNotTrustedIfItLosesBytesWithoutAFailure) {
    links::LinkReport report;
    report.accepted = 5;
    const PrintResult result = resultOf(report);
    EXPECT_EQ(result.outcome, Outcome::kPartlySent);
    EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kLinkFailed});
}

TEST(OwnLink, GivesEveryKindOfFailureAndRemark) {
    using links::FailureKind;
    for (const auto& [kind, remark] : {std::pair{FailureKind::kNone, RemarkKind::kLinkFailed},
                                       {FailureKind::kBadAddress, RemarkKind::kBadAddress},
                                       {FailureKind::kNotReached, RemarkKind::kNotReached},
                                       {FailureKind::kTimeOut, RemarkKind::kTimeOut},
                                       {FailureKind::kBrokenOff, RemarkKind::kBrokenOff},
                                       {FailureKind::kCancelled, RemarkKind::kCancelled},
                                       {FailureKind::kOutOfMemory, RemarkKind::kOutOfMemory},
                                       {FailureKind::kOther, RemarkKind::kLinkFailed}}) {
        links::LinkReport report;
        report.failure = "no cable";
        report.failureKind = kind;
        const PrintResult result = resultOf(report);
        EXPECT_EQ(kindsOf(result.remarks), Kinds{remark});
        EXPECT_EQ(result.remarks.at(0).sentence, "no cable");
    }
    links::LinkReport report;
    report.accepted = 8;
    report.remark = "it was in a hurry";
    EXPECT_EQ(kindsOf(resultOf(report).remarks), Kinds{RemarkKind::kEndedEarly});
}

}  // namespace
}  // namespace tavio::printing
