#include "tavio/links/recording_link.h"

#include <array>
#include <new>
#include <stdexcept>

#include <gtest/gtest.h>

namespace tavio::links {
namespace {

constexpr std::array<Byte, 4> kBytes{0x00, 0x1B, 0xFF, 0x0A};

TEST(RecordingLink, ReportsWhatItWasGiven) {
    RecordingLink link;
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kNothingSent);
    ASSERT_TRUE(link.open(""));
    EXPECT_TRUE(link.write(kBytes));
    EXPECT_TRUE(link.drain());
    link.close();
    EXPECT_EQ(link.report().offered, 4U);
    EXPECT_EQ(link.report().accepted, 4U);
    EXPECT_EQ(link.report().acknowledged, std::nullopt);
    EXPECT_EQ(link.report().failure, "");
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
}

TEST(RecordingLink, BeginsANewReportWithEachJob) {
    RecordingLink link;
    link.setReply("ready");
    ASSERT_TRUE(link.open(""));
    EXPECT_TRUE(link.write(kBytes));
    EXPECT_EQ(link.read(), "ready");
    EXPECT_EQ(link.report().reply, "ready");
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kAnswered);
    ASSERT_TRUE(link.open(""));
    EXPECT_EQ(link.report().offered, 0U);
    EXPECT_EQ(link.report().reply, std::nullopt);
    EXPECT_EQ(link.bytes().size(), 4U) << "what was recorded stays";
}

TEST(RecordingLink, KeepsABoundedReplyInItsReport) {
    RecordingLink link;
    link.setReply(std::string(kMaxReplyBytes - 1, 'x'));
    ASSERT_TRUE(link.open(""));
    EXPECT_TRUE(link.read());
    EXPECT_TRUE(link.read());
    EXPECT_EQ(link.report().reply, std::string(kMaxReplyBytes, 'x'));
}

TEST(RecordingLink, RefusesEverythingOnceItIsCancelled) {
    RecordingLink link;
    link.setReply("ready");
    ASSERT_TRUE(link.open(""));
    EXPECT_TRUE(link.write(kBytes));
    link.cancel();
    EXPECT_FALSE(link.write(kBytes));
    EXPECT_FALSE(link.drain());
    EXPECT_EQ(link.read(), std::nullopt);
    EXPECT_EQ(link.failure(), "cancelled");
    EXPECT_EQ(link.report().offered, 8U);
    EXPECT_EQ(link.report().accepted, 4U);
    EXPECT_EQ(link.bytes().size(), 4U);
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
    EXPECT_FALSE(link.open(""));
    EXPECT_EQ(link.failure(), "cancelled");
}

TEST(RecordingLink, TellsTheObserverOfEveryWrite) {
    RecordingLink link;
    std::vector<std::uint64_t> accepted;
    link.observeProgress([&](const Progress& progress) {
        EXPECT_EQ(progress.offered, progress.accepted);
        accepted.push_back(progress.accepted);
        throw std::runtime_error("observer");
    });
    ASSERT_TRUE(link.open(""));
    EXPECT_TRUE(link.write(kBytes));
    EXPECT_TRUE(link.write(kBytes));
    EXPECT_EQ(accepted, (std::vector<std::uint64_t>{4, 8}));
}

// Fails in the ways that a kind of link can.
class FailingLink : public LocalLink {
  public:
    enum class Way : std::uint8_t { kSentence, kNoSentence, kOutOfMemory, kException };

    explicit FailingLink(Way way) : way_(way) {}

  protected:
    bool begin(const std::string& address) override { return address.empty() || failNow(); }
    bool take(std::span<const Byte> /*bytes*/) override { return failNow(); }
    void end() override { failNow(); }

  private:
    bool failNow() {
        if (way_ == Way::kSentence) return fail("a sentence");
        if (way_ == Way::kOutOfMemory) throw std::bad_alloc();
        if (way_ == Way::kException) throw std::runtime_error("an exception");
        return false;
    }

    Way way_;
};

TEST(LocalLink, KeepsTheFirstFailureOfAJob) {
    using Way = FailingLink::Way;
    for (const auto& [way, sentence] : {std::pair{Way::kSentence, "a sentence"},
                                        {Way::kNoSentence, "the bytes were refused"},
                                        {Way::kOutOfMemory, "out of memory"},
                                        {Way::kException, "an exception"}}) {
        FailingLink link(way);
        ASSERT_TRUE(link.open(""));
        EXPECT_FALSE(link.write(kBytes));
        EXPECT_EQ(link.failure(), sentence);
        EXPECT_FALSE(link.drain());
        link.close();
        EXPECT_EQ(link.failure(), sentence);
        EXPECT_EQ(outcomeOf(link.report()), Outcome::kNothingSent);
        EXPECT_FALSE(link.write(kBytes));
        EXPECT_EQ(link.report().offered, 4U) << "a report is final after close()";
    }
}

TEST(LocalLink, TellsWhyAJobCouldNotBeginOrEnd) {
    using Way = FailingLink::Way;
    FailingLink link(Way::kException);
    EXPECT_FALSE(link.open("refused"));
    EXPECT_EQ(link.failure(), "an exception");
    ASSERT_TRUE(link.open(""));
    EXPECT_EQ(link.failure(), "");
    link.close();
    EXPECT_EQ(link.failure(), "an exception");
    link.close();
}

}  // namespace
}  // namespace tavio::links
