// Random tickets (ten thousand; fewer under emulation): an element's bytes are those that the classic calls send.

#include <gtest/gtest.h>

#include "printing/random_tickets.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"
#include "support/temporary_folder.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

constexpr unsigned kShards = 20;
constexpr unsigned kTicketsPerShard = TAVIO_RANDOM_TICKETS / kShards;

class RandomTickets : public test::FreshState, public testing::WithParamInterface<unsigned> {
  protected:
    test::TemporaryFolder folder_;
};

TEST_P(RandomTickets, AreEncodedToTheBytesOfTheClassicCalls) {
    unsigned refused = 0;
    for (unsigned i = 0; i < kTicketsPerShard; ++i) {
        const unsigned seed = GetParam() * kTicketsPerShard + i;
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const test::RandomTicket ticket = test::randomTicket(random);
        EncodeOptions options;
        options.pageEngine = test::pageEngineOf(ticket);
        options.mayUseThreads = test::chance(random, 50);
        const auto job = encode(test::composed(ticket, random), options);
        const Bytes classic = test::sentClassically(ticket, folder_.path());
        if (!job) {  // the classic call leaves the element out, with a notice
            ASSERT_FALSE(notices.empty()) << job.error().front().sentence;
            ++refused;
        } else {
            ASSERT_TRUE(std::ranges::equal(job->bytes(), classic))
                << test::readable(job->bytes()) << "\n\n"
                << test::readable(classic);
        }
        notices.clear();
    }
    EXPECT_LT(refused, kTicketsPerShard / 10);
}

INSTANTIATE_TEST_SUITE_P(Shard, RandomTickets, testing::Range(0U, kShards));

}  // namespace
}  // namespace tavio::printing
