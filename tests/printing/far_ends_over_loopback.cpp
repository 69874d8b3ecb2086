#include <atomic>
#include <deque>
#include <sys/eventfd.h>
#include <thread>

#include "printing/far_ends.h"
#include "support/loopback_peer.h"
#include "support/random_picture.h"

namespace tavio::printing::test {
namespace {

using links::test::Port;
using machine::Descriptor;
using tavio::test::between;
using tavio::test::Random;

constexpr std::size_t kSlowBytes = 200;

// One printer's port and what came over it.
struct Door {
    Port port;
    Fault fault = Fault::kNone;
    Descriptor connection;
    std::size_t breaksOffAfter = 0;
    bool isResting = false;
    std::vector<std::string> received;
};

class FarEndsOverLoopback : public FarEnds {
  public:
    FarEndsOverLoopback(const std::vector<Fault>& faults, unsigned seed)
        : random_(seed), doors_(faults.size()) {
        for (std::size_t i = 0; i < faults.size(); ++i) {
            doors_.at(i).fault = faults.at(i);
            doors_.at(i).port.setReceiveBuffer(4'096);
            if (faults.at(i) != Fault::kRefuses) doors_.at(i).port.listen();
        }
        thread_ = std::thread([this] { serve(); });
    }
    ~FarEndsOverLoopback() override { stop(); }

    LinkMaker linksTo(std::size_t number) override {
        const Door& door = doors_.at(number);
        links::Deadlines deadlines;
        deadlines.silence = std::chrono::milliseconds(1);
        if (door.fault == Fault::kStopsReading) {
            deadlines.progress = deadlines.goodbye = std::chrono::hours(1);
        }
        return linkTo("tcp://" + door.port.address(), deadlines);
    }

    void release() override {
        isReleased_ = true;
        wakeUp();
    }

    std::vector<std::string> received(std::size_t number) override {
        stop();
        return doors_.at(number).received;
    }

    bool isExact() const override { return false; }

  private:
    // Ends after all connections have been read to their ends.
    void stop() {
        isEnding_ = true;
        wakeUp();
        if (thread_.joinable()) thread_.join();
    }

    void wakeUp() const { ASSERT_EQ(::eventfd_write(wakeUp_.get(), 1), 0); }

    void serve() {
        for (;;) {
            std::vector<pollfd> watched{{wakeUp_.get(), POLLIN, 0}};
            bool isIdle = true;
            bool isResting = false;
            for (Door& door : doors_) {
                isIdle = isIdle && !door.connection.isOpen();
                isResting = isResting || door.isResting;
                watched.push_back(watchedOf(door));
                door.isResting = false;
            }
            if (isEnding_ && isIdle) return;
            ASSERT_GE(::poll(watched.data(), watched.size(), isResting ? 1 : -1), 0);
            if (watched.at(0).revents != 0) clearWakeUp();
            for (std::size_t i = 0; i < doors_.size(); ++i) {
                if (watched.at(i + 1).revents != 0) handle(doors_.at(i));
            }
        }
    }

    void clearWakeUp() const {
        eventfd_t count = 0;
        ASSERT_EQ(::eventfd_read(wakeUp_.get(), &count), 0);
    }

    pollfd watchedOf(const Door& door) const {
        if (!door.connection.isOpen()) return {door.port.descriptor(), POLLIN, 0};
        const bool isWaiting =
            door.isResting || (door.fault == Fault::kStopsReading && !isReleased_);
        return {isWaiting ? -1 : door.connection.get(), POLLIN, 0};
    }

    void handle(Door& door) {
        if (door.connection.isOpen()) return readFrom(door);
        door.connection.reset(door.port.accept());
        door.received.emplace_back();
        door.breaksOffAfter = static_cast<std::size_t>(between(random_, 0, 20'000));
        if (door.fault == Fault::kOutOfPaper) {
            EXPECT_TRUE(links::test::sendAll(door.connection.get(), "OUT OF PAPER"));
        }
    }

    void readFrom(Door& door) {
        std::array<char, 65'536> buffer{};
        std::string& received = door.received.back();
        std::size_t size = buffer.size();
        if (door.fault == Fault::kSlow) size = kSlowBytes;
        if (door.fault == Fault::kBreaksOff) size = door.breaksOffAfter - received.size();
        const ssize_t got = ::recv(door.connection.get(), buffer.data(), size, 0);
        if (got > 0) received.append(buffer.data(), static_cast<std::size_t>(got));
        door.isResting = door.fault == Fault::kSlow;
        const bool breaksOff =
            door.fault == Fault::kBreaksOff && received.size() == door.breaksOffAfter;
        if (breaksOff) links::test::resetWhenClosed(door.connection.get());
        if (got <= 0 || breaksOff) door.connection.reset();
    }

    Descriptor wakeUp_{::eventfd(0, EFD_CLOEXEC)};
    Random random_;
    std::deque<Door> doors_;
    std::atomic<bool> isReleased_ = false;
    std::atomic<bool> isEnding_ = false;
    std::thread thread_;
};

}  // namespace

std::unique_ptr<FarEnds> farEndsOverLoopback(const std::vector<Fault>& faults, unsigned seed) {
    return std::make_unique<FarEndsOverLoopback>(faults, seed);
}

}  // namespace tavio::printing::test
