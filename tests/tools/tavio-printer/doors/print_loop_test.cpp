// The loop between clients and device, with clients that are made up and a clock that is a variable.
#include "tools/tavio-printer/doors/print_loop.h"

#include <deque>
#include <memory>

#include <gtest/gtest.h>

#include "tools/tavio-printer/device/test_device.h"

namespace tavio::virtual_printer::testing {
namespace {

constexpr int kDoor = 100;  // descriptors, which nobody uses
constexpr int kClient = 101;

struct Script {
    std::deque<std::string> bytes;  // one piece for each read
    bool takesReplies = true;
    bool losesBytes = true;
    std::string replies;
    std::string end;  // how the loop ended it
};

class ScriptedClient final : public Client {
  public:
    explicit ScriptedClient(Script& script) : script_(script) {}

    int descriptor() const override { return kClient; }
    bool losesBytesAtHangUp() const override { return script_.losesBytes; }
    Received read(std::span<Byte> room) override {
        if (script_.bytes.empty()) return {};
        const std::string piece = script_.bytes.front().substr(0, room.size());
        std::copy(piece.begin(), piece.end(), room.begin());
        script_.bytes.front().erase(0, piece.size());
        if (script_.bytes.front().empty()) script_.bytes.pop_front();
        return {Received::Outcome::kBytes, piece.size()};
    }
    bool write(std::string& text) override {
        if (script_.takesReplies) script_.replies += std::exchange(text, "");
        return true;
    }
    void close() override { script_.end += "closed"; }
    void reset() override { script_.end += "reset"; }

  private:
    Script& script_;
};

class ScriptedDoor final : public Door {
  public:
    int descriptor() const override { return kDoor; }
    std::unique_ptr<Client> accept() override {
        if (waiting.empty()) return nullptr;
        Script* next = waiting.front();
        waiting.pop_front();
        return std::make_unique<ScriptedClient>(*next);
    }

    std::deque<Script*> waiting;
};

class PrintLoopTest : public ::testing::Test {
  protected:
    void use(const DeviceSettings& settings) {
        test = std::make_unique<TestDevice>(settings);
        loop = std::make_unique<PrintLoop>(test->device, std::vector<Door*>{&door}, false);
    }
    void SetUp() override { use(smallDevice()); }

    void turn() { loop->turn(test->now); }

    // poll() finds this at the door and at the client.
    void wake(short atDoor, short atClient = 0) {
        std::vector<pollfd> polled = loop->descriptors(test->now);
        polled.at(0).revents = atDoor;
        if (polled.size() > 1) polled[1].revents = atClient;
        loop->waited(polled, test->now);
    }

    bool watchesDoor() const { return loop->descriptors(test->now).at(0).fd == kDoor; }
    bool watchesClient() const {
        const auto polled = loop->descriptors(test->now);
        return polled.size() == 2 && polled[1].fd == kClient;
    }
    short events() const { return loop->descriptors(test->now).at(1).events; }

    ScriptedDoor door;
    Script client;
    std::unique_ptr<TestDevice> test;
    std::unique_ptr<PrintLoop> loop;
};

TEST_F(PrintLoopTest, WatchesTheDoorUntilSomebodyIsThere) {
    turn();
    EXPECT_TRUE(watchesDoor());
    EXPECT_TRUE(loop->isIdle());
    EXPECT_EQ(loop->nextTurn(test->now), std::nullopt);
    door.waiting.push_back(&client);
    turn();
    EXPECT_FALSE(watchesDoor());
    EXPECT_TRUE(watchesClient());
    EXPECT_EQ(events(), POLLIN);
    EXPECT_FALSE(loop->isIdle());
}

TEST_F(PrintLoopTest, ClosedDoorsLetNobodyIn) {
    door.waiting.push_back(&client);
    loop->stopAccepting();
    turn();
    EXPECT_TRUE(loop->isIdle());
    EXPECT_FALSE(watchesDoor());
    EXPECT_EQ(door.waiting.size(), 1U);
}

// Otherwise poll() would report it again and again.
TEST_F(PrintLoopTest, WhoCannotBeLetInIsLookedAfterLater) {
    turn();
    wake(POLLIN);
    turn();  // there are no descriptors left for the client
    EXPECT_FALSE(watchesDoor());
    EXPECT_EQ(loop->nextTurn(test->now), test->now + PrintLoop::kPollInterval);
    door.waiting.push_back(&client);
    turn();
    EXPECT_TRUE(watchesClient());
}

TEST_F(PrintLoopTest, DoesNotListenToAClientWhileThereIsNoRoom) {
    DeviceSettings settings = smallDevice();
    settings.faults.paperOutAfter = 1;
    settings.physics.receiveBuffer = 3;
    use(settings);
    client.bytes = {"<p>", "abcdef"};
    door.waiting.push_back(&client);
    for (int i = 0; i < 5; ++i) turn();
    EXPECT_EQ(test->device.state().waitingBytes, 3U);
    EXPECT_TRUE(watchesClient());
    EXPECT_EQ(events(), 0);
    wake(0, POLLHUP);
    EXPECT_TRUE(client.end.empty());
    EXPECT_FALSE(test->device.state().connected);
}

// A terminal says that it is hung up for as long as it is, and still has bytes.
TEST_F(PrintLoopTest, BytesOfAHungUpLineWaitForRoomInPeace) {
    DeviceSettings settings = smallDevice();
    settings.faults.paperOutAfter = 1;
    settings.physics.receiveBuffer = 3;
    use(settings);
    client.losesBytes = false;
    client.bytes = {"<p>", "abcdef"};
    door.waiting.push_back(&client);
    for (int i = 0; i < 5; ++i) turn();
    wake(0, POLLHUP);
    turn();
    EXPECT_TRUE(test->device.state().connected);
    EXPECT_FALSE(watchesClient());
    test->loadPaper();
    EXPECT_TRUE(watchesClient());
    turn();
    EXPECT_EQ(test->device.state().received, 9U);
}

TEST_F(PrintLoopTest, AnswersThatAClientDoesNotTakeWait) {
    DeviceSettings settings = smallDevice();
    settings.reply.text = "ok";
    use(settings);
    client.takesReplies = false;
    client.bytes = {"<p>"};
    door.waiting.push_back(&client);
    turn();
    EXPECT_EQ(events(), POLLIN | POLLOUT);
    test->end();
    turn();
    EXPECT_TRUE(test->device.isDone());
    EXPECT_TRUE(client.end.empty());
    client.takesReplies = true;
    turn();
    EXPECT_EQ(client.replies, "ok");
    EXPECT_EQ(client.end, "closed");
    EXPECT_TRUE(loop->isIdle());
}

TEST_F(PrintLoopTest, ClosesAndResetsAsTheDeviceWishes) {
    for (const bool reset : {false, true}) {
        DeviceSettings settings = smallDevice();
        (reset ? settings.faults.resetAfter : settings.faults.closeAfter) = 2;
        use(settings);
        Script script;
        script.bytes = {"abc"};
        door.waiting.push_back(&script);
        turn();
        EXPECT_EQ(script.end, reset ? "reset" : "closed");
        EXPECT_EQ(test->streams(), std::vector<std::string>{"ab"});
    }
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
