#include <deque>
#include <future>
#include <mutex>

#include "printing/far_ends.h"
#include "printing/test_jobs.h"
#include "support/random_picture.h"

namespace tavio::printing::test {
namespace {

using links::test::VirtualTcp;
using std::chrono::milliseconds;
using tavio::test::between;
using tavio::test::Random;

struct Memory {
    Fault fault = Fault::kNone;
    std::mutex mutex;
    Random random;
    std::deque<VirtualTcp> connections;
};

class FarEndsInMemory : public FarEnds {
  public:
    FarEndsInMemory(const std::vector<Fault>& faults, unsigned seed) : ends_(faults.size()) {
        for (std::size_t i = 0; i < faults.size(); ++i) {
            ends_.at(i).fault = faults.at(i);
            ends_.at(i).random.seed(seed + i);
        }
    }

    LinkMaker linksTo(std::size_t number) override {
        return [this, &end = ends_.at(number)] {
            const std::lock_guard lock(end.mutex);
            VirtualTcp& calls = end.connections.emplace_back();
            play(end.fault, calls, end.random);
            return std::make_shared<VirtualLink>(calls);
        };
    }

    void release() override { released_.set_value(); }

    std::vector<std::string> received(std::size_t number) override {
        std::vector<std::string> result;
        for (const VirtualTcp& calls : ends_.at(number).connections) {
            result.push_back(calls.arrived);
        }
        return result;
    }

    bool isExact() const override { return true; }

  private:
    void play(Fault fault, VirtualTcp& calls, Random& random) {
        const auto some = static_cast<std::size_t>(between(random, 0, 600));
        switch (fault) {
            case Fault::kNone:
                break;
            case Fault::kRefuses:
                calls.connects = {ECONNREFUSED};
                break;
            case Fault::kBreaksOff:
                calls.takes = false;
                calls.room = 400;
                calls.every(milliseconds(1), milliseconds(1), [&calls] { calls.acknowledge(100); });
                calls.after(milliseconds(some / 100), [&calls] { calls.breakOff(ECONNRESET); });
                break;
            case Fault::kStopsReading:
                calls.takes = false;
                calls.room = some + 1;
                calls.onCall = [this](const std::string& name) {
                    if (name == "poll") isReleased_.wait();
                };
                break;
            case Fault::kSlow:
                calls.takes = false;
                calls.room = 300;
                calls.every(milliseconds(10), milliseconds(10),
                            [&calls] { calls.acknowledge(50); });
                break;
            case Fault::kOutOfPaper:
                calls.say("OUT OF PAPER");
                break;
        }
    }

    std::deque<Memory> ends_;
    std::promise<void> released_;
    std::shared_future<void> isReleased_ = released_.get_future().share();
};

}  // namespace

const char* nameOf(Fault fault) {
    switch (fault) {
        case Fault::kNone:
            return "none";
        case Fault::kRefuses:
            return "refuses";
        case Fault::kBreaksOff:
            return "breaks off";
        case Fault::kStopsReading:
            return "stops reading";
        case Fault::kSlow:
            return "slow";
        case Fault::kOutOfPaper:
            return "out of paper";
    }
    return "";
}

std::unique_ptr<FarEnds> farEndsInMemory(const std::vector<Fault>& faults, unsigned seed) {
    return std::make_unique<FarEndsInMemory>(faults, seed);
}

}  // namespace tavio::printing::test
