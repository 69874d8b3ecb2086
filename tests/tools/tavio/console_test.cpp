#include "tools/tavio/console.h"

#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

namespace tavio::tool {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

// Collects what a console writes; may be waited on, so that no test depends on how long it took.
class Screen {
  public:
    Console::Writer writer() {
        return [this](std::string_view text) {
            std::lock_guard lock(mutex_);
            text_ += text;
            changed_.notify_all();
        };
    }
    void waitFor(std::string_view text) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return text_.find(text) != std::string::npos; });
    }
    std::string text() {
        std::lock_guard lock(mutex_);
        return text_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::string text_;
};

const std::string kWipe = "\r\x1B[K";

// A terminal whose stages and progress are due after so long.
Display displayAfter(milliseconds delay) {
    Display display;
    display.delay = delay;
    display.progressDelay = delay;
    display.redraw = milliseconds(1);
    return display;
}

TEST(Console, ShowsTheStageOfWorkThatTakesLong) {
    Screen screen;
    {
        Console console(screen.writer(), displayAfter(milliseconds(20)));
        console.stage("reading");
        screen.waitFor("reading ...");
    }
    EXPECT_EQ(screen.text(), "reading ..." + kWipe);
}

TEST(Console, ShowsEachFurtherStageInPlaceOfTheLast) {
    Screen screen;
    {
        Console console(screen.writer(), displayAfter(milliseconds(0)));
        console.stage("reading");
        screen.waitFor("reading ...");
        console.stage("printing");
        screen.waitFor("printing ...");
        console.clear();
        EXPECT_EQ(screen.text(), "reading ..." + kWipe + "printing ..." + kWipe);
    }
    EXPECT_EQ(screen.text(), "reading ..." + kWipe + "printing ..." + kWipe);
}

TEST(Console, WipesTheStageBeforeAMessage) {
    Screen screen;
    {
        Console console(screen.writer(), displayAfter(milliseconds(0)));
        console.stage("reading");
        screen.waitFor("reading ...");
        console.warn("odd");
    }
    EXPECT_EQ(screen.text(),
              "reading ..." + kWipe + "tavio: warning: odd\n" + "reading ..." + kWipe);
}

TEST(Console, ShowsNoStageOfWorkThatIsDoneSoon) {
    Screen screen;
    {
        Console console(screen.writer(), displayAfter(hours(1)));
        console.stage("reading");
        console.stage("printing");
    }
    EXPECT_EQ(screen.text(), "");
}

TEST(Console, ShowsMessagesOnlyWhereThereIsNoTerminal) {
    Screen screen;
    {
        Console console(screen.writer(), std::nullopt);
        console.stage("reading");
        console.beginSending();
        console.progress(1, 2);
        console.fail("broken");
        console.trace("Open_WF");
    }
    EXPECT_EQ(screen.text(), "tavio: broken\ntavio: trace: Open_WF\n");
}

TEST(Console, ShowsTheProgressOfAJobThatTakesLong) {
    Screen screen;
    {
        Console console(screen.writer(), displayAfter(milliseconds(5)));
        console.beginSending();
        console.progress(500, 1000);
        screen.waitFor("sending  [##########----------]  500 B of 1.0 kB  50%  ");
        console.progress(1000, 1000);
        screen.waitFor(kWipe + "sending  [####################]  1.0 kB of 1.0 kB  100%  ");
    }
    EXPECT_TRUE(screen.text().ends_with(kWipe));
}

TEST(Console, WipesTheProgressBeforeAMessageAndAtTheNextStage) {
    Screen screen;
    Console console(screen.writer(), displayAfter(milliseconds(0)));
    console.beginSending();
    console.progress(500, 1000);
    screen.waitFor("50%");
    console.trace("Write_WF");
    EXPECT_NE(screen.text().find("/s" + kWipe + "tavio: trace: Write_WF\n" + "sending  ["),
              std::string::npos)
        << screen.text();
    console.stage("waiting");
    screen.waitFor("/s" + kWipe + "waiting ...");
    console.clear();
    EXPECT_TRUE(screen.text().ends_with("waiting ..." + kWipe));
    console.progress(700, 1000);
    console.warn("odd");
    EXPECT_TRUE(screen.text().ends_with("waiting ..." + kWipe + "tavio: warning: odd\n"));
}

TEST(Console, ShowsNoProgressOfAJobThatIsDoneSoon) {
    Screen screen;
    {
        Console console(screen.writer(), displayAfter(hours(1)));
        console.beginSending();
        console.progress(500, 1000);
        console.clear();
    }
    EXPECT_EQ(screen.text(), "");
}

TEST(Console, KeepsTheProgressWithinTheTerminal) {
    Screen screen;
    Display narrow = displayAfter(milliseconds(0));
    narrow.columns = [] { return std::size_t{13}; };
    Console console(screen.writer(), narrow);
    console.beginSending();
    console.progress(500, 1000);
    screen.waitFor("sending  50%");
    console.clear();
    EXPECT_EQ(screen.text(), "sending  50%" + kWipe);
}

// Drawing waits for the terminal, the job does not.
TEST(Console, LetsAJobGoOnWhileTheTerminalIsStopped) {
    Screen screen;
    std::promise<void> stopped;
    std::promise<void> goesOn;
    auto write = [&, isFirst = true](std::string_view text) mutable {
        if (std::exchange(isFirst, false)) {
            stopped.set_value();
            goesOn.get_future().wait();
        }
        screen.writer()(text);
    };
    {
        Console console(write, displayAfter(milliseconds(0)));
        console.stage("reading");
        stopped.get_future().wait();
        console.beginSending();
        console.progress(500, 1000);
        console.stage("waiting");
        EXPECT_EQ(screen.text(), "");
        goesOn.set_value();
        screen.waitFor("waiting ...");
    }
    EXPECT_EQ(screen.text(), "reading ..." + kWipe + "waiting ..." + kWipe);
}

TEST(Console, TakesMessagesFromManyThreads) {
    Screen screen;
    {
        Console console(screen.writer(), displayAfter(milliseconds(0)));
        auto talk = [&console] {
            for (int round = 0; round < 200; ++round) {
                console.stage("working");
                console.trace("x");
            }
        };
        std::thread first(talk);
        std::thread second(talk);
        first.join();
        second.join();
    }
    std::string text = screen.text();
    std::size_t messages = 0;
    for (auto at = text.find("tavio: trace: x\n"); at != std::string::npos;
         at = text.find("tavio: trace: x\n", at + 1)) {
        ++messages;
    }
    EXPECT_EQ(messages, 400U);
}

}  // namespace
}  // namespace tavio::tool
